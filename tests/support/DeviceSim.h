#pragma once
// Runs bin/devicesim on a free loopback port for a test, talks to its control
// API, and gives the matching host device configuration. Header-only so any
// test can include it. The process is killed in the destructor.
#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <QThread>
#include <arpa/inet.h>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

#include "clientcommonlogical/CConfigMgr.h"
#include "support/TestSupport.h"

namespace testsupport {

class DeviceSim {
public:
    static constexpr const char* kUser = "admin";
    static constexpr const char* kPassword = "s3cret-pw";

    explicit DeviceSim(const QStringList& extra = QStringList(), const QString& dbPath = QString())
    {
        m_db = dbPath.isEmpty() ? m_dir.filePath(QStringLiteral("sim.db")) : dbPath;
        m_log = m_dir.filePath(QStringLiteral("sim.log"));
        m_extra = extra;
    }
    ~DeviceSim() { stop(); }

    // port 0: a free one; otherwise that port (a restart of the same device).
    bool start(int port = 0)
    {
        m_port = port != 0 ? port : freePort();
        QStringList args{QStringLiteral("--listen"), QStringLiteral("127.0.0.1"), QStringLiteral("--port"),
            QString::number(m_port), QStringLiteral("--channels"), QStringLiteral("4"), QStringLiteral("--rate"),
            QStringLiteral("0"), QStringLiteral("--seed"), QStringLiteral("11"), QStringLiteral("--user"),
            QString::fromLatin1(kUser), QStringLiteral("--password"), QString::fromLatin1(kPassword),
            QStringLiteral("--db"), m_db, QStringLiteral("--serial"), QStringLiteral("TEST0001"),
            QStringLiteral("--log"), m_log};
        args += m_extra;
        m_proc.setProgram(binDir() + QStringLiteral("/devicesim"));
        m_proc.setArguments(args);
        m_proc.setStandardOutputFile(m_dir.filePath(QStringLiteral("sim.out")));
        m_proc.setStandardErrorFile(m_dir.filePath(QStringLiteral("sim.err")));
        m_proc.start();
        if (!m_proc.waitForStarted(5000))
            return false;
        const bool tls = m_extra.contains(QStringLiteral("--tls-cert"));
        for (int i = 0; i < 200; ++i) {
            if (tls ? accepting() : control("GET", "/control/stats").contains("clients"))
                return true;
            QThread::msleep(25);
        }
        return false;
    }

    // True when something accepts connections on the port.
    bool accepting() const
    {
        const int fd = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in addr{};
        addr.sin_family = AF_INET;
        addr.sin_port = htons(uint16_t(m_port));
        addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const bool ok = ::connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0;
        ::close(fd);
        return ok;
    }

    void stop()
    {
        if (m_proc.state() != QProcess::NotRunning) {
            m_proc.terminate();
            if (!m_proc.waitForFinished(5000)) {
                m_proc.kill();
                m_proc.waitForFinished(2000);
            }
        }
    }

    int port() const { return m_port; }
    QString logPath() const { return m_log; }

    clientcommonlogical::DeviceConfig device(const std::string& id = "TEST0001",
        const std::string& password = kPassword) const
    {
        clientcommonlogical::DeviceConfig d;
        d.id = id;
        d.name = "Emulated camera";
        d.address = "127.0.0.1";
        d.port = m_port;
        d.user = kUser;
        d.password = password;
        for (int ch = 1; ch <= 4; ++ch) {
            clientcommonlogical::ChannelConfig c;
            c.channel = ch;
            c.cameraId = id + "-CH" + std::to_string(ch);
            c.name = "Camera " + std::to_string(ch);
            c.area = ch <= 2 ? "Lobby" : "Back office";
            d.channels.push_back(c);
        }
        return d;
    }

    // One request to the control API (no authentication); the answer body.
    QByteArray control(const char* method, const char* path, const QByteArray& body = QByteArray()) const
    {
        const int fd = socket(AF_INET, SOCK_STREAM, 0);
        if (fd < 0)
            return QByteArray();
        sockaddr_in addr{};
        addr.sin_family = AF_INET;
        addr.sin_port = htons(uint16_t(m_port));
        addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        QByteArray answer;
        if (::connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0) {
            QByteArray req = QByteArray(method) + ' ' + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n"
                + "Content-Type: application/json\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n"
                + body;
            if (::send(fd, req.constData(), size_t(req.size()), MSG_NOSIGNAL) == req.size()) {
                char buf[65536];
                ssize_t n;
                while ((n = ::recv(fd, buf, sizeof buf, 0)) > 0)
                    answer.append(buf, int(n));
            }
        }
        ::close(fd);
        const int at = answer.indexOf("\r\n\r\n");
        return at < 0 ? QByteArray() : answer.mid(at + 4);
    }

private:
    static int freePort()
    {
        const int fd = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in addr{};
        addr.sin_family = AF_INET;
        addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        addr.sin_port = 0;
        socklen_t len = sizeof addr;
        int port = 0;
        if (::bind(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0
            && ::getsockname(fd, reinterpret_cast<sockaddr*>(&addr), &len) == 0)
            port = ntohs(addr.sin_port);
        ::close(fd);
        return port;
    }

    QTemporaryDir m_dir;
    QString m_db;
    QString m_log;
    QStringList m_extra;
    QProcess m_proc;
    int m_port = 0;
};

} // namespace testsupport
