#pragma once
// Loopback impostors for password-exposure tests, each recording every byte
// it is sent (decrypted), and the certificates they present.
#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <functional>
#include <memory>
#include <mutex>
#include <openssl/ssl.h>

#include "support/FakeDevice.h"

namespace testsupport {

inline bool RunOpenssl(const QString& arguments, const QStringList& files)
{
    QProcess openssl;
    openssl.start(QStringLiteral("openssl"), arguments.split(QLatin1Char(' ')) + files);
    return openssl.waitForFinished(30000) && openssl.exitCode() == 0;
}

inline bool MakeCertificate(const QString& cert, const QString& key)
{
    return RunOpenssl(QStringLiteral("req -x509 -newkey rsa:2048 -nodes -days 1 -subj /CN=127.0.0.1 "
                                     "-addext subjectAltName=IP:127.0.0.1 -keyout"), {key, QStringLiteral("-out"), cert});
}

// A private CA (caCert) and a certificate for 127.0.0.1 it signed.
inline bool MakeSignedCertificate(const QString& caCert, const QString& cert, const QString& key)
{
    const QString caKey = caCert + QStringLiteral(".key");
    return RunOpenssl(QStringLiteral("req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 1 "
                                     "-subj /CN=Private-CA -keyout"), {caKey, QStringLiteral("-out"), caCert})
        && RunOpenssl(QStringLiteral("req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 1 "
                                     "-subj /CN=127.0.0.1 -addext subjectAltName=IP:127.0.0.1 "
                                     "-addext basicConstraints=CA:FALSE -CA"),
            {caCert, QStringLiteral("-CAkey"), caKey, QStringLiteral("-keyout"), key, QStringLiteral("-out"), cert});
}

// Every way a password could be written down on the wire: plain, URL-encoded,
// hex, and base64 at each of the three offsets it can start at (the
// characters that hold only the password's bits, whatever comes around it).
inline QList<QByteArray> PasswordForms(const QByteArray& user, const QByteArray& password)
{
    QList<QByteArray> forms{password, password.toPercentEncoding(), password.toHex(), (user + ':' + password).toBase64()};
    for (int offset = 0; offset < 3; ++offset) {
        const QByteArray encoded = (QByteArray(offset, 'x') + password).toBase64();
        const int first = (offset * 8 + 5) / 6;
        const int last = ((offset + password.size()) * 8) / 6;  // one past the last whole character
        forms.append(encoded.mid(first, last - first));
    }
    return forms;
}

inline bool ContainsPassword(const QByteArray& data, const QByteArray& user, const QByteArray& password)
{
    for (const QByteArray& form : PasswordForms(user, password))
        if (data.contains(form))
            return true;
    return false;
}

// A device on loopback whose answers a script writes (raw bytes, so they may
// break any rule), over TLS when given a certificate and key.
class FakeRtspDevice {
public:
    // The answer to one request; cseq is the request's CSeq value.
    using Script = std::function<QByteArray(const QByteArray& request, const QByteArray& cseq)>;

    explicit FakeRtspDevice(Script script, const QString& cert = QString(), const QString& key = QString())
        : m_script(std::move(script))
    {
        if (!cert.isEmpty()) {
            m_ctx = SSL_CTX_new(TLS_server_method());
            SSL_CTX_use_certificate_chain_file(m_ctx, cert.toUtf8().constData());
            SSL_CTX_use_PrivateKey_file(m_ctx, key.toUtf8().constData(), SSL_FILETYPE_PEM);
        }
        m_device = std::make_unique<FakeDevice>(FakeDevice::Connection([this](FakeDevice& self, int fd) { Serve(self, fd); }));
    }
    ~FakeRtspDevice()
    {
        m_device.reset();
        SSL_CTX_free(m_ctx);
    }
    int port() const { return m_device->port(); }
    QByteArray received() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_received;
    }

private:
    void Serve(FakeDevice& self, int fd)
    {
        timeval limit{5, 0};  // a handshake on a busy machine
        setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        SSL* ssl = nullptr;
        if (m_ctx != nullptr) {
            ssl = SSL_new(m_ctx);
            SSL_set_fd(ssl, fd);
        }
        if (ssl == nullptr || SSL_accept(ssl) == 1) {
            limit = {0, 200000};  // then short waits, so that a stop is seen
            setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
            Talk(self, fd, ssl);
        }
        SSL_free(ssl);
    }

    void Talk(FakeDevice& self, int fd, SSL* ssl)
    {
        char buf[4096];
        QByteArray pending;
        int idle = 0;
        while (!self.stopping() && idle < 25) {  // five quiet seconds end the connection
            const int n = ssl != nullptr ? SSL_read(ssl, buf, sizeof buf) : int(::recv(fd, buf, sizeof buf, 0));
            if (n == 0 || (n < 0 && errno != EAGAIN && errno != EWOULDBLOCK && (ssl == nullptr
                               || SSL_get_error(ssl, n) != SSL_ERROR_WANT_READ)))
                return;
            if (n < 0) {
                ++idle;
                continue;
            }
            idle = 0;
            {
                std::lock_guard<std::mutex> lock(m_mutex);
                m_received.append(buf, n);
            }
            pending.append(buf, n);
            int end;
            while ((end = pending.indexOf("\r\n\r\n")) >= 0) {
                const QByteArray request = pending.left(end + 4);
                pending.remove(0, end + 4);
                QByteArray cseq;
                for (const QByteArray& line : request.split('\n'))
                    if (line.toLower().startsWith("cseq:"))
                        cseq = line.mid(5).trimmed();
                const QByteArray answer = m_script(request, cseq);
                if (ssl != nullptr)
                    SSL_write(ssl, answer.constData(), answer.size());
                else
                    (void)::send(fd, answer.constData(), size_t(answer.size()), MSG_NOSIGNAL);
            }
        }
    }

    Script m_script;
    SSL_CTX* m_ctx = nullptr;
    mutable std::mutex m_mutex;
    QByteArray m_received;
    std::unique_ptr<FakeDevice> m_device;  // last: its threads use the rest
};

// Answers every HTTP (or RTSP) request with a 401 that asks for Basic.
class BasicAskingDevice : public FakeRtspDevice {
public:
    explicit BasicAskingDevice(bool rtsp = false)
        : FakeRtspDevice([rtsp](const QByteArray&, const QByteArray& cseq) {
              return (rtsp ? "RTSP/1.0" : "HTTP/1.1") + QByteArray(" 401 Unauthorized\r\n")
                  + (cseq.isEmpty() ? QByteArray() : "CSeq: " + cseq + "\r\n")
                  + "WWW-Authenticate: Basic realm=\"camera\"\r\nContent-Type: text/plain\r\n"
                    "Content-Length: 12\r\n\r\nUnauthorized";
          })
    {
    }
};

} // namespace testsupport
