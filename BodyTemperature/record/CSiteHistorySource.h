#pragma once
// The screening history of the whole site: pages of the site record on the
// PostgreSQL server, every station's rows with the station named. One
// connection of its own, opened on first use on the query worker and kept;
// Cancel() wakes the worker's wait on the server at once, the connection is
// dropped (the server stops the statement within a second) and the next
// query connects again.
#include <QString>
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

    // A statement and its parameters, in order (also what the bench explains).
    struct Query {
        std::string sql;
        PgParams params;
    };
    static Query PageQuery(const HistoryFilter& filter, const HistoryKey* after);
    static Query NewerQuery(const HistoryFilter& filter, int64_t watermark);

private:
    Result run(const Query& query, int pageSize, HistoryPage& page, QString& error);

    CStopSignal m_cancel;
    CSiteConnection m_conn;
};

} // namespace BodyTemperature
