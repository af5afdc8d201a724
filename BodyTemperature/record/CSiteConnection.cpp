#include "record/CSiteConnection.h"

#include <QDateTime>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <arpa/inet.h>
#include <libpq-fe.h>
#include <netdb.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace BodyTemperature {

namespace {

int64_t nowMs()
{
    return QDateTime::currentMSecsSinceEpoch();
}

// The server's and libpq's texts for a refused password or an untrusted
// certificate (English; the server's messages follow its lc_messages).
CSiteConnection::Failure classify(const QString& message)
{
    const QString m = message.toLower();
    if (m.contains(QStringLiteral("password")) || m.contains(QStringLiteral("authentication")))
        return CSiteConnection::Failure::Rejected;
    if (m.contains(QStringLiteral("certificate")))
        return CSiteConnection::Failure::Untrusted;
    if (m.contains(QStringLiteral("does not exist")) || m.contains(QStringLiteral("does not support ssl")) || m.contains(QStringLiteral("permission denied"))
        || m.contains(QStringLiteral("no pg_hba.conf entry")))
        return CSiteConnection::Failure::Refused;
    return CSiteConnection::Failure::Unreachable;
}

// One resolution in flight: glibc's resolver runs it on a thread of its own.
// A request abandoned by a stop stays allocated (the resolver may still
// write to it), which costs a few hundred bytes once per unload at most.
struct Lookup {
    std::string name;
    addrinfo hints{};
    gaicb request{};
};

} // namespace

bool CSiteConnection::resolve(std::string& hosts, std::string& addresses, int64_t deadlineMs)
{
    in6_addr any{};
    const std::string& name = m_config.host;
    if (name.empty() || name.front() == '/' || inet_pton(AF_INET, name.c_str(), &any) == 1
        || inet_pton(AF_INET6, name.c_str(), &any) == 1)
        return true;  // a number or a socket folder: nothing to look up
    auto* lookup = new Lookup;
    lookup->name = name;
    lookup->hints.ai_socktype = SOCK_STREAM;
    lookup->request.ar_name = lookup->name.c_str();
    lookup->request.ar_request = &lookup->hints;
    gaicb* list[] = {&lookup->request};
    if (getaddrinfo_a(GAI_NOWAIT, list, 1, nullptr) != 0) {
        delete lookup;
        return fail(Failure::Unreachable, QStringLiteral("cannot look up %1").arg(QString::fromStdString(name)));
    }
    int rc = EAI_INPROGRESS;
    while ((rc = gai_error(&lookup->request)) == EAI_INPROGRESS) {
        if (m_stop.IsRaised() || nowMs() >= deadlineMs) {
            if (gai_cancel(&lookup->request) == EAI_CANCELED)
                delete lookup;
            return m_stop.IsRaised() ? fail(Failure::Stopped, QStringLiteral("stopped"))
                                     : fail(Failure::Unreachable, QStringLiteral("name lookup timed out"));
        }
        pollfd stop{m_stop.fd(), POLLIN, 0};
        ::poll(&stop, m_stop.fd() >= 0 ? 1 : 0, 10);
    }
    if (rc != 0) {
        delete lookup;
        return fail(Failure::Unreachable,
            QStringLiteral("%1: %2").arg(QString::fromStdString(name), QString::fromUtf8(gai_strerror(rc))));
    }
    for (const addrinfo* a = lookup->request.ar_result; a != nullptr; a = a->ai_next) {
        char text[INET6_ADDRSTRLEN] = {};
        const void* raw = a->ai_family == AF_INET
            ? static_cast<const void*>(&reinterpret_cast<const sockaddr_in*>(a->ai_addr)->sin_addr)
            : static_cast<const void*>(&reinterpret_cast<const sockaddr_in6*>(a->ai_addr)->sin6_addr);
        if ((a->ai_family != AF_INET && a->ai_family != AF_INET6)
            || inet_ntop(a->ai_family, raw, text, sizeof text) == nullptr)
            continue;
        // libpq connects to each address in turn and checks the certificate against the name.
        hosts += (hosts.empty() ? "" : ",") + name;
        addresses += (addresses.empty() ? "" : ",") + std::string(text);
    }
    freeaddrinfo(lookup->request.ar_result);
    delete lookup;
    if (addresses.empty())
        return fail(Failure::Unreachable, QStringLiteral("%1 has no address").arg(QString::fromStdString(name)));
    return true;
}

