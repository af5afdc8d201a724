#pragma once
// A PulseAudio server private to one test: a null sink "testsink" whose monitor
// can be recorded, reached through the environment set for the test's lifetime.
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <memory>

#include "support/TestSupport.h"

namespace testsupport {

// Sets an environment variable until destroyed.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const QByteArray& value)
        : m_name(name), m_had(qEnvironmentVariableIsSet(name)), m_old(qgetenv(name))
    {
        qputenv(name, value);
    }
    ~ScopedEnv() { m_had ? qputenv(m_name, m_old) : qunsetenv(m_name); }

private:
    const char* m_name;
    bool m_had;
    QByteArray m_old;
};

class PrivatePulseServer {
public:
    // Empty when the server runs, otherwise why it does not.
    QString start()
    {
        for (const char* tool : {"pulseaudio", "pactl", "parec"}) {
            if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty())
                return QString::fromLatin1(tool) + QStringLiteral(" is not installed");
        }
        QFile::setPermissions(m_dir.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QFile script(m_dir.filePath(QStringLiteral("test.pa")));
        if (!script.open(QIODevice::WriteOnly))
            return QStringLiteral("cannot write the server script");
        script.write("load-module module-native-protocol-unix auth-anonymous=1\n"
                     "load-module module-null-sink sink_name=testsink rate=48000\n"
                     "set-default-sink testsink\n");
        script.close();
        m_runtime = std::make_unique<ScopedEnv>("XDG_RUNTIME_DIR", m_dir.path().toLocal8Bit());
        m_server = std::make_unique<ScopedEnv>(
            "PULSE_SERVER", "unix:" + m_dir.filePath(QStringLiteral("pulse/native")).toLocal8Bit());
        m_daemon.setStandardOutputFile(QProcess::nullDevice());
        m_daemon.setStandardErrorFile(QProcess::nullDevice());
        m_daemon.start(QStringLiteral("pulseaudio"), {QStringLiteral("-n"), QStringLiteral("-F"), script.fileName(),
                                                         QStringLiteral("--daemonize=no"),
                                                         QStringLiteral("--exit-idle-time=-1")});
        if (!m_daemon.waitForStarted(5000))
            return QStringLiteral("pulseaudio did not start");
        if (!waitUntil([] { return !pactl({QStringLiteral("info")}).isNull(); }, 10000))
            return QStringLiteral("pulseaudio did not answer");
        return QString();
    }

    ~PrivatePulseServer()
    {
        if (m_daemon.state() != QProcess::NotRunning) {
            m_daemon.terminate();
            if (!m_daemon.waitForFinished(5000))
                m_daemon.kill();
        }
    }

    // Output of pactl with these arguments; a null string when it failed.
    static QString pactl(const QStringList& args)
    {
        QProcess p;
        p.setStandardErrorFile(QProcess::nullDevice());
        p.start(QStringLiteral("pactl"), args);
        if (!p.waitForFinished(5000) || p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0)
            return QString();
        return QString::fromLocal8Bit(p.readAllStandardOutput()) + QStringLiteral(" ");
    }
    // True while some stream plays into the server.
    static bool somethingPlays()
    {
        return !pactl({QStringLiteral("list"), QStringLiteral("short"), QStringLiteral("sink-inputs")})
                    .trimmed()
                    .isEmpty();
    }

    QString path(const QString& name) const { return m_dir.filePath(name); }

private:
    QTemporaryDir m_dir;
    QProcess m_daemon;
    std::unique_ptr<ScopedEnv> m_runtime, m_server;
};

} // namespace testsupport
