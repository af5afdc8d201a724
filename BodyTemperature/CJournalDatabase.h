#pragma once
// One SQLite connection to the screening journal file: opening (WAL, schema
// created or migrated through PRAGMA user_version), a corrupt file moved aside
// and replaced, and the row statements the writer and the reports share.
// Not thread-safe: each thread that needs the journal opens its own.
#include <QString>
#include <functional>
#include <string>
#include <vector>

#include "JournalEvent.h"

struct sqlite3;
struct sqlite3_stmt;

namespace BodyTemperature {

class CJournalDatabase final {
public:
    static constexpr int kSchemaVersion = 2;

    enum class OpenMode { Write, Read };

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
    // Deletes rows older than `before` (seconds since 1970); the count removed, -1 on failure.
    int PruneBefore(int64_t before);
    // Bytes the rows take in the file: its pages less the free ones, which
    // later rows reuse. -1 on failure.
    int64_t UsedBytes();
    // Deletes the oldest rows until the rows take at most `bytes`; the count
    // removed, -1 on failure.
    int PruneToSize(int64_t bytes);

    // All leaves faceJpeg empty; Flagged: abnormal temperature or no mask, with faces.
    enum class Rows { All, AllWithFaces, Flagged };
    // Rows with from <= time < to, oldest first, handed one by one to `row`
    // (return false to stop).
    bool Select(int64_t from, int64_t to, Rows rows, const std::function<bool(JournalEvent&&)>& row);
    int64_t Count(int64_t from, int64_t to);

    QString error() const { return m_error; }
    int errorCode() const { return m_errorCode; }  // SQLite result code of the last failure
    QString movedAside() const { return m_movedAside; }

private:
    bool openFile(const QString& path, OpenMode mode);
    bool healthy();
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
