#include "record/CJournalDatabase.h"

#include <QDateTime>
#include <QFile>
#include <algorithm>
#include <sqlite3.h>

namespace BodyTemperature {

namespace {

// Each entry brings a file from version i to i + 1. Never edit a released
// step; add a new one and raise kSchemaVersion.
const char* const kMigrations[] = {
    // 0 -> 1: the event table.
    "CREATE TABLE events("
    " id INTEGER PRIMARY KEY,"
    " time INTEGER NOT NULL,"
    " device_id TEXT, device_name TEXT, camera_id TEXT, camera_name TEXT,"
    " event_code INTEGER, kind INTEGER,"
    " pop_type INTEGER, mask_type INTEGER, temperature_type INTEGER, alarm_type INTEGER,"
    " temperature REAL, temperature_unit INTEGER, mask INTEGER,"
    " person_name TEXT, library TEXT, similarity REAL,"
    " face BLOB);"
    "CREATE INDEX events_time ON events(time);",
    // 1 -> 2: how much the page's total rose (returning persons count once per open view).
    "ALTER TABLE events ADD COLUMN shown INTEGER NOT NULL DEFAULT 1;",
    // 2 -> 3: the history's filters. The time and the camera indexes carry
    // every filtered column, so a filter walks an index without reading the
    // table rows (which hold the faces); each kind has a partial index in
    // time order (its condition written exactly as the history writes it, or
    // SQLite will not use it); names and libraries have their own for the
    // text search, and the temperature in Celsius for a threshold few rows
    // reach. The time index is the first column of the new one.
    "DROP INDEX events_time;"
    "CREATE INDEX events_scan ON events(time, camera_id, kind, temperature_type, mask_type, temperature,"
    " temperature_unit, person_name, library);"
    "CREATE INDEX events_camera ON events(camera_id, time, kind, temperature_type, mask_type, temperature,"
    " temperature_unit, person_name, library);"
    "CREATE INDEX events_abnormal ON events(time) WHERE temperature_type = 0;"
    "CREATE INDEX events_nomask ON events(time) WHERE mask_type IN (0, 1);"
    "CREATE INDEX events_normal ON events(time) WHERE temperature_type IN (1, 2);"
    "CREATE INDEX events_matched ON events(time) WHERE kind IN (0, 1, 2) AND person_name <> '';"
    "CREATE INDEX events_name ON events(person_name, time) WHERE person_name <> '';"
    "CREATE INDEX events_library ON events(library, time) WHERE library <> '';"
    "CREATE INDEX events_returning ON events(time) WHERE kind = 5;"
    "CREATE INDEX events_celsius ON events((CASE temperature_unit WHEN 1 THEN (temperature - 32) / 1.8"
    " WHEN 2 THEN temperature - 273.15 ELSE temperature END), time) WHERE temperature IS NOT NULL;",
    // 3 -> 4: small state (what a site record acknowledged), and an identity that
    // keeps this file's row ids apart from those of a file that replaced it.
    "CREATE TABLE journal_state(key TEXT PRIMARY KEY, value TEXT NOT NULL);"
    "INSERT INTO journal_state VALUES('journal', lower(hex(randomblob(16))));",
    // 4 -> 5: every name and library ever recorded (field 0 and 1), kept by
    // a trigger, so a text search reads a few thousand short rows instead of
    // seeking through the indexes of a million events. Pruning leaves values
    // behind; a value with no event left only finds nothing.
    "CREATE TABLE text_values(field INTEGER NOT NULL, value TEXT NOT NULL, PRIMARY KEY(field, value)) WITHOUT ROWID;"
    "INSERT OR IGNORE INTO text_values SELECT 0, person_name FROM events WHERE person_name <> '';"
    "INSERT OR IGNORE INTO text_values SELECT 1, library FROM events WHERE library <> '';"
    "CREATE TRIGGER events_text_values AFTER INSERT ON events BEGIN"
    " INSERT OR IGNORE INTO text_values SELECT 0, NEW.person_name WHERE NEW.person_name <> '';"
    " INSERT OR IGNORE INTO text_values SELECT 1, NEW.library WHERE NEW.library <> '';"
    " END;",
};
static_assert(sizeof(kMigrations) / sizeof(kMigrations[0]) == CJournalDatabase::kSchemaVersion,
    "one migration step per schema version");


void bindText(sqlite3_stmt* st, int i, const std::string& s)
{
    sqlite3_bind_text(st, i, s.data(), int(s.size()), SQLITE_TRANSIENT);
}

std::string columnText(sqlite3_stmt* st, int i)
{
    const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(st, i));
    return p != nullptr ? std::string(p, size_t(sqlite3_column_bytes(st, i))) : std::string();
}

} // namespace

