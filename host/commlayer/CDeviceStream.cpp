#include "commlayer/CDeviceStream.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <sys/socket.h>

#include "Base/Base.h"
#include "commlayer/DeviceHttp.h"

namespace commlayer {

CDeviceStream::CDeviceStream(clientcommonlogical::DeviceConfig device, std::string path)
    : m_device(std::move(device)), m_path(std::move(path))
{
}

CDeviceStream::~CDeviceStream()
{
    Stop();
}

void CDeviceStream::Start()
{
    if (m_thread.joinable())
        return;
    detail::GlobalInit();
    m_thread = std::thread([this] { Run(); });
}

void CDeviceStream::Stop()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
    }
    m_cv.notify_all();
    {
        std::lock_guard<std::mutex> lock(m_socketMutex);
        if (m_socket >= 0)
            shutdown(m_socket, SHUT_RDWR);
    }
    if (m_thread.joinable())
        m_thread.join();
}

CDeviceStream::Status CDeviceStream::WaitOpen(int timeoutMs)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_cv.wait_for(lock, std::chrono::milliseconds(timeoutMs),
        [this] { return m_status != Status::Opening || m_stop.load(); });
    return m_status;
}

int CDeviceStream::Read(uint8_t* data, int size, int timeoutMs)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!m_cv.wait_for(lock, std::chrono::milliseconds(timeoutMs),
            [this] { return m_buffered > 0 || m_ended || m_stop.load(); }))
        return -1;
    int copied = 0;
    while (copied < size && !m_chunks.empty()) {
        const std::string& front = m_chunks.front();
        const size_t n = std::min(front.size() - m_chunkOffset, static_cast<size_t>(size - copied));
        std::memcpy(data + copied, front.data() + m_chunkOffset, n);
        copied += static_cast<int>(n);
        m_chunkOffset += n;
        m_buffered -= n;
        if (m_chunkOffset == front.size()) {
            m_chunks.pop_front();
            m_chunkOffset = 0;
        }
    }
    lock.unlock();
    m_cv.notify_all();  // room again for the transfer
    return copied;
}

std::string CDeviceStream::ContentType() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_contentType;
}

std::pair<int, int> CDeviceStream::Error() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_error;
}

void CDeviceStream::Run()
{
    detail::HttpExchange ex;
    ex.path = m_path;
    ex.timeoutMs = 0;  // endless; a stall is caught by the low-speed limit and the reader's time-out
    ex.connectTimeoutMs = 5000;
    ex.lowSpeedTimeSec = 10;
    ex.abortFlag = &m_stop;
    ex.socketFd = &m_socket;
    ex.socketMutex = &m_socketMutex;
    ex.onHeaders = [this](long status, const std::string& contentType) {
        if (status != 200)
            return;  // reported as a failure when the transfer ends
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_contentType = contentType;
            m_status = Status::Open;
        }
        m_cv.notify_all();
    };
    ex.sink = [this](const char* data, size_t len) {
        std::unique_lock<std::mutex> lock(m_mutex);
        // A slow reader holds the transfer back instead of growing the buffer.
        m_cv.wait(lock, [this] { return m_buffered < kMaxBuffered || m_stop.load(); });
        if (m_stop)
            return false;
        m_chunks.emplace_back(data, len);
        m_buffered += len;
        lock.unlock();
        m_cv.notify_all();
        return true;
    };
    const detail::HttpResult r = detail::Perform(m_device, ex);
    const bool ok = detail::CheckResult(r, false);
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_error = ok ? std::make_pair(0, 0) : Base::Error::GetLastError();
        if (m_status == Status::Opening)
            m_status = Status::Failed;
        m_ended = true;
    }
    m_cv.notify_all();
}

} // namespace commlayer
