#include "record/CJournalHistorySource.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <sqlite3.h>

#include "CJournalDatabase.h"

namespace BodyTemperature {

namespace {

using Query = CJournalHistorySource::Query;
using Arg = Query::Arg;

// Written exactly as the partial indexes of the journal write them.
const struct {
    uint32_t bit;
    const char* sql;
} kKindTerms[] = {
    {HistoryFilter::KindAbnormal, "temperature_type = 0"},
    {HistoryFilter::KindNoMask, "mask_type IN (0, 1)"},
    {HistoryFilter::KindNormal, "temperature_type IN (1, 2)"},
    {HistoryFilter::KindMatched, "kind IN (0, 1, 2) AND person_name <> ''"},
    {HistoryFilter::KindReturning, "kind = 5"},
};

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

std::string likePattern(const std::string& text)
{
    std::string p = "%";
    for (char c : text) {
        if (c == '%' || c == '_' || c == '\\')
            p += '\\';
        p += c;
    }
    return p + "%";
}

// The terms every branch shares: range, threshold, text.
void commonTerms(const HistoryFilter& f, std::string& sql, std::vector<Arg>& args)
{
    sql += " time >= ? AND time < ?";
    args.push_back(intArg(f.from));
    args.push_back(intArg(f.to));
    if (f.thresholdOn) {
        sql += " AND temperature IS NOT NULL AND (CASE temperature_unit WHEN 1 THEN (temperature - 32) / 1.8"
               " WHEN 2 THEN temperature - 273.15 ELSE temperature END) >= ?";
        Arg a;
        a.type = Arg::Type::Real;
        a.d = f.thresholdCelsius;
        args.push_back(a);
    }
    if (!f.text.empty()) {
        sql += " AND (person_name LIKE ? ESCAPE '\\' OR library LIKE ? ESCAPE '\\')";
        args.push_back(textArg(likePattern(f.text)));
        args.push_back(textArg(likePattern(f.text)));
    }
}

// One branch per selected camera and kind, so that each can walk an index
// in time order and stop after a page.
std::vector<std::pair<const std::string*, const char*>> branchesOf(const HistoryFilter& f)
{
    std::vector<const std::string*> cameras;
    if (!f.cameraIds.empty() && f.cameraIds.size() <= kMaxCameraBranches)
        for (const std::string& c : f.cameraIds)
            cameras.push_back(&c);
    if (cameras.empty())
        cameras.push_back(nullptr);
    std::vector<const char*> kinds;
    if (!f.everyKind())
        for (const auto& k : kKindTerms)
            if ((f.kinds & k.bit) != 0)
                kinds.push_back(k.sql);
    if (kinds.empty())
        kinds.push_back(nullptr);
    std::vector<std::pair<const std::string*, const char*>> out;
    for (const std::string* c : cameras)
        for (const char* k : kinds)
            out.emplace_back(c, k);
    return out;
}

void cameraTerm(const HistoryFilter& f, const std::string* camera, std::string& sql, std::vector<Arg>& args)
{
    if (camera != nullptr) {
        sql += " AND camera_id = ?";
        args.push_back(textArg(*camera));
    } else if (!f.cameraIds.empty()) {
        sql += " AND camera_id IN (";
        for (size_t i = 0; i < f.cameraIds.size(); ++i) {
            sql += i == 0 ? "?" : ", ?";
            args.push_back(textArg(f.cameraIds[i]));
        }
        sql += ")";
    }
}

Query build(const HistoryFilter& f, const HistoryKey* after, const int64_t* watermark)
{
    const int limit = std::max(1, f.pageSize) + 1;
    // Newer rows are taken oldest first, so a burst larger than a page is
    // fetched in order over several calls rather than skipped.
    const char* order = watermark != nullptr ? " ORDER BY id" : " ORDER BY time DESC, id DESC";
    Query q;
    std::string branches;
    for (const auto& [camera, kind] : branchesOf(f)) {
        if (!branches.empty())
            branches += " UNION ";
        branches += "SELECT id FROM (SELECT id FROM events WHERE";
        commonTerms(f, branches, q.args);
        if (after != nullptr) {
            // The first term bounds the index range; the second skips the rows
            // of the same second already shown.
            branches += " AND time <= ? AND (time < ? OR id < ?)";
            q.args.push_back(intArg(after->time));
            q.args.push_back(intArg(after->time));
            q.args.push_back(intArg(after->id));
        }
        if (watermark != nullptr) {
            branches += " AND id > ?";
            q.args.push_back(intArg(*watermark));
        }
        cameraTerm(f, camera, branches, q.args);
        if (kind != nullptr)
            branches += std::string(" AND ") + kind;
        branches += order + std::string(" LIMIT ") + std::to_string(limit) + ")";
    }
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

Query CJournalHistorySource::PageQuery(const HistoryFilter& filter, const HistoryKey* after)
{
    return build(filter, after, nullptr);
}

Query CJournalHistorySource::NewerQuery(const HistoryFilter& filter, int64_t watermark)
{
    return build(filter, nullptr, &watermark);
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
    return run(PageQuery(filter, after), std::max(1, filter.pageSize), page, error);
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
