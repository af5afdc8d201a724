#pragma once
// The screening history of this station: pages of its own journal file,
// read through a read-only SQLite connection of its own (opened on first use
// on the query worker). Each selected camera and kind is one index-ordered
// branch of at most a page; the branches are merged by id, so no filter
// combination sorts more than a few pages of rows. A text search first finds
// the names and libraries that contain it and walks those.
#include <QString>
#include <mutex>
#include <set>
#include <string>
#include <tuple>
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
    // The person names and libraries containing a filter's text.
    struct TextValues {
        std::vector<std::string> names;
        std::vector<std::string> libraries;
    };
    static constexpr size_t kMaxTextValues = 24;
    static constexpr int kMaxDistinctValues = 50000;

    // The page statement of a filter (also what the index tests explain);
    // `text`: the values its text was found in, or nullptr to match with LIKE.
    // `sparseThreshold`: fewer than kSparseThreshold rows of the range reach
    // the filter's threshold, so they are walked in the Celsius index.
    static Query PageQuery(const HistoryFilter& filter, const HistoryKey* after, const TextValues* text = nullptr,
        bool sparseThreshold = false);
    static constexpr int kSparseThreshold = 5000;
    static Query NewerQuery(const HistoryFilter& filter, int64_t watermark);

private:
    bool ensureOpen(QString& error);
    Result run(const Query& query, int pageSize, HistoryPage& page, QString& error);
    bool findText(const std::string& text, TextValues& values);

    bool refreshValues();
    bool thresholdIsSparse(const HistoryFilter& filter);

    // Every person name and library in the journal, kept up to date by the
    // rows written since (query worker only).
    struct ValueCache {
        bool built = false;
        bool tooMany = false;
        int64_t upTo = 0;
        std::set<std::string> names;
        std::set<std::string> libraries;
    };

    QString m_path;
    std::mutex m_mutex;        // guards m_db against Cancel() from another thread
    sqlite3* m_db = nullptr;   // opened and closed on the query worker
    ValueCache m_values;
    std::string m_text;        // the text m_textValues were found for
    bool m_textUsable = false;
    TextValues m_textValues;
    std::tuple<double, int64_t, int64_t> m_sparseFor{-1.0, 0, 0};  // threshold, from, to
    bool m_sparse = false;
};

} // namespace BodyTemperature
