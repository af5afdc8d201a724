#pragma once
// Where a camera's live stream comes from: its own configured URL, or the
// device's MJPEG stream of that channel with the device's credentials.
#include <QString>
#include <string>

#include "UiDataController/ICamera.h"
#include "publicdatacontroller/CLocalDataManagerDelegate.h"

namespace playwindow {

// An empty result means the camera cannot be played (unknown device).
QString StreamUrlOf(const vantordesk::ICamera& camera, const publicdatacontroller::StreamSettings& settings);
// The URL without user information, for messages and logs.
QString RedactedUrl(const QString& url);

} // namespace playwindow
