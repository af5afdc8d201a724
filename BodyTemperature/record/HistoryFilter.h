#pragma once
// What the screening history asks for: a time range, cameras, kinds, a
// temperature threshold, a name/ID text and the page size. Plain value, built
// on the GUI thread and handed by copy to the query worker; every history
// source (the station's journal, the site record) reads it the same way.
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace BodyTemperature {

struct HistoryFilter {
    // Kinds an event can be listed under; an event may be several at once
    // (an abnormal temperature without a mask).
    enum Kind : uint32_t {
        KindAbnormal = 1,   // temperature_type 0
        KindNoMask = 2,     // mask_type 0 or 1
        KindNormal = 4,     // temperature_type 1 or 2
        KindMatched = 8,    // comparison (kind 0..2) with a person name
        KindReturning = 16, // kind 5
        AllKinds = 31
    };

    int64_t from = 0;                                   // seconds since 1970 (UTC), inclusive
    int64_t to = std::numeric_limits<int64_t>::max();   // exclusive
    std::vector<std::string> cameraIds;                 // empty: every camera
    uint32_t kinds = 0;                                 // OR of Kind; 0 or AllKinds: every event
    bool thresholdOn = false;
    double thresholdCelsius = 0.0;  // measured temperature, converted to Celsius, at least this
    std::string text;               // non-empty: person name or library contains it (ASCII case-insensitive)
    std::vector<std::string> stations;  // site scope: empty means every station; a station's own journal ignores it
    int pageSize = 50;

    bool everyKind() const { return kinds == 0 || (kinds & AllKinds) == AllKinds; }
};

// A row's place in the newest-first order: time descending, then station
// ascending, then id descending. A page "after" a key starts just past it.
struct HistoryKey {
    int64_t time = 0;
    int64_t id = 0;
    std::string station;  // empty for a station's own journal
};

} // namespace BodyTemperature
