#pragma once
// Where a camera's live stream comes from and how it is fetched. HTTP(S)
// streams, the device's own MJPEG stream included, go through the device
// transport (commlayer::CDeviceStream), so certificate checks and password
// rules are those of every device request; RTSP(S) is opened by FFmpeg
// through CRtspAuthGuard, which alone talks to the device. The URL a source
// carries never holds credentials: it is what windows keep, show and log.
// Plain values, any thread.
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
    bool rtspOverUdp = false;                  // RTSP: media over UDP instead of inside the connection

    bool IsEmpty() const { return url.isEmpty(); }

    // The camera's main or sub stream when its channel names them (the other
    // one when only that is named), else its own configured URL, else its
    // device's MJPEG stream of that channel; with the device's credentials
    // and trust settings where the stream is the device's.
    static CStreamSource OfCamera(const vantordesk::ICamera& camera, const publicdatacontroller::StreamSettings& settings,
        bool mainStream = false);
    // Whether the camera's channel names a main or sub stream (so the window
    // switches between them with its size).
    static bool HasProfiles(const vantordesk::ICamera& camera);
    // An explicit URL. User information in it is moved into the credentials;
    // trust: the given device's (certificate check on by default). RTSP
    // credentials are used by the decoder through CRtspAuthGuard.
    static CStreamSource OfUrl(const QString& url,
        const clientcommonlogical::DeviceConfig& trust = clientcommonlogical::DeviceConfig());
};

// The URL without user information, for messages and logs.
QString RedactedUrl(const QString& url);

} // namespace playwindow
