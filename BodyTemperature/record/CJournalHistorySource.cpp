#include "record/CJournalHistorySource.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <iterator>
#include <optional>
#include <set>
#include <sqlite3.h>

#include "record/CJournalDatabase.h"
#include "record/HistoryMatch.h"

namespace BodyTemperature {

namespace {

using Query = CJournalHistorySource::Query;
using Arg = Query::Arg;

// Written exactly as the journal's Celsius index writes it.
const char* const kThresholdTerm = "temperature IS NOT NULL AND (CASE temperature_unit WHEN 1 THEN (temperature - 32)"
                                   " / 1.8 WHEN 2 THEN temperature - 273.15 ELSE temperature END) >= ?";

// Beyond this many cameras a single IN list replaces one branch per camera.
constexpr size_t kMaxCameraBranches = 16;

Arg intArg(int64_t v)
{
    Arg a;
    a.i = v;
    return a;
}

Arg textArg(std::string v)
{
    Arg a;
    a.type = Arg::Type::Text;
    a.s = std::move(v);
    return a;
}

// The terms every branch shares: range and threshold.
// `t` is how the time column is written: "+time" keeps the planner off the
// time-first index when a value's own index gives its rows in time order.
void commonTerms(const HistoryFilter& f, const char* t, std::string& sql, std::vector<Arg>& args)
{
    sql += std::string(" ") + t + " >= ? AND " + t + " < ?";
    args.push_back(intArg(f.from));
    args.push_back(intArg(f.to));
    if (f.thresholdOn) {
        sql += std::string(" AND ") + kThresholdTerm;
        Arg a;
        a.type = Arg::Type::Real;
        a.d = f.thresholdCelsius;
        args.push_back(a);
    }
}

std::string kindsTerm(const HistoryFilter& f)
{
    std::string any;
    for (const auto& k : kHistoryKindTerms)
        if ((f.kinds & k.bit) != 0)
            any += (any.empty() ? "(" : " OR ") + std::string("(") + k.sql + ")";
    return any.empty() ? any : any + ")";
}

void cameraInTerm(const HistoryFilter& f, std::string& sql, std::vector<Arg>& args)
{
    if (f.cameraIds.empty())
        return;
    sql += " AND camera_id IN (";
    for (size_t i = 0; i < f.cameraIds.size(); ++i) {
        sql += i == 0 ? "?" : ", ?";
        args.push_back(textArg(f.cameraIds[i]));
    }
    sql += ")";
}

// The branches of a page: each a set of terms that one index walks in time
// order. Text values found beforehand make one branch each (the other
// filters are then plain terms: a person's rows are few); otherwise one
// branch per selected camera and kind.
struct Branch {
    bool byValue = false;  // walks a name's or library's own index
    const char* from = " FROM events WHERE";
    std::string sql;
    std::vector<Arg> args;
};

std::vector<Branch> branchesOf(const HistoryFilter& f, const CJournalHistorySource::TextValues* text, bool sparse)
{
    std::vector<Branch> out;
    if (sparse) {
        // Few rows reach the threshold: walk them in the Celsius index and
        // sort them, every other filter a plain term.
        Branch b;
        b.from = " FROM events INDEXED BY events_celsius WHERE";
        cameraInTerm(f, b.sql, b.args);
        if (!f.everyKind())
            b.sql += " AND " + kindsTerm(f);
        if (!f.text.empty()) {
            b.sql += " AND (person_name LIKE ? ESCAPE '\\' OR library LIKE ? ESCAPE '\\')";
            b.args.push_back(textArg(HistoryLikePattern(f.text)));
            b.args.push_back(textArg(HistoryLikePattern(f.text)));
        }
        out.push_back(std::move(b));
        return out;
    }
    if (text != nullptr) {
        auto add = [&](const char* column, const std::string& value) {
            Branch b;
            b.byValue = true;
            // The first term is the partial index's own condition: without it
            // SQLite does not see that the index holds the value.
            b.sql = std::string(" AND ") + column + " <> '' AND " + column + " = ?";
            b.args.push_back(textArg(value));
            cameraInTerm(f, b.sql, b.args);
            if (!f.everyKind())
                b.sql += " AND " + kindsTerm(f);
            out.push_back(std::move(b));
        };
        for (const std::string& v : text->names)
            add("person_name", v);
        for (const std::string& v : text->libraries)
            add("library", v);
        return out;
    }
    std::vector<const std::string*> cameras;
    if (f.cameraIds.size() <= kMaxCameraBranches)
        for (const std::string& c : f.cameraIds)
            cameras.push_back(&c);
    if (cameras.empty())
        cameras.push_back(nullptr);
    std::vector<const char*> kinds;
    if (!f.everyKind())
        for (const auto& k : kHistoryKindTerms)
            if ((f.kinds & k.bit) != 0)
                kinds.push_back(k.sql);
    if (kinds.empty())
        kinds.push_back(nullptr);
    for (const std::string* c : cameras)
        for (const char* k : kinds) {
            Branch b;
            if (c != nullptr) {
                b.sql = " AND camera_id = ?";
                b.args.push_back(textArg(*c));
            } else {
                cameraInTerm(f, b.sql, b.args);
            }
            if (k != nullptr)
                b.sql += std::string(" AND ") + k;
            if (!f.text.empty()) {
                b.sql += " AND (person_name LIKE ? ESCAPE '\\' OR library LIKE ? ESCAPE '\\')";
                b.args.push_back(textArg(HistoryLikePattern(f.text)));
                b.args.push_back(textArg(HistoryLikePattern(f.text)));
            }
            out.push_back(std::move(b));
        }
    return out;
}

Query build(const HistoryFilter& f, const HistoryKey* after, const int64_t* watermark,
    const CJournalHistorySource::TextValues* text, bool sparse)
{
    const int limit = std::max(1, f.pageSize) + 1;
    // Newer rows are taken oldest first, so a burst larger than a page is
    // fetched in order over several calls rather than skipped.
    const char* order = watermark != nullptr ? " ORDER BY id" : " ORDER BY time DESC, id DESC";
    Query q;
    std::string branches;
    for (Branch& b : branchesOf(f, text, sparse && f.thresholdOn)) {
        if (!branches.empty())
            branches += " UNION ";
        branches += std::string("SELECT id FROM (SELECT id") + b.from;
        const char* t = b.byValue ? "+time" : "time";
        commonTerms(f, t, branches, q.args);
        if (after != nullptr) {
            // The first term bounds the index range; the second skips the rows
            // of the same second already shown.
            branches += std::string(" AND ") + t + " <= ? AND (time < ? OR id < ?)";
            q.args.push_back(intArg(after->time));
            q.args.push_back(intArg(after->time));
            q.args.push_back(intArg(after->id));
        }
        if (watermark != nullptr) {
            branches += " AND id > ?";
            q.args.push_back(intArg(*watermark));
        }
        branches += b.sql;
        std::move(b.args.begin(), b.args.end(), std::back_inserter(q.args));
        branches += order + std::string(" LIMIT ") + std::to_string(limit) + ")";
    }
    if (branches.empty())  // text searched and found nowhere
        branches = "SELECT NULL WHERE 0";
    q.sql = std::string("SELECT ") + CJournalDatabase::kEventColumns + ", face FROM events WHERE id IN (" + branches
        + ")" + order + " LIMIT " + std::to_string(limit);
    return q;
}

} // namespace

CJournalHistorySource::CJournalHistorySource(QString journalPath)
    : m_path(std::move(journalPath))
{
}

CJournalHistorySource::~CJournalHistorySource()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_db != nullptr)
        sqlite3_close(m_db);
}

