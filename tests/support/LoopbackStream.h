#pragma once
// Live streams for tests on 127.0.0.1, each to one client: PartServer loops
// given JPEGs as MJPEG over HTTP; FfmpegServer serves a lavfi source.
// ListeningSocket accepts but never answers; FreePort refuses; Accepts
// tells whether a port takes connections.
#include <QImage>
#include <QProcess>
#include <QStringList>
#include <arpa/inet.h>
#include <atomic>
#include <chrono>
#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "support/TestSupport.h"

namespace testsupport {

inline sockaddr_in LoopbackAddress(int port)
{
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_port = htons(uint16_t(port));
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return a;
}

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
    ListeningSocket(const ListeningSocket&) = delete;
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

class PartServer {
public:
    explicit PartServer(std::vector<QByteArray> parts) : m_parts(std::move(parts))
    {
        url = QStringLiteral("http://127.0.0.1:%1/live").arg(m_socket.port());
        m_thread = std::thread([this] { Serve(); });
    }
    ~PartServer()
    {
        m_stop = true;
        m_socket.Close();
        m_thread.join();
    }
    QString url;

private:
    void Serve()
    {
        const int fd = ::accept(m_socket.fd(), nullptr, nullptr);
        if (fd < 0)
            return;
        char req[2048];
        (void)::recv(fd, req, sizeof(req), 0);
        auto send = [fd](const QByteArray& b) {
            return ::send(fd, b.constData(), static_cast<size_t>(b.size()), MSG_NOSIGNAL) == b.size();
        };
        bool ok = send(QByteArrayLiteral("HTTP/1.0 200 OK\r\nContent-Type: multipart/x-mixed-replace;boundary=frame\r\n\r\n"));
        for (size_t i = 0; ok && !m_stop; ++i) {
            const QByteArray& part = m_parts[i % m_parts.size()];
            ok = send("--frame\r\nContent-Type: image/jpeg\r\nContent-Length: " + QByteArray::number(part.size()) + "\r\n\r\n")
                && send(part) && send(QByteArrayLiteral("\r\n"));
            std::this_thread::sleep_for(std::chrono::milliseconds(40));
        }
        ::close(fd);
    }
    ListeningSocket m_socket;
    std::vector<QByteArray> m_parts;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

class FfmpegServer {
public:
    // graph: a lavfi source such as "testsrc=size=640x360:rate=25".
    explicit FfmpegServer(const QString& graph, const QStringList& extra = {}, const QString& format = QStringLiteral("mpjpeg"))
    {
        url = QStringLiteral("http://127.0.0.1:%1/live").arg(FreePort());
        proc.start(QStringLiteral("ffmpeg"), QStringList{QStringLiteral("-hide_banner"), QStringLiteral("-loglevel"),
            QStringLiteral("quiet"), QStringLiteral("-re"), QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"), graph}
            + extra + QStringList{QStringLiteral("-f"), format, QStringLiteral("-listen"), QStringLiteral("1"), url});
        proc.waitForStarted();
        // ffmpeg needs a moment before it listens (a probe would use up its one client).
        pump(300);
    }
    ~FfmpegServer()
    {
        proc.kill();
        proc.waitForFinished(2000);
    }
    QString url;
    QProcess proc;
};

// A decoded picture with real content, not a black or empty frame.
inline bool NonBlack(const QImage& img)
{
    int bright = 0;
    for (int y = 0; y < img.height(); y += 7)
        for (int x = 0; x < img.width(); x += 7)
            bright += qGray(img.pixel(x, y)) > 40 ? 1 : 0;
    return bright > 20;
}

} // namespace testsupport
