#pragma once
// One connection to the site record's PostgreSQL server, driven without ever
// blocking longer than a stop request allows: connecting, TLS and every
// statement run on libpq's non-blocking calls, waiting on the socket and on
// the owner's stop signal together, so a stop is seen at once and the socket
// is simply closed. Parameters go to libpq as keyword arrays; the password
// never appears in a string, a log line or an error text of ours.
// Used by one worker thread at a time (the replicator, a history query).
#include <QByteArray>
#include <QString>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "clientcommonlogical/CConfigMgr.h"

struct pg_conn;
struct pg_result;

namespace BodyTemperature {

// A stop request that a poll() can wait on (an eventfd): raised once by the
// owner, seen by every wait of its connections. Thread-safe.
class CStopSignal final {
public:
    CStopSignal();
    ~CStopSignal();
    CStopSignal(const CStopSignal&) = delete;
    CStopSignal& operator=(const CStopSignal&) = delete;
    void Raise();
    void Reset();  // for a signal that cancels one query at a time
    bool IsRaised() const { return m_raised; }
    int fd() const { return m_fd; }

private:
    std::atomic<bool> m_raised{false};
    int m_fd = -1;
};

struct PgResultFree {
    void operator()(pg_result* r) const;
};
using PgResult = std::unique_ptr<pg_result, PgResultFree>;

// Statement parameters: text, binary (bytea) or NULL.
class PgParams final {
public:
    void Text(std::string value);
    void Int(int64_t value) { Text(std::to_string(value)); }
    void Real(double value);
    void Bytes(const QByteArray& value);  // NULL when empty
    void Null();
    int size() const { return int(m_values.size()); }

    std::vector<const char*> Values() const;
    std::vector<int> Lengths() const;
    std::vector<int> Formats() const;

private:
    std::vector<std::string> m_values;
    std::vector<bool> m_null;
    std::vector<int> m_formats;
};

class CSiteConnection final {
public:
    // Why the server cannot be used: the network or the server (retried soon),
    // the user or password, the server's certificate, or anything else the
    // server refused (configuration; retried rarely).
    enum class Failure { None, Unreachable, Rejected, Untrusted, Refused, Stopped };

    CSiteConnection(clientcommonlogical::SiteRecordConfig config, const CStopSignal& stop);
    ~CSiteConnection();
    CSiteConnection(const CSiteConnection&) = delete;
    CSiteConnection& operator=(const CSiteConnection&) = delete;

    bool Connect(int timeoutMs);
    bool IsOpen() const { return m_conn != nullptr; }
    void Close();

    // One statement; the result on success (tuples or command OK), nullptr on
    // failure with failure()/error(). A connection that failed or timed out
    // is closed (a statement cut off by closing is rolled back by the server).
    PgResult Exec(const std::string& sql, const PgParams& params = PgParams(), int timeoutMs = 15000);
    // Several statements separated by ';' without parameters.
    bool ExecScript(const std::string& sql, int timeoutMs = 15000);

    Failure failure() const { return m_failure; }
    QString error() const { return m_error; }
    // "host:port/database", for log lines and the acknowledgement key.
    std::string Target() const;

    static std::string Value(const PgResult& r, int row, int column);

private:
    enum class Wait { Ready, Stopped, TimedOut, Failed };
    Wait waitSocket(bool forWrite, int64_t deadlineMs);
    bool fail(Failure failure, const QString& why);
    // A host name looked up without blocking a stop: libpq's lists of names
    // and addresses (empty when the host is already a number).
    bool resolve(std::string& hosts, std::string& addresses, int64_t deadlineMs);
    PgResult send(const std::string& sql, const PgParams& params, bool withParams, int timeoutMs);
    // The socket ready, or false with the failure set (stopped, timed out, broken).
    bool await(bool forWrite, int64_t deadlineMs, int timeoutMs);
    // The whole statement handed to the server.
    bool flush(int64_t deadlineMs, int timeoutMs);
    // Every result of the statement: the last, or nullptr with the first error.
    PgResult collect(int64_t deadlineMs, int timeoutMs);

    clientcommonlogical::SiteRecordConfig m_config;
    const CStopSignal& m_stop;
    pg_conn* m_conn = nullptr;
    Failure m_failure = Failure::None;
    QString m_error;
};

} // namespace BodyTemperature
