#pragma once
// Writes the shift report of a time range of the screening journal (or of
// the site record, every station's rows): a CSV
// file (UTF-8 with byte-order mark, one row per event) and/or a PDF (counters
// of the range, events per hour, the abnormal-temperature and no-mask events
// with their faces, page numbers). Texts in English or Chinese.
//
// Run() is blocking and meant for a worker thread; it opens its own read
// connection (to the journal or the server), checks `cancel` at each row and publishes its progress (0..1000).
// Files are written under a temporary name and renamed when complete, so a
// failed or cancelled export leaves nothing under the final name.
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <atomic>
#include <cstdint>
#include <memory>

#include "clientcommonlogical/CConfigMgr.h"
#include "record/HistoryFilter.h"

namespace BodyTemperature {

struct ShiftReportRequest {
    QString journalPath;
    QDateTime from;
    QDateTime to;
    QString folder;
    bool csv = true;
    bool pdf = true;
    int language = 2;  // 1 Chinese, anything else English
    // Set by the screening history's Export: only the rows of its filter
    // (within from..to) are written and counted.
    std::shared_ptr<const HistoryFilter> filter;
    // Set for the whole site's report: the rows of every station, read from
    // the site record, with a station column. Unset: this station's journal.
    std::shared_ptr<const clientcommonlogical::SiteRecordConfig> site;
};

class CShiftReportExporter final {
public:
    enum class Outcome { Written, Cancelled, Failed };
    struct Result {
        Outcome outcome = Outcome::Failed;
        QStringList files;  // final paths written
        QString error;      // translated, for the user
    };

    // The file name (without folder) of one format of a request.
    static QString FileName(const ShiftReportRequest& request, const QString& suffix);

    static Result Run(const ShiftReportRequest& request, const std::atomic<bool>& cancel, std::atomic<int>& progress);
};

} // namespace BodyTemperature
