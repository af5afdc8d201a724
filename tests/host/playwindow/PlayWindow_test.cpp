// Play windows against bad, changing and damaged streams served over loopback.
#include <QElapsedTimer>
#include <QTimer>
#include <gtest/gtest.h>

#include "playwindow/CPictureFit.h"
#include "playwindow/CStreamDecoder.h"
#include "playwindow/CStreamPlayWindowWithTask.h"
#include "support/HostRuns.h"
#include "support/LoopbackStream.h"
#include "support/PrivatePulseServer.h"

namespace {

class PlayWindowTest : public ::testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(playwindow::CStreamDecoder::LiveDecoders(), 0); }
};

// Each shows a message in its window and keeps retrying (sound alone: now and
// then) without blocking the GUI thread; stopping interrupts even a
// connection that never answers.
TEST_F(PlayWindowTest, BadSourcesShowMessageWithoutBlocking)
{
    enum Kind { Refused, Silent, AudioOnly };
    const struct {
        Kind kind;
        const char* message;
        int timeoutMs;
    } cases[] = {{Refused, "Retrying", 3000}, {Silent, "Retrying", 9000}, {AudioOnly, "has no video", 5000}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.kind);
        testsupport::ListeningSocket silent;
        std::unique_ptr<testsupport::FfmpegServer> audio;
        QString url = QStringLiteral("http://127.0.0.1:%1/live").arg(c.kind == Silent ? silent.port() : testsupport::FreePort());
        if (c.kind == AudioOnly) {
            audio = std::make_unique<testsupport::FfmpegServer>(QStringLiteral("sine=frequency=440"),
                QStringList{QStringLiteral("-c:a"), QStringLiteral("mp2")}, QStringLiteral("mp2"));
            url = audio->url;
        }
        testsupport::ShownWindow w({320, 180});
        int ticks = 0;
        QTimer ticker;
        QObject::connect(&ticker, &QTimer::timeout, &ticker, [&ticks] { ++ticks; });
        ticker.start(20);
        ASSERT_TRUE(w.StartPreviewUrl(url, "cam-bad"));
        EXPECT_TRUE(testsupport::waitUntil([&] { return w.MessageText().contains(QLatin1String(c.message)); }, c.timeoutMs));
        testsupport::pump(400);
        EXPECT_GT(ticks, 10);  // the event loop kept turning all along
        EXPECT_FALSE(w.HasFrame());
        EXPECT_FALSE(w.OpenSound());  // no playing video: no sound either
        QElapsedTimer t;
        t.start();
        w.StopPreview();
        EXPECT_LT(t.elapsed(), 1500);
    }
}

// A window within a hair of the stream's size shows it unscaled, centred
// (a grid cell a pixel short loses that pixel, a slightly larger one gets
// thin bars); others get the picture scaled to fit.
TEST_F(PlayWindowTest, PictureSizeFollowsTheWindow)
{
    testsupport::PartServer server({testsupport::makeJpeg(640, 360)});
    testsupport::ShownWindow w;
    ASSERT_TRUE(w.StartPreviewUrl(server.url, "cam-fit"));
    const struct {
        QSize window;
        QSize picture;
        bool leftBar;
    } rows[] = {
        {{639, 359}, {640, 360}, false},
        {{646, 363}, {640, 360}, true},
        {{600, 400}, {600, 336}, false},
        {{1280, 720}, {1280, 720}, false},
        {{480, 360}, {480, 270}, false},
    };
    auto* surface = testsupport::child<QWidget>(&w, "m_pVideoSurface");
    ASSERT_NE(surface, nullptr);
    for (const auto& r : rows) {
        SCOPED_TRACE(r.window.width());
        w.resize(r.window);
        EXPECT_TRUE(testsupport::waitUntil([&] { return w.CurrentFrame().size() == r.picture; }, 3000))
            << w.CurrentFrame().width() << "x" << w.CurrentFrame().height();
        const QImage shown = surface->grab().toImage();
        ASSERT_EQ(shown.size(), r.window);
        // The test picture's left column is green to cyan; the bars are black.
        EXPECT_EQ(qGray(shown.pixel(0, shown.height() / 2)) < 8, r.leftBar);
        EXPECT_GT(qGray(shown.pixel(shown.width() / 2, shown.height() / 2)), 8);
    }
}

