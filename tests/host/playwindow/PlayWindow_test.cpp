// Play windows against real streams served by ffmpeg over loopback.
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QTimer>
#include <gtest/gtest.h>

#include "playwindow/CStreamDecoder.h"
#include "playwindow/CStreamPlayWindowWithTask.h"
#include "support/LoopbackStream.h"
#include "support/TestSupport.h"

namespace {

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
    testsupport::FfmpegServer server(QStringLiteral("testsrc=size=640x360:rate=25"), {QStringLiteral("-q:v"), QStringLiteral("5")});
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
        testsupport::ListeningSocket silent(c.silentServer);
        const QString url = QStringLiteral("http://127.0.0.1:%1/live").arg(c.silentServer ? silent.port() : testsupport::FreePort());
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
    testsupport::FfmpegServer server(QStringLiteral("sine=frequency=440"), {QStringLiteral("-c:a"), QStringLiteral("mp2")},
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
    testsupport::PartServer server(parts);
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
    testsupport::PartServer bad({good, truncated, good, garbage});
    testsupport::PartServer clean({good});
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

namespace {

// A private sound server (null sink) for the duration of a test.
class SoundServer {
public:
    SoundServer()
    {
        const QString run = m_dir.path();
        QFile pa(run + QStringLiteral("/test.pa"));
        pa.open(QIODevice::WriteOnly);
        pa.write("load-module module-native-protocol-unix auth-anonymous=1\n"
                 "load-module module-null-sink sink_name=testsink rate=48000\nset-default-sink testsink\n");
        pa.close();
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), run);
        m_proc.setProcessEnvironment(env);
        m_proc.setStandardOutputFile(QProcess::nullDevice());
        m_proc.setStandardErrorFile(QProcess::nullDevice());
        m_proc.start(QStringLiteral("pulseaudio"), {QStringLiteral("-n"), QStringLiteral("-F"), run + QStringLiteral("/test.pa"),
            QStringLiteral("--daemonize=no"), QStringLiteral("--exit-idle-time=-1")});
        m_old = qgetenv("PULSE_SERVER");
        server = QStringLiteral("unix:") + run + QStringLiteral("/pulse/native");
        qputenv("PULSE_SERVER", server.toUtf8());
        ready = m_proc.waitForStarted() && testsupport::waitUntil([this] { return SinkInputs() >= 0; }, 5000);
    }
    ~SoundServer()
    {
        m_proc.terminate();
        m_proc.waitForFinished(3000);
        qputenv("PULSE_SERVER", m_old);
    }
    // Streams playing into the server now (-1 when it does not answer).
    int SinkInputs() const
    {
        QProcess p;
        p.start(QStringLiteral("pactl"), {QStringLiteral("--server=") + server, QStringLiteral("list"), QStringLiteral("short"),
            QStringLiteral("sink-inputs")});
        if (!p.waitForFinished(2000) || p.exitCode() != 0)
            return -1;
        return p.readAllStandardOutput().count('\n');
    }
    bool ready = false;
    QString server;

private:
    QTemporaryDir m_dir;
    QProcess m_proc;
    QByteArray m_old;
};

TEST_F(PlayWindowTest, SoundOfAStreamWithAudioPlaysOnTheSoundServer)
{
    SoundServer sound;
    ASSERT_TRUE(sound.ready);
    testsupport::FfmpegServer server(QStringLiteral("testsrc=size=320x240:rate=25"),
        {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"), QStringLiteral("sine=frequency=440"),
         QStringLiteral("-c:v"), QStringLiteral("mpeg1video"), QStringLiteral("-c:a"), QStringLiteral("mp2")},
        QStringLiteral("mpegts"));
    CStreamPlayWindowWithTask w(0);
    w.resize(320, 240);
    ASSERT_TRUE(w.StartPreviewUrl(server.url, "cam-av"));
    ASSERT_TRUE(testsupport::waitUntil([&w] { return w.HasFrame(); }, 5000));
    EXPECT_TRUE(w.OpenSound());
    EXPECT_TRUE(w.IsSoundOpen());
    EXPECT_TRUE(testsupport::waitUntil([&sound] { return sound.SinkInputs() == 1; }, 3000));
    w.CloseSound();
    EXPECT_TRUE(testsupport::waitUntil([&sound] { return sound.SinkInputs() == 0; }, 3000));
    w.StopPreview();
}

} // namespace
