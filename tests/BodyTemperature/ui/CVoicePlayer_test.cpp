// The voice player: one prompt at a time with requests dropped while it plays,
// failures that leave it idle, and a real prompt through a PulseAudio server
// of the test's own (null sink, recorded from its monitor).
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <gtest/gtest.h>

#include "VantorGUIToolkit/TargetPath.h"
#include "support/TestSupport.h"
#include "ui/CVoicePlayer.h"

using BodyTemperature::CVoicePlayer;

namespace {

bool waitIdle()
{
    return testsupport::waitUntil([] { return CVoicePlayer::IsIdle(); }, 10000);
}

// Sets an environment variable for the test's lifetime.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const QByteArray& value) : m_name(name), m_had(qEnvironmentVariableIsSet(name))
    {
        m_old = qgetenv(name);
        qputenv(name, value);
    }
    ~ScopedEnv()
    {
        if (m_had)
            qputenv(m_name, m_old);
        else
            qunsetenv(m_name);
    }

private:
    const char* m_name;
    bool m_had;
    QByteArray m_old;
};

TEST(VoicePlayer, RequestWhilePlayingIsDroppedNotQueued)
{
    std::mutex mutex;
    std::condition_variable cv;
    bool release = false;
    std::vector<std::string> played;
    CVoicePlayer::SetSink([&](const std::string& path) {
        std::unique_lock<std::mutex> lock(mutex);
        played.push_back(path);
        cv.wait(lock, [&] { return release; });
        return true;
    });

    ASSERT_TRUE(waitIdle());
    EXPECT_TRUE(CVoicePlayer::Play(QStringLiteral("/voice/first.wav")));
    EXPECT_FALSE(CVoicePlayer::IsIdle());
    EXPECT_FALSE(CVoicePlayer::Play(QStringLiteral("/voice/second.wav")));
    EXPECT_FALSE(CVoicePlayer::Play(QStringLiteral("/voice/third.wav")));
    {
        std::lock_guard<std::mutex> lock(mutex);
        release = true;
    }
    cv.notify_all();
    ASSERT_TRUE(waitIdle());
    EXPECT_TRUE(CVoicePlayer::Play(QStringLiteral("/voice/fourth.wav")));
    ASSERT_TRUE(waitIdle());
    CVoicePlayer::SetSink({});

    EXPECT_EQ(played, (std::vector<std::string>{"/voice/first.wav", "/voice/fourth.wav"}));
    EXPECT_FALSE(CVoicePlayer::Play(QString())) << "an empty path starts nothing";
}

TEST(VoicePlayer, FilesThatCannotPlayLeaveThePlayerIdle)
{
    QTemporaryDir dir;
    const QString notWav = dir.filePath(QStringLiteral("fake.wav"));
    {
        QFile f(notWav);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(testsupport::makeJpeg(32, 32));
    }
    const QString empty = dir.filePath(QStringLiteral("empty.wav"));
    QFile(empty).open(QIODevice::WriteOnly);

    for (const QString& path : {dir.filePath(QStringLiteral("missing.wav")), notWav, empty}) {
        SCOPED_TRACE(qUtf8Printable(path));
        EXPECT_FALSE(CVoicePlayer::PlayOnDevice(path.toLocal8Bit().toStdString()));
        ASSERT_TRUE(waitIdle());
        EXPECT_TRUE(CVoicePlayer::Play(path));
        EXPECT_TRUE(waitIdle());
    }
}

TEST(VoicePlayer, NoSoundServerFailsAndReturnsToIdle)
{
    QTemporaryDir dir;
    ScopedEnv server("PULSE_SERVER", "unix:" + dir.filePath(QStringLiteral("no-such-socket")).toLocal8Bit());
    const std::string file = (testsupport::binDir() + QStringLiteral("/Audio/abnormal_en.wav")).toStdString();
    ASSERT_TRUE(QFile::exists(QString::fromStdString(file)));
    EXPECT_FALSE(CVoicePlayer::PlayOnDevice(file));
    ASSERT_TRUE(CVoicePlayer::Play(QString::fromStdString(file)));
    EXPECT_TRUE(waitIdle());
}

