#include "playwindow/CRtspAuthGuard.h"

#include <QList>
#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace playwindow {
namespace {

constexpr int kConnectTimeoutMs = 5000;
constexpr int kMaxHead = 64 * 1024;

bool SendAll(int fd, const char* data, size_t len)
{
    while (len > 0) {
        const ssize_t n = ::send(fd, data, len, MSG_NOSIGNAL);
        if (n <= 0)
            return false;
        data += n;
        len -= size_t(n);
    }
    return true;
}

void CloseFd(int& fd)
{
    if (fd >= 0)
        ::close(fd);
    fd = -1;
}

// A connected socket to host:port, or -1; gives up when wake becomes readable.
int ConnectTo(const std::string& host, int port, int wake)
{
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* list = nullptr;
    if (getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &list) != 0)
        return -1;
    int fd = -1;
    for (addrinfo* a = list; a != nullptr && fd < 0; a = a->ai_next) {
        fd = ::socket(a->ai_family, a->ai_socktype | SOCK_CLOEXEC | SOCK_NONBLOCK, a->ai_protocol);
        if (fd < 0)
            continue;
        if (::connect(fd, a->ai_addr, a->ai_addrlen) != 0 && errno != EINPROGRESS) {
            CloseFd(fd);
            continue;
        }
        pollfd p[2] = {{fd, POLLOUT, 0}, {wake, POLLIN, 0}};
        int err = 0;
        socklen_t len = sizeof err;
        if (::poll(p, 2, kConnectTimeoutMs) <= 0 || (p[1].revents & POLLIN) != 0
            || getsockopt(fd, SOL_SOCKET, SO_ERROR, &err, &len) != 0 || err != 0)
            CloseFd(fd);
    }
    freeaddrinfo(list);
    if (fd >= 0)
        fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    return fd;
}

} // namespace

CRtspAuthGuard::CRtspAuthGuard(std::string host, int port) : m_host(std::move(host)), m_cameraPort(port) {}

CRtspAuthGuard::~CRtspAuthGuard()
{
    Stop();
}

bool CRtspAuthGuard::Start()
{
    m_listen = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t len = sizeof a;
    if (m_listen < 0 || ::bind(m_listen, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0 || ::listen(m_listen, 1) != 0
        || ::getsockname(m_listen, reinterpret_cast<sockaddr*>(&a), &len) != 0 || ::pipe2(m_wake, O_CLOEXEC) != 0) {
        CloseFd(m_listen);
        return false;
    }
    m_port = ntohs(a.sin_port);
    m_thread = std::thread([this] { Run(); });
    return true;
}

void CRtspAuthGuard::Stop()
{
    if (m_wake[1] >= 0)
        (void)!::write(m_wake[1], "x", 1);
    if (m_thread.joinable())
        m_thread.join();
    CloseFd(m_listen);
    CloseFd(m_wake[0]);
    CloseFd(m_wake[1]);
}

void CRtspAuthGuard::Run()
{
    pollfd p[2] = {{m_listen, POLLIN, 0}, {m_wake[0], POLLIN, 0}};
    if (::poll(p, 2, -1) <= 0 || (p[1].revents & POLLIN) != 0)
        return;
    int client = ::accept4(m_listen, nullptr, nullptr, SOCK_CLOEXEC);
    CloseFd(m_listen);  // one connection only
    if (client < 0)
        return;
    int camera = ConnectTo(m_host, m_cameraPort, m_wake[0]);
    if (camera >= 0)
        Relay(client, camera);
    CloseFd(camera);
    CloseFd(client);
}

bool CRtspAuthGuard::Relay(int client, int camera)
{
    QByteArray in;  // from the camera, not yet passed on
    char buf[64 * 1024];
    for (;;) {
        pollfd p[3] = {{client, POLLIN, 0}, {camera, POLLIN, 0}, {m_wake[0], POLLIN, 0}};
        if (::poll(p, 3, -1) < 0 && errno != EINTR)
            return false;
        if ((p[2].revents & POLLIN) != 0)
            return true;
        if ((p[0].revents & (POLLIN | POLLHUP | POLLERR)) != 0) {
            const ssize_t n = ::recv(client, buf, sizeof buf, 0);
            if (n <= 0 || !SendAll(camera, buf, size_t(n)))
                return false;
        }
        if ((p[1].revents & (POLLIN | POLLHUP | POLLERR)) == 0)
            continue;
        const ssize_t n = ::recv(camera, buf, sizeof buf, 0);
        if (n <= 0)
            return false;
        in.append(buf, int(n));
        for (;;) {
            if (in.isEmpty())
                break;
            if (in.at(0) == '$') {  // interleaved media: '$', channel, 16-bit length
                if (in.size() < 4)
                    break;
                const int len = 4 + ((uchar(in.at(2)) << 8) | uchar(in.at(3)));
                if (in.size() < len)
                    break;
                if (!SendAll(client, in.constData(), size_t(len)))
                    return false;
                in.remove(0, len);
                continue;
            }
            const int end = in.indexOf("\r\n\r\n");
            if (end < 0) {
                if (in.size() > kMaxHead)
                    return false;
                break;
            }
            const QByteArray head = in.left(end + 4);
            int bodyLen = 0;
            for (const QByteArray& line : head.split('\n')) {
                if (line.toLower().startsWith("content-length:"))
                    bodyLen = line.mid(15).trimmed().toInt();
            }
            if (in.size() < end + 4 + bodyLen)
                break;
            bool refused = false;
            const QByteArray filtered = FilterAnswerHead(head, refused);
            if (refused)
                m_basicRefused = true;
            if (!SendAll(client, filtered.constData(), size_t(filtered.size()))
                || !SendAll(client, in.constData() + end + 4, size_t(bodyLen)))
                return false;
            in.remove(0, end + 4 + bodyLen);
        }
    }
}

QByteArray CRtspAuthGuard::FilterAnswerHead(const QByteArray& head, bool& refused)
{
    QByteArray out;
    bool removed = false;
    bool challengeLeft = false;
    const QList<QByteArray> lines = head.split('\n');
    for (const QByteArray& line : lines) {
        const QByteArray lower = line.toLower();
        if (lower.startsWith("www-authenticate:")) {
            if (lower.contains("basic") && !lower.contains("digest")) {
                removed = true;
                continue;
            }
            challengeLeft = true;
        }
        out += line;
        out += '\n';
    }
    out.chop(1);  // split() left an empty last piece after the final "\n"
    refused = removed && !challengeLeft && head.startsWith("RTSP/1.0 401");
    return out;
}

} // namespace playwindow
