#include "record/CSiteSchema.h"

#include "record/CSiteConnection.h"

namespace BodyTemperature {

namespace {

// Step i brings the server from version i to i + 1. Never edit a released
// step; add one and raise kVersion.
const char* const kSteps[] = {
    // 0 -> 1: the events of every station, keyed by where they were first written.
    "CREATE TABLE bt_events("
    " station text NOT NULL, journal text NOT NULL, event_id bigint NOT NULL,"
    " time bigint NOT NULL,"
    " device_id text, device_name text, camera_id text, camera_name text,"
    " event_code bigint, kind integer, pop_type integer, mask_type integer, temperature_type integer,"
    " alarm_type integer, temperature double precision, temperature_unit integer, mask integer,"
    " person_name text, library text, similarity double precision, shown integer NOT NULL DEFAULT 1,"
    " face bytea,"
    " stored_at timestamptz NOT NULL DEFAULT clock_timestamp(),"
    " seq bigint GENERATED ALWAYS AS IDENTITY,"
    " PRIMARY KEY(station, journal, event_id));"
    "CREATE INDEX bt_events_time ON bt_events(time)",
    // 1 -> 2: what the history's filters walk, newest first (each kind's
    // condition written exactly as the history queries write it), and the
    // arrival order live updates follow.
    "CREATE INDEX bt_events_station_time ON bt_events(station, time);"
    "CREATE INDEX bt_events_camera_time ON bt_events(camera_id, time);"
    "CREATE INDEX bt_events_abnormal ON bt_events(time) WHERE temperature_type = 0;"
    "CREATE INDEX bt_events_nomask ON bt_events(time) WHERE mask_type IN (0, 1);"
    "CREATE INDEX bt_events_normal ON bt_events(time) WHERE temperature_type IN (1, 2);"
    "CREATE INDEX bt_events_matched ON bt_events(time) WHERE kind IN (0, 1, 2) AND person_name <> '';"
    "CREATE INDEX bt_events_returning ON bt_events(time) WHERE kind = 5;"
    "CREATE UNIQUE INDEX bt_events_seq ON bt_events(seq)",
    // 2 -> 3: one station's rows, and its rows of one kind, in the full order
    // of a page (no sort step), so a station with few matching rows costs
    // next to nothing.
    "DROP INDEX bt_events_station_time;"
    "CREATE INDEX bt_events_station_order ON bt_events(station, time, event_id);"
    "CREATE INDEX bt_events_station_abnormal ON bt_events(station, time, event_id) WHERE temperature_type = 0;"
    "CREATE INDEX bt_events_station_nomask ON bt_events(station, time, event_id) WHERE mask_type IN (0, 1);"
    "CREATE INDEX bt_events_station_matched ON bt_events(station, time, event_id)"
    " WHERE kind IN (0, 1, 2) AND person_name <> '';"
    "CREATE INDEX bt_events_station_returning ON bt_events(station, time, event_id) WHERE kind = 5;"
    // Every statement that adds rows first takes one lock, held to its
    // commit: rows become visible in the order of their arrival number (seq),
    // so a reader following seq never passes a number whose row another
    // station is still to commit. The lock comes before any row's number.
    "CREATE FUNCTION bt_events_write_lock() RETURNS trigger LANGUAGE plpgsql AS"
    " 'BEGIN PERFORM pg_advisory_xact_lock(4242017029); RETURN NULL; END';"
    "CREATE TRIGGER bt_events_write_lock BEFORE INSERT ON bt_events"
    " FOR EACH STATEMENT EXECUTE FUNCTION bt_events_write_lock()",
    // 3 -> 4: every name and library ever stored (field 0 and 1), kept by a
    // trigger on each statement's new rows, so a text search matches a few
    // thousand short values and then walks only the matching values' rows,
    // each in time order, instead of reading the range row by row. Pruning
    // would leave values behind; a value with no row left only finds nothing.
    "CREATE TABLE bt_text_values(field smallint NOT NULL, value text NOT NULL, PRIMARY KEY(field, value));"
    "INSERT INTO bt_text_values SELECT DISTINCT 0, person_name FROM bt_events WHERE person_name <> '';"
    "INSERT INTO bt_text_values SELECT DISTINCT 1, library FROM bt_events WHERE library <> '';"
    "CREATE FUNCTION bt_events_text_values() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN"
    " INSERT INTO bt_text_values SELECT 0, person_name FROM new_rows WHERE person_name <> ''"
    " UNION SELECT 1, library FROM new_rows WHERE library <> '' ON CONFLICT DO NOTHING;"
    " RETURN NULL; END $$;"
    "CREATE TRIGGER bt_events_text_values AFTER INSERT ON bt_events REFERENCING NEW TABLE AS new_rows"
    " FOR EACH STATEMENT EXECUTE FUNCTION bt_events_text_values();"
    "CREATE INDEX bt_events_name ON bt_events(person_name, time) WHERE person_name <> '';"
    "CREATE INDEX bt_events_library ON bt_events(library, time) WHERE library <> ''",
};
static_assert(sizeof(kSteps) / sizeof(kSteps[0]) == CSiteSchema::kVersion, "one step per schema version");

// Any number that no other user of the database is likely to lock.
const char* const kLock = "SELECT pg_advisory_xact_lock(4242017028)";

} // namespace

bool CSiteSchema::Migrate(CSiteConnection& conn, QString& error, int target)
{
    auto failed = [&] {
        error = conn.error();
        if (conn.IsOpen())
            conn.ExecScript("ROLLBACK");
        return false;
    };
    if (!conn.ExecScript("BEGIN") || !conn.Exec(kLock)
        || !conn.ExecScript("CREATE TABLE IF NOT EXISTS bt_schema(version integer NOT NULL)"))
        return failed();
    const PgResult r = conn.Exec("SELECT COALESCE(MAX(version), 0) FROM bt_schema");
    if (!r)
        return failed();
    const int version = std::stoi("0" + CSiteConnection::Value(r, 0, 0));
    if (version > kVersion) {
        conn.ExecScript("ROLLBACK");
        error = QStringLiteral("the server's schema (version %1) is newer than this station's (%2)")
                    .arg(version)
                    .arg(kVersion);
        return false;
    }
    for (int step = version; step < target; ++step) {
        if (!conn.ExecScript(kSteps[step]))
            return failed();
    }
    if (version < target) {
        PgParams p;
        p.Int(target);
        if (!conn.ExecScript("DELETE FROM bt_schema") || !conn.Exec("INSERT INTO bt_schema VALUES($1)", p))
            return failed();
    }
    return conn.ExecScript("COMMIT") || failed();
}

} // namespace BodyTemperature
