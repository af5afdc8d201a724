#include "playwindow/CRtspAuthGuard.h"

#include <QList>
#include <QUrl>
#include <arpa/inet.h>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>

#include "playwindow/CRtspAnswer.h"
#include "playwindow/CRtspCredentials.h"
#include "playwindow/CRtspDeviceLink.h"

namespace playwindow {
namespace {

constexpr int kConnectTimeoutMs = 5000;
constexpr int kMaxRedirects = 3;
constexpr int kMaxBody = 1024 * 1024;

void CloseFd(int& fd)
{
    if (fd >= 0)
        ::close(fd);
    fd = -1;
}

bool SameName(const QByteArray& a, const char* b)
{
    return qstricmp(a.constData(), b) == 0;
}

int DefaultPort(const std::string& scheme)
{
    return scheme == "rtsps" ? 322 : 554;
}

// One request of FFmpeg's, as it goes to the device.
struct Request {
    QByteArray method;
    QByteArray uri;         // as the device knows it
    QByteArray clientPath;  // the path FFmpeg asked for (empty when it named the device itself)
    QList<QPair<QByteArray, QByteArray>> headers;  // FFmpeg's, without CSeq and any Authorization
    QByteArray body;
    QByteArray clientCseq;
    int deviceCseq = 0;
    bool authorized = false;  // sent with an answer to a challenge
    QByteArray nonce;         // the digest nonce it answered
    int tries = 0;
    int redirects = 0;
};

// One relayed connection: FFmpeg's socket on one side, the device link on the other.
class Relay final {
public:
    Relay(const clientcommonlogical::DeviceConfig& device, int client, int wake, QByteArray localBase,
        std::atomic<CRtspAuthGuard::Refusal>& refusal)
        : m_device(device), m_client(client), m_wake(wake), m_localBase(std::move(localBase)), m_refusal(refusal),
          m_creds(QByteArray(), QByteArray(), false)
    {
        QString host = QString::fromStdString(device.address);
        if (host.contains(QLatin1Char(':')))
            host = QLatin1Char('[') + host + QLatin1Char(']');
        m_deviceBase = QByteArray::fromStdString(device.scheme) + "://" + host.toUtf8() + ':'
            + QByteArray::number(device.port);
    }

    void Run()
    {
        if (!Connect())
            return;
        char buf[64 * 1024];
        for (;;) {
            pollfd p[3] = {{m_client, POLLIN, 0}, {m_link.Fd(), POLLIN, 0}, {m_wake, POLLIN, 0}};
            if (::poll(p, 3, m_link.Pending() ? 0 : -1) < 0) {
                if (errno == EINTR)
                    continue;
                return;
            }
            if ((p[2].revents & POLLIN) != 0)
                return;
            if ((p[0].revents & (POLLIN | POLLHUP | POLLERR)) != 0) {
                const ssize_t n = ::recv(m_client, buf, sizeof buf, 0);
                if (n == 0 || (n < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR))
                    return;
                if (n > 0) {
                    m_fromClient.append(buf, int(n));
                    if (!FromClient())
                        return;
                }
            }
            if (m_link.Pending() || (p[1].revents & (POLLIN | POLLHUP | POLLERR)) != 0) {
                const int n = m_link.Read(buf, int(sizeof buf));
                if (n == 0)
                    return;
                if (n > 0) {
                    m_fromDevice.append(buf, n);
                    if (!FromDevice())
                        return;
                }
            }
        }
    }

private:
    bool Connect()
    {
        m_fromDevice.clear();
        switch (m_link.Connect(m_device, m_wake, kConnectTimeoutMs)) {
        case CRtspDeviceLink::Result::Connected:
            break;
        case CRtspDeviceLink::Result::NotTrusted:
            m_refusal = CRtspAuthGuard::Refusal::CertificateNotTrusted;
            return false;
        case CRtspDeviceLink::Result::Failed:
        case CRtspDeviceLink::Result::Stopped:
            return false;
        }
        // A new connection is challenged anew; whether Basic may be answered
        // depends on this connection's certificate.
        m_creds = CRtspCredentials(QByteArray::fromStdString(m_device.user),
            QByteArray::fromStdString(m_device.password), m_link.Verified());
        return true;
    }