const char* const CJournalDatabase::kEventColumns =
    "id, time, device_id, device_name, camera_id, camera_name, event_code, kind, pop_type, mask_type,"
    " temperature_type, alarm_type, temperature, temperature_unit, mask, person_name, library, similarity, shown";

JournalEvent CJournalDatabase::ReadEvent(sqlite3_stmt* st)
{
    JournalEvent e;
    e.id = sqlite3_column_int64(st, 0);
    e.time = sqlite3_column_int64(st, 1);
    e.deviceId = columnText(st, 2);
    e.deviceName = columnText(st, 3);
    e.cameraId = columnText(st, 4);
    e.cameraName = columnText(st, 5);
    e.eventCode = uint32_t(sqlite3_column_int64(st, 6));
    e.kind = uint32_t(sqlite3_column_int(st, 7));
    e.popType = uint32_t(sqlite3_column_int(st, 8));
    e.maskType = uint32_t(sqlite3_column_int(st, 9));
    e.temperatureType = uint32_t(sqlite3_column_int(st, 10));
    e.alarmType = uint32_t(sqlite3_column_int(st, 11));
    e.temperatureMeasured = sqlite3_column_type(st, 12) != SQLITE_NULL;
    e.temperature = sqlite3_column_double(st, 12);
    e.temperatureUnit = uint32_t(sqlite3_column_int(st, 13));
    e.mask = uint32_t(sqlite3_column_int(st, 14));
    e.personName = columnText(st, 15);
    e.library = columnText(st, 16);
    e.similarity = sqlite3_column_double(st, 17);
    e.shown = sqlite3_column_int(st, 18);
    if (const void* blob = sqlite3_column_blob(st, 19))
        e.faceJpeg = QByteArray(static_cast<const char*>(blob), sqlite3_column_bytes(st, 19));
    return e;
}

CJournalDatabase::~CJournalDatabase()
{
    Close();
}

void CJournalDatabase::Close()
{
    if (m_insert != nullptr)
        sqlite3_finalize(m_insert);
    m_insert = nullptr;
    if (m_db != nullptr)
        sqlite3_close(m_db);
    m_db = nullptr;
}

bool CJournalDatabase::fail(const char* what)
{
    m_errorCode = m_db != nullptr ? sqlite3_extended_errcode(m_db) : SQLITE_CANTOPEN;
    m_error = QStringLiteral("%1: %2").arg(QString::fromLatin1(what),
        m_db != nullptr ? QString::fromUtf8(sqlite3_errmsg(m_db)) : QStringLiteral("no connection"));
    return false;
}

bool CJournalDatabase::exec(const char* sql)
{
    char* message = nullptr;
    if (sqlite3_exec(m_db, sql, nullptr, nullptr, &message) == SQLITE_OK)
        return true;
    sqlite3_free(message);
    return fail(sql);
}

bool CJournalDatabase::openFile(const QString& path, OpenMode mode)
{
    Close();
    const int flags = mode == OpenMode::Write  ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX
        : mode == OpenMode::Update             ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX
                                               : SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX;
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &m_db, flags, nullptr) != SQLITE_OK) {
        fail("open");
        Close();
        return false;
    }
    sqlite3_busy_timeout(m_db, 1000);
    return true;
}

bool CJournalDatabase::healthy()
{
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(m_db, "PRAGMA quick_check", -1, &st, nullptr) != SQLITE_OK)
        return fail("check");
    const int rc = sqlite3_step(st);
    const bool ok = rc == SQLITE_ROW && columnText(st, 0) == "ok";
    if (!ok && rc != SQLITE_ROW)
        fail("check");
    else if (!ok)
        m_error = QStringLiteral("check: %1").arg(QString::fromStdString(columnText(st, 0)));
    sqlite3_finalize(st);
    return ok;
}

