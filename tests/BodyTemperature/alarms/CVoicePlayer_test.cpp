// The voice player: one prompt at a time, failures that leave it idle, and a
// real prompt through a PulseAudio server of the test's own.
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <atomic>
#include <future>
#include <gtest/gtest.h>

#include "VantorGUIToolkit/TargetPath.h"
#include "support/PrivatePulseServer.h"
#include "support/TestSupport.h"
#include "alarms/CVoicePlayer.h"

using BodyTemperature::CVoicePlayer;

namespace {

bool waitIdle()
{
    return testsupport::waitUntil([] { return CVoicePlayer::IsIdle(); }, 10000);
}

QString prompt(const char* name)
{
    return testsupport::binDir() + QStringLiteral("/Audio/") + QString::fromLatin1(name);
}

TEST(VoicePlayer, RequestWhilePlayingIsDroppedNotQueued)
{
    std::promise<void> release;
    const std::shared_future<void> released = release.get_future().share();
    std::vector<std::string> played;  // the worker writes it only while the player is busy
    CVoicePlayer::SetSink([&](const std::string& path) {
        played.push_back(path);
        released.wait();
        return true;
    });

    ASSERT_TRUE(waitIdle());
    EXPECT_TRUE(CVoicePlayer::Play(QStringLiteral("/voice/first.wav")));
    EXPECT_FALSE(CVoicePlayer::IsIdle());
    EXPECT_FALSE(CVoicePlayer::Play(QStringLiteral("/voice/second.wav")));
    EXPECT_FALSE(CVoicePlayer::Play(QStringLiteral("/voice/third.wav")));
    release.set_value();
    ASSERT_TRUE(waitIdle());
    EXPECT_TRUE(CVoicePlayer::Play(QStringLiteral("/voice/fourth.wav")));
    ASSERT_TRUE(waitIdle());
    CVoicePlayer::SetSink({});

    EXPECT_EQ(played, (std::vector<std::string>{"/voice/first.wav", "/voice/fourth.wav"}));
    EXPECT_FALSE(CVoicePlayer::Play(QString())) << "an empty path starts nothing";
}

// Missing, not a WAV, empty, and a good file with no sound server behind it.
TEST(VoicePlayer, FilesThatCannotPlayLeaveThePlayerIdle)
{
    QTemporaryDir dir;
    testsupport::ScopedEnv server("PULSE_SERVER", "unix:" + dir.filePath(QStringLiteral("no-socket")).toLocal8Bit());
    const QString notWav = dir.filePath(QStringLiteral("fake.wav"));
    ASSERT_TRUE(testsupport::writeFile(notWav, testsupport::makeJpeg(32, 32)));
    const QString empty = dir.filePath(QStringLiteral("empty.wav"));
    ASSERT_TRUE(testsupport::writeFile(empty, QByteArray()));
    ASSERT_TRUE(QFile::exists(prompt("abnormal_en.wav")));

    const QString missing = dir.filePath(QStringLiteral("missing.wav"));
    for (const QString& path : {missing, notWav, empty, prompt("abnormal_en.wav")}) {
        SCOPED_TRACE(qUtf8Printable(path));
        EXPECT_FALSE(CVoicePlayer::PlayOnDevice(path.toLocal8Bit().toStdString()));
        ASSERT_TRUE(waitIdle());
        EXPECT_TRUE(CVoicePlayer::Play(path));
        EXPECT_TRUE(waitIdle());
    }
}

// A post without a sound server gets one line when prompts stop playing and
// one when they play again, not a line per alarm.
TEST(VoicePlayer, LostSoundOutputIsLoggedOncePerChange)
{
    std::atomic<bool> works{true};
    CVoicePlayer::SetSink([&](const std::string&) { return works.load(); });
    auto playSome = [](int n) {
        for (int i = 0; i < n; ++i) {
            ASSERT_TRUE(CVoicePlayer::Play(QStringLiteral("/voice/prompt.wav")));
            ASSERT_TRUE(waitIdle());
        }
    };
    playSome(1);  // whatever earlier tests left, the output now works
    const qint64 logStart = testsupport::logText().size();
    works = false;
    playSome(5);
    works = true;
    playSome(3);
    works = false;
    playSome(4);
    CVoicePlayer::SetSink({});
    const QByteArray written = testsupport::logText(logStart);
    EXPECT_EQ(written.count("no sound output"), 2) << written.constData();
    EXPECT_EQ(written.count("sound output back"), 1) << written.constData();
    EXPECT_LT(written.indexOf("sound output back"), written.lastIndexOf("no sound output"));
}

TEST(VoicePlayer, DefaultPromptsAreFoundAndHoldSpeech)
{
    VantorGUIToolkit::AddTargetSearchPath(testsupport::binDir() + QStringLiteral("/Audio"));
    for (const char* name :
        {"normal.wav", "abnormal.wav", "no_mask.wav", "normal_en.wav", "abnormal_en.wav", "no_mask_en.wav"}) {
        QFile f(VantorGUIToolkit::GetTargetPathFile(QString::fromLatin1(name)));
        ASSERT_TRUE(f.open(QIODevice::ReadOnly)) << name;
        const QByteArray head = f.read(12);
        EXPECT_TRUE(head.startsWith("RIFF") && head.mid(8, 4) == "WAVE") << name;
        EXPECT_GT(f.size(), 8000) << name;
    }
}

TEST(VoicePlayer, AbnormalPromptIsHeardOnTheSink)
{
    testsupport::PrivatePulseServer pulse;
    const QString why = pulse.start();
    if (!why.isEmpty())
        GTEST_SKIP() << "no PulseAudio for the sound test: " << qUtf8Printable(why);

    const QString recording = pulse.path(QStringLiteral("monitor.raw"));
    QProcess recorder;
    recorder.setStandardOutputFile(recording);
    recorder.setStandardErrorFile(QProcess::nullDevice());
    recorder.start(QStringLiteral("parec"), {QStringLiteral("--latency-msec=20"), QStringLiteral("-d"),
                                                QStringLiteral("testsink.monitor"), QStringLiteral("--format=s16le"),
                                                QStringLiteral("--channels=1"), QStringLiteral("--rate=48000")});
    ASSERT_TRUE(recorder.waitForStarted(5000));
    // An idle null sink runs with a long latency: let the recorder settle first.
    testsupport::pump(2000);

    ASSERT_TRUE(waitIdle());
    ASSERT_TRUE(CVoicePlayer::Play(prompt("abnormal_en.wav")));
    EXPECT_FALSE(CVoicePlayer::Play(prompt("abnormal_en.wav"))) << "dropped while the first plays";
    ASSERT_TRUE(waitIdle());
    testsupport::pump(500);
    recorder.terminate();
    recorder.waitForFinished(5000);

    QFile raw(recording);
    ASSERT_TRUE(raw.open(QIODevice::ReadOnly));
    const QByteArray bytes = raw.readAll();
    const auto* samples = reinterpret_cast<const int16_t*>(bytes.constData());
    const int count = bytes.size() / 2;
    const auto loud = std::count_if(samples, samples + count, [](int16_t s) { return s > 1000 || s < -1000; });
    EXPECT_GT(count, 48000) << "the recorder captured at least a second";
    EXPECT_GT(loud, 2000) << "the prompt is audible on the sink's monitor";
}

} // namespace