    bool ToClient(const QByteArray& data)
    {
        const char* p = data.constData();
        size_t left = size_t(data.size());
        while (left > 0) {
            const ssize_t n = ::send(m_client, p, left, MSG_NOSIGNAL);
            if (n > 0) {
                p += n;
                left -= size_t(n);
                continue;
            }
            if (n == 0 || (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR))
                return false;
            // FFmpeg behind: the device waits too (TCP pushes back), as
            // without the relay; only a stop ends the wait.
            pollfd w[2] = {{m_client, POLLOUT, 0}, {m_wake, POLLIN, 0}};
            if ((::poll(w, 2, -1) < 0 && errno != EINTR) || (w[1].revents & POLLIN) != 0)
                return false;
        }
        return true;
    }

    // FFmpeg names the loopback address; the device hears its own (and the
    // path it redirected to, when it did).
    QByteArray DeviceUri(const QByteArray& uri, QByteArray& clientPath) const
    {
        clientPath.clear();
        if (!uri.startsWith(m_localBase))
            return uri;
        QByteArray rest = uri.mid(m_localBase.size());
        if (!rest.isEmpty() && rest[0] != '/' && rest[0] != '?')
            return uri;  // another port that merely begins with ours
        if (rest.isEmpty() || rest[0] != '/')
            rest.prepend('/');
        clientPath = rest;
        if (!m_pathFrom.isEmpty() && rest.startsWith(m_pathFrom))
            rest = m_pathTo + rest.mid(m_pathFrom.size());
        return m_deviceBase + rest;
    }

    // FFmpeg's requests: its own, well-formed CRLF text, or interleaved RTCP.
    bool FromClient()
    {
        for (;;) {
            if (m_fromClient.isEmpty())
                return true;
            if (m_fromClient[0] == '$') {
                if (m_fromClient.size() < 4)
                    return true;
                const int len = 4 + ((uchar(m_fromClient[2]) << 8) | uchar(m_fromClient[3]));
                if (m_fromClient.size() < len)
                    return true;
                if (!m_link.Write(m_fromClient.constData(), len, m_wake))
                    return false;
                m_fromClient.remove(0, len);
                continue;
            }
            const int end = m_fromClient.indexOf("\r\n\r\n");
            if (end < 0)
                return m_fromClient.size() <= CRtspAnswer::kMaxHead;
            QList<QByteArray> lines = m_fromClient.left(end).split('\n');
            const QList<QByteArray> first = lines.takeFirst().trimmed().split(' ');
            if (first.size() != 3)
                return false;
            Request r;
            r.method = first[0];
            r.uri = DeviceUri(first[1], r.clientPath);
            int length = 0;
            for (const QByteArray& line : lines) {
                const int colon = line.indexOf(':');
                if (colon <= 0)
                    return false;
                const QByteArray name = line.left(colon).trimmed();
                const QByteArray value = line.mid(colon + 1).trimmed();
                if (SameName(name, "cseq")) {
                    r.clientCseq = value;
                    continue;
                }
                if (SameName(name, "authorization") || SameName(name, "proxy-authorization"))
                    continue;
                if (SameName(name, "content-length"))
                    length = value.toInt();
                r.headers.append({name, value});
            }
            if (length < 0 || length > kMaxBody)
                return false;
            if (m_fromClient.size() < end + 4 + length)
                return true;
            r.body = m_fromClient.mid(end + 4, length);
            m_fromClient.remove(0, end + 4 + length);
            if (!Send(r))
                return false;
        }
    }

