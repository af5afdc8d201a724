#pragma once
// The settings connection: one SQLite file "BodyTemperature" in the user's
// component folder, table TemperatureConfigure with a single row.
// Any thread may call: each statement runs under the connection's PRT_Mutex,
// and a save holds it across its two statements, so that two savers never
// leave two rows. A save is a plain delete (its result ignored) and insert,
// not a transaction: a failed insert leaves the table empty and the next load
// keeps the defaults. That is the behaviour existing installations and the
// settings pages rely on; the pages tell the user of a failed save, so failed
// statements return false without a log line. Logged: a file that cannot be
// opened, and a stored pop-up duration outside the pages' limits (-1,
// 1..1800), which loads as the default.
#include <string>

#include "AlarmDisplayConfig.h"
#include "Base/PRT_Mutex.h"
#include "Sqlite3DO/CSQLite3Conn.h"

namespace BodyTemperature {

class CBTConfigDB final {
public:
    // The process-wide connection, created and opened on first use.
    static CBTConfigDB* Instance();
    // The file the instance opens: component folder + "BodyTemperature".
    static std::string DatabasePath();
    // Creates the database file with its table when the file is missing
    // (first run). Never touches an existing file.
    static bool Provision(const std::string& utf8Path);

    explicit CBTConfigDB(const std::string& utf8Path);
    ~CBTConfigDB();

    bool Execute(const std::string& sql);
    bool Execute(const std::string& sql, CSQLite3Recordset& recordset);
    // Forwards to the connection's BEGIN and COMMIT, for callers that need
    // one; the settings operations above do not use them.
    bool BeginTransaction();
    bool CommitTransaction();

    bool LoadAlarmDisplayConfig(AlarmDisplayConfig& config);
    bool SaveAlarmDisplayConfig(const AlarmDisplayConfig& config);

    bool IsOpen() const { return m_conn.IsOpen(); }

private:
    PRT_Mutex m_mutex;
    CSQLite3Conn m_conn;
};

} // namespace BodyTemperature