Query CJournalHistorySource::PageQuery(const HistoryFilter& filter, const HistoryKey* after, const TextValues* text,
    bool sparseThreshold)
{
    return build(filter, after, nullptr, text, sparseThreshold);
}

Query CJournalHistorySource::NewerQuery(const HistoryFilter& filter, int64_t watermark)
{
    return build(filter, nullptr, &watermark, nullptr, false);
}

bool CJournalHistorySource::thresholdIsSparse(const HistoryFilter& filter)
{
    // Counted in the Celsius index, stopping at the bound: cheap either way.
    const std::string sql = std::string("SELECT COUNT(*) FROM (SELECT 1 FROM events INDEXED BY events_celsius WHERE ")
        + kThresholdTerm + " AND +time >= ? AND +time < ? LIMIT " + std::to_string(kSparseThreshold) + ")";
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(m_db, sql.c_str(), -1, &st, nullptr) != SQLITE_OK)
        return false;  // a journal without the index
    sqlite3_bind_double(st, 1, filter.thresholdCelsius);
    sqlite3_bind_int64(st, 2, filter.from);
    sqlite3_bind_int64(st, 3, filter.to);
    const bool sparse = sqlite3_step(st) == SQLITE_ROW && sqlite3_column_int64(st, 0) < kSparseThreshold;
    sqlite3_finalize(st);
    return sparse;
}