    bool Send(Request& r)
    {
        r.deviceCseq = m_nextCseq++;
        QByteArray out = r.method + ' ' + r.uri + " RTSP/1.0\r\nCSeq: " + QByteArray::number(r.deviceCseq) + "\r\n";
        for (const auto& h : r.headers)
            out += h.first + ": " + h.second + "\r\n";
        r.authorized = m_creds.Ready();
        r.nonce = m_creds.Nonce();
        if (r.authorized)
            out += "Authorization: " + m_creds.Authorization(r.method, r.uri) + "\r\n";
        out += "\r\n" + r.body;
        m_inFlight.append(r);
        return m_link.Write(out.constData(), out.size(), m_wake);
    }

    // The device's answers; anything that is not one by the rules ends the
    // connection. Media frames in a row go to FFmpeg in one write.
    bool FromDevice()
    {
        const char* d = m_fromDevice.constData();
        const int size = m_fromDevice.size();
        int pos = 0;
        int media = 0;  // media frames from here to pos wait to be passed on
        const auto flushMedia = [&] {
            const bool ok = pos == media || ToClient(QByteArray::fromRawData(d + media, pos - media));
            media = pos;
            return ok;
        };
        bool ok = true;
        while (pos < size) {
            if (d[pos] == '$') {
                if (size - pos < 4)
                    break;
                const int len = 4 + ((uchar(d[pos + 2]) << 8) | uchar(d[pos + 3]));
                if (size - pos < len)
                    break;
                pos += len;
                continue;
            }
            if (!(ok = flushMedia()))
                break;
            if (d[pos] == '\r' || d[pos] == '\n') {
                media = ++pos;  // empty lines between answers (the LF of a CR LF split across reads)
                continue;
            }
            const int headLength = CRtspAnswer::HeadLength(d + pos, size - pos);
            if (headLength <= 0) {
                ok = headLength == 0;
                break;
            }
            CRtspAnswer answer;
            const int length = CRtspAnswer::Parse(QByteArray(d + pos, headLength), answer) ? answer.ContentLength() : -1;
            if (length < 0 || length > kMaxBody) {
                ok = false;
                break;
            }
            if (size - pos < headLength + length)
                break;
            const QByteArray body(d + pos + headLength, length);
            pos += headLength + length;
            media = pos;
            // A followed redirect starts a new connection with an empty buffer.
            m_fromDevice.remove(0, pos);
            if (!OnAnswer(answer, body))
                return false;
            return FromDevice();
        }
        ok = ok && flushMedia();
        m_fromDevice.remove(0, pos);
        return ok;
    }

    bool OnAnswer(const CRtspAnswer& answer, const QByteArray& body)
    {
        int index = 0;
        while (index < m_inFlight.size() && QByteArray::number(m_inFlight[index].deviceCseq) != answer.Header("cseq"))
            ++index;
        if (index == m_inFlight.size())
            return false;  // an answer to nothing we asked
        Request r = m_inFlight.takeAt(index);
        if (answer.status == 401 && !m_creds.Empty()) {
            QList<RtspChallenge> challenges;
            const bool wellFormed = answer.Challenges(challenges);
            bool stale = false;
            for (const RtspChallenge& c : challenges)
                stale = stale || c.Param("stale").toLower() == "true";
            if (!r.authorized) {
                if (!wellFormed || !m_creds.Choose(challenges)) {
                    m_refusal = CRtspAuthGuard::Refusal::PasswordNotSent;
                    return false;
                }
                ++r.tries;
                return Send(r);
            }
            // Answered and turned down: a stale or new nonce is answered again
            // (a few times); otherwise the password is wrong, and FFmpeg hears a bare 401.
            if (wellFormed && r.tries < 3 && m_creds.Choose(challenges) && (stale || m_creds.Nonce() != r.nonce)) {
                ++r.tries;
                return Send(r);
            }
        }
        if (answer.status >= 300 && answer.status < 400)
            return Redirect(r, answer.Header("location"));
        QByteArray out = "RTSP/1.0 " + QByteArray::number(answer.status) + ' ' + answer.reason + "\r\nCSeq: "
            + r.clientCseq + "\r\n";
        for (const auto& h : answer.headers) {
            if (!SameName(h.first, "cseq") && !SameName(h.first, "www-authenticate")
                && !SameName(h.first, "proxy-authenticate") && !SameName(h.first, "authentication-info")
                && !SameName(h.first, "location"))
                out += h.first + ": " + h.second + "\r\n";
        }
        return ToClient(out + "\r\n" + body);
    }