void CJournalDatabase::moveAside(const QString& path)
{
    Close();
    const QString aside =
        path + QStringLiteral(".corrupt-") + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss"));
    QFile::remove(aside);
    if (QFile::rename(path, aside))
        m_movedAside = aside;
    else
        QFile::remove(path);
    // The side files belong to the old contents.
    QFile::remove(path + QStringLiteral("-wal"));
    QFile::remove(path + QStringLiteral("-shm"));
}

bool CJournalDatabase::migrate()
{
    sqlite3_stmt* st = nullptr;
    int version = -1;
    if (sqlite3_prepare_v2(m_db, "PRAGMA user_version", -1, &st, nullptr) == SQLITE_OK && sqlite3_step(st) == SQLITE_ROW)
        version = sqlite3_column_int(st, 0);
    sqlite3_finalize(st);
    if (version < 0)
        return fail("version");
    if (version > kSchemaVersion) {
        m_errorCode = SQLITE_MISMATCH;
        m_error = QStringLiteral("written by a newer version (schema %1)").arg(version);
        return false;
    }
    for (int step = version; step < kSchemaVersion; ++step) {
        if (!exec("BEGIN IMMEDIATE"))
            return false;
        const std::string bump = "PRAGMA user_version = " + std::to_string(step + 1);
        if (!exec(kMigrations[step]) || !exec(bump.c_str())) {
            sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
            return false;
        }
        if (!exec("COMMIT"))
            return false;
    }
    return true;
}

bool CJournalDatabase::Open(const QString& path, OpenMode mode)
{
    m_error.clear();
    m_errorCode = 0;
    m_movedAside.clear();
    if (!openFile(path, mode))
        return false;
    if (mode == OpenMode::Read)
        return true;
    if (mode == OpenMode::Update) {
        sqlite3_stmt* st = nullptr;
        int version = -1;
        if (sqlite3_prepare_v2(m_db, "PRAGMA user_version", -1, &st, nullptr) == SQLITE_OK
            && sqlite3_step(st) == SQLITE_ROW)
            version = sqlite3_column_int(st, 0);
        sqlite3_finalize(st);
        if (version == kSchemaVersion)
            return true;
        m_error = QStringLiteral("not ready (schema %1)").arg(version);
        Close();
        return false;
    }

    // A file that is not a database fails already here (SQLITE_NOTADB).
    bool usable = exec("PRAGMA journal_mode=WAL") && healthy();
    if (!usable) {
        const int code = m_errorCode & 0xff;
        if (code == SQLITE_BUSY || code == SQLITE_LOCKED || code == SQLITE_CANTOPEN || code == SQLITE_READONLY
            || code == SQLITE_FULL || code == SQLITE_IOERR) {
            Close();
            return false;  // not the file's fault: leave it alone
        }
        const QString why = m_error;
        moveAside(path);
        if (!openFile(path, mode) || !exec("PRAGMA journal_mode=WAL"))
            return false;
        m_error = why;
    }
    // A commit reaches the disk before the next batch starts: a power cut
    // loses at most the batch being written.
    if (!exec("PRAGMA synchronous=FULL") || !migrate()) {
        Close();
        return false;
    }
    const std::string sql = std::string("INSERT INTO events(time, device_id, device_name, camera_id, camera_name,"
                                        " event_code, kind, pop_type, mask_type, temperature_type, alarm_type,"
                                        " temperature, temperature_unit, mask, person_name, library, similarity,"
                                        " shown, face) VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)");
    if (sqlite3_prepare_v2(m_db, sql.c_str(), -1, &m_insert, nullptr) != SQLITE_OK) {
        fail("prepare");
        Close();
        return false;
    }
    return true;
}

