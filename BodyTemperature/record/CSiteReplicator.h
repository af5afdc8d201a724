#pragma once
// Sends the station's journal to the site record: an owned worker thread
// ("bt-siterecord") reads the rows the server has not yet acknowledged, in
// id order, and inserts them in batches keyed by (station, journal, event
// id), so that a batch sent twice (the answer lost with a server that died)
// is stored once. After each batch the highest id the server took is kept in
// the journal (state key AckKey()); the journal's retention keeps every row
// above it. A server that is down, slow or restarted only delays the rows:
// the worker reconnects and goes on from the acknowledged id.
//
// Created and destroyed by CScreeningRecord on the GUI thread; Notify() from
// any thread (the journal's writer after a commit). The state callback runs
// on the worker. The destructor stops the worker within milliseconds (a
// statement or connection in flight is cut off) and joins it.
#include <QString>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "clientcommonlogical/CConfigMgr.h"
#include "record/CSiteConnection.h"

namespace BodyTemperature {

class CSiteReplicator final {
public:
    // Reachable: rows go out; the others name why they do not.
    enum class State { Reachable, Unreachable, Rejected, Untrusted, Refused };

    struct Options {
        clientcommonlogical::SiteRecordConfig site;
        QString journalPath;
        int batchRows = 200;
        int retryMs = 2000;          // after the server could not be reached
        int configRetryMs = 30000;   // after it refused the station (password, certificate, schema)
        std::function<void(State state, int64_t sinceMs, const QString& reason)> onStateChanged{};
    };

    // The journal state key of what this site record acknowledged.
    static std::string AckKey(const clientcommonlogical::SiteRecordConfig& site);

    explicit CSiteReplicator(Options options);
    ~CSiteReplicator();
    CSiteReplicator(const CSiteReplicator&) = delete;
    CSiteReplicator& operator=(const CSiteReplicator&) = delete;

    // New rows are in the journal.
    void Notify();

    int64_t Acknowledged() const { return m_acked; }  // highest journal id the server took
    int64_t Sent() const { return m_sent; }            // rows sent since start (repeats included)
    State state() const { return m_state; }

private:
    void run();
    void setState(State state, const QString& reason);
    bool waitFor(int ms);  // false when stopping

    Options m_options;
    std::string m_ackKey;
    CStopSignal m_stop;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_notified = false;  // guarded by m_mutex
    std::atomic<int64_t> m_acked{0};
    std::atomic<int64_t> m_sent{0};
    std::atomic<State> m_state{State::Reachable};
    int64_t m_sinceMs = 0;  // worker only
    std::thread m_worker;
};

} // namespace BodyTemperature
