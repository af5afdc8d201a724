#include "support/PrivatePgCluster.h"

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QThread>
#include <csignal>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace testsupport {

namespace {
const QString kBin = QStringLiteral("/usr/lib/postgresql/15/bin/");

bool isRoot() { return ::geteuid() == 0; }

void giveToServerUser(const QString& path)
{
    if (!isRoot())
        return;
    if (const passwd* pw = ::getpwnam("postgres"))
        (void)!::chown(QFile::encodeName(path).constData(), pw->pw_uid, pw->pw_gid);
}

bool processAlive(qint64 pid)
{
    const QByteArray line = readFile(QStringLiteral("/proc/%1/stat").arg(pid));
    const int close = line.lastIndexOf(')');
    return close > 0 && line.size() > close + 2 && line.at(close + 2) != 'Z';
}
} // namespace

PrivatePgCluster::PrivatePgCluster()
{
    giveToServerUser(m_dir.path());
}

PrivatePgCluster::~PrivatePgCluster()
{
    Stop();
}

QString PrivatePgCluster::Start(const QString& certFile, const QString& keyFile)
{
    if (!QFile::exists(kBin + QStringLiteral("initdb")))
        return QStringLiteral("postgresql-15 is not installed");
    if (isRoot() && ::getpwnam("postgres") == nullptr)
        return QStringLiteral("there is no postgres user to run the server as");
    const QString pwfile = m_dir.filePath(QStringLiteral("pw"));
    if (!writeFile(pwfile, kPassword))
        return QStringLiteral("cannot write %1").arg(pwfile);
    giveToServerUser(pwfile);
    QProcess initdb;
    initdb.setWorkingDirectory(m_dir.path());
    initdb.setProcessChannelMode(QProcess::MergedChannels);
    const QStringList args{kBin + QStringLiteral("initdb"), QStringLiteral("-D"), m_dir.filePath(QStringLiteral("data")),
        QStringLiteral("-U"), QString::fromLatin1(kUser), QStringLiteral("--pwfile"), pwfile, QStringLiteral("-A"),
        QStringLiteral("scram-sha-256"), QStringLiteral("--no-sync")};
    if (isRoot())
        initdb.start(QStringLiteral("runuser"),
            QStringList{QStringLiteral("-u"), QStringLiteral("postgres"), QStringLiteral("--")} + args);
    else
        initdb.start(args.first(), args.mid(1));
    if (!initdb.waitForFinished(60000) || initdb.exitStatus() != QProcess::NormalExit || initdb.exitCode() != 0)
        return QStringLiteral("initdb failed: ") + QString::fromLocal8Bit(initdb.readAll());
    m_port = FreePort();
    m_options = QStringList{QStringLiteral("-p"), QString::number(m_port), QStringLiteral("-k"), m_dir.path(),
        QStringLiteral("-c"), QStringLiteral("listen_addresses=127.0.0.1"), QStringLiteral("-c"),
        QStringLiteral("fsync=off"), QStringLiteral("-c"), QStringLiteral("max_connections=60")};
    if (!certFile.isEmpty()) {
        // The server wants its key owned by itself and private.
        for (const auto& [from, to] : {std::pair<QString, QString>{certFile, QStringLiteral("server.crt")},
                 std::pair<QString, QString>{keyFile, QStringLiteral("server.key")}}) {
            QFile::remove(m_dir.filePath(to));
            if (!QFile::copy(from, m_dir.filePath(to)))
                return QStringLiteral("cannot copy %1").arg(from);
            QFile::setPermissions(m_dir.filePath(to), QFile::ReadOwner | QFile::WriteOwner);
            giveToServerUser(m_dir.filePath(to));
        }
        m_options << QStringLiteral("-c") << QStringLiteral("ssl=on") << QStringLiteral("-c")
                  << QStringLiteral("ssl_cert_file=") + m_dir.filePath(QStringLiteral("server.crt"))
                  << QStringLiteral("-c") << QStringLiteral("ssl_key_file=") + m_dir.filePath(QStringLiteral("server.key"));
    }
    return Restart();
}