    // Followed only to the device's own scheme, address and port, on a new connection.
    bool Redirect(Request& r, const QByteArray& location)
    {
        const QUrl target = QUrl(QString::fromUtf8(r.uri)).resolved(QUrl(QString::fromUtf8(location)));
        const std::string scheme = target.scheme().toLower().toStdString();
        const bool same = !location.isEmpty() && target.isValid() && scheme == m_device.scheme
            && target.userInfo().isEmpty()
            && target.host().compare(QString::fromStdString(m_device.address), Qt::CaseInsensitive) == 0
            && target.port(DefaultPort(scheme)) == m_device.port;
        if (!same) {
            m_refusal = CRtspAuthGuard::Refusal::RedirectedElsewhere;
            return false;
        }
        if (++r.redirects > kMaxRedirects || !m_inFlight.isEmpty())
            return false;
        QByteArray path = target.path(QUrl::FullyEncoded).toUtf8();
        if (path.isEmpty())
            path = "/";
        if (target.hasQuery())
            path += '?' + target.query(QUrl::FullyEncoded).toUtf8();
        if (!r.clientPath.isEmpty()) {
            m_pathFrom = r.clientPath;
            m_pathTo = path;
        }
        r.uri = m_deviceBase + path;
        r.tries = 0;
        return Connect() && Send(r);
    }

    const clientcommonlogical::DeviceConfig& m_device;
    int m_client;
    int m_wake;
    QByteArray m_localBase;
    QByteArray m_deviceBase;
    std::atomic<CRtspAuthGuard::Refusal>& m_refusal;
    CRtspDeviceLink m_link;
    CRtspCredentials m_creds;
    QByteArray m_fromClient;
    QByteArray m_fromDevice;
    QList<Request> m_inFlight;
    int m_nextCseq = 1;
    QByteArray m_pathFrom;  // a redirect: FFmpeg's path, and where the device moved it
    QByteArray m_pathTo;
};

} // namespace

CRtspAuthGuard::CRtspAuthGuard(clientcommonlogical::DeviceConfig device) : m_device(std::move(device))
{
    if (m_device.scheme != "rtsps")
        m_device.scheme = "rtsp";
}

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

QString CRtspAuthGuard::LocalUrl(const std::string& pathAndQuery) const
{
    QString path = QString::fromStdString(pathAndQuery);
    if (!path.startsWith(QLatin1Char('/')))
        path.prepend(QLatin1Char('/'));
    return QStringLiteral("rtsp://127.0.0.1:%1").arg(m_port) + path;
}

void CRtspAuthGuard::Run()
{
    // A device that hangs up while TLS writes would raise SIGPIPE: it is kept
    // pending on this thread instead, and the write fails.
    sigset_t pipe;
    sigemptyset(&pipe);
    sigaddset(&pipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipe, nullptr);

    pollfd p[2] = {{m_listen, POLLIN, 0}, {m_wake[0], POLLIN, 0}};
    if (::poll(p, 2, -1) <= 0 || (p[1].revents & POLLIN) != 0)
        return;
    int client = ::accept4(m_listen, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    CloseFd(m_listen);  // one connection only
    if (client < 0)
        return;
    {
        Relay relay(m_device, client, m_wake[0], QStringLiteral("rtsp://127.0.0.1:%1").arg(m_port).toUtf8(), m_refusal);
        relay.Run();
    }
    CloseFd(client);
}

} // namespace playwindow
