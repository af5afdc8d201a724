#pragma once
// Feeds FFmpeg the bytes of a stream fetched by the device transport
// (commlayer::CDeviceStream) through a custom AVIOContext, so FFmpeg never
// opens the connection or sees credentials. Owned and used by one decode
// session on its thread; every wait is cut by the interrupt check (stop or
// deadline) within a few tens of milliseconds.
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "clientcommonlogical/CConfigMgr.h"

struct AVIOContext;
struct AVInputFormat;

namespace commlayer {
class CDeviceStream;
}

namespace playwindow {

class CTransportInput final {
public:
    enum class Outcome { Open, Failed, Interrupted };

    CTransportInput(clientcommonlogical::DeviceConfig device, std::string path, std::function<bool()> interrupted);
    ~CTransportInput();
    CTransportInput(const CTransportInput&) = delete;
    CTransportInput& operator=(const CTransportInput&) = delete;

    // Starts the transfer and waits for the answer's headers.
    Outcome Open();
    // Once failed: the transport's error pair (commlayer::TransportError, second code).
    std::pair<int, int> Error() const;
    // Valid after Open() succeeded; freed with this object (the format
    // context using it must be closed first).
    AVIOContext* Io() const { return m_io; }
    // The demuxer the answer's content type names, or null to probe.
    const AVInputFormat* Format() const;

private:
    static int ReadPacket(void* opaque, uint8_t* buf, int size);

    std::unique_ptr<commlayer::CDeviceStream> m_stream;
    std::function<bool()> m_interrupted;
    AVIOContext* m_io = nullptr;
};

} // namespace playwindow