bool CJournalDatabase::Insert(const std::vector<JournalEvent>& rows)
{
    if (m_db == nullptr || m_insert == nullptr)
        return fail("insert");
    if (!exec("BEGIN IMMEDIATE"))
        return false;
    for (const JournalEvent& e : rows) {
        sqlite3_stmt* st = m_insert;
        sqlite3_reset(st);
        sqlite3_bind_int64(st, 1, e.time);
        bindText(st, 2, e.deviceId);
        bindText(st, 3, e.deviceName);
        bindText(st, 4, e.cameraId);
        bindText(st, 5, e.cameraName);
        sqlite3_bind_int64(st, 6, e.eventCode);
        sqlite3_bind_int(st, 7, int(e.kind));
        sqlite3_bind_int(st, 8, int(e.popType));
        sqlite3_bind_int(st, 9, int(e.maskType));
        sqlite3_bind_int(st, 10, int(e.temperatureType));
        sqlite3_bind_int(st, 11, int(e.alarmType));
        if (e.temperatureMeasured)
            sqlite3_bind_double(st, 12, e.temperature);
        else
            sqlite3_bind_null(st, 12);
        sqlite3_bind_int(st, 13, int(e.temperatureUnit));
        sqlite3_bind_int(st, 14, int(e.mask));
        bindText(st, 15, e.personName);
        bindText(st, 16, e.library);
        sqlite3_bind_double(st, 17, e.similarity);
        sqlite3_bind_int(st, 18, e.shown);
        if (e.faceJpeg.isEmpty())
            sqlite3_bind_null(st, 19);
        else
            sqlite3_bind_blob(st, 19, e.faceJpeg.constData(), e.faceJpeg.size(), SQLITE_STATIC);
        if (sqlite3_step(st) != SQLITE_DONE) {
            fail("insert");
            sqlite3_reset(st);
            sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
            return false;
        }
    }
    sqlite3_reset(m_insert);
    if (exec("COMMIT"))
        return true;
    const QString why = m_error;
    const int code = m_errorCode;
    sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
    m_error = why;
    m_errorCode = code;
    return false;
}

int CJournalDatabase::PruneBefore(int64_t before, const std::string& keepAfterKey)
{
    if (m_db == nullptr)
        return -1;
    const char* sql = keepAfterKey.empty()
        ? "DELETE FROM events WHERE time < ?"
        : "DELETE FROM events WHERE time < ? AND id < (SELECT MAX(id) FROM events)"
          " AND id <= COALESCE((SELECT CAST(value AS INTEGER) FROM journal_state WHERE key = ?), 0)";
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(m_db, sql, -1, &st, nullptr) != SQLITE_OK)
        return fail("prune"), -1;
    sqlite3_bind_int64(st, 1, before);
    if (!keepAfterKey.empty())
        bindText(st, 2, keepAfterKey);
    const int rc = sqlite3_step(st);
    sqlite3_finalize(st);
    if (rc != SQLITE_DONE)
        return fail("prune"), -1;
    return sqlite3_changes(m_db);
}

int64_t CJournalDatabase::UsedBytes()
{
    if (m_db == nullptr)
        return -1;
    auto value = [this](const char* sql) -> int64_t {
        sqlite3_stmt* st = nullptr;
        int64_t v = -1;
        if (sqlite3_prepare_v2(m_db, sql, -1, &st, nullptr) == SQLITE_OK && sqlite3_step(st) == SQLITE_ROW)
            v = sqlite3_column_int64(st, 0);
        sqlite3_finalize(st);
        return v;
    };
    const int64_t pages = value("PRAGMA page_count");
    const int64_t free = value("PRAGMA freelist_count");
    const int64_t size = value("PRAGMA page_size");
    if (pages < 0 || free < 0 || size < 0)
        return fail("size"), -1;
    return (pages - free) * size;
}

int CJournalDatabase::PruneToSize(int64_t bytes, const std::string& keepAfterKey)
{
    const char* sql = keepAfterKey.empty()
        ? "DELETE FROM events WHERE id IN (SELECT id FROM events ORDER BY time, id LIMIT ?)"
        : "DELETE FROM events WHERE id IN (SELECT id FROM events WHERE id < (SELECT MAX(id) FROM events)"
          " AND id <= COALESCE((SELECT CAST(value AS INTEGER) FROM journal_state WHERE key = ?2), 0)"
          " ORDER BY time, id LIMIT ?1)";
    sqlite3_stmt* st = nullptr;
    if (m_db == nullptr || sqlite3_prepare_v2(m_db, sql, -1, &st, nullptr) != SQLITE_OK)
        return fail("prune"), -1;
    int removed = 0;
    // Rows differ in size (faces): remove by the average, look again.
    for (int round = 0; round < 16; ++round) {
        const int64_t used = UsedBytes();
        const int64_t rows = Count(INT64_MIN, INT64_MAX);
        if (used < 0 || rows < 0) {
            removed = -1;
            break;
        }
        if (used <= bytes || rows == 0)
            break;
        const int64_t perRow = std::max<int64_t>(1, used / rows);
        sqlite3_reset(st);
        sqlite3_bind_int64(st, 1, std::max<int64_t>(1, (used - bytes + perRow - 1) / perRow));
        if (!keepAfterKey.empty())
            bindText(st, 2, keepAfterKey);
        if (sqlite3_step(st) != SQLITE_DONE) {
            fail("prune");
            removed = -1;
            break;
        }
        const int changes = sqlite3_changes(m_db);
        removed += changes;
        if (changes == 0)  // what is left waits for the site record
            break;
    }
    sqlite3_finalize(st);
    return removed;
}

