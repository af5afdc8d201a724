#pragma once
// Downloads a file (a picture of a device record) from a configured device.
// Blocking, any thread. The reference may be a path ("/DVAPI/...") or an
// absolute URL; only its path and query are used, always against the
// configured device address and credentials, so a record cannot send the
// client elsewhere. Error pair and cancel as for CDataStatisticsComm.
#include <QByteArray>
#include <string>

namespace commlayer {

class CRequestCancel;

class CDeviceDownloadsComm final {
public:
    static bool request(const std::string& reference, const std::string& deviceId, QByteArray& data,
        int timeoutMs = 30000, CRequestCancel* cancel = nullptr);
};

} // namespace commlayer
