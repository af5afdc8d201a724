#pragma once
// Live streams for tests on 127.0.0.1: PartServer loops given JPEGs as MJPEG
// over HTTP; FfmpegServer serves a lavfi source to one client.
#include <QImage>
#include <QProcess>
#include <QStringList>
#include <chrono>
#include <thread>
#include <vector>

#include "support/FakeDevice.h"
#include "support/TestSupport.h"

namespace testsupport {

class PartServer {
public:
    explicit PartServer(std::vector<QByteArray> parts)
        : m_parts(std::move(parts)), m_device([this](FakeDevice& self, int fd, const std::string&) { Serve(self, fd); })
    {
        url = QStringLiteral("http://127.0.0.1:%1/live").arg(m_device.port());
    }
    QString url;

private:
    void Serve(FakeDevice& self, int fd) const
    {
        bool ok = FakeDevice::send(fd, "HTTP/1.0 200 OK\r\nContent-Type: multipart/x-mixed-replace;boundary=frame\r\n\r\n");
        for (size_t i = 0; ok && !self.stopping(); ++i) {
            const QByteArray& part = m_parts[i % m_parts.size()];
            ok = FakeDevice::send(fd, "--frame\r\nContent-Type: image/jpeg\r\nContent-Length: " + std::to_string(part.size())
                    + "\r\n\r\n" + part.toStdString() + "\r\n");
            std::this_thread::sleep_for(std::chrono::milliseconds(40));
        }
    }
    std::vector<QByteArray> m_parts;
    FakeDevice m_device;
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