CStopSignal::CStopSignal() : m_fd(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

CStopSignal::~CStopSignal()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

void CStopSignal::Raise()
{
    m_raised = true;
    const uint64_t one = 1;
    if (m_fd >= 0)
        (void)!::write(m_fd, &one, sizeof one);
}

void CStopSignal::Reset()
{
    uint64_t count = 0;
    if (m_fd >= 0)
        (void)!::read(m_fd, &count, sizeof count);
    m_raised = false;
}

void PgResultFree::operator()(pg_result* r) const
{
    PQclear(r);
}

void PgParams::Text(std::string value)
{
    m_values.push_back(std::move(value));
    m_null.push_back(false);
    m_formats.push_back(0);
}

void PgParams::Real(double value)
{
    char text[40];
    std::snprintf(text, sizeof text, "%.17g", value);
    Text(text);
}

void PgParams::Bytes(const QByteArray& value)
{
    if (value.isEmpty())
        return Null();
    m_values.emplace_back(value.constData(), size_t(value.size()));
    m_null.push_back(false);
    m_formats.push_back(1);
}

void PgParams::Null()
{
    m_values.emplace_back();
    m_null.push_back(true);
    m_formats.push_back(0);
}

std::vector<const char*> PgParams::Values() const
{
    std::vector<const char*> v;
    v.reserve(m_values.size());
    for (size_t i = 0; i < m_values.size(); ++i)
        v.push_back(m_null[i] ? nullptr : m_values[i].c_str());
    return v;
}

std::vector<int> PgParams::Lengths() const
{
    std::vector<int> v;
    v.reserve(m_values.size());
    for (const std::string& s : m_values)
        v.push_back(int(s.size()));
    return v;
}

std::vector<int> PgParams::Formats() const
{
    return m_formats;
}

CSiteConnection::CSiteConnection(clientcommonlogical::SiteRecordConfig config, const CStopSignal& stop)
    : m_config(std::move(config)), m_stop(stop)
{
}

CSiteConnection::~CSiteConnection()
{
    Close();
}

void CSiteConnection::Close()
{
    if (m_conn != nullptr)
        PQfinish(m_conn);
    m_conn = nullptr;
}

std::string CSiteConnection::Target() const
{
    return m_config.host + ":" + std::to_string(m_config.port) + "/" + m_config.database;
}

std::string CSiteConnection::Value(const PgResult& r, int row, int column)
{
    if (!r || row >= PQntuples(r.get()) || column >= PQnfields(r.get()) || PQgetisnull(r.get(), row, column))
        return std::string();
    return std::string(PQgetvalue(r.get(), row, column), size_t(PQgetlength(r.get(), row, column)));
}

bool CSiteConnection::fail(Failure failure, const QString& why)
{
    m_failure = failure;
    m_error = why.trimmed();
    Close();
    return false;
}

CSiteConnection::Wait CSiteConnection::waitSocket(bool forWrite, int64_t deadlineMs)
{
    for (;;) {
        if (m_stop.IsRaised())
            return Wait::Stopped;
        const int64_t left = deadlineMs - nowMs();
        if (left <= 0)
            return Wait::TimedOut;
        pollfd fds[2] = {{PQsocket(m_conn), short(forWrite ? POLLOUT : POLLIN), 0}, {m_stop.fd(), POLLIN, 0}};
        const int n = ::poll(fds, m_stop.fd() >= 0 ? 2 : 1, int(std::min<int64_t>(left, 1000)));
        if (n < 0 && errno != EINTR)
            return Wait::Failed;
        if (m_stop.IsRaised())
            return Wait::Stopped;
        if (n > 0 && fds[0].revents != 0)
            return Wait::Ready;
    }
}

bool CSiteConnection::Connect(int timeoutMs)
{
    Close();
    m_failure = Failure::None;
    m_error.clear();
    const int64_t deadline = nowMs() + timeoutMs;
    std::string hosts, addresses;
    if (!resolve(hosts, addresses, deadline))
        return false;
    if (hosts.empty())
        hosts = m_config.host;
    std::string ports = std::to_string(m_config.port);
    for (size_t i = 1; !addresses.empty() && i < size_t(std::count(addresses.begin(), addresses.end(), ',')) + 1; ++i)
        ports += "," + std::to_string(m_config.port);
    // The server notices a station that went away (a query cut off) within a second.
    std::vector<const char*> keys{"host", "port", "dbname", "user", "password", "sslmode", "application_name",
        "keepalives", "keepalives_idle", "keepalives_interval", "keepalives_count", "options"};
    std::vector<const char*> values{hosts.c_str(), ports.c_str(), m_config.database.c_str(),
        m_config.user.c_str(), m_config.password.c_str(), m_config.sslmode.c_str(), "BodyTemperature station", "1",
        "10", "5", "3", "-c client_connection_check_interval=1000"};
    if (!addresses.empty()) {
        keys.push_back("hostaddr");
        values.push_back(addresses.c_str());
    }
    if (!m_config.caFile.empty()) {
        keys.push_back("sslrootcert");
        values.push_back(m_config.caFile.c_str());
    }
    keys.push_back(nullptr);
    values.push_back(nullptr);
    m_conn = PQconnectStartParams(keys.data(), values.data(), 0);
    if (m_conn == nullptr)
        return fail(Failure::Unreachable, QStringLiteral("out of memory"));
    if (PQstatus(m_conn) == CONNECTION_BAD)
        return fail(classify(QString::fromUtf8(PQerrorMessage(m_conn))), QString::fromUtf8(PQerrorMessage(m_conn)));
    PostgresPollingStatusType status = PGRES_POLLING_WRITING;
    for (;;) {
        if (status == PGRES_POLLING_OK)
            break;
        if (status == PGRES_POLLING_FAILED) {
            const QString why = QString::fromUtf8(PQerrorMessage(m_conn));
            return fail(classify(why), why);
        }
        switch (waitSocket(status == PGRES_POLLING_WRITING, deadline)) {
        case Wait::Ready:
            break;
        case Wait::Stopped:
            return fail(Failure::Stopped, QStringLiteral("stopped"));
        case Wait::TimedOut:
            return fail(Failure::Unreachable, QStringLiteral("no answer within %1 ms").arg(timeoutMs));
        case Wait::Failed:
            return fail(Failure::Unreachable, QString::fromLocal8Bit(std::strerror(errno)));
        }
        status = PQconnectPoll(m_conn);
    }
    // The server's notices (a table that already exists) are of no interest here.
    PQsetNoticeProcessor(m_conn, [](void*, const char*) {}, nullptr);
    if (PQsetnonblocking(m_conn, 1) != 0)
        return fail(Failure::Unreachable, QString::fromUtf8(PQerrorMessage(m_conn)));
    return true;
}

bool CSiteConnection::await(bool forWrite, int64_t deadlineMs, int timeoutMs)
{
    switch (waitSocket(forWrite, deadlineMs)) {
    case Wait::Ready:
        return true;
    case Wait::Stopped:
        return fail(Failure::Stopped, QStringLiteral("stopped"));
    case Wait::TimedOut:
        return fail(Failure::Unreachable, QStringLiteral("no answer within %1 ms").arg(timeoutMs));
    case Wait::Failed:
        break;
    }
    return fail(Failure::Unreachable, QString::fromLocal8Bit(std::strerror(errno)));
}

bool CSiteConnection::flush(int64_t deadlineMs, int timeoutMs)
{
    // A large batch leaves in several writes.
    for (;;) {
        const int flushed = PQflush(m_conn);
        if (flushed == 0)
            return true;
        if (flushed < 0)
            return fail(Failure::Unreachable, QString::fromUtf8(PQerrorMessage(m_conn)));
        if (!await(true, deadlineMs, timeoutMs))
            return false;
        if (PQconsumeInput(m_conn) != 1)
            return fail(Failure::Unreachable, QString::fromUtf8(PQerrorMessage(m_conn)));
    }
}

PgResult CSiteConnection::collect(int64_t deadlineMs, int timeoutMs)
{
    PgResult last;
    QString firstError;
    std::string firstState;  // SQLSTATE
    for (;;) {
        while (PQisBusy(m_conn) == 0) {
            PgResult r(PQgetResult(m_conn));
            if (!r) {
                if (!firstError.isEmpty()) {
                    // A lost connection, a server shutting down or short of
                    // resources, a transaction rolled back by a conflict:
                    // worth trying again soon. Anything else the server refused.
                    const std::string cls = firstState.substr(0, 2);
                    m_failure = PQstatus(m_conn) == CONNECTION_BAD || cls == "08" || cls == "57" || cls == "53"
                            || cls == "40"
                        ? Failure::Unreachable
                        : Failure::Refused;
                    m_error = firstError.trimmed();
                    if (PQstatus(m_conn) == CONNECTION_BAD)
                        Close();
                    return nullptr;
                }
                return last;
            }
            const ExecStatusType status = PQresultStatus(r.get());
            if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK && firstError.isEmpty()) {
                if (const char* state = PQresultErrorField(r.get(), PG_DIAG_SQLSTATE))
                    firstState = state;
                firstError = QString::fromUtf8(PQresultErrorMessage(r.get()));
                if (firstError.isEmpty())
                    firstError = QString::fromUtf8(PQerrorMessage(m_conn));
            }
            last = std::move(r);
        }
        if (!await(false, deadlineMs, timeoutMs))
            return nullptr;
        if (PQconsumeInput(m_conn) != 1) {
            fail(Failure::Unreachable, QString::fromUtf8(PQerrorMessage(m_conn)));
            return nullptr;
        }
    }
}

