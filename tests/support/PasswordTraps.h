#pragma once
// Loopback impostors for password-exposure tests, each recording every byte
// it is sent: BasicAskingDevice answers every HTTP (or RTSP) request with a
// 401 that asks for Basic authentication; TlsImpostor is a TLS server with a
// certificate of its own (openssl s_server, which prints what it decrypts).
// MakeCertificate writes a self-signed certificate for 127.0.0.1.
#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <mutex>
#include <thread>

#include "support/LoopbackStream.h"

namespace testsupport {

inline bool MakeCertificate(const QString& cert, const QString& key)
{
    QProcess openssl;
    openssl.start(QStringLiteral("openssl"),
        QStringLiteral("req -x509 -newkey rsa:2048 -nodes -days 1 -subj /CN=127.0.0.1 -addext subjectAltName=IP:127.0.0.1")
                .split(QLatin1Char(' '))
            << "-keyout" << key << "-out" << cert);
    return openssl.waitForFinished(30000) && openssl.exitCode() == 0;
}

// Every way a password could be written down on the wire.
inline QList<QByteArray> PasswordForms(const QByteArray& user, const QByteArray& password)
{
    return {password, password.toBase64(), (user + ':' + password).toBase64(), password.toPercentEncoding(),
        password.toHex()};
}

inline bool ContainsPassword(const QByteArray& data, const QByteArray& user, const QByteArray& password)
{
    for (const QByteArray& form : PasswordForms(user, password))
        if (data.contains(form))
            return true;
    return false;
}

class BasicAskingDevice {
public:
    explicit BasicAskingDevice(bool rtsp = false) : m_rtsp(rtsp), m_thread([this] { Serve(); }) {}
    ~BasicAskingDevice()
    {
        m_socket.Close();
        m_thread.join();
    }
    int port() const { return m_socket.port(); }
    QByteArray received() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_received;
    }

private:
    void Serve()
    {
        for (;;) {
            const int fd = ::accept(m_socket.fd(), nullptr, nullptr);
            if (fd < 0)
                return;
            timeval limit{2, 0};
            setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
            // Keeps answering on the connection, as a client that retries with credentials would use it.
            char buf[4096];
            ssize_t n;
            QByteArray pending;
            while ((n = ::recv(fd, buf, sizeof buf, 0)) > 0) {
                {
                    std::lock_guard<std::mutex> lock(m_mutex);
                    m_received.append(buf, int(n));
                }
                pending.append(buf, int(n));
                while (pending.contains("\r\n\r\n")) {
                    const QByteArray head = pending.left(pending.indexOf("\r\n\r\n"));
                    pending.remove(0, head.size() + 4);
                    QByteArray cseq;
                    for (const QByteArray& line : head.split('\n'))
                        if (line.toLower().startsWith("cseq:"))
                            cseq = "CSeq: " + line.mid(5).trimmed() + "\r\n";
                    const QByteArray answer = (m_rtsp ? "RTSP/1.0" : "HTTP/1.1") + QByteArray(" 401 Unauthorized\r\n") + cseq
                        + "WWW-Authenticate: Basic realm=\"camera\"\r\nContent-Type: text/plain\r\n"
                          "Content-Length: 12\r\n\r\nUnauthorized";
                    (void)::send(fd, answer.constData(), size_t(answer.size()), MSG_NOSIGNAL);
                }
            }
            ::close(fd);
        }
    }

    bool m_rtsp;
    ListeningSocket m_socket;
    mutable std::mutex m_mutex;
    QByteArray m_received;
    std::thread m_thread;
};

class TlsImpostor {
public:
    TlsImpostor(const QString& cert, const QString& key)
    {
        m_port = FreePort();
        m_proc.setProcessChannelMode(QProcess::MergedChannels);
        m_proc.start(QStringLiteral("openssl"),
            {QStringLiteral("s_server"), QStringLiteral("-accept"), QStringLiteral("127.0.0.1:%1").arg(m_port),
                QStringLiteral("-cert"), cert, QStringLiteral("-key"), key});
        m_proc.waitForStarted();
        waitUntil([this] { return accepting(); }, 5000);
    }
    ~TlsImpostor()
    {
        m_proc.kill();
        m_proc.waitForFinished(2000);
    }
    int port() const { return m_port; }
    // What it printed: handshake reports and any decrypted request.
    QByteArray received()
    {
        m_log += m_proc.readAllStandardOutput();
        return m_log;
    }

private:
    bool accepting() const
    {
        sockaddr_in a{};
        a.sin_family = AF_INET;
        a.sin_port = htons(uint16_t(m_port));
        a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
        const bool ok = ::connect(fd, reinterpret_cast<sockaddr*>(&a), sizeof a) == 0;
        ::close(fd);
        return ok;
    }

    QProcess m_proc;
    QByteArray m_log;
    int m_port = 0;
};

} // namespace testsupport
