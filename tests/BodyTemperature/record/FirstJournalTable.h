#pragma once
// The journal's table and index as the first release created them: where the
// schema-migration tests start from.
inline constexpr char kFirstJournalTable[] =
    "CREATE TABLE events(id INTEGER PRIMARY KEY, time INTEGER NOT NULL, device_id TEXT,"
    " device_name TEXT, camera_id TEXT, camera_name TEXT, event_code INTEGER, kind INTEGER,"
    " pop_type INTEGER, mask_type INTEGER, temperature_type INTEGER, alarm_type INTEGER,"
    " temperature REAL, temperature_unit INTEGER, mask INTEGER, person_name TEXT, library TEXT,"
    " similarity REAL, face BLOB); CREATE INDEX events_time ON events(time);";
