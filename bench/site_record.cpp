// The site record under load, against a private PostgreSQL cluster:
//  1. N stations (default 10) each recording R events per second (default 50)
//     into their own journal, once without and once with replication to one
//     server: the GUI thread's CPU per recorded event in both runs (their
//     ratio), events per second the server took, and the replication lag
//     (event recorded -> row committed on the server) p50/p99/max.
//  2. --history-rows M (default 0, off): M synthetic rows in the site record,
//     then the first page and the next page of the site-scope history for
//     the common filters, the least and the median of 5 runs.
// Headless; prints figures. Usage: bench_site_record [--stations N] [--rate R]
// [--seconds S] [--history-rows M]
#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QThread>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <memory>
#include <vector>

#include <libpq-fe.h>

#include "record/CEventJournal.h"
#include "record/CSiteConnection.h"
#include "record/CSiteHistorySource.h"
#include "record/CSiteReplicator.h"
#include "record/CSiteSchema.h"
#include "support/JpegEncoder.h"
#include "support/PrivatePgCluster.h"

using namespace BodyTemperature;

namespace {

int64_t threadCpuNs()
{
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return int64_t(ts.tv_sec) * 1000000000 + ts.tv_nsec;
}

double percentile(std::vector<double> v, double p)
{
    if (v.empty())
        return 0.0;
    std::sort(v.begin(), v.end());
    return v[std::min(v.size() - 1, size_t(p * double(v.size() - 1) + 0.5))];
}

struct Run {
    double cpuNsPerEvent = 0.0;
    double seconds = 0.0;
    int64_t events = 0;
    std::vector<std::vector<int64_t>> appendedMs;  // per station, per event (id - 1)
};

JournalEvent eventOf(int n, const QByteArray& face)
{
    JournalEvent e;
    e.time = QDateTime::currentSecsSinceEpoch();
    e.deviceId = "BENCH";
    e.cameraId = "CAM" + std::to_string(n % 4);
    e.kind = 4;
    e.temperatureType = n % 10 == 0 ? 0 : 1;
    e.temperatureMeasured = true;
    e.temperature = 36.5;
    e.faceJpeg = face;
    return e;
}

// Every station records `rate` events per second for `seconds`, the calls
// spread evenly over each second as alarms arrive; the calling thread stands
// for the stations' GUI threads.
Run record(std::vector<std::unique_ptr<CEventJournal>>& journals, int rate, int seconds, const QByteArray& face)
{
    Run run;
    run.appendedMs.resize(journals.size());
    const int64_t total = int64_t(rate) * seconds;
    QElapsedTimer clock;
    clock.start();
    int64_t cpu = 0;
    for (int64_t i = 0; i < total; ++i) {
        const int64_t due = i * 1000 / rate;
        while (clock.elapsed() < due)
            QThread::usleep(500);
        for (size_t s = 0; s < journals.size(); ++s) {
            JournalEvent e = eventOf(int(i), face);
            run.appendedMs[s].push_back(QDateTime::currentMSecsSinceEpoch());
            const int64_t before = threadCpuNs();
            journals[s]->Append(std::move(e));
            cpu += threadCpuNs() - before;
        }
    }
    run.events = total * int64_t(journals.size());
    run.seconds = double(clock.elapsed()) / 1000.0;
    run.cpuNsPerEvent = double(cpu) / double(run.events);
    return run;
}

void replicationBench(testsupport::PrivatePgCluster& cluster, int stations, int rate, int seconds)
{
    QTemporaryDir dir;
    QImage picture(96, 128, QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            picture.setPixel(x, y, qRgb(x * 2, y * 2, (x * y) % 256));
    const QByteArray face = testsupport::EncodeJpeg(picture, 80);
    std::printf("replication: %d stations x %d events/s for %d s, face %d bytes per event\n", stations, rate, seconds,
        int(face.size()));

    Run off;
    {
        std::vector<std::unique_ptr<CEventJournal>> journals;
        for (int s = 0; s < stations; ++s)
            journals.push_back(std::make_unique<CEventJournal>(
                CEventJournal::Options{dir.filePath(QStringLiteral("off%1.db").arg(s)), 0, nullptr}));
        off = record(journals, rate, seconds, face);
        for (auto& j : journals)
            j->Flush();
    }

    std::vector<std::unique_ptr<CSiteReplicator>> replicators;
    std::vector<std::unique_ptr<CEventJournal>> journals;
    for (int s = 0; s < stations; ++s) {
        CSiteReplicator::Options o;
        o.site = cluster.Site("station" + std::to_string(s));
        o.journalPath = dir.filePath(QStringLiteral("on%1.db").arg(s));
        replicators.push_back(std::make_unique<CSiteReplicator>(std::move(o)));
        CEventJournal::Options j{dir.filePath(QStringLiteral("on%1.db").arg(s)), 0, nullptr};
        j.keepAfterKey = CSiteReplicator::AckKey(cluster.Site("station" + std::to_string(s)));
        CSiteReplicator* r = replicators.back().get();
        j.onCommitted = [r] { r->Notify(); };
        journals.push_back(std::make_unique<CEventJournal>(std::move(j)));
    }
    const Run on = record(journals, rate, seconds, face);
    QElapsedTimer drain;
    drain.start();
    const int64_t perStation = int64_t(rate) * seconds;
    for (;;) {
        bool all = true;
        for (auto& r : replicators)
            all = all && r->Acknowledged() >= perStation;
        if (all || drain.elapsed() > 60000)
            break;
        QThread::msleep(20);
    }
    const double drainS = double(drain.elapsed()) / 1000.0;
    journals.clear();
    replicators.clear();

    std::vector<double> lags;
    CStopSignal stop;
    CSiteConnection conn(cluster.Site("bench"), stop);
    if (!conn.Connect(10000)) {
        std::printf("cannot read the server: %s\n", qPrintable(conn.error()));
        return;
    }
    const PgResult r = conn.Exec("SELECT substr(station, 8)::int, event_id,"
                                 " (extract(epoch FROM stored_at) * 1000)::bigint FROM bt_events");
    int64_t stored = 0;
    for (int i = 0; r && i < PQntuples(r.get()); ++i) {
        const int s = std::stoi(CSiteConnection::Value(r, i, 0));
        const int64_t id = std::stoll(CSiteConnection::Value(r, i, 1));
        const int64_t at = std::stoll(CSiteConnection::Value(r, i, 2));
        if (s < 0 || s >= stations || id < 1 || id > int64_t(on.appendedMs[size_t(s)].size()))
            continue;
        ++stored;
        lags.push_back(double(at - on.appendedMs[size_t(s)][size_t(id - 1)]));
    }
    std::printf("  recorded %lld events in %.1f s (%.0f/s); server holds %lld, all taken %.2f s after the last\n",
        (long long)on.events, on.seconds, double(on.events) / on.seconds, (long long)stored, drainS);
    std::printf("  replication lag ms: p50 %.0f  p99 %.0f  max %.0f\n", percentile(lags, 0.5), percentile(lags, 0.99),
        percentile(lags, 1.0));
    std::printf("  GUI thread CPU per recorded event: %.2f us without, %.2f us with replication (ratio %.2f)\n",
        off.cpuNsPerEvent / 1000.0, on.cpuNsPerEvent / 1000.0, on.cpuNsPerEvent / off.cpuNsPerEvent);
}

void historyBench(testsupport::PrivatePgCluster& cluster, int64_t rows)
{
    clientcommonlogical::SiteRecordConfig site = cluster.Site("bench");
    site.database = "history";
    cluster.Psql(QStringLiteral("CREATE DATABASE history"));
    CStopSignal stop;
    CSiteConnection conn(site, stop);
    QString why;
    if (!conn.Connect(10000) || !CSiteSchema::Migrate(conn, why)) {
        std::printf("cannot prepare the server: %s %s\n", qPrintable(conn.error()), qPrintable(why));
        return;
    }
    QElapsedTimer fill;
    fill.start();
    // Built without the indexes, then indexed as the station's schema does:
    // far faster than maintaining them row by row.
    const PgResult defs = conn.Exec("SELECT indexdef FROM pg_indexes WHERE tablename = 'bt_events'"
                                    " AND indexname <> 'bt_events_pkey'");
    std::vector<std::string> indexes;
    for (int i = 0; defs && i < PQntuples(defs.get()); ++i)
        indexes.push_back(CSiteConnection::Value(defs, i, 0));
    conn.ExecScript("DO $$ DECLARE r record; BEGIN FOR r IN SELECT indexname FROM pg_indexes WHERE tablename ="
                    " 'bt_events' AND indexname <> 'bt_events_pkey' LOOP EXECUTE 'DROP INDEX ' || r.indexname;"
                    " END LOOP; END $$");
    const int64_t now = QDateTime::currentSecsSinceEpoch();
    PgParams p;
    p.Int(rows);
    p.Int(now);
    // Ten stations, four cameras each, 90 days; one in ten abnormal, one in
    // eight without a mask, one in twenty a matched person.
    if (!conn.Exec("INSERT INTO bt_events(station, journal, event_id, time, device_id, camera_id, camera_name,"
                   " event_code, kind, mask_type, temperature_type, temperature, temperature_unit, mask, person_name,"
                   " library, similarity) SELECT 'station' || (g % 10), 'j', g, $2::bigint - (($1::bigint - g) * 7776000"
                   " / $1::bigint), 'DEV' || (g % 10), 'CAM' || (g % 40), 'Camera ' || (g % 40), 100119,"
                   " CASE WHEN g % 20 = 0 THEN 0 ELSE 4 END, CASE WHEN g % 8 = 0 THEN 0 ELSE 2 END,"
                   " CASE WHEN g % 10 = 0 THEN 0 ELSE 1 END, 36 + (g % 30) / 10.0, 0, CASE WHEN g % 8 = 0 THEN 1"
                   " ELSE 2 END, CASE WHEN g % 20 = 0 THEN 'Person ' || (g % 5000) ELSE '' END, '', 0.9"
                   " FROM generate_series(1, $1::bigint) g",
            p, 3600000)) {
        std::printf("fill failed: %s\n", qPrintable(conn.error()));
        return;
    }
    conn.ExecScript("SET maintenance_work_mem = '512MB'", 10000);
    for (const std::string& sql : indexes)
        conn.ExecScript(sql, 3600000);
    conn.ExecScript("ANALYZE bt_events", 3600000);
    std::fflush(stdout);
    std::printf("history: %lld rows filled and indexed in %.0f s\n", (long long)rows, double(fill.elapsed()) / 1000.0);

    HistoryFilter all;
    HistoryFilter station = all;
    station.stations = {"station3"};
    HistoryFilter abnormal = all;
    abnormal.kinds = HistoryFilter::KindAbnormal;
    HistoryFilter cameras = all;
    cameras.cameraIds = {"CAM1", "CAM17"};
    HistoryFilter noMaskStation = all;
    noMaskStation.kinds = HistoryFilter::KindNoMask;
    noMaskStation.stations = {"station4"};
    // No row is both at station5 (odd numbers) and without a mask (multiples
    // of 8): the worst case, the whole station's rows are read.
    HistoryFilter nothing = noMaskStation;
    nothing.stations = {"station5"};
    HistoryFilter matched = all;
    matched.kinds = HistoryFilter::KindMatched | HistoryFilter::KindReturning;
    HistoryFilter text = all;
    text.text = "person 42";
    HistoryFilter nobody = all;
    nobody.text = "nobody";
    HistoryFilter today = all;
    today.from = now - 86400;
    today.thresholdOn = true;
    today.thresholdCelsius = 38.5;
    const struct {
        const char* name;
        const HistoryFilter* filter;
    } cases[] = {{"every event", &all}, {"one station", &station}, {"abnormal", &abnormal},
        {"two cameras", &cameras}, {"no mask at one station", &noMaskStation},
        {"no match (worst case)", &nothing}, {"matched or returning", &matched},
        {"name contains", &text}, {"name found nowhere", &nobody}, {"last day, >= 38.5 C", &today}};
    CSiteHistorySource source(site);
    HistoryPage warm;
    source.Page(all, nullptr, warm, why);  // the connection, once
    for (const auto& c : cases) {
        std::vector<double> first, following;
        size_t n = 0;
        for (int i = 0; i < 5; ++i) {
            HistoryPage page, nextPage;
            QElapsedTimer t;
            t.start();
            source.Page(*c.filter, nullptr, page, why);
            first.push_back(double(t.nsecsElapsed()) / 1e6);
            n = page.rows.size();
            if (page.rows.empty())
                continue;
            const HistoryKey after = page.rows.back().key();
            t.restart();
            source.Page(*c.filter, &after, nextPage, why);
            following.push_back(double(t.nsecsElapsed()) / 1e6);
        }
        std::printf("  %-24s first page %7.1f / %7.1f ms  next page %7.1f / %7.1f ms  (%zu rows; min / median of 5)\n",
            c.name, percentile(first, 0.0), percentile(first, 0.5), percentile(following, 0.0),
            percentile(following, 0.5), n);
    }
    // How the server walks the worst case and a text search, by its values
    // and row by row: which indexes, how many rows read.
    auto explain = [&](const char* what, const CSiteHistorySource::Query& q) {
        std::printf("  plan, %s:\n", what);
        conn.ExecScript(q.stationBranches ? "SET enable_incremental_sort = off" : "RESET enable_incremental_sort");
        const PgResult plan = conn.Exec("EXPLAIN (ANALYZE, COSTS off) " + q.sql, q.params, 600000);
        for (int i = 0; plan && i < PQntuples(plan.get()); ++i)
            std::printf("    %s\n", CSiteConnection::Value(plan, i, 0).c_str());
    };
    explain("no match (worst case)", CSiteHistorySource::PageQuery(nothing, nullptr));
    const CSiteHistorySource::Query find = CSiteHistorySource::TextValuesQuery(text.text);
    const PgResult found = conn.Exec(find.sql, find.params);
    CSiteHistorySource::TextValues values;
    for (int i = 0; found && i < PQntuples(found.get()); ++i)
        (CSiteConnection::Value(found, i, 0) == "0" ? values.names : values.libraries)
            .push_back(CSiteConnection::Value(found, i, 1));
    std::printf("  \"%s\" is in %zu names and %zu libraries\n", text.text.c_str(), values.names.size(),
        values.libraries.size());
    explain("name contains, by its values", CSiteHistorySource::PageQuery(text, nullptr, &values));
    explain("name contains, row by row", CSiteHistorySource::PageQuery(text, nullptr));
    explain("name found nowhere, row by row", CSiteHistorySource::PageQuery(nobody, nullptr));
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    int stations = 10, rate = 50, seconds = 30;
    int64_t historyRows = 0;
    const QStringList args = app.arguments();
    for (int i = 1; i + 1 < args.size(); ++i) {
        if (args[i] == QStringLiteral("--stations"))
            stations = args[++i].toInt();
        else if (args[i] == QStringLiteral("--rate"))
            rate = args[++i].toInt();
        else if (args[i] == QStringLiteral("--seconds"))
            seconds = args[++i].toInt();
        else if (args[i] == QStringLiteral("--history-rows"))
            historyRows = args[++i].toLongLong();
    }
    testsupport::PrivatePgCluster cluster;
    const QString error = cluster.Start();
    if (!error.isEmpty()) {
        std::printf("no server: %s\n", qPrintable(error));
        return 1;
    }
    if (seconds > 0)
        replicationBench(cluster, stations, rate, seconds);
    if (historyRows > 0)
        historyBench(cluster, historyRows);
    return 0;
}
