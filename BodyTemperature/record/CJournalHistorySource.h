#pragma once
// The screening history of this station: pages of its own journal file,
// read through a read-only SQLite connection of its own (opened on first use
// on the query worker). Each selected camera and kind is one index-ordered
// branch of at most a page; the branches are merged by id, so no filter
// combination sorts more than a few pages of rows.
#include <QString>
#include <mutex>
#include <string>
#include <vector>

#include "record/IHistorySource.h"

struct sqlite3;

namespace BodyTemperature {

class CJournalHistorySource final : public IHistorySource {
public:
    explicit CJournalHistorySource(QString journalPath);
    ~CJournalHistorySource() override;
    CJournalHistorySource(const CJournalHistorySource&) = delete;
    CJournalHistorySource& operator=(const CJournalHistorySource&) = delete;

    bool IsSite() const override { return false; }
    Result Page(const HistoryFilter& filter, const HistoryKey* after, HistoryPage& page, QString& error) override;
    Result Newer(const HistoryFilter& filter, int64_t watermark, HistoryPage& page, QString& error) override;
    void Cancel() override;

    // A statement and its parameters (text, integer or real, in order).
    struct Query {
        struct Arg {
            enum class Type { Int, Real, Text } type = Type::Int;
            int64_t i = 0;
            double d = 0.0;
            std::string s;
        };
        std::string sql;
        std::vector<Arg> args;
    };
    // The page statement of a filter (also what the index tests explain).
    static Query PageQuery(const HistoryFilter& filter, const HistoryKey* after);
    static Query NewerQuery(const HistoryFilter& filter, int64_t watermark);

private:
    bool ensureOpen(QString& error);
    Result run(const Query& query, int pageSize, HistoryPage& page, QString& error);

    QString m_path;
    std::mutex m_mutex;        // guards m_db against Cancel() from another thread
    sqlite3* m_db = nullptr;   // opened and closed on the query worker
};

} // namespace BodyTemperature
