#pragma once
// Loopback sockets for tests, and FakeDevice: a device on 127.0.0.1 whose every
// connection a script of the test serves on a thread of its own.
#include <arpa/inet.h>
#include <atomic>
#include <cerrno>
#include <functional>
#include <mutex>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace testsupport {

inline sockaddr_in LoopbackAddress(int port)
{
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_port = htons(uint16_t(port));
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return a;
}

// Accepts connections into its backlog but never answers; FreePort() refuses them.
class ListeningSocket {
public:
    explicit ListeningSocket(bool listen = true)
    {
        m_fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in a = LoopbackAddress(0);
        ::bind(m_fd, reinterpret_cast<sockaddr*>(&a), sizeof(a));
        socklen_t len = sizeof(a);
        ::getsockname(m_fd, reinterpret_cast<sockaddr*>(&a), &len);
        m_port = ntohs(a.sin_port);
        if (listen)
            ::listen(m_fd, 16);
    }
    ~ListeningSocket() { Close(); }
    // Also wakes a thread blocked in accept(); that thread reads fd() meanwhile.
    void Close()
    {
        const int fd = m_fd.exchange(-1);
        if (fd >= 0) {
            ::shutdown(fd, SHUT_RDWR);
            ::close(fd);
        }
    }
    int port() const { return m_port; }
    int fd() const { return m_fd; }

private:
    std::atomic<int> m_fd{-1};
    int m_port = 0;
};

inline int FreePort() { return ListeningSocket(false).port(); }

// Whether something takes connections on the loopback port.
inline bool Accepts(int port)
{
    const sockaddr_in a = LoopbackAddress(port);
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool ok = ::connect(fd, reinterpret_cast<const sockaddr*>(&a), sizeof a) == 0;
    ::close(fd);
    return ok;
}

// Scripts must return once stopping() turns true; the destructor closes the
// socket, waits for every connection thread and closes their sockets.
class FakeDevice {
public:
    // Script: after the request head is read (raw fd: whatever the test likes to write).
    using Script = std::function<void(FakeDevice& self, int fd, const std::string& request)>;
    // Connection: before anything is read (a TLS handshake, say).
    using Connection = std::function<void(FakeDevice& self, int fd)>;

    explicit FakeDevice(Script script)
        : FakeDevice(Connection([script = std::move(script)](FakeDevice& self, int fd) {
              const std::string request = readRequest(fd);
              if (!request.empty())
                  script(self, fd, request);
          }))
    {
    }
    explicit FakeDevice(Connection connection) : m_connection(std::move(connection))
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
                m_connection(*this, fd);
                ::shutdown(fd, SHUT_RDWR);
                ::close(fd);
            });
        }
    }

    Connection m_connection;
    ListeningSocket m_socket;
    std::atomic<bool> m_stop{false};
    std::atomic<int> m_connections{0};
    std::atomic<long long> m_sentForever{0};
    std::thread m_accept;
    std::mutex m_mutex;
    std::vector<std::thread> m_threads;
};

} // namespace testsupport
