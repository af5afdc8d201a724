#include "record/CSiteReplicator.h"

#include <QDateTime>
#include <QFile>
#include <pthread.h>
#include <sys/stat.h>
#include <vector>

#include "Base/Log.h"
#include "record/CJournalDatabase.h"
#include "record/CSiteSchema.h"

namespace BodyTemperature {

namespace {

constexpr int kColumnsPerRow = 22;
constexpr int kConnectMs = 10000;
constexpr int kInsertMs = 30000;
constexpr int kIdlePollMs = 1000;  // in case a commit's notification was missed
constexpr int kOpenRetryMs = 250;  // the writer has not created the file yet

const char* stateName(CSiteReplicator::State s)
{
    switch (s) {
    case CSiteReplicator::State::Reachable:
        return "reachable";
    case CSiteReplicator::State::Unreachable:
        return "unreachable";
    case CSiteReplicator::State::Rejected:
        return "refused the station's user or password";
    case CSiteReplicator::State::Untrusted:
        return "has a certificate that does not verify";
    case CSiteReplicator::State::Refused:
        return "refused the station";
    }
    return "";
}

CSiteReplicator::State stateOf(CSiteConnection::Failure f)
{
    switch (f) {
    case CSiteConnection::Failure::Rejected:
        return CSiteReplicator::State::Rejected;
    case CSiteConnection::Failure::Untrusted:
        return CSiteReplicator::State::Untrusted;
    case CSiteConnection::Failure::Refused:
        return CSiteReplicator::State::Refused;
    default:
        return CSiteReplicator::State::Unreachable;
    }
}

std::string insertStatement(int rows)
{
    std::string sql = "INSERT INTO bt_events(station, journal, event_id, time, device_id, device_name, camera_id,"
                      " camera_name, event_code, kind, pop_type, mask_type, temperature_type, alarm_type, temperature,"
                      " temperature_unit, mask, person_name, library, similarity, shown, face) VALUES";
    int n = 0;
    for (int r = 0; r < rows; ++r) {
        sql += r == 0 ? "(" : ",(";
        for (int c = 0; c < kColumnsPerRow; ++c) {
            sql += (c == 0 ? "$" : ",$") + std::to_string(++n);
        }
        sql += ")";
    }
    return sql + " ON CONFLICT DO NOTHING";
}

void addRow(PgParams& p, const std::string& station, const std::string& journal, const JournalEvent& e)
{
    p.Text(station);
    p.Text(journal);
    p.Int(e.id);
    p.Int(e.time);
    p.Text(e.deviceId);
    p.Text(e.deviceName);
    p.Text(e.cameraId);
    p.Text(e.cameraName);
    p.Int(e.eventCode);
    p.Int(e.kind);
    p.Int(e.popType);
    p.Int(e.maskType);
    p.Int(e.temperatureType);
    p.Int(e.alarmType);
    if (e.temperatureMeasured)
        p.Real(e.temperature);
    else
        p.Null();
    p.Int(e.temperatureUnit);
    p.Int(e.mask);
    p.Text(e.personName);
    p.Text(e.library);
    p.Real(e.similarity);
    p.Int(e.shown);
    p.Bytes(e.faceJpeg);
}

// The journal file's identity: a damaged journal is moved aside by its writer
// and a new one started under the same name.
ino_t inodeOf(const QString& path)
{
    struct stat st {};
    return ::stat(QFile::encodeName(path).constData(), &st) == 0 ? st.st_ino : 0;
}

} // namespace

std::string CSiteReplicator::AckKey(const clientcommonlogical::SiteRecordConfig& site)
{
    return "site-acked:" + site.host + ":" + std::to_string(site.port) + "/" + site.database;
}

CSiteReplicator::CSiteReplicator(Options options)
    : m_options(std::move(options)), m_ackKey(AckKey(m_options.site))
{
    m_worker = std::thread([this] {
        pthread_setname_np(pthread_self(), "bt-siterecord");
        run();
    });
}

CSiteReplicator::~CSiteReplicator()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_stop.Raise();
    }
    m_wake.notify_all();
    if (m_worker.joinable())
        m_worker.join();
}

void CSiteReplicator::Notify()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_notified = true;
    }
    m_wake.notify_one();
}

