#include "Sqlite3DO/CSQLite3Conn.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <cctype>
#include <memory>

namespace {

bool onlyBlanksAndComments(const char* p)
{
    while (p && *p) {
        if (std::isspace(static_cast<unsigned char>(*p)) || *p == ';') {
            ++p;
        } else if (p[0] == '-' && p[1] == '-') {
            while (*p && *p != '\n')
                ++p;
        } else if (p[0] == '/' && p[1] == '*') {
            p += 2;
            while (*p && !(p[0] == '*' && p[1] == '/'))
                ++p;
            if (*p)
                p += 2;
        } else {
            return false;
        }
    }
    return true;
}

struct StmtDeleter {
    void operator()(sqlite3_stmt* s) const { sqlite3_finalize(s); }
};

} // namespace

CSQLite3Conn::~CSQLite3Conn()
{
    Close();
}

void CSQLite3Conn::Open(const std::string& utf8Path, bool bCreate)
{
    Close();
    int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_FULLMUTEX;
    if (bCreate)
        flags |= SQLITE_OPEN_CREATE;
    sqlite3* db = nullptr;
    const int rc = sqlite3_open_v2(utf8Path.c_str(), &db, flags, nullptr);
    if (rc != SQLITE_OK) {
        const std::string message = db ? sqlite3_errmsg(db) : sqlite3_errstr(rc);
        sqlite3_close(db);
        throw CSQlite3Error(rc, "cannot open " + utf8Path + ": " + message);
    }
    sqlite3_busy_timeout(db, 1000);
    m_db = db;
}

void CSQLite3Conn::Close()
{
    if (m_db) {
        sqlite3_close_v2(m_db);
        m_db = nullptr;
    }
}

void CSQLite3Conn::Execute(const std::string& sql)
{
    run(sql, nullptr);
}

void CSQLite3Conn::Execute(const std::string& sql, CSQLite3Recordset& recordset)
{
    recordset.Clear();
    run(sql, &recordset);
}

void CSQLite3Conn::Begin() { run("BEGIN;", nullptr); }
void CSQLite3Conn::Commit() { run("COMMIT;", nullptr); }
void CSQLite3Conn::Rollback() { run("ROLLBACK;", nullptr); }

void CSQLite3Conn::run(const std::string& sql, CSQLite3Recordset* recordset)
{
    if (m_db == nullptr)
        throw CSQlite3Error(SQLITE_MISUSE, "connection is not open");
    sqlite3_stmt* raw = nullptr;
    const char* tail = nullptr;
    int rc = sqlite3_prepare_v2(m_db, sql.c_str(), static_cast<int>(sql.size()), &raw, &tail);
    std::unique_ptr<sqlite3_stmt, StmtDeleter> stmt(raw);
    if (rc != SQLITE_OK)
        throw CSQlite3Error(rc, sqlite3_errmsg(m_db));
    if (!onlyBlanksAndComments(tail))
        throw CSQlite3Error(SQLITE_MISUSE, "more than one statement in one call");
    if (!stmt)
        return; // blank text or a comment only
    if (recordset) {
        std::vector<std::string> names;
        const int columns = sqlite3_column_count(stmt.get());
        for (int i = 0; i < columns; ++i)
            names.emplace_back(sqlite3_column_name(stmt.get(), i));
        recordset->SetColumns(std::move(names));
    }
    while ((rc = sqlite3_step(stmt.get())) == SQLITE_ROW) {
        if (!recordset)
            continue;
        const int columns = sqlite3_column_count(stmt.get());
        std::vector<std::string> values;
        std::vector<bool> nulls;
        for (int i = 0; i < columns; ++i) {
            const unsigned char* text = sqlite3_column_text(stmt.get(), i);
            const int bytes = sqlite3_column_bytes(stmt.get(), i);
            nulls.push_back(text == nullptr);
            values.emplace_back(text ? reinterpret_cast<const char*>(text) : "", text ? static_cast<size_t>(bytes) : 0);
        }
        recordset->AppendRow(std::move(values), std::move(nulls));
    }
    if (rc != SQLITE_DONE)
        throw CSQlite3Error(rc, sqlite3_errmsg(m_db));
}

bool CSQLite3Conn::ProvisionFromScript(const std::string& utf8Path, const std::string& script)
{
    struct stat st {};
    if (::stat(utf8Path.c_str(), &st) == 0)
        return true;
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(utf8Path.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) != SQLITE_OK) {
        sqlite3_close(db);
        return false;
    }
    const bool ok = sqlite3_exec(db, script.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
    sqlite3_close(db);
    if (!ok)
        ::remove(utf8Path.c_str());
    return ok;
}
