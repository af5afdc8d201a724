#include "record/CSiteHistorySource.h"

#include <QDateTime>
#include <algorithm>
#include <optional>
#include <libpq-fe.h>

#include "record/HistoryMatch.h"

namespace BodyTemperature {

namespace {

using Query = CSiteHistorySource::Query;

const char* const kColumns =
    "station, event_id, time, device_id, device_name, camera_id, camera_name, event_code, kind, pop_type,"
    " mask_type, temperature_type, alarm_type, temperature, temperature_unit, mask, person_name, library,"
    " similarity, shown, face, seq";

// "{a,b}" for a text[] parameter.
std::string textArray(const std::vector<std::string>& values)
{
    std::string out = "{";
    for (const std::string& v : values) {
        if (out.size() > 1)
            out += ',';
        out += '"';
        for (char c : v) {
            if (c == '"' || c == '\\')
                out += '\\';
            out += c;
        }
        out += '"';
    }
    return out + "}";
}

std::string next(PgParams& p)
{
    return "$" + std::to_string(p.size());
}

enum class Walk { NewestFirst, Arrival, OldestFirst };

// The conditions every walk shares: time range, cameras, kinds, threshold,
// and the text unless it is walked value by value.
std::string commonWhere(const HistoryFilter& f, bool byValue, PgParams& p)
{
    std::string where;
    p.Int(f.from);
    where += "time >= " + next(p);
    p.Int(f.to);
    where += " AND time < " + next(p);
    if (!f.cameraIds.empty()) {
        p.Text(textArray(f.cameraIds));
        where += " AND camera_id = ANY(" + next(p) + "::text[])";
    }
    if (!f.everyKind()) {
        std::string kinds;
        for (const auto& k : kHistoryKindTerms) {
            if ((f.kinds & k.bit) != 0)
                kinds += std::string(kinds.empty() ? "" : " OR ") + "(" + k.sql + ")";
        }
        where += " AND (" + kinds + ")";
    }
    if (f.thresholdOn) {
        p.Real(f.thresholdCelsius);
        where += " AND temperature IS NOT NULL AND (CASE temperature_unit WHEN 1 THEN (temperature - 32) / 1.8"
                 " WHEN 2 THEN temperature - 273.15 ELSE temperature END) >= "
            + next(p) + "::float8";
    }
    if (!f.text.empty() && !byValue) {
        p.Text(HistoryLikePattern(f.text));
        where += " AND (person_name ILIKE " + next(p) + " OR library ILIKE " + next(p) + ")";
    }
    return where;
}

// Just past `after` in the walk's order.
std::string pastKey(const HistoryKey& after, Walk walk, PgParams& p)
{
    p.Int(after.time);
    const std::string t = next(p);
    p.Text(after.station);
    const std::string s = next(p);
    p.Int(after.id);
    const std::string i = next(p);
    if (walk == Walk::OldestFirst)
        return " AND (time, station, event_id) > (" + t + ", " + s + ", " + i + ")";
    return " AND time <= " + t + " AND (time < " + t + " OR station > " + s + " OR (station = " + s
        + " AND event_id < " + i + "))";
}

// One branch per value the text was found in, each walking that value's own
// index in page order; a row whose name and library both hold the text is
// taken by its name's branch only.
Query byValue(const HistoryFilter& f, const CSiteHistorySource::TextValues& text, std::string where,
    const char* order, const std::string& limit, Query& q)
{
    PgParams& p = q.params;
    if (!f.stations.empty()) {
        p.Text(textArray(f.stations));
        where += " AND station = ANY(" + next(p) + "::text[])";
    }
    std::string branches;
    auto add = [&](const char* column, const std::string& value, const std::string& extra) {
        p.Text(value);
        branches += std::string(branches.empty() ? "(" : " UNION ALL (") + "SELECT " + kColumns
            + " FROM bt_events WHERE " + column + " <> '' AND " + column + " = " + next(p) + " AND " + where + extra
            + order + limit + ")";
    };
    for (const std::string& v : text.names)
        add("person_name", v, std::string());
    if (!text.libraries.empty()) {
        p.Text(HistoryLikePattern(f.text));
        const std::string notByName = " AND NOT COALESCE(person_name ILIKE " + next(p) + ", false)";
        for (const std::string& v : text.libraries)
            add("library", v, notByName);
    }
    // Found nowhere: still a statement of the filter's parameters.
    q.sql = branches.empty() ? std::string("SELECT ") + kColumns + " FROM bt_events WHERE false AND " + where
                             : "SELECT * FROM (" + branches + ") b" + order + limit;
    return q;
}

Query build(const HistoryFilter& f, const HistoryKey* after, const int64_t* watermark, Walk walk,
    const CSiteHistorySource::TextValues* text = nullptr)
{
    Query q;
    PgParams& p = q.params;
    if (f.text.empty())
        text = nullptr;
    std::string where = commonWhere(f, text != nullptr, p);
    if (after != nullptr)
        where += pastKey(*after, walk, p);
    // Newer rows are taken in arrival order, so a burst larger than a page
    // comes over several calls rather than being skipped.
    if (watermark != nullptr) {
        p.Int(*watermark);
        where += " AND seq > " + next(p);
    }
    const char* order = walk == Walk::Arrival ? " ORDER BY seq"
        : walk == Walk::OldestFirst           ? " ORDER BY time, station, event_id"
                                              : " ORDER BY time DESC, station, event_id DESC";
    const std::string limit = " LIMIT " + std::to_string(std::max(1, f.pageSize) + 1);
    if (text != nullptr)
        return byValue(f, *text, where, order, limit, q);
    if (f.stations.empty()) {
        q.sql = std::string("SELECT ") + kColumns + " FROM bt_events WHERE " + where + order + limit;
        return q;
    }
    // One branch per station, each walking that station's own index range in
    // order: a station with few (or no) matching rows costs next to nothing,
    // where one walk over all stations' rows would read the whole range.
    const char* branchOrder = walk == Walk::Arrival ? " ORDER BY seq"
        : walk == Walk::OldestFirst                 ? " ORDER BY time, event_id"
                                                    : " ORDER BY time DESC, event_id DESC";
    std::string branches;
    for (const std::string& station : f.stations) {
        p.Text(station);
        branches += std::string(branches.empty() ? "(" : " UNION ALL (") + "SELECT " + kColumns
            + " FROM bt_events WHERE station = " + next(p) + " AND " + where + branchOrder + limit + ")";
    }
    q.sql = std::string("SELECT * FROM (") + branches + ") b" + order + limit;
    q.stationBranches = true;
    return q;
}

uint32_t u32(const PGresult* r, int row, int col)
{
    return uint32_t(std::strtoul(PQgetvalue(r, row, col), nullptr, 10));
}

HistoryRow rowOf(const PGresult* r, int i)
{
    auto text = [&](int c) { return std::string(PQgetvalue(r, i, c), size_t(PQgetlength(r, i, c))); };
    HistoryRow row;
    row.station = text(0);
    JournalEvent& e = row.event;
    e.id = std::strtoll(PQgetvalue(r, i, 1), nullptr, 10);
    e.time = std::strtoll(PQgetvalue(r, i, 2), nullptr, 10);
    e.deviceId = text(3);
    e.deviceName = text(4);
    e.cameraId = text(5);
    e.cameraName = text(6);
    e.eventCode = u32(r, i, 7);
    e.kind = u32(r, i, 8);
    e.popType = u32(r, i, 9);
    e.maskType = u32(r, i, 10);
    e.temperatureType = u32(r, i, 11);
    e.alarmType = u32(r, i, 12);
    e.temperatureMeasured = PQgetisnull(r, i, 13) == 0;
    e.temperature = std::strtod(PQgetvalue(r, i, 13), nullptr);
    e.temperatureUnit = u32(r, i, 14);
    e.mask = u32(r, i, 15);
    e.personName = text(16);
    e.library = text(17);
    e.similarity = std::strtod(PQgetvalue(r, i, 18), nullptr);
    e.shown = int(std::strtol(PQgetvalue(r, i, 19), nullptr, 10));
    if (PQgetisnull(r, i, 20) == 0) {
        size_t n = 0;
        if (unsigned char* bytes = PQunescapeBytea(reinterpret_cast<const unsigned char*>(PQgetvalue(r, i, 20)), &n)) {
            e.faceJpeg = QByteArray(reinterpret_cast<const char*>(bytes), int(n));
            PQfreemem(bytes);
        }
    }
    return row;
}

} // namespace

CSiteHistorySource::CSiteHistorySource(clientcommonlogical::SiteRecordConfig site) : m_conn(std::move(site), m_cancel) {}

CSiteHistorySource::~CSiteHistorySource() = default;

Query CSiteHistorySource::PageQuery(const HistoryFilter& filter, const HistoryKey* after, const TextValues* text)
{
    return build(filter, after, nullptr, Walk::NewestFirst, text);
}

Query CSiteHistorySource::ScanQuery(const HistoryFilter& filter, const HistoryKey* after, const TextValues* text)
{
    return build(filter, after, nullptr, Walk::OldestFirst, text);
}

Query CSiteHistorySource::TextValuesQuery(const std::string& text)
{
    Query q;
    q.params.Text(HistoryLikePattern(text));
    q.sql = "SELECT field, value FROM bt_text_values WHERE value ILIKE $1 LIMIT " + std::to_string(kMaxTextValues + 1);
    return q;
}

Query CSiteHistorySource::NewerQuery(const HistoryFilter& filter, int64_t watermark)
{
    return build(filter, nullptr, &watermark, Walk::Arrival);
}

void CSiteHistorySource::Cancel()
{
    m_cancel.Raise();
}

IHistorySource::Result CSiteHistorySource::failed(QString& error)
{
    error = m_conn.error();
    const bool cancelled = m_conn.failure() == CSiteConnection::Failure::Stopped;
    m_conn.Close();
    return cancelled ? Result::Cancelled : Result::Failed;
}

IHistorySource::Result CSiteHistorySource::findText(const HistoryFilter& filter, std::optional<TextValues>& values,
    QString& error)
{
    values.reset();
    if (filter.text.empty())
        return Result::Ok;
    m_cancel.Reset();
    if (!m_conn.IsOpen() && !m_conn.Connect(10000))
        return failed(error);
    const Query q = TextValuesQuery(filter.text);
    const PgResult r = m_conn.Exec(q.sql, q.params);
    if (!r) {
        // A server not yet brought to this schema: the text is matched row by row.
        return m_conn.failure() == CSiteConnection::Failure::Refused ? Result::Ok : failed(error);
    }
    const int n = PQntuples(r.get());
    if (n > kMaxTextValues)
        return Result::Ok;
    TextValues found;
    for (int i = 0; i < n; ++i)
        (CSiteConnection::Value(r, i, 0) == "0" ? found.names : found.libraries).push_back(CSiteConnection::Value(r, i, 1));
    values = std::move(found);
    return Result::Ok;
}

IHistorySource::Result CSiteHistorySource::run(const Query& query, int pageSize, HistoryPage& page, QString& error)
{
    page = HistoryPage();
    m_cancel.Reset();
    auto failed = [&] {
        page = HistoryPage();
        return this->failed(error);
    };
    if (!m_conn.IsOpen() && !m_conn.Connect(10000))
        return failed();
    // One snapshot: the arrival position and the page agree, so the next
    // Newer() neither misses nor repeats a row that was committed then.
    if (!m_conn.ExecScript("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY"))
        return failed();
    // Per-station branches: the planner, expecting a station's share of any
    // kind, would rather walk a time-ordered index of every station's rows
    // and sort the ties as it goes, which reads the whole range when the
    // station has few such rows. Without that step it walks the station's
    // own index, already in page order.
    if (query.stationBranches && !m_conn.ExecScript("SET LOCAL enable_incremental_sort = off"))
        return failed();
    const PgResult top = m_conn.Exec("SELECT COALESCE(MAX(seq), 0) FROM bt_events");
    if (!top)
        return failed();
    page.watermark = std::stoll("0" + CSiteConnection::Value(top, 0, 0));
    const PgResult r = m_conn.Exec(query.sql, query.params);
    if (!r)
        return failed();
    const int n = PQntuples(r.get());
    for (int i = 0; i < n; ++i) {
        if (i == pageSize) {
            page.hasMore = true;
            break;
        }
        page.rows.push_back(rowOf(r.get(), i));
    }
    if (!m_conn.ExecScript("COMMIT"))
        return failed();
    if (query.sql.find("ORDER BY seq") != std::string::npos && page.hasMore && !page.rows.empty()) {
        // The rest of a burst follows the last row taken.
        page.watermark = std::stoll("0" + std::string(PQgetvalue(r.get(), pageSize - 1, 21)));
    }
    return Result::Ok;
}

IHistorySource::Result CSiteHistorySource::Page(const HistoryFilter& filter, const HistoryKey* after,
    HistoryPage& page, QString& error)
{
    std::optional<TextValues> text;
    if (const Result r = findText(filter, text, error); r != Result::Ok) {
        page = HistoryPage();
        return r;
    }
    return run(PageQuery(filter, after, text ? &*text : nullptr), std::max(1, filter.pageSize), page, error);
}

IHistorySource::Result CSiteHistorySource::Scan(const HistoryFilter& filter,
    const std::function<bool(HistoryRow&&)>& take, QString& error)
{
    std::optional<TextValues> text;
    if (const Result r = findText(filter, text, error); r != Result::Ok)
        return r;
    std::optional<HistoryKey> after;
    for (;;) {
        HistoryPage page;
        const Result r = run(ScanQuery(filter, after ? &*after : nullptr, text ? &*text : nullptr),
            std::max(1, filter.pageSize), page, error);
        if (r != Result::Ok || page.rows.empty())
            return r;
        after = page.rows.back().key();
        for (HistoryRow& row : page.rows) {
            if (!take(std::move(row)))
                return Result::Ok;
        }
        if (!page.hasMore)
            return Result::Ok;
    }
}

IHistorySource::Result CSiteHistorySource::Newer(const HistoryFilter& filter, int64_t watermark, HistoryPage& page,
    QString& error)
{
    const Result r = run(NewerQuery(filter, watermark), std::max(1, filter.pageSize), page, error);
    if (r == Result::Ok) {
        std::stable_sort(page.rows.begin(), page.rows.end(), [](const HistoryRow& a, const HistoryRow& b) {
            if (a.event.time != b.event.time)
                return a.event.time > b.event.time;
            if (a.station != b.station)
                return a.station < b.station;
            return a.event.id > b.event.id;
        });
        page.watermark = std::max(page.watermark, watermark);
    }
    return r;
}

} // namespace BodyTemperature