bool CJournalHistorySource::refreshValues()
{
    if (m_values.tooMany)
        return false;
    auto maxId = [&]() {
        sqlite3_stmt* st = nullptr;
        int64_t id = 0;
        if (sqlite3_prepare_v2(m_db, "SELECT COALESCE(MAX(id), 0) FROM events", -1, &st, nullptr) == SQLITE_OK
            && sqlite3_step(st) == SQLITE_ROW)
            id = sqlite3_column_int64(st, 0);
        sqlite3_finalize(st);
        return id;
    };
    auto add = [&](std::set<std::string>& to, sqlite3_stmt* st, int column) {
        const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(st, column));
        if (p != nullptr && *p != '\0')
            to.emplace(p, size_t(sqlite3_column_bytes(st, column)));
    };
    const int64_t upTo = maxId();
    if (m_values.built) {
        // Only the rows written since: few, found by their ids.
        sqlite3_stmt* st = nullptr;
        if (sqlite3_prepare_v2(m_db, "SELECT DISTINCT person_name, library FROM events WHERE id > ?", -1, &st, nullptr)
            != SQLITE_OK)
            return false;
        sqlite3_bind_int64(st, 1, m_values.upTo);
        while (sqlite3_step(st) == SQLITE_ROW) {
            add(m_values.names, st, 0);
            add(m_values.libraries, st, 1);
        }
        sqlite3_finalize(st);
        m_values.upTo = upTo;
        return true;
    }
    // The values the journal keeps of itself; a file without that table
    // (written before it existed, opened only for reading) is walked below.
    // Empty without the table, else whether the values are few enough to keep.
    auto kept = [&]() -> std::optional<bool> {
        sqlite3_stmt* st = nullptr;
        if (sqlite3_prepare_v2(m_db, "SELECT field, value FROM text_values", -1, &st, nullptr) != SQLITE_OK)
            return std::nullopt;
        size_t n = 0;
        while (sqlite3_step(st) == SQLITE_ROW && ++n <= 2 * size_t(kMaxDistinctValues))
            add(sqlite3_column_int(st, 0) == 0 ? m_values.names : m_values.libraries, st, 1);
        sqlite3_finalize(st);
        return m_values.names.size() <= size_t(kMaxDistinctValues)
            && m_values.libraries.size() <= size_t(kMaxDistinctValues);
    };
    // Walks the distinct values of a column through its index, one seek each.
    auto walk = [&](const char* column, std::set<std::string>& found) {
        const std::string sql = std::string("SELECT ") + column + " FROM events WHERE " + column + " > ? AND "
            + column + " <> '' ORDER BY " + column + " LIMIT 1";
        sqlite3_stmt* st = nullptr;
        if (sqlite3_prepare_v2(m_db, sql.c_str(), -1, &st, nullptr) != SQLITE_OK)
            return false;
        std::string last;
        while (found.size() <= size_t(kMaxDistinctValues)) {
            sqlite3_reset(st);
            sqlite3_bind_text(st, 1, last.data(), int(last.size()), SQLITE_TRANSIENT);
            if (sqlite3_step(st) != SQLITE_ROW)
                break;
            const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(st, 0));
            last.assign(p != nullptr ? p : "", size_t(sqlite3_column_bytes(st, 0)));
            found.insert(last);
        }
        sqlite3_finalize(st);
        return found.size() <= size_t(kMaxDistinctValues);
    };
    const std::optional<bool> fromTable = kept();
    const bool ok = fromTable ? *fromTable : walk("person_name", m_values.names) && walk("library", m_values.libraries);
    if (!ok) {
        // Too many to keep: the text is matched with LIKE from then on.
        m_values = ValueCache();
        m_values.tooMany = true;
        return false;
    }
    m_values.built = true;
    m_values.upTo = upTo;
    return true;
}

bool CJournalHistorySource::findText(const std::string& text, TextValues& values)
{
    values = TextValues();
    if (!refreshValues())
        return false;
    for (const std::string& v : m_values.names)
        if (HistoryTextIn(v, text))
            values.names.push_back(v);
    for (const std::string& v : m_values.libraries)
        if (HistoryTextIn(v, text))
            values.libraries.push_back(v);
    // A text found in many values is common enough for a walk in time order.
    return values.names.size() + values.libraries.size() <= kMaxTextValues;
}

void CJournalHistorySource::Cancel()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_db != nullptr)
        sqlite3_interrupt(m_db);
}

bool CJournalHistorySource::ensureOpen(QString& error)
{
    if (m_db != nullptr)
        return true;
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(QFile::encodeName(m_path).constData(), &db, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX,
            nullptr)
        != SQLITE_OK) {
        error = QStringLiteral("open %1: %2").arg(m_path, QString::fromUtf8(sqlite3_errmsg(db)));
        sqlite3_close(db);
        return false;
    }
    sqlite3_busy_timeout(db, 1000);
    std::lock_guard<std::mutex> lock(m_mutex);
    m_db = db;
    return true;
}

