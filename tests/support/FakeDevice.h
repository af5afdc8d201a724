#pragma once
// A misbehaving device on 127.0.0.1 for transport tests: every connection is
// accepted on its own thread and handed to the test's script, which reads the
// request and writes whatever it likes (endless bodies, nothing at all).
// Scripts must return once stopping() turns true; the destructor closes the
// socket, waits for every connection thread and closes their sockets.
#include <atomic>
#include <cerrno>
#include <functional>
#include <mutex>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "support/LoopbackStream.h"

namespace testsupport {

class FakeDevice {
public:
    using Script = std::function<void(FakeDevice& self, int fd, const std::string& request)>;

    explicit FakeDevice(Script script) : m_script(std::move(script))
    {
        m_accept = std::thread([this, fd = m_socket.fd()] { acceptLoop(fd); });
    }
    ~FakeDevice()
    {
        m_stop = true;
        m_socket.Close();
        m_accept.join();
        std::lock_guard<std::mutex> lock(m_mutex);
        for (auto& t : m_threads)
            t.join();
    }
    FakeDevice(const FakeDevice&) = delete;
    FakeDevice& operator=(const FakeDevice&) = delete;

    int port() const { return m_socket.port(); }
    bool stopping() const { return m_stop; }
    int connections() const { return m_connections; }
    // Bytes sendForever() got out so far, over all connections.
    long long sentForever() const { return m_sentForever; }

    // Reads one request head (up to the blank line); empty when the client went away.
    static std::string readRequest(int fd)
    {
        std::string head;
        char c;
        while (head.size() < 65536 && ::recv(fd, &c, 1, 0) == 1) {
            head += c;
            if (head.size() >= 4 && head.compare(head.size() - 4, 4, "\r\n\r\n") == 0)
                return head;
        }
        return std::string();
    }
    static bool send(int fd, const std::string& s)
    {
        return ::send(fd, s.data(), s.size(), MSG_NOSIGNAL) == ssize_t(s.size());
    }
    // Writes chunk again and again until the client stops reading or the device stops.
    void sendForever(int fd, const std::string& chunk)
    {
        while (!m_stop && send(fd, chunk))
            m_sentForever += (long long)chunk.size();
    }
    // Keeps the connection open without writing until the client closes it or the device stops.
    void holdSilent(int fd)
    {
        timeval tick{0, 50000};
        ::setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &tick, sizeof tick);
        char buf[256];
        while (!m_stop) {
            const ssize_t n = ::recv(fd, buf, sizeof buf, 0);
            if (n == 0 || (n < 0 && errno != EAGAIN && errno != EWOULDBLOCK))
                return;
        }
    }

private:
    void acceptLoop(int listening)
    {
        while (!m_stop) {
            const int fd = ::accept(listening, nullptr, nullptr);
            if (fd < 0)
                return;
            ++m_connections;
            std::lock_guard<std::mutex> lock(m_mutex);
            m_threads.emplace_back([this, fd] {
                timeval limit{10, 0};
                ::setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
                const std::string request = readRequest(fd);
                if (!request.empty())
                    m_script(*this, fd, request);
                ::shutdown(fd, SHUT_RDWR);
                ::close(fd);
            });
        }
    }

    Script m_script;
    ListeningSocket m_socket;
    std::atomic<bool> m_stop{false};
    std::atomic<int> m_connections{0};
    std::atomic<long long> m_sentForever{0};
    std::thread m_accept;
    std::mutex m_mutex;
    std::vector<std::thread> m_threads;
};

} // namespace testsupport
