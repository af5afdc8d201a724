#pragma once
// One SQLite connection to the screening journal file: opening (WAL, schema
// created or migrated through PRAGMA user_version), a corrupt file moved aside
// and replaced, and the row statements the writer and the reports share.
// Not thread-safe: each thread that needs the journal opens its own.
#include <QString>
#include <functional>
#include <string>
#include <vector>

#include "record/JournalEvent.h"

struct sqlite3;
struct sqlite3_stmt;

namespace BodyTemperature {

class CJournalDatabase final {
public:
    static constexpr int kSchemaVersion = 5;

    // Update: reads and writes a file the writer already created at this
    // schema version (no creation, check or migration), for a second thread.
    enum class OpenMode { Write, Read, Update };

    CJournalDatabase() = default;
    ~CJournalDatabase();
    CJournalDatabase(const CJournalDatabase&) = delete;
    CJournalDatabase& operator=(const CJournalDatabase&) = delete;

    // Write: creates or migrates the schema; a file that is not a database or
    // fails its check is renamed "<path>.corrupt-<time>" and a new one started
    // (movedAside() then names it). False with error() when it cannot be used.
    bool Open(const QString& path, OpenMode mode);
    void Close();
    bool IsOpen() const { return m_db != nullptr; }

    // Inserts the rows in one transaction; false (nothing kept) on failure.
    bool Insert(const std::vector<JournalEvent>& rows);
    // Deletes rows older than `before` (seconds since 1970); the count removed,
    // -1 on failure. With keepAfterKey, rows above the id that state value
    // names are kept, and so is the newest row (ids then never restart).
    int PruneBefore(int64_t before, const std::string& keepAfterKey = std::string());
    // Bytes the rows take in the file: its pages less the free ones, which
    // later rows reuse. -1 on failure.
    int64_t UsedBytes();
    // Deletes the oldest rows until the rows take at most `bytes`; the count
    // removed, -1 on failure. keepAfterKey as for PruneBefore: rows a site
    // record has not taken yet stay even when the bound is passed.
    int PruneToSize(int64_t bytes, const std::string& keepAfterKey = std::string());

    // All leaves faceJpeg empty; Flagged: abnormal temperature or no mask, with faces.
    enum class Rows { All, AllWithFaces, Flagged };
    // Rows with from <= time < to, oldest first, handed one by one to `row`
    // (return false to stop).
    bool Select(int64_t from, int64_t to, Rows rows, const std::function<bool(JournalEvent&&)>& row);
    int64_t Count(int64_t from, int64_t to);
    // Up to `limit` rows with id > afterId, in id order, with faces.
    bool SelectAfter(int64_t afterId, int limit, const std::function<bool(JournalEvent&&)>& row);

    // The file's small key/value state ("journal": this file's random identity).
    std::string State(const std::string& key);
    bool SetState(const std::string& key, const std::string& value);

    // The event columns in the order ReadEvent() expects them, followed in a
    // statement by the face (column 19, may be NULL). Also used by the history.
    static const char* const kEventColumns;
    static JournalEvent ReadEvent(sqlite3_stmt* st);

    QString error() const { return m_error; }
    int errorCode() const { return m_errorCode; }  // SQLite result code of the last failure
    QString movedAside() const { return m_movedAside; }

private:
    bool openFile(const QString& path, OpenMode mode);
    bool healthy();
    bool readRows(sqlite3_stmt* st, const std::function<bool(JournalEvent&&)>& row);
    bool migrate();
    bool exec(const char* sql);
    bool fail(const char* what);
    void moveAside(const QString& path);

    sqlite3* m_db = nullptr;
    sqlite3_stmt* m_insert = nullptr;
    QString m_error;
    int m_errorCode = 0;
    QString m_movedAside;
};

} // namespace BodyTemperature