bool CSiteReplicator::waitFor(int ms)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_wake.wait_for(lock, std::chrono::milliseconds(ms), [this] { return m_stop.IsRaised() || m_notified; });
    m_notified = false;
    return !m_stop.IsRaised();
}

void CSiteReplicator::setState(State state, const QString& reason)
{
    const State before = m_state.exchange(state);
    if (before == state)
        return;
    const std::string target = m_options.site.host + ":" + std::to_string(m_options.site.port) + "/"
        + m_options.site.database;
    if (state == State::Reachable) {
        BASE_LOG_INFO("site record %s reachable again; the station's backlog goes out", target.c_str());
    } else {
        m_sinceMs = QDateTime::currentMSecsSinceEpoch();
        // One line per episode; libpq's messages never carry the password.
        BASE_LOG_WARN("site record %s %s (%s); events are kept on this station until it takes them",
            target.c_str(), stateName(state), qUtf8Printable(reason));
    }
    if (m_options.onStateChanged)
        m_options.onStateChanged(state, state == State::Reachable ? 0 : m_sinceMs, reason);
}

void CSiteReplicator::run()
{
    CJournalDatabase journal;
    CSiteConnection server(m_options.site, m_stop);
    std::string journalId;
    ino_t journalInode = 0;
    bool schemaReady = false;
    const std::string insertFull = insertStatement(m_options.batchRows);
    while (!m_stop.IsRaised()) {
        if (!journal.IsOpen()) {
            if (!journal.Open(m_options.journalPath, CJournalDatabase::OpenMode::Update)) {
                waitFor(kOpenRetryMs);
                continue;
            }
            journalInode = inodeOf(m_options.journalPath);
            journalId = journal.State("journal");
            m_acked = std::stoll("0" + journal.State(m_ackKey));
        }
        std::vector<JournalEvent> rows;
        if (!journal.SelectAfter(m_acked, m_options.batchRows, [&](JournalEvent&& e) {
                rows.push_back(std::move(e));
                return true;
            })) {
            journal.Close();
            waitFor(kOpenRetryMs);
            continue;
        }
        if (rows.empty()) {
            waitFor(kIdlePollMs);
            if (inodeOf(m_options.journalPath) != journalInode)
                journal.Close();  // replaced: go on with the new file
            continue;
        }
        if (!server.IsOpen()) {
            schemaReady = false;
            if (!server.Connect(kConnectMs)) {
                if (server.failure() == CSiteConnection::Failure::Stopped)
                    break;
                const State s = stateOf(server.failure());
                setState(s, server.error());
                waitFor(s == State::Unreachable ? m_options.retryMs : m_options.configRetryMs);
                continue;
            }
        }
        if (!schemaReady) {
            QString why;
            if (!CSiteSchema::Migrate(server, why)) {
                if (server.failure() == CSiteConnection::Failure::Stopped)
                    break;
                const bool lost = !server.IsOpen() || server.failure() == CSiteConnection::Failure::Unreachable;
                setState(lost ? State::Unreachable : State::Refused, why);
                server.Close();
                waitFor(lost ? m_options.retryMs : m_options.configRetryMs);
                continue;
            }
            schemaReady = true;
        }
        PgParams params;
        for (const JournalEvent& e : rows)
            addRow(params, m_options.site.station, journalId, e);
        const bool full = int(rows.size()) == m_options.batchRows;
        if (!server.Exec(full ? insertFull : insertStatement(int(rows.size())), params, kInsertMs)) {
            if (server.failure() == CSiteConnection::Failure::Stopped)
                break;
            const bool lost = !server.IsOpen() || server.failure() == CSiteConnection::Failure::Unreachable;
            setState(lost ? State::Unreachable : State::Refused, server.error());
            server.Close();
            waitFor(lost ? m_options.retryMs : m_options.configRetryMs);
            continue;
        }
        setState(State::Reachable, QString());
        m_sent += int64_t(rows.size());
        m_acked = rows.back().id;
        // Not kept (the journal busy): the next batch or restart sends these
        // rows again, and the server keeps its one copy.
        journal.SetState(m_ackKey, std::to_string(m_acked.load()));
    }
}

} // namespace BodyTemperature
