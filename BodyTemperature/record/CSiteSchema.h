#pragma once
// The site record's tables on the server, created and brought up to date by
// whichever station connects first (one step per version, recorded in
// bt_schema; stations that connect together wait on one advisory lock).
// Called by the replicator's worker on a fresh connection.
#include <QString>

namespace BodyTemperature {

class CSiteConnection;

class CSiteSchema final {
public:
    static constexpr int kVersion = 4;

    // Brings the schema to `target` (the current version by default); false
    // with the connection's error, or when the server's schema is newer than
    // this station knows (then `error` says so).
    static bool Migrate(CSiteConnection& conn, QString& error, int target = kVersion);
};

} // namespace BodyTemperature
