#pragma once
// A PostgreSQL cluster private to one test program on a free loopback port, as
// the "postgres" user when root; its server dies with the process. One thread.
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <sys/types.h>

#include "clientcommonlogical/CConfigMgr.h"
#include "support/LoopbackStream.h"

namespace testsupport {

class PrivatePgCluster {
public:
    static constexpr const char* kUser = "bt";
    static constexpr const char* kPassword = "site-Secret-7";

    PrivatePgCluster();
    ~PrivatePgCluster();

    // Empty when the server runs, otherwise why not. With certificate and
    // key (PEM files), TLS is on (clients may still connect without it).
    QString Start(const QString& certFile = QString(), const QString& keyFile = QString());
    QString Restart();  // on the same files and port
    void KillHard();    // SIGKILL to the server and all its processes
    void Stop();

    int port() const { return m_port; }
    // A site record on this cluster for one station (plain TCP unless sslmode says otherwise).
    clientcommonlogical::SiteRecordConfig Site(const std::string& station) const;
    // psql -At with the password; the output, or a null string on failure.
    QString Psql(const QString& sql) const;

private:
    QTemporaryDir m_dir;
    int m_port = 0;
    QStringList m_options;
    bool m_running = false;
    pid_t m_pid = 0;
};

// A loopback port that takes connections into its backlog and never answers.
using SilentListener = ListeningSocket;

} // namespace testsupport
