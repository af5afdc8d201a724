#include "support/PrivatePgCluster.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QThread>
#include <csignal>
#include <pwd.h>
#include <unistd.h>

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
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly))
        return false;
    const QByteArray line = stat.readAll();
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

QString PrivatePgCluster::run(const QStringList& command, bool asServerUser) const
{
    QProcess p;
    p.setWorkingDirectory(m_dir.path());
    p.setProcessChannelMode(QProcess::MergedChannels);
    QStringList args = command;
    QString program = args.takeFirst();
    if (asServerUser && isRoot()) {
        args = QStringList{QStringLiteral("-u"), QStringLiteral("postgres"), QStringLiteral("--"), program} + args;
        program = QStringLiteral("runuser");
    }
    p.start(program, args);
    if (!p.waitForFinished(60000) || p.exitStatus() != QProcess::NormalExit || p.exitCode() != 0)
        return QStringLiteral("%1 failed: %2").arg(command.first(), QString::fromLocal8Bit(p.readAll()));
    return QString();
}

QString PrivatePgCluster::Start(const QString& certFile, const QString& keyFile)
{
    if (!QFile::exists(kBin + QStringLiteral("initdb")))
        return QStringLiteral("postgresql-15 is not installed");
    if (isRoot() && ::getpwnam("postgres") == nullptr)
        return QStringLiteral("there is no postgres user to run the server as");
    const QString pwfile = m_dir.filePath(QStringLiteral("pw"));
    QFile pw(pwfile);
    if (!pw.open(QIODevice::WriteOnly))
        return QStringLiteral("cannot write %1").arg(pwfile);
    pw.write(kPassword);
    pw.close();
    giveToServerUser(pwfile);
    const QString error = run({kBin + QStringLiteral("initdb"), QStringLiteral("-D"), m_dir.filePath(QStringLiteral("data")),
                                  QStringLiteral("-U"), QString::fromLatin1(kUser), QStringLiteral("--pwfile"), pwfile,
                                  QStringLiteral("-A"), QStringLiteral("scram-sha-256"), QStringLiteral("--no-sync")},
        true);
    if (!error.isEmpty())
        return error;
    m_port = FreePort();
    m_options = QStringList{QStringLiteral("-p %1").arg(m_port), QStringLiteral("-k ") + m_dir.path(),
        QStringLiteral("-c listen_addresses=127.0.0.1"), QStringLiteral("-c fsync=off"),
        QStringLiteral("-c max_connections=60")};
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
        m_options << QStringLiteral("-c ssl=on") << QStringLiteral("-c ssl_cert_file=") + m_dir.filePath(QStringLiteral("server.crt"))
                  << QStringLiteral("-c ssl_key_file=") + m_dir.filePath(QStringLiteral("server.key"));
    }
    return startServer();
}

QString PrivatePgCluster::startServer()
{
    const QString error = run({kBin + QStringLiteral("pg_ctl"), QStringLiteral("-D"), m_dir.filePath(QStringLiteral("data")),
                                  QStringLiteral("-o"), m_options.join(QLatin1Char(' ')), QStringLiteral("-l"),
                                  m_dir.filePath(QStringLiteral("log")), QStringLiteral("-w"), QStringLiteral("start")},
        true);
    m_running = error.isEmpty();
    if (!m_running) {
        QFile log(m_dir.filePath(QStringLiteral("log")));
        log.open(QIODevice::ReadOnly);
        return error + QString::fromLocal8Bit(log.readAll().right(1500));
    }
    return error;
}

QString PrivatePgCluster::Restart()
{
    return startServer();
}

qint64 PrivatePgCluster::postmasterPid() const
{
    QFile pid(m_dir.filePath(QStringLiteral("data/postmaster.pid")));
    if (!pid.open(QIODevice::ReadOnly))
        return 0;
    return pid.readLine().trimmed().toLongLong();
}

void PrivatePgCluster::KillHard()
{
    const qint64 pid = postmasterPid();
    if (pid <= 0)
        return;
    // The server's own processes first (children of the postmaster), then itself.
    QList<qint64> victims;
    for (const QString& entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        bool number = false;
        const qint64 child = entry.toLongLong(&number);
        if (!number)
            continue;
        QFile stat(QStringLiteral("/proc/%1/stat").arg(child));
        if (!stat.open(QIODevice::ReadOnly))
            continue;
        const QByteArray line = stat.readAll();
        const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
        if (fields.size() > 1 && fields.at(1).toLongLong() == pid)
            victims << child;
    }
    ::kill(pid_t(pid), SIGKILL);
    for (qint64 child : victims)
        ::kill(pid_t(child), SIGKILL);
    for (int i = 0; i < 500 && processAlive(pid); ++i)
        QThread::msleep(10);
    // A dead server's lock file names a process that may linger as a zombie
    // (nobody here reaps it), which a new server would take for a live one.
    QFile::remove(m_dir.filePath(QStringLiteral("data/postmaster.pid")));
    QFile::remove(m_dir.filePath(QStringLiteral(".s.PGSQL.%1.lock").arg(m_port)));
    QFile::remove(m_dir.filePath(QStringLiteral(".s.PGSQL.%1").arg(m_port)));
    m_running = false;
}

void PrivatePgCluster::Stop()
{
    if (!m_running)
        return;
    run({kBin + QStringLiteral("pg_ctl"), QStringLiteral("-D"), m_dir.filePath(QStringLiteral("data")),
            QStringLiteral("-m"), QStringLiteral("immediate"), QStringLiteral("-w"), QStringLiteral("stop")},
        true);
    m_running = false;
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
