// Screening history on a big journal: fills a journal file with synthetic
// rows (kept between runs) and times the first page and the following page
// switches of the history's queries for a table of filters.
//
//   bench_history_query [--rows N] [--db PATH] [--face-bytes B] [--pages P]
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "record/CJournalDatabase.h"
#include "record/CJournalHistorySource.h"

using namespace BodyTemperature;

namespace {

constexpr int64_t kStart = 1767225600;  // 2026-01-01 UTC
constexpr int64_t kSpan = 30 * 86400;   // the rows cover 30 days
constexpr int kCameras = 9;

std::string cameraId(int i)
{
    return "cam-" + std::to_string(i);
}

// A name pool with a long tail: "Person 1" is frequent, "Person 4999" rare.
std::string personName(std::mt19937& rng)
{
    std::uniform_real_distribution<double> u(0.0, 1.0);
    const int n = int(std::pow(u(rng), 3.0) * 5000.0);
    return "Person " + std::to_string(n);
}

bool fill(const QString& path, int64_t rows, int faceBytes)
{
    QFile::remove(path);
    QFile::remove(path + QStringLiteral("-wal"));
    QFile::remove(path + QStringLiteral("-shm"));
    CJournalDatabase db;
    if (!db.Open(path, CJournalDatabase::OpenMode::Write)) {
        std::printf("cannot open %s: %s\n", qPrintable(path), qPrintable(db.error()));
        return false;
    }
    std::mt19937 rng(28);
    std::uniform_real_distribution<double> u(0.0, 1.0);
    QByteArray face(faceBytes, '\0');
    for (char& c : face)
        c = char(rng());
    std::vector<JournalEvent> batch;
    for (int64_t i = 0; i < rows; ++i) {
        JournalEvent e;
        e.time = kStart + i * kSpan / rows;
        const int cam = int(rng() % kCameras);
        e.cameraId = cameraId(cam);
        e.cameraName = "Gate " + std::to_string(cam + 1);
        e.deviceId = "dev-" + std::to_string(cam / 3);
        const double r = u(rng);
        e.kind = r < 0.3 ? uint32_t(rng() % 3) : r < 0.98 ? 3 + uint32_t(rng() % 2) : 5;
        e.temperatureMeasured = u(rng) < 0.92;
        if (e.temperatureMeasured) {
            e.temperature = u(rng) < 0.02 ? 37.4 + u(rng) * 2.0 : 36.0 + u(rng) * 1.2;
            e.temperatureType = e.temperature >= 37.3 ? 0 : 1;
        }
        e.mask = u(rng) < 0.1 ? 1 : 2;
        e.maskType = e.mask == 1 ? 1 : 2;
        if (e.kind <= 2 && u(rng) < 0.6) {
            e.personName = personName(rng);
            e.library = "Staff";
            e.similarity = 0.8 + u(rng) * 0.2;
        }
        e.faceJpeg = face;
        batch.push_back(std::move(e));
        if (batch.size() == 20000 || i + 1 == rows) {
            if (!db.Insert(batch)) {
                std::printf("insert failed: %s\n", qPrintable(db.error()));
                return false;
            }
            batch.clear();
        }
    }
    return true;
}

struct Row {
    const char* name;
    HistoryFilter filter;
};

HistoryFilter make(int64_t from, int64_t to)
{
    HistoryFilter f;
    f.from = from;
    f.to = to;
    f.pageSize = 50;
    return f;
}

std::vector<Row> filters()
{
    const int64_t end = kStart + kSpan;
    const int64_t day = end - 86400;
    const int64_t shift = end - 8 * 3600;
    std::vector<Row> rows;
    auto add = [&](const char* name, HistoryFilter f) { rows.push_back({name, std::move(f)}); };
    add("everything, 30 days", make(kStart, end));
    add("today", make(day, end));
    add("this shift (8 h)", make(shift, end));
    HistoryFilter f = make(kStart, end);
    f.kinds = HistoryFilter::KindAbnormal;
    add("abnormal, 30 days", f);
    f.kinds = HistoryFilter::KindAbnormal | HistoryFilter::KindNoMask;
    add("abnormal or no mask, 30 days", f);
    f.kinds = HistoryFilter::KindMatched;
    add("matched comparison, 30 days", f);
    f.kinds = HistoryFilter::KindReturning;
    add("returning visitor, 30 days", f);
    f.kinds = HistoryFilter::KindNormal;
    add("normal, 30 days", f);
    f = make(kStart, end);
    f.cameraIds = {cameraId(4)};
    add("one camera, 30 days", f);
    f.kinds = HistoryFilter::KindAbnormal;
    add("one camera + abnormal", f);
    f.cameraIds = {cameraId(1), cameraId(2), cameraId(3)};
    f.kinds = HistoryFilter::KindNoMask | HistoryFilter::KindReturning;
    add("3 cameras + no mask or returning", f);
    f = make(kStart, end);
    f.thresholdOn = true;
    f.thresholdCelsius = 37.3;
    add("threshold 37.3 C", f);
    f.thresholdCelsius = 39.3;
    add("threshold 39.3 C (rare)", f);
    f.cameraIds = {cameraId(7)};
    f.kinds = HistoryFilter::KindAbnormal;
    f.thresholdCelsius = 38.5;
    add("camera + abnormal + threshold 38.5", f);
    f = make(kStart, end);
    f.text = "person 1";
    add("text \"person 1\" (frequent)", f);
    f.text = "Person 4990";
    add("text \"Person 4990\" (rare)", f);
    f.text = "nobody";
    add("text without a match", f);
    f = make(day, end);
    f.text = "nobody";
    add("today + text without a match", f);
    f = make(kStart + 10 * 86400, kStart + 17 * 86400);
    f.kinds = HistoryFilter::KindAbnormal;
    f.cameraIds = {cameraId(0), cameraId(5)};
    add("custom week + 2 cameras + abnormal", f);
    return rows;
}

double ms(QElapsedTimer& t)
{
    return double(t.nsecsElapsed()) / 1e6;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    int64_t rows = 1000000;
    QString path = QStringLiteral("/tmp/bt_history_bench.db");
    int faceBytes = 3000;
    int pages = 5;
    const QStringList args = app.arguments();
    for (int i = 1; i + 1 < args.size(); i += 2) {
        if (args[i] == QStringLiteral("--rows"))
            rows = args[i + 1].toLongLong();
        else if (args[i] == QStringLiteral("--db"))
            path = args[i + 1];
        else if (args[i] == QStringLiteral("--face-bytes"))
            faceBytes = args[i + 1].toInt();
        else if (args[i] == QStringLiteral("--pages"))
            pages = args[i + 1].toInt();
    }

    // A journal of the right size from an earlier run is reused.
    bool reuse = false;
    {
        CJournalDatabase db;
        reuse = QFile::exists(path) && db.Open(path, CJournalDatabase::OpenMode::Write)
            && db.Count(kStart, kStart + kSpan) == rows;
    }
    if (!reuse) {
        QElapsedTimer t;
        t.start();
        std::printf("filling %s with %lld rows (faces of %d bytes)...\n", qPrintable(path), (long long)rows, faceBytes);
        std::fflush(stdout);
        if (!fill(path, rows, faceBytes))
            return 1;
        std::printf("filled in %.1f s\n", ms(t) / 1000.0);
    }

    // "cold": a new connection (the window's first query of the kind, text
    // searches also gather the names once); "warm": the same query again.
    std::printf("%-40s %9s %9s %12s %12s %6s\n", "filter", "cold ms", "warm ms", "next avg ms", "next max ms",
        "rows");
    for (const Row& row : filters()) {
        // A new source per filter: the first page includes opening the file.
        CJournalHistorySource source(path);
        HistoryPage page;
        QString error;
        QElapsedTimer t;
        t.start();
        if (source.Page(row.filter, nullptr, page, error) != IHistorySource::Result::Ok) {
            std::printf("%-40s failed: %s\n", row.name, qPrintable(error));
            continue;
        }
        const double cold = ms(t);
        t.restart();
        source.Page(row.filter, nullptr, page, error);
        const double warm = ms(t);
        int64_t seen = int64_t(page.rows.size());
        double sum = 0.0;
        double worst = 0.0;
        int switches = 0;
        for (int p = 0; p < pages && page.hasMore; ++p) {
            const HistoryKey key = page.rows.back().key();
            t.restart();
            source.Page(row.filter, &key, page, error);
            const double one = ms(t);
            sum += one;
            worst = std::max(worst, one);
            ++switches;
            seen += int64_t(page.rows.size());
        }
        std::printf("%-40s %9.1f %9.1f %12.1f %12.1f %6lld\n", row.name, cold, warm,
            switches > 0 ? sum / switches : 0.0, worst, (long long)seen);
    }
    double load[3] = {0, 0, 0};
    if (getloadavg(load, 3) > 0)
        std::printf("(shared 2-core machine, load average %.1f while measuring: other builds and benches ran at the"
                    " same time; figures are noisy)\n", load[0]);
    return 0;
}