IHistorySource::Result CJournalHistorySource::run(const Query& query, int pageSize, HistoryPage& page, QString& error)
{
    page = HistoryPage();
    // No journal yet: nothing has been recorded.
    if (m_db == nullptr && !QFileInfo::exists(m_path))
        return Result::Ok;
    if (!ensureOpen(error))
        return Result::Failed;
    // One read transaction: the write position and the page come from the
    // same snapshot, so the next Newer() neither misses nor repeats a row.
    sqlite3_exec(m_db, "BEGIN", nullptr, nullptr, nullptr);
    struct End {
        sqlite3* db;
        ~End() { sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr); }
    } end{m_db};
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(m_db, "SELECT COALESCE(MAX(id), 0) FROM events", -1, &st, nullptr) == SQLITE_OK
        && sqlite3_step(st) == SQLITE_ROW)
        page.watermark = sqlite3_column_int64(st, 0);
    sqlite3_finalize(st);
    st = nullptr;
    if (sqlite3_prepare_v2(m_db, query.sql.c_str(), -1, &st, nullptr) != SQLITE_OK) {
        const bool interrupted = sqlite3_errcode(m_db) == SQLITE_INTERRUPT;
        error = QString::fromUtf8(sqlite3_errmsg(m_db));
        return interrupted ? Result::Cancelled : Result::Failed;
    }
    int i = 1;
    for (const Arg& a : query.args) {
        if (a.type == Arg::Type::Int)
            sqlite3_bind_int64(st, i, a.i);
        else if (a.type == Arg::Type::Real)
            sqlite3_bind_double(st, i, a.d);
        else
            sqlite3_bind_text(st, i, a.s.data(), int(a.s.size()), SQLITE_TRANSIENT);
        ++i;
    }
    int rc;
    while ((rc = sqlite3_step(st)) == SQLITE_ROW) {
        if (int(page.rows.size()) == pageSize) {
            page.hasMore = true;
            break;
        }
        HistoryRow row;
        row.event = CJournalDatabase::ReadEvent(st);
        page.rows.push_back(std::move(row));
    }
    Result result = Result::Ok;
    if (rc != SQLITE_ROW && rc != SQLITE_DONE) {
        result = rc == SQLITE_INTERRUPT ? Result::Cancelled : Result::Failed;
        error = QString::fromUtf8(sqlite3_errmsg(m_db));
        page = HistoryPage();
    }
    sqlite3_finalize(st);
    return result;
}

IHistorySource::Result CJournalHistorySource::Page(const HistoryFilter& filter, const HistoryKey* after,
    HistoryPage& page, QString& error)
{
    const TextValues* text = nullptr;
    if (!filter.text.empty() && (m_db != nullptr || QFileInfo::exists(m_path)) && ensureOpen(error)) {
        // Looked up again for each first page, so that a name recorded since
        // is found; the following pages reuse it.
        if (after == nullptr || m_text != filter.text) {
            m_text = filter.text;
            m_textUsable = findText(filter.text, m_textValues);
        }
        if (m_textUsable)
            text = &m_textValues;
    }
    bool sparse = false;
    if (filter.thresholdOn && (m_db != nullptr || QFileInfo::exists(m_path)) && ensureOpen(error)) {
        // Decided on each first page, kept for the pages that follow.
        if (after == nullptr || m_sparseFor != std::make_tuple(filter.thresholdCelsius, filter.from, filter.to)) {
            m_sparseFor = std::make_tuple(filter.thresholdCelsius, filter.from, filter.to);
            m_sparse = thresholdIsSparse(filter);
        }
        sparse = m_sparse;
    }
    return run(PageQuery(filter, after, text, sparse), std::max(1, filter.pageSize), page, error);
}

IHistorySource::Result CJournalHistorySource::Newer(const HistoryFilter& filter, int64_t watermark, HistoryPage& page,
    QString& error)
{
    const Result r = run(NewerQuery(filter, watermark), std::max(1, filter.pageSize), page, error);
    if (r == Result::Ok) {
        // The rest of a burst follows the last row taken.
        if (page.hasMore)
            page.watermark = page.rows.back().event.id;
        std::stable_sort(page.rows.begin(), page.rows.end(), [](const HistoryRow& a, const HistoryRow& b) {
            return a.event.time != b.event.time ? a.event.time > b.event.time : a.event.id > b.event.id;
        });
        page.watermark = std::max(page.watermark, watermark);
    }
    return r;
}

} // namespace BodyTemperature