QString PrivatePgCluster::Restart()
{
    // The server runs as this process's own child, not daemonized, and dies
    // with it (PR_SET_PDEATHSIG): a test that crashes or is killed leaves no
    // server behind. Everything the child needs is prepared before the fork.
    std::vector<QByteArray> args{QFile::encodeName(kBin + QStringLiteral("postgres")), QByteArrayLiteral("-D"),
        QFile::encodeName(m_dir.filePath(QStringLiteral("data")))};
    for (const QString& option : m_options)
        args.push_back(option.toLocal8Bit());
    std::vector<char*> argv;
    for (QByteArray& a : args)
        argv.push_back(a.data());
    argv.push_back(nullptr);
    const passwd* pw = isRoot() ? ::getpwnam("postgres") : nullptr;
    const uid_t uid = pw != nullptr ? pw->pw_uid : ::getuid();
    const gid_t gid = pw != nullptr ? pw->pw_gid : ::getgid();
    const QString logPath = m_dir.filePath(QStringLiteral("log"));
    const int log = ::open(QFile::encodeName(logPath).constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    if (log < 0)
        return QStringLiteral("cannot write %1").arg(logPath);
    const pid_t parent = ::getpid();
    const pid_t pid = ::fork();
    if (pid == 0) {
        // Only async-signal-safe calls here. The death signal is set after
        // the change of user, which would clear it.
        if (pw != nullptr && (::setgroups(0, nullptr) != 0 || ::setgid(gid) != 0 || ::setuid(uid) != 0))
            ::_exit(126);
        if (::prctl(PR_SET_PDEATHSIG, SIGKILL) != 0 || ::getppid() != parent)
            ::_exit(126);
        ::dup2(log, STDOUT_FILENO);
        ::dup2(log, STDERR_FILENO);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    ::close(log);
    if (pid < 0)
        return QStringLiteral("fork failed");
    m_pid = pid;
    m_running = true;
    // Ready when the lock file's status line says so.
    for (int i = 0; i < 6000; ++i) {
        int status = 0;
        if (::waitpid(pid, &status, WNOHANG) == pid) {
            m_pid = 0;
            m_running = false;
            return QStringLiteral("the server exited: ") + QString::fromLocal8Bit(readFile(logPath).right(1500));
        }
        const QList<QByteArray> lines = readFile(m_dir.filePath(QStringLiteral("data/postmaster.pid"))).split('\n');
        if (lines.size() > 7 && lines.at(0).trimmed().toLongLong() == pid && lines.at(7).trimmed() == "ready")
            return QString();
        QThread::msleep(10);
    }
    Stop();
    return QStringLiteral("the server did not become ready");
}

void PrivatePgCluster::KillHard()
{
    const pid_t pid = m_pid;
    if (pid <= 0)
        return;
    // The server's own processes first (children of the postmaster), then itself.
    QList<qint64> victims;
    for (const QByteArray& child : readFile(QStringLiteral("/proc/%1/task/%1/children").arg(pid)).split(' '))
        if (child.toLongLong() > 0)
            victims << child.toLongLong();
    ::kill(pid, SIGKILL);
    for (qint64 child : victims)
        ::kill(pid_t(child), SIGKILL);
    ::waitpid(pid, nullptr, 0);
    for (qint64 child : victims) {
        for (int i = 0; i < 500 && processAlive(child); ++i)
            QThread::msleep(10);
    }
    QFile::remove(m_dir.filePath(QStringLiteral("data/postmaster.pid")));
    m_pid = 0;
    m_running = false;
}

void PrivatePgCluster::Stop()
{
    if (!m_running)
        return;
    // Immediate shutdown; SIGKILL if it does not go within 10 s.
    ::kill(m_pid, SIGQUIT);
    for (int i = 0; i < 1000; ++i) {
        if (::waitpid(m_pid, nullptr, WNOHANG) == m_pid) {
            m_pid = 0;
            m_running = false;
            return;
        }
        QThread::msleep(10);
    }
    KillHard();
}

clientcommonlogical::SiteRecordConfig PrivatePgCluster::Site(const std::string& station) const
{
    clientcommonlogical::SiteRecordConfig site;
    site.host = "127.0.0.1";
    site.port = m_port;
    site.database = "postgres";
    site.user = kUser;
    site.password = kPassword;
    site.sslmode = "disable";
    site.station = station;
    return site;
}

QString PrivatePgCluster::Psql(const QString& sql) const
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("PGPASSWORD"), QString::fromLatin1(kPassword));
    p.setProcessEnvironment(env);
    p.start(QStringLiteral("psql"), {QStringLiteral("-h"), QStringLiteral("127.0.0.1"), QStringLiteral("-p"),
                                        QString::number(m_port), QStringLiteral("-U"), QString::fromLatin1(kUser),
                                        QStringLiteral("-d"), QStringLiteral("postgres"), QStringLiteral("-At"),
                                        QStringLiteral("-v"), QStringLiteral("ON_ERROR_STOP=1"), QStringLiteral("-c"), sql});
    if (!p.waitForFinished(30000) || p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0)
        return QString();
    return QString::fromUtf8(p.readAllStandardOutput()).trimmed();
}

} // namespace testsupport