TEST_F(PlayWindowTest, CorruptFramesAreSkippedOthersPlayOn)
{
    const QByteArray good = testsupport::makeJpeg(320, 240);
    QByteArray garbage(4000, '\x5a');
    garbage.prepend("\xff\xd8\xff\xc0", 4);
    testsupport::PartServer bad({good, good.left(good.size() / 3), good, garbage});
    testsupport::PartServer clean({good});
    CStreamPlayWindowWithTask a(0), b(1);
    ASSERT_TRUE(a.StartPreviewUrl(bad.url, "cam-damaged"));
    ASSERT_TRUE(b.StartPreviewUrl(clean.url, "cam-clean"));
    EXPECT_TRUE(testsupport::waitUntil([&a] { return a.BadPackets() > 0 && a.DecodedFrames() > 5; }, 5000));
    EXPECT_TRUE(testsupport::waitUntil([&a] { return a.MessageText().contains(QLatin1String("damaged")); }, 3000));
    EXPECT_TRUE(testsupport::waitUntil([&b] { return b.DecodedFrames() > 10; }, 3000));
    EXPECT_EQ(b.BadPackets(), 0u);
    EXPECT_TRUE(a.IsPreviewing());
}

TEST_F(PlayWindowTest, SoundOfAStreamWithAudioPlaysOnTheSoundServer)
{
    testsupport::PrivatePulseServer pulse;
    const QString why = pulse.start();
    ASSERT_TRUE(why.isEmpty()) << why.toStdString();
    testsupport::FfmpegServer server(QStringLiteral("testsrc=size=320x240:rate=25"),
        {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"), QStringLiteral("sine=frequency=440"),
         QStringLiteral("-c:v"), QStringLiteral("mpeg1video"), QStringLiteral("-c:a"), QStringLiteral("mp2")},
        QStringLiteral("mpegts"));
    CStreamPlayWindowWithTask w(0);
    ASSERT_TRUE(w.StartPreviewUrl(server.url, "cam-av"));
    ASSERT_TRUE(testsupport::waitUntil([&w] { return w.HasFrame(); }, 5000));
    EXPECT_TRUE(w.OpenSound());
    EXPECT_TRUE(w.IsSoundOpen());
    EXPECT_TRUE(testsupport::waitUntil(&testsupport::PrivatePulseServer::somethingPlays, 3000));
    w.CloseSound();
    EXPECT_TRUE(testsupport::waitUntil([] { return !testsupport::PrivatePulseServer::somethingPlays(); }, 3000));
}

// Grid cells of the page on a 1920x1080 screen, and edges: even sizes,
// the aspect kept, 1:1 within a hair.
TEST(PictureFit, EvenWidthsKeepTheAspect)
{
    const struct {
        QSize picture;
        QSize area;
        QSize shown;
    } rows[] = {
        {{1920, 1080}, {1131, 636}, {1130, 634}},
        {{1920, 1080}, {565, 318}, {564, 316}},
        {{640, 360}, {377, 212}, {376, 210}},
        {{480, 360}, {640, 360}, {480, 360}},
        {{640, 360}, {0, 0}, {640, 360}},
        {{1920, 1080}, {3, 3}, {2, 2}},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.area.width());
        EXPECT_EQ(playwindow::CPictureFit::Shown(r.picture, r.area), r.shown);
    }
}

TEST(StreamDecoder, BackoffGrowsAndCaps)
{
    const int expected[] = {500, 1000, 2000, 4000, 8000, 8000, 8000};
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(playwindow::CStreamDecoder::BackoffMs(i), expected[i]) << i;
}

} // namespace
