#pragma once
// A PulseAudio server private to one test: a null sink "testsink" whose
// monitor can be recorded, reached through XDG_RUNTIME_DIR and PULSE_SERVER
// set for the test's lifetime. Its output goes nowhere, so ctest never waits
// on it. start() fails with a reason when pulseaudio or pactl is missing.
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "support/TestSupport.h"

namespace testsupport {

class PrivatePulseServer {
public:
    PrivatePulseServer() = default;
    PrivatePulseServer(const PrivatePulseServer&) = delete;
    PrivatePulseServer& operator=(const PrivatePulseServer&) = delete;

    bool start(QString* why)
    {
        for (const char* tool : {"pulseaudio", "pactl"}) {
            if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty()) {
                *why = QString::fromLatin1(tool) + QStringLiteral(" is not installed");
                return false;
            }
        }
        QFile::setPermissions(m_dir.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QFile script(m_dir.filePath(QStringLiteral("test.pa")));
        if (!script.open(QIODevice::WriteOnly)) {
            *why = QStringLiteral("cannot write the server script");
            return false;
        }
        script.write("load-module module-native-protocol-unix auth-anonymous=1\n"
                     "load-module module-null-sink sink_name=testsink rate=48000\n"
                     "set-default-sink testsink\n");
        script.close();
        m_oldRuntime = qgetenv("XDG_RUNTIME_DIR");
        m_oldServer = qgetenv("PULSE_SERVER");
        qputenv("XDG_RUNTIME_DIR", m_dir.path().toLocal8Bit());
        qputenv("PULSE_SERVER", "unix:" + m_dir.filePath(QStringLiteral("pulse/native")).toLocal8Bit());
        m_bEnvSet = true;
        m_daemon.setStandardOutputFile(QProcess::nullDevice());
        m_daemon.setStandardErrorFile(QProcess::nullDevice());
        m_daemon.start(QStringLiteral("pulseaudio"), {QStringLiteral("-n"), QStringLiteral("-F"), script.fileName(),
                                                         QStringLiteral("--daemonize=no"),
                                                         QStringLiteral("--exit-idle-time=-1")});
        if (!m_daemon.waitForStarted(5000)) {
            *why = QStringLiteral("pulseaudio did not start");
            return false;
        }
        if (!waitUntil([] { return !pactl({QStringLiteral("info")}).isNull(); }, 10000)) {
            *why = QStringLiteral("pulseaudio did not answer");
            return false;
        }
        return true;
    }

    ~PrivatePulseServer()
    {
        if (m_daemon.state() != QProcess::NotRunning) {
            m_daemon.terminate();
            if (!m_daemon.waitForFinished(5000))
                m_daemon.kill();
        }
        if (m_bEnvSet) {
            restore("XDG_RUNTIME_DIR", m_oldRuntime);
            restore("PULSE_SERVER", m_oldServer);
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
    static void restore(const char* name, const QByteArray& value)
    {
        if (value.isEmpty())
            qunsetenv(name);
        else
            qputenv(name, value);
    }

    QTemporaryDir m_dir;
    QProcess m_daemon;
    QByteArray m_oldRuntime;
    QByteArray m_oldServer;
    bool m_bEnvSet = false;
};

} // namespace testsupport
