#pragma once
// The screening history of the whole site: pages of the site record on the
// PostgreSQL server, every station's rows with the station named. One
// connection of its own, opened on first use on the query worker and kept;
// Cancel() wakes the worker's wait on the server at once, the connection is
// dropped (the server stops the statement within a second) and the next
// query connects again.
#include <QString>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "clientcommonlogical/CConfigMgr.h"
#include "record/CSiteConnection.h"
#include "record/IHistorySource.h"

namespace BodyTemperature {

class CSiteHistorySource final : public IHistorySource {
public:
    explicit CSiteHistorySource(clientcommonlogical::SiteRecordConfig site);
    ~CSiteHistorySource() override;
    CSiteHistorySource(const CSiteHistorySource&) = delete;
    CSiteHistorySource& operator=(const CSiteHistorySource&) = delete;

    bool IsSite() const override { return true; }
    Result Page(const HistoryFilter& filter, const HistoryKey* after, HistoryPage& page, QString& error) override;
    Result Newer(const HistoryFilter& filter, int64_t watermark, HistoryPage& page, QString& error) override;
    void Cancel() override;

    // Every row matching `filter`, oldest first, handed to `take` one at a
    // time (false stops the walk), read in pages so a long range never sits
    // in memory. What the whole site's shift report reads. Blocking; any
    // thread that owns the source.
    Result Scan(const HistoryFilter& filter, const std::function<bool(HistoryRow&&)>& take, QString& error);

    // A statement and its parameters, in order (also what the bench explains).
    struct Query {
        std::string sql;
        PgParams params;
        bool stationBranches = false;  // one branch per station (read without incremental sorts)
    };
    // The person names and libraries containing a filter's text.
    struct TextValues {
        std::vector<std::string> names;
        std::vector<std::string> libraries;
    };
    // More values than this: the text is common, and a walk in time order
    // meets its rows soon.
    static constexpr int kMaxTextValues = 200;
    // `text`: the values the filter's text was found in, each walked in its
    // own index; nullptr to match the text row by row.
    static Query PageQuery(const HistoryFilter& filter, const HistoryKey* after, const TextValues* text = nullptr);
    static Query NewerQuery(const HistoryFilter& filter, int64_t watermark);
    static Query ScanQuery(const HistoryFilter& filter, const HistoryKey* after, const TextValues* text = nullptr);
    // The values containing `text` (field 0 a name, 1 a library), at most kMaxTextValues + 1.
    static Query TextValuesQuery(const std::string& text);

private:
    Result run(const Query& query, int pageSize, HistoryPage& page, QString& error);
    // Ok with `values` set when the filter has a text whose values are few
    // enough to walk one by one; unset, the text is matched row by row.
    Result findText(const HistoryFilter& filter, std::optional<TextValues>& values, QString& error);
    Result failed(QString& error);

    CStopSignal m_cancel;
    CSiteConnection m_conn;
};

} // namespace BodyTemperature
