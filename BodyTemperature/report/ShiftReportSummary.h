#pragma once
// The figures of a shift report gathered in one pass over the journal rows of
// its range: the page's four counters, events per time bucket (an hour, or
// several when the range is long), and how many rows go into the table of
// abnormal and no-mask events. Plain value; used on the export worker.
#include <QDateTime>
#include <algorithm>
#include <cstdint>
#include <vector>

#include "record/JournalEvent.h"

namespace BodyTemperature {

struct ShiftReportSummary {
    static constexpr int kMaxBuckets = 48;

    ShiftReportSummary(const QDateTime& rangeFrom, const QDateTime& rangeTo)
        : from(rangeFrom), to(rangeTo)
    {
        const int64_t hours = std::max<int64_t>(1, (to.toSecsSinceEpoch() - from.toSecsSinceEpoch() + 3599) / 3600);
        bucketHours = int((hours + kMaxBuckets - 1) / kMaxBuckets);
        buckets.assign(size_t((hours + bucketHours - 1) / bucketHours), 0);
    }

    void Add(const JournalEvent& e)
    {
        counts.all += e.shown;
        counts.normal += e.countsNormal() ? 1 : 0;
        counts.abnormal += e.countsAbnormal() ? 1 : 0;
        counts.noMask += e.countsNoMask() ? 1 : 0;
        if (e.countsAbnormal() || e.countsNoMask())
            ++flagged;
        const int64_t i = (e.time - from.toSecsSinceEpoch()) / (3600 * int64_t(bucketHours));
        if (i >= 0 && i < int64_t(buckets.size()))
            buckets[size_t(i)] += e.shown;
    }

    struct Counts {
        int64_t all = 0;
        int64_t normal = 0;
        int64_t abnormal = 0;
        int64_t noMask = 0;
    };

    QDateTime from;
    QDateTime to;
    Counts counts;
    int64_t flagged = 0;
    int bucketHours = 1;
    std::vector<int64_t> buckets;
};

} // namespace BodyTemperature
