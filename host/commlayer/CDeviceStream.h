#pragma once
// One long-lived GET of a device resource (a live video stream) through the
// device transport, so it is held to the same rules as every device request:
// the device's certificate is verified against the configured trust, the
// password goes only as digest (or Basic inside verified TLS) and never in a
// URL. A worker thread runs the transfer and fills a bounded buffer; one
// consumer thread (a decoder) reads from it. Stop() may come from any thread;
// it cuts the connection at once and joins the worker (also on destruction).
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

#include "clientcommonlogical/CConfigMgr.h"

namespace commlayer {

class CDeviceStream final {
public:
    enum class Status { Opening, Open, Failed };

    CDeviceStream(clientcommonlogical::DeviceConfig device, std::string path);
    ~CDeviceStream();
    CDeviceStream(const CDeviceStream&) = delete;
    CDeviceStream& operator=(const CDeviceStream&) = delete;

    void Start();
    void Stop();

    // Waits until the answer's headers arrived (Open) or the transfer failed,
    // at most timeoutMs; Opening when the time ran out or Stop() came first.
    Status WaitOpen(int timeoutMs);
    // Copies up to size buffered bytes into data, waiting at most timeoutMs
    // for some. Returns the count; 0 when the stream ended (or failed, or
    // was stopped); -1 when the wait timed out.
    int Read(uint8_t* data, int size, int timeoutMs);

    std::string ContentType() const;
    // Once failed: the error pair (commlayer::TransportError, second code).
    std::pair<int, int> Error() const;

    static constexpr size_t kMaxBuffered = 4 * 1024 * 1024;

private:
    void Run();

    const clientcommonlogical::DeviceConfig m_device;
    const std::string m_path;
    std::thread m_thread;
    std::atomic<bool> m_stop{false};  // also polled by the transport
    std::mutex m_socketMutex;
    int m_socket = -1;

    mutable std::mutex m_mutex;
    std::condition_variable m_cv;
    Status m_status = Status::Opening;
    bool m_ended = false;
    std::deque<std::string> m_chunks;
    size_t m_chunkOffset = 0;  // consumed bytes of the front chunk
    size_t m_buffered = 0;
    std::string m_contentType;
    std::pair<int, int> m_error{0, 0};
};

} // namespace commlayer
