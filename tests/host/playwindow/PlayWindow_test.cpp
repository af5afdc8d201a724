// Play windows against real streams served by ffmpeg over loopback.
#include <QElapsedTimer>
#include <QProcess>
#include <QTimer>
#include <atomic>
#include <thread>
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "playwindow/CStreamDecoder.h"
#include "playwindow/CStreamPlayWindowWithTask.h"
#include "support/TestSupport.h"

namespace {

// A loopback socket that listens (and so accepts connections) but never reads
// or answers; closed on destruction. port() of a closed one is free to refuse.
class ListeningSocket {
public:
    explicit ListeningSocket(bool listen = true)
    {
        m_fd = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in a{};
        a.sin_family = AF_INET;
        a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        ::bind(m_fd, reinterpret_cast<sockaddr*>(&a), sizeof(a));
        socklen_t len = sizeof(a);
        ::getsockname(m_fd, reinterpret_cast<sockaddr*>(&a), &len);
        m_port = ntohs(a.sin_port);
        if (listen)
            ::listen(m_fd, 4);
    }
    ~ListeningSocket() { Close(); }
    // Also wakes a thread blocked in accept().
    void Close()
    {
        if (m_fd >= 0) {
            ::shutdown(m_fd, SHUT_RDWR);
            ::close(m_fd);
        }
        m_fd = -1;
    }
    int port() const { return m_port; }
    int fd() const { return m_fd; }

private:
    int m_fd = -1;
    int m_port = 0;
};

int FreePort()
{
    ListeningSocket s(false);
    return s.port();
}


// ffmpeg serving one MJPEG-over-HTTP client at the returned URL.
class StreamServer {
public:
    // lavfi graph, e.g. "testsrc=size=640x360:rate=25"
    explicit StreamServer(const QString& graph, const QStringList& extra = {}, const QString& format = QStringLiteral("mpjpeg"))
    {
        port = FreePort();
        url = QStringLiteral("http://127.0.0.1:%1/live").arg(port);
        QStringList args{QStringLiteral("-hide_banner"), QStringLiteral("-loglevel"), QStringLiteral("error"),
            QStringLiteral("-re"), QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"), graph};
        args += extra;
        args += {QStringLiteral("-f"), format, QStringLiteral("-listen"), QStringLiteral("1"), url};
        proc.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        proc.start(QStringLiteral("ffmpeg"), args);
        proc.waitForStarted();
        // ffmpeg needs a moment before it listens (a probe would use up its one client).
        testsupport::pump(300);
    }
    ~StreamServer()
    {
        proc.kill();
        proc.waitForFinished(2000);
    }
    int port = 0;
    QString url;
    QProcess proc;
};

// Serves one client a multipart JPEG stream of the given parts, in a loop,
// at about 25 parts per second, from its own thread.
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
        auto send = [fd](const QByteArray& b) { return ::send(fd, b.constData(), static_cast<size_t>(b.size()), MSG_NOSIGNAL) == b.size(); };
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

bool NonBlack(const QImage& img)
{
    if (img.isNull())
        return false;
    int bright = 0;
    for (int y = 0; y < img.height(); y += 7)
        for (int x = 0; x < img.width(); x += 7)
            if (qGray(img.pixel(x, y)) > 40)
                ++bright;
    return bright > 20;
}

class PlayWindowTest : public ::testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(playwindow::CStreamDecoder::LiveDecoders(), 0); }
};

TEST_F(PlayWindowTest, LiveStreamShowsPictureAndStopEndsThread)
{
    StreamServer server(QStringLiteral("testsrc=size=640x360:rate=25"), {QStringLiteral("-q:v"), QStringLiteral("5")});
    CStreamPlayWindowWithTask w(0);
    w.resize(480, 270);
    w.show();
    std::vector<CLiveViewEvent> events;
    QObject::connect(&w, &CStreamPlayWindowWithTask::SignalLiveViewEvent, &w, [&events](CLiveViewEvent e) { events.push_back(e); });
    ASSERT_TRUE(w.StartPreviewUrl(server.url, "cam-1"));
    EXPECT_TRUE(testsupport::waitUntil([&w] { return NonBlack(w.CurrentFrame()); }, 3000));
    // The picture arrives at the window's size, keeping the stream's aspect.
    EXPECT_EQ(w.CurrentFrame().width(), 480);
    EXPECT_EQ(w.CurrentFrame().height(), 270);
    w.StopPreview();
    EXPECT_FALSE(w.IsPreviewing());
    EXPECT_EQ(playwindow::CStreamDecoder::LiveDecoders(), 0);
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].GetEventType(), CLiveViewEvent::PreviewStarted);
    EXPECT_EQ(events[1].GetEventType(), CLiveViewEvent::PreviewStopped);
    EXPECT_EQ(events[1].GetCameraID(), "cam-1");
}

// Bad sources: each shows a message in its window, keeps retrying, never
// blocks the GUI thread, and stops promptly.
struct BadSource {
    const char* name;
    bool silentServer;
};

