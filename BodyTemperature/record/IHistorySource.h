#pragma once
// Where the screening history reads its rows: the station's own journal
// (CJournalHistorySource) or the site record every station writes to.
//
// A source is created on the GUI thread, handed to the history view's query
// worker and used from that thread only, except Cancel(), which any thread
// may call to abort the query in flight (it then fails with Cancelled and the
// next call works normally). The owner destroys the source after joining the
// worker.
#include <QString>
#include <cstdint>

#include "record/HistoryFilter.h"
#include "record/HistoryRow.h"

namespace BodyTemperature {

class IHistorySource {
public:
    enum class Result { Ok, Cancelled, Failed };

    virtual ~IHistorySource() = default;

    // True for a source holding several stations' rows (the view then shows
    // a station column).
    virtual bool IsSite() const = 0;

    // The rows matching `filter`, newest first, starting just past `after`
    // (nullptr: from the newest). At most filter.pageSize rows; page.hasMore
    // when more follow. `error` is set (untranslated, for the log) on Failed.
    virtual Result Page(const HistoryFilter& filter, const HistoryKey* after, HistoryPage& page, QString& error) = 0;

    // The rows matching `filter` written after `watermark` (a previous page's),
    // newest first, at most filter.pageSize; page.watermark moves on. What
    // live updates use.
    virtual Result Newer(const HistoryFilter& filter, int64_t watermark, HistoryPage& page, QString& error) = 0;

    // Any thread: aborts the query in flight, if any.
    virtual void Cancel() = 0;
};

} // namespace BodyTemperature
