#pragma once
// The screening journal writer: every accepted alarm becomes one row of an
// SQLite file of its own, written by an owned worker thread in batches
// (committed at least every kBatchMs), with old rows pruned in the background.
//
// Append() is called on the GUI thread and only queues. The worker encodes
// the face pictures, opens (and, when needed, reopens) the file and commits.
// A journal that cannot be written never stops the caller: the failure is
// handed once per episode to the failure callback (on the worker thread),
// the rows wait in a bounded queue and the worker retries. The destructor
// stops the worker after a last commit and joins it.
#include <QString>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "record/JournalEvent.h"

namespace BodyTemperature {

class CJournalDatabase;

class CEventJournal final {
public:
    static constexpr int kBatchMs = 250;
    static constexpr int kRetryMs = 5000;
    static constexpr int kMaxQueued = 50000;  // beyond this the oldest waiting rows are dropped

    enum class State { Failing, Recovered, Replaced };  // Replaced: a damaged file was moved aside

    struct Options {
        QString path;
        int retentionDays = 90;
        // Called on the worker thread when the state changes, with the reason.
        std::function<void(State state, const QString& reason)> onStateChanged;
        // Set while a site record takes the rows: the state key of what it
        // acknowledged; retention then never removes a row it has not taken.
        std::string keepAfterKey{};
        // Called on the worker thread after each commit (a site record's sender wakes up).
        std::function<void()> onCommitted{};
    };

    // The journal file in the per-user component folder.
    static QString DefaultPath();

    explicit CEventJournal(Options options);
    ~CEventJournal();
    CEventJournal(const CEventJournal&) = delete;
    CEventJournal& operator=(const CEventJournal&) = delete;

    void Append(JournalEvent event);
    // Blocks until everything appended so far is committed or has failed;
    // true when all of it is in the file (reports and tests).
    bool Flush(int timeoutMs = 10000);

    // Bound on the bytes the rows take in the file (0: none); the oldest rows
    // go first. Any thread; applied after the next commit.
    void SetSizeLimit(int64_t bytes) { m_sizeLimit = bytes; }

    bool IsFailing() const { return m_failing; }
    int64_t Written() const { return m_written; }
    int64_t Dropped() const { return m_dropped; }

    // Scales and encodes a face to a JPEG of at most JournalEvent::kMaxFaceBytes.
    static QByteArray EncodeFace(const QImage& face);

private:
    void run();
    bool ensureOpen(CJournalDatabase& db);
    void prune(CJournalDatabase& db);
    void pruneToSize(CJournalDatabase& db);
    void setFailing(const QString& reason);

    Options m_options;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_done;
    std::deque<JournalEvent> m_queue;   // guarded by m_mutex
    int64_t m_appended = 0;             // guarded by m_mutex
    int64_t m_settled = 0;              // guarded by m_mutex: committed or dropped
    std::atomic<bool> m_stop{false};
    std::atomic<bool> m_failing{false};
    std::atomic<int64_t> m_written{0};
    std::atomic<int64_t> m_dropped{0};
    std::atomic<int64_t> m_sizeLimit{0};
    std::thread m_worker;
};

} // namespace BodyTemperature