TEST(VoicePlayer, DefaultPromptsAreFoundAndReadable)
{
    VantorGUIToolkit::AddTargetSearchPath(testsupport::binDir() + QStringLiteral("/Audio"));
    for (const char* name :
        {"normal.wav", "abnormal.wav", "no_mask.wav", "normal_en.wav", "abnormal_en.wav", "no_mask_en.wav"}) {
        const QString path = VantorGUIToolkit::GetTargetPathFile(QString::fromLatin1(name));
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::ReadOnly)) << qUtf8Printable(path);
        const QByteArray head = f.read(12);
        EXPECT_TRUE(head.startsWith("RIFF") && head.mid(8, 4) == "WAVE") << name;
        EXPECT_GT(f.size(), 8000) << name << " holds real speech";
    }
}

// A PulseAudio server with a null sink, private to this test.
class PulseServer {
public:
    bool start(QString* why)
    {
        if (QStandardPaths::findExecutable(QStringLiteral("pulseaudio")).isEmpty()
            || QStandardPaths::findExecutable(QStringLiteral("parec")).isEmpty()) {
            *why = QStringLiteral("pulseaudio or parec is not installed");
            return false;
        }
        QFile::setPermissions(m_dir.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QFile script(m_dir.filePath(QStringLiteral("test.pa")));
        script.open(QIODevice::WriteOnly);
        script.write("load-module module-native-protocol-unix auth-anonymous=1\n"
                     "load-module module-null-sink sink_name=testsink rate=48000\n"
                     "set-default-sink testsink\n");
        script.close();
        m_runtime.reset(new ScopedEnv("XDG_RUNTIME_DIR", m_dir.path().toLocal8Bit()));
        m_server.reset(new ScopedEnv("PULSE_SERVER", "unix:" + m_dir.filePath(QStringLiteral("pulse/native")).toLocal8Bit()));
        m_daemon.setProcessChannelMode(QProcess::MergedChannels);
        m_daemon.setStandardOutputFile(QProcess::nullDevice());
        m_daemon.start(QStringLiteral("pulseaudio"), {QStringLiteral("-n"), QStringLiteral("-F"), script.fileName(),
                                                         QStringLiteral("--daemonize=no"), QStringLiteral("--exit-idle-time=-1")});
        if (!m_daemon.waitForStarted(5000)) {
            *why = QStringLiteral("pulseaudio did not start");
            return false;
        }
        const bool up = testsupport::waitUntil([] {
            QProcess pactl;
            pactl.setStandardOutputFile(QProcess::nullDevice());
            pactl.setStandardErrorFile(QProcess::nullDevice());
            pactl.start(QStringLiteral("pactl"), {QStringLiteral("info")});
            return pactl.waitForFinished(5000) && pactl.exitStatus() == QProcess::NormalExit && pactl.exitCode() == 0;
        }, 10000);
        if (!up)
            *why = QStringLiteral("pulseaudio did not answer");
        return up;
    }
    ~PulseServer()
    {
        if (m_daemon.state() != QProcess::NotRunning) {
            m_daemon.terminate();
            if (!m_daemon.waitForFinished(5000))
                m_daemon.kill();
        }
    }
    QString path(const QString& name) const { return m_dir.filePath(name); }

private:
    QTemporaryDir m_dir;
    std::unique_ptr<ScopedEnv> m_runtime;
    std::unique_ptr<ScopedEnv> m_server;
    QProcess m_daemon;
};

TEST(VoicePlayer, AbnormalPromptIsHeardOnTheSink)
{
    PulseServer pulse;
    QString why;
    if (!pulse.start(&why))
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

    const QString prompt = testsupport::binDir() + QStringLiteral("/Audio/abnormal_en.wav");
    ASSERT_TRUE(waitIdle());
    ASSERT_TRUE(CVoicePlayer::Play(prompt));
    EXPECT_FALSE(CVoicePlayer::Play(prompt)) << "the second request is dropped while the first plays";
    ASSERT_TRUE(waitIdle());
    testsupport::pump(500);
    recorder.terminate();
    recorder.waitForFinished(5000);

    QFile raw(recording);
    ASSERT_TRUE(raw.open(QIODevice::ReadOnly));
    const QByteArray bytes = raw.readAll();
    const auto* samples = reinterpret_cast<const int16_t*>(bytes.constData());
    const int count = bytes.size() / 2;
    int loud = 0;
    for (int i = 0; i < count; ++i)
        if (samples[i] > 1000 || samples[i] < -1000)
            ++loud;
    EXPECT_GT(count, 48000) << "the recorder captured at least a second";
    EXPECT_GT(loud, 2000) << "the prompt is audible on the sink's monitor";
}

} // namespace