// Steps a prepared statement of kEventColumns rows, hands each on until the
// callback says stop, and finalizes it.
bool CJournalDatabase::readRows(sqlite3_stmt* st, const std::function<bool(JournalEvent&&)>& row)
{
    int rc;
    while ((rc = sqlite3_step(st)) == SQLITE_ROW) {
        if (!row(ReadEvent(st)))
            break;
    }
    const bool ok = rc == SQLITE_ROW || rc == SQLITE_DONE;
    if (!ok)
        fail("select");
    sqlite3_finalize(st);
    return ok;
}

bool CJournalDatabase::Select(int64_t from, int64_t to, Rows rows, const std::function<bool(JournalEvent&&)>& row)
{
    if (m_db == nullptr)
        return fail("select");
    // The same rules as JournalEvent::countsAbnormal / countsNoMask.
    const bool flagged = rows == Rows::Flagged;
    const std::string sql = std::string("SELECT ") + kEventColumns + (rows != Rows::All ? ", face" : ", NULL")
        + " FROM events WHERE time >= ? AND time < ?"
        + (flagged ? " AND (temperature_type = 0 OR mask_type IN (0, 1))" : "") + " ORDER BY time, id";
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(m_db, sql.c_str(), -1, &st, nullptr) != SQLITE_OK)
        return fail("select");
    sqlite3_bind_int64(st, 1, from);
    sqlite3_bind_int64(st, 2, to);
    return readRows(st, row);
}

bool CJournalDatabase::SelectAfter(int64_t afterId, int limit, const std::function<bool(JournalEvent&&)>& row)
{
    if (m_db == nullptr)
        return fail("select");
    const std::string sql =
        std::string("SELECT ") + kEventColumns + ", face FROM events WHERE id > ? ORDER BY id LIMIT ?";
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(m_db, sql.c_str(), -1, &st, nullptr) != SQLITE_OK)
        return fail("select");
    sqlite3_bind_int64(st, 1, afterId);
    sqlite3_bind_int(st, 2, limit);
    return readRows(st, row);
}

std::string CJournalDatabase::State(const std::string& key)
{
    sqlite3_stmt* st = nullptr;
    if (m_db == nullptr
        || sqlite3_prepare_v2(m_db, "SELECT value FROM journal_state WHERE key = ?", -1, &st, nullptr) != SQLITE_OK)
        return fail("state"), std::string();
    bindText(st, 1, key);
    std::string value = sqlite3_step(st) == SQLITE_ROW ? columnText(st, 0) : std::string();
    sqlite3_finalize(st);
    return value;
}

bool CJournalDatabase::SetState(const std::string& key, const std::string& value)
{
    sqlite3_stmt* st = nullptr;
    if (m_db == nullptr
        || sqlite3_prepare_v2(m_db, "INSERT OR REPLACE INTO journal_state(key, value) VALUES(?, ?)", -1, &st, nullptr)
            != SQLITE_OK)
        return fail("state");
    bindText(st, 1, key);
    bindText(st, 2, value);
    const int rc = sqlite3_step(st);
    sqlite3_finalize(st);
    return rc == SQLITE_DONE || fail("state");
}

int64_t CJournalDatabase::Count(int64_t from, int64_t to)
{
    if (m_db == nullptr)
        return -1;
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(m_db, "SELECT COUNT(*) FROM events WHERE time >= ? AND time < ?", -1, &st, nullptr)
        != SQLITE_OK)
        return fail("count"), -1;
    sqlite3_bind_int64(st, 1, from);
    sqlite3_bind_int64(st, 2, to);
    const int64_t n = sqlite3_step(st) == SQLITE_ROW ? sqlite3_column_int64(st, 0) : -1;
    sqlite3_finalize(st);
    return n;
}

} // namespace BodyTemperature