TEST_F(PlayWindowTest, BadSourcesShowMessageWithoutBlocking)
{
    const BadSource cases[] = {
        {"refused", false},
        {"never answers", true},
    };
    for (const BadSource& c : cases) {
        SCOPED_TRACE(c.name);
        ListeningSocket silent(c.silentServer);
        const QString url = QStringLiteral("http://127.0.0.1:%1/live").arg(c.silentServer ? silent.port() : FreePort());
        CStreamPlayWindowWithTask w(0);
        w.resize(320, 180);
        w.show();
        int ticks = 0;
        QTimer ticker;
        QObject::connect(&ticker, &QTimer::timeout, &ticker, [&ticks] { ++ticks; });
        ticker.start(20);
        ASSERT_TRUE(w.StartPreviewUrl(url, "cam-bad"));
        EXPECT_TRUE(testsupport::waitUntil([&w] { return w.MessageText().contains(QLatin1String("Retrying")); },
            c.silentServer ? 9000 : 3000));
        // The event loop kept turning all along, and keeps turning while the window retries.
        testsupport::pump(400);
        EXPECT_GT(ticks, 10);
        QElapsedTimer t;
        t.start();
        w.StopPreview();
        EXPECT_LT(t.elapsed(), 1500);
    }
}

TEST_F(PlayWindowTest, AudioOnlyStreamIsReportedAsNoVideo)
{
    StreamServer server(QStringLiteral("sine=frequency=440"), {QStringLiteral("-c:a"), QStringLiteral("mp2")},
        QStringLiteral("mp2"));
    CStreamPlayWindowWithTask w(0);
    w.resize(320, 180);
    ASSERT_TRUE(w.StartPreviewUrl(server.url, "cam-audio"));
    EXPECT_TRUE(testsupport::waitUntil([&w] { return w.MessageText().contains(QLatin1String("no video")); }, 5000));
    EXPECT_FALSE(w.HasFrame());
    EXPECT_FALSE(w.OpenSound());  // not a playing video: no sound either
    w.StopPreview();
}

TEST_F(PlayWindowTest, ResolutionChangeKeepsPlaying)
{
    // Pictures switch between 4:3 and 16:9 every few parts.
    std::vector<QByteArray> parts;
    for (int i = 0; i < 4; ++i)
        parts.push_back(testsupport::makeJpeg(320, 240));
    for (int i = 0; i < 4; ++i)
        parts.push_back(testsupport::makeJpeg(640, 360));
    PartServer server(parts);
    CStreamPlayWindowWithTask w(0);
    w.resize(640, 360);
    w.show();
    ASSERT_TRUE(w.StartPreviewUrl(server.url, "cam-size"));
    // 4:3 pictures are pillar-boxed to 480 wide, 16:9 ones fill the window.
    EXPECT_TRUE(testsupport::waitUntil([&w] { return w.CurrentFrame().width() == 480; }, 3000));
    EXPECT_TRUE(testsupport::waitUntil([&w] { return w.CurrentFrame().width() == 640; }, 3000));
    EXPECT_TRUE(testsupport::waitUntil([&w] { return w.CurrentFrame().width() == 480; }, 3000));
    EXPECT_TRUE(NonBlack(w.CurrentFrame()));
    EXPECT_EQ(w.BadPackets(), 0u);
    w.StopPreview();
}

TEST_F(PlayWindowTest, CorruptFramesAreSkippedOthersPlayOn)
{
    const QByteArray good = testsupport::makeJpeg(320, 240);
    QByteArray truncated = good.left(good.size() / 3);
    QByteArray garbage(4000, '\x5a');
    garbage.prepend("\xff\xd8\xff\xc0", 4);
    PartServer bad({good, truncated, good, garbage});
    PartServer clean({good});
    CStreamPlayWindowWithTask a(0), b(1);
    a.resize(320, 240);
    b.resize(320, 240);
    ASSERT_TRUE(a.StartPreviewUrl(bad.url, "cam-damaged"));
    ASSERT_TRUE(b.StartPreviewUrl(clean.url, "cam-clean"));
    EXPECT_TRUE(testsupport::waitUntil([&a] { return a.BadPackets() > 0 && a.DecodedFrames() > 5; }, 5000));
    EXPECT_TRUE(testsupport::waitUntil([&a] { return a.MessageText().contains(QLatin1String("damaged")); }, 3000));
    EXPECT_TRUE(testsupport::waitUntil([&b] { return b.DecodedFrames() > 10; }, 3000));
    EXPECT_EQ(b.BadPackets(), 0u);
    EXPECT_TRUE(a.IsPreviewing());
    a.StopPreview();
    b.StopPreview();
}

TEST(StreamDecoder, BackoffGrowsAndCaps)
{
    const int expected[] = {500, 1000, 2000, 4000, 8000, 8000, 8000};
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(playwindow::CStreamDecoder::BackoffMs(i), expected[i]) << i;
}

} // namespace