PgResult CSiteConnection::send(const std::string& sql, const PgParams& params, bool withParams, int timeoutMs)
{
    m_failure = Failure::None;
    m_error.clear();
    if (m_conn == nullptr) {
        fail(Failure::Unreachable, QStringLiteral("not connected"));
        return nullptr;
    }
    const std::vector<const char*> values = params.Values();
    const std::vector<int> lengths = params.Lengths();
    const std::vector<int> formats = params.Formats();
    const int sent = withParams ? PQsendQueryParams(m_conn, sql.c_str(), params.size(), nullptr, values.data(),
                                      lengths.data(), formats.data(), 0)
                                : PQsendQuery(m_conn, sql.c_str());
    if (sent != 1) {
        fail(Failure::Unreachable, QString::fromUtf8(PQerrorMessage(m_conn)));
        return nullptr;
    }
    const int64_t deadline = nowMs() + timeoutMs;
    if (!flush(deadline, timeoutMs))
        return nullptr;
    return collect(deadline, timeoutMs);
}

PgResult CSiteConnection::Exec(const std::string& sql, const PgParams& params, int timeoutMs)
{
    return send(sql, params, true, timeoutMs);
}

bool CSiteConnection::ExecScript(const std::string& sql, int timeoutMs)
{
    return send(sql, PgParams(), false, timeoutMs) != nullptr;
}

} // namespace BodyTemperature
