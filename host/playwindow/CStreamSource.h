#pragma once
// Where a camera's live stream comes from and how it is fetched. HTTP(S)
// streams, the device's own MJPEG stream included, go through the device
// transport (commlayer::CDeviceStream), so certificate checks and password
// rules are those of every device request; other schemes (RTSP) are opened
// by FFmpeg. The URL a source carries never holds credentials: it is what
// windows keep, show and log. Plain values, any thread.
#include <QString>
#include <string>

#include "UiDataController/ICamera.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "publicdatacontroller/CLocalDataManagerDelegate.h"

namespace playwindow {

struct CStreamSource {
    QString url;                               // without user information; empty: nothing to play
    bool viaTransport = false;                 // fetched by the device transport
    clientcommonlogical::DeviceConfig device;  // viaTransport: endpoint, trust and credentials
    std::string path;                          // viaTransport: the resource (query included)

    bool IsEmpty() const { return url.isEmpty(); }

    // The camera's own configured URL, or its device's MJPEG stream of that
    // channel with the device's credentials and trust settings.
    static CStreamSource OfCamera(const vantordesk::ICamera& camera, const publicdatacontroller::StreamSettings& settings);
    // An explicit URL. User information in it is moved into the credentials;
    // trust: the given device's (certificate check on by default).
    static CStreamSource OfUrl(const QString& url,
        const clientcommonlogical::DeviceConfig& trust = clientcommonlogical::DeviceConfig());
};

// The URL without user information, for messages and logs.
QString RedactedUrl(const QString& url);

} // namespace playwindow
