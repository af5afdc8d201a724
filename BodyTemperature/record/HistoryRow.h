#pragma once
// One row of the screening history and one page of them. Plain values made
// by a history source on the query worker and handed to the GUI thread.
#include <cstdint>
#include <string>
#include <vector>

#include "record/JournalEvent.h"
#include "record/HistoryFilter.h"

namespace BodyTemperature {

struct HistoryRow {
    std::string station;  // the station that recorded it (site scope); empty for the own journal
    JournalEvent event;   // as journaled; faceJpeg is the small face picture (may be empty)

    HistoryKey key() const { return HistoryKey{event.time, event.id, station}; }
};

struct HistoryPage {
    std::vector<HistoryRow> rows;  // newest first, at most the filter's page size
    bool hasMore = false;          // more rows follow the last one
    // The source's write position when the page was read (a journal row id,
    // a server sequence): Newer() returns what was written after it.
    int64_t watermark = 0;
};

} // namespace BodyTemperature
