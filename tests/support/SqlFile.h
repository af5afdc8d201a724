#pragma once
// Raw SQL on a database file, outside the code under test: to build old, locked
// or hostile files and read back what the code wrote. Any thread.
#include <sqlite3.h>
#include <string>
#include <gtest/gtest.h>

namespace testsupport {

// Runs the statements on the file (UTF-8 path); a failure names the error.
inline bool sqlExec(const std::string& file, const std::string& sql)
{
    sqlite3* db = nullptr;
    sqlite3_open(file.c_str(), &db);
    char* error = nullptr;
    const bool ok = sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &error) == SQLITE_OK;
    EXPECT_TRUE(ok) << (error != nullptr ? error : "") << " in " << sql;
    sqlite3_free(error);
    sqlite3_close(db);
    return ok;
}

// One column of every row the query gives, a line between rows; a query that
// cannot run fails the test.
inline std::string sqlQuery(const std::string& file, const std::string& sql, int column = 0)
{
    sqlite3* db = nullptr;
    sqlite3_open(file.c_str(), &db);
    sqlite3_stmt* st = nullptr;
    std::string rows;
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &st, nullptr) != SQLITE_OK)
        ADD_FAILURE() << sqlite3_errmsg(db) << " in " << sql;
    for (bool first = true; st != nullptr && sqlite3_step(st) == SQLITE_ROW; first = false) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(st, column));
        rows += (first ? "" : "\n") + std::string(text != nullptr ? text : "NULL");
    }
    sqlite3_finalize(st);
    sqlite3_close(db);
    return rows;
}

} // namespace testsupport
