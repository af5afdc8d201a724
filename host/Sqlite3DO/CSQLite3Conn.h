#pragma once
// Host wrapper of one SQLite connection. Not locked: callers that share a
// connection between threads serialise the calls themselves. Every failure
// throws CSQlite3Error.
//
// Execute() runs exactly one statement: text after the first statement (other
// than blanks and comments) is refused before anything runs, so a value that
// was pasted into the text can never smuggle in a second statement.
#include <string>

#include "Sqlite3DO/CSQLite3Recordset.h"
#include "Sqlite3DO/CSQlite3Error.h"

struct sqlite3;

class CSQLite3Conn {
public:
    CSQLite3Conn() = default;
    ~CSQLite3Conn();
    CSQLite3Conn(const CSQLite3Conn&) = delete;
    CSQLite3Conn& operator=(const CSQLite3Conn&) = delete;

    // utf8Path: the database file. bCreate: create the file when it is missing.
    void Open(const std::string& utf8Path, bool bCreate);
    void Close();
    bool IsOpen() const { return m_db != nullptr; }

    void Execute(const std::string& sql);
    void Execute(const std::string& sql, CSQLite3Recordset& recordset);
    void Begin();
    void Commit();
    void Rollback();

    // Creates the database file from a schema script (several statements)
    // when the file does not exist yet. Returns true when the file exists afterwards.
    static bool ProvisionFromScript(const std::string& utf8Path, const std::string& script);

private:
    void run(const std::string& sql, CSQLite3Recordset* recordset);
    sqlite3* m_db = nullptr;
};
