#pragma once
// The settings connection: one SQLite file "BodyTemperature" in the user's
// component folder, table TemperatureConfigure with a single row.
// Any thread may call: each statement runs under the connection's PRT_Mutex,
// and a save holds it across its delete and insert, which run in one
// transaction: a failed save leaves the previous row as it was. Failures
// return false and are logged. A stored pop-up duration outside the pages'
// limits (-1, 1..1800) loads as the default.
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
