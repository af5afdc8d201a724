// The site record against a real PostgreSQL server (a private cluster): every
// event stored exactly once whatever happens to the server or the station.
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QLabel>
#include <QProcess>
#include <QTranslator>
#include <gtest/gtest.h>
#include <mutex>

#include "Base/Log.h"
#include "record/CEventJournal.h"
#include "record/CJournalDatabase.h"
#include "record/CScreeningRecord.h"
#include "report/CShiftReportExporter.h"
#include "record/CSiteConnection.h"
#include "record/CSiteHistorySource.h"
#include "record/CSiteReplicator.h"
#include "record/CSiteSchema.h"
#include "support/PrivatePgCluster.h"
#include "support/TestSupport.h"
#include "ui/CDeviceHealthBanner.h"

using namespace BodyTemperature;
using testsupport::waitUntil;
using State = CSiteReplicator::State;

namespace {

// In dir: a CA "siteca" with a server certificate for localhost signed by
// it, and a foreign CA "otherca".
bool makeCertificates(const QString& dir)
{
    QProcess p;
    p.setWorkingDirectory(dir);
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(QStringLiteral("sh"), {QStringLiteral("-ec"), QStringLiteral(
        "for ca in siteca otherca; do openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=$ca"
        " -keyout $ca.key -out $ca.crt; done; echo subjectAltName=DNS:localhost > server.ext;"
        " openssl req -newkey rsa:2048 -nodes -subj /CN=localhost -keyout server.key -out server.csr;"
        " openssl x509 -req -in server.csr -CA siteca.crt -CAkey siteca.key -CAcreateserial -days 2"
        " -extfile server.ext -out server.crt")});
    return p.waitForFinished(60000) && p.exitCode() == 0;
}

JournalEvent numbered(int n, const QByteArray& face = QByteArray())
{
    JournalEvent e;
    e.time = 1700000000 + n;
    e.deviceId = "DEV";
    e.cameraId = "CAM" + std::to_string(n % 4);
    e.kind = 4;
    e.temperatureType = n % 3 == 0 ? 0 : 1;
    e.temperatureMeasured = true;
    e.temperature = 36.0 + (n % 30) / 10.0;
    e.personName = "P" + std::to_string(n);
    e.faceJpeg = face;
    return e;
}

// One station: its journal, and its sender when a site record is given.
struct Station {
    Station(const QString& path, const clientcommonlogical::SiteRecordConfig& site, int configRetryMs = 30000)
    {
        CSiteReplicator::Options o;
        o.site = site;
        o.journalPath = path;
        o.retryMs = 200;
        o.configRetryMs = configRetryMs;
        o.onStateChanged = [this](State s, int64_t, const QString&) {
            std::lock_guard<std::mutex> lock(mutex);
            states.push_back(s);
        };
        replicator = std::make_unique<CSiteReplicator>(std::move(o));
        CEventJournal::Options j{path, 0, nullptr};
        j.keepAfterKey = CSiteReplicator::AckKey(site);
        j.onCommitted = [this] { replicator->Notify(); };
        journal = std::make_unique<CEventJournal>(std::move(j));
    }
    std::vector<State> seen()
    {
        std::lock_guard<std::mutex> lock(mutex);
        return states;
    }
    std::mutex mutex;
    std::vector<State> states;
    std::unique_ptr<CSiteReplicator> replicator;
    std::unique_ptr<CEventJournal> journal;
};

class SiteRecordTest : public testsupport::TempDirTest {
public:
    static void SetUpTestSuite()
    {
        s_certs = std::make_unique<QTemporaryDir>();
        ASSERT_TRUE(makeCertificates(s_certs->path()));
        s_cluster = std::make_unique<testsupport::PrivatePgCluster>();
        const QString error = s_cluster->Start(s_certs->filePath(QStringLiteral("server.crt")),
            s_certs->filePath(QStringLiteral("server.key")));
        ASSERT_TRUE(error.isEmpty()) << qPrintable(error);
    }
    static void TearDownTestSuite()
    {
        s_cluster.reset();
        s_certs.reset();
    }

protected:
    void SetUp() override
    {
        TempDirTest::SetUp();
        ASSERT_TRUE(s_cluster) << "no server";
    }
    // "count|distinct ids|min id|max id" of one station's rows.
    static QString stored(const char* station)
    {
        return s_cluster->Psql(QStringLiteral("SELECT count(*), count(DISTINCT event_id), min(event_id), max(event_id)"
                                              " FROM bt_events WHERE station = '%1'")
                                   .arg(QString::fromLatin1(station)));
    }
    static QString expected(int n) { return QStringLiteral("%1|%1|1|%1").arg(n); }

    static std::unique_ptr<QTemporaryDir> s_certs;
    static std::unique_ptr<testsupport::PrivatePgCluster> s_cluster;
};
std::unique_ptr<QTemporaryDir> SiteRecordTest::s_certs;
std::unique_ptr<testsupport::PrivatePgCluster> SiteRecordTest::s_cluster;

TEST_F(SiteRecordTest, EveryEventExactlyOnce)
{
    const QByteArray face = testsupport::makeJpeg(200, 260, 95);
    {
        SCOPED_TRACE("server killed with SIGKILL in the middle of a batch, then restarted");
        Station station(path(QStringLiteral("kill.db")), s_cluster->Site("kill"));
        for (int i = 1; i <= 2000; ++i)
            station.journal->Append(numbered(i, face));
        ASSERT_TRUE(waitUntil([&] { return station.replicator->Sent() > 0; }, 20000));
        s_cluster->KillHard();
        ASSERT_TRUE(waitUntil([&] {
            const auto s = station.seen();
            return !s.empty() && s.back() == State::Unreachable;
        }, 10000));
        EXPECT_LT(station.replicator->Acknowledged(), 2000);
        const QString restarted = s_cluster->Restart();
        ASSERT_TRUE(restarted.isEmpty()) << qPrintable(restarted);
        ASSERT_TRUE(waitUntil([&] { return station.replicator->Acknowledged() == 2000; }, 40000));
        EXPECT_EQ(station.seen().back(), State::Reachable);
        EXPECT_EQ(stored("kill"), expected(2000));
    }
    {
        SCOPED_TRACE("station restarted with a backlog written while the server was down");
        s_cluster->Stop();
        {
            Station station(path(QStringLiteral("backlog.db")), s_cluster->Site("backlog"));
            for (int i = 1; i <= 300; ++i)
                station.journal->Append(numbered(i));
            ASSERT_TRUE(station.journal->Flush());
            ASSERT_TRUE(waitUntil([&] { return !station.seen().empty(); }, 5000));
            EXPECT_EQ(station.seen().back(), State::Unreachable);
        }
        ASSERT_TRUE(s_cluster->Restart().isEmpty());
        Station station(path(QStringLiteral("backlog.db")), s_cluster->Site("backlog"));
        station.journal->Append(numbered(301));
        ASSERT_TRUE(waitUntil([&] { return station.replicator->Acknowledged() == 301; }, 20000));
        EXPECT_EQ(stored("backlog"), expected(301));
    }
}

TEST_F(SiteRecordTest, ServerAtThePreviousSchemaIsMigrated)
{
    ASSERT_FALSE(s_cluster->Psql(QStringLiteral("CREATE DATABASE previous")).isNull());
    clientcommonlogical::SiteRecordConfig site = s_cluster->Site("new");
    site.database = "previous";
    {
        CStopSignal stop;
        CSiteConnection conn(site, stop);
        ASSERT_TRUE(conn.Connect(10000)) << qPrintable(conn.error());
        QString why;
        ASSERT_TRUE(CSiteSchema::Migrate(conn, why, CSiteSchema::kVersion - 1)) << qPrintable(why);
        ASSERT_TRUE(conn.ExecScript("INSERT INTO bt_events(station, journal, event_id, time, person_name, library)"
                                    " VALUES('old', 'j', 1, 5, 'Olga', 'Staff'), ('old', 'j', 2, 6, '', '')"))
            << qPrintable(conn.error());
    }
    Station station(path(QStringLiteral("m.db")), site);
    station.journal->Append(numbered(1));
    ASSERT_TRUE(waitUntil([&] { return station.replicator->Acknowledged() == 1; }, 20000));
    CStopSignal stop;
    CSiteConnection conn(site, stop);
    ASSERT_TRUE(conn.Connect(10000));
    // The version, every row, and the names and libraries the text search
    // looks up first: the old rows' and the new row's.
    EXPECT_EQ(CSiteConnection::Value(conn.Exec("SELECT (SELECT max(version) FROM bt_schema) || '|'"
                                               " || (SELECT string_agg(station, ',' ORDER BY station) FROM bt_events) || '|'"
                                               " || (SELECT string_agg(field || value, ',' ORDER BY field, value)"
                                               " FROM bt_text_values)"), 0, 0),
        std::to_string(CSiteSchema::kVersion) + "|new,old,old|0Olga,0P1,1Staff");
}

TEST_F(SiteRecordTest, TlsAndPasswordAreCheckedOnceAndTheStationGoesOn)
{
    const QString logFile = path(QStringLiteral("site.log"));
    Base::Log::Init(logFile.toStdString());
    const std::string ca = s_certs->filePath(QStringLiteral("siteca.crt")).toStdString();
    const std::string otherCa = s_certs->filePath(QStringLiteral("otherca.crt")).toStdString();
    struct Row { const char *name, *sslmode; std::string caFile; const char* password; bool arrives; State state; }
    const rows[] = {
        {"tls-good", "verify-full", ca, testsupport::PrivatePgCluster::kPassword, true, State::Reachable},
        {"tls-foreign-ca", "verify-full", otherCa, testsupport::PrivatePgCluster::kPassword, false, State::Untrusted},
        {"wrong-password", "require", "", "not-the-Password-9", false, State::Rejected},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        clientcommonlogical::SiteRecordConfig site = s_cluster->Site(r.name);
        site.host = "localhost";
        site.sslmode = r.sslmode;
        site.caFile = r.caFile;
        site.password = r.password;
        const QString journal = path(QString::fromLatin1(r.name) + QStringLiteral(".db"));
        Station station(journal, site, 100);
        for (int i = 1; i <= 3; ++i)
            station.journal->Append(numbered(i));
        ASSERT_TRUE(station.journal->Flush());  // the station keeps working locally
        if (r.arrives) {
            ASSERT_TRUE(waitUntil([&] { return station.replicator->Acknowledged() == 3; }, 20000));
            EXPECT_EQ(stored(r.name), expected(3));
            EXPECT_TRUE(station.seen().empty());
            continue;
        }
        ASSERT_TRUE(waitUntil([&] { return !station.seen().empty(); }, 20000));
        testsupport::pump(600);  // several more attempts at 100 ms
        EXPECT_EQ(station.seen(), std::vector<State>{r.state});
        EXPECT_EQ(station.replicator->Acknowledged(), 0);
        EXPECT_EQ(stored(r.name), QStringLiteral("0|0||"));
    }
    const QByteArray text = testsupport::readFile(logFile);
    ASSERT_FALSE(text.isEmpty());
    EXPECT_FALSE(text.contains(testsupport::PrivatePgCluster::kPassword));
    EXPECT_FALSE(text.contains("not-the-Password-9"));
    EXPECT_EQ(text.count("certificate that does not verify"), 1) << text.constData();
    EXPECT_EQ(text.count("refused the station's user or password"), 1) << text.constData();
}

// The site-scope history: two stations' rows in one newest-first order,
// filtered on the server, paged, and followed live.
TEST_F(SiteRecordTest, HistoryPagesEveryStation)
{
    ASSERT_FALSE(s_cluster->Psql(QStringLiteral("CREATE DATABASE history")).isNull());
    clientcommonlogical::SiteRecordConfig site = s_cluster->Site("alpha");
    site.database = "history";
    clientcommonlogical::SiteRecordConfig beta = site;
    beta.station = "beta";
    Station a(path(QStringLiteral("alpha.db")), site);
    Station b(path(QStringLiteral("beta.db")), beta);
    const QByteArray face = testsupport::makeJpeg(48, 64);
    for (int i = 1; i <= 12; ++i) {
        a.journal->Append(numbered(i, face));
        b.journal->Append(numbered(i));
    }
    ASSERT_TRUE(waitUntil([&] { return a.replicator->Acknowledged() == 12 && b.replicator->Acknowledged() == 12; }, 20000));
    {  // the acknowledgement is kept in the journal for the next start (just after it is counted)
        CJournalDatabase db;
        ASSERT_TRUE(db.Open(path(QStringLiteral("alpha.db")), CJournalDatabase::OpenMode::Read));
        EXPECT_TRUE(waitUntil([&] { return db.State(CSiteReplicator::AckKey(site)) == "12"; }));
    }

    // Older than the rest and out of the reports' range: one row whose name
    // and library both hold the text, one only its library, and more names
    // holding one text than are looked up one by one.
    CStopSignal stop;
    CSiteConnection early(site, stop);
    ASSERT_TRUE(early.Connect(10000)
        && early.ExecScript("INSERT INTO bt_events(station, journal, event_id, time, person_name, library) VALUES"
                            "('delta', 'j', 1, 1699999991, 'Pat', 'Patrons'), ('delta', 'j', 2, 1699999990, '', 'Patrons');"
                            "INSERT INTO bt_events(station, journal, event_id, time, person_name, library) SELECT 'delta',"
                            " 'j', g, 1699990000 + g, 'Many ' || g, '' FROM generate_series(3, 300) g"))
        << qPrintable(early.error());
    auto keys = [](const HistoryPage& page) {
        std::string out;
        for (const HistoryRow& r : page.rows)
            out += (out.empty() ? "" : " ") + r.station.substr(0, 1) + std::to_string(r.event.id);
        return out;
    };
    auto with = [](const std::function<void(HistoryFilter&)>& set) {
        HistoryFilter f;
        set(f);
        return f;
    };
    const HistoryFilter all = with([](HistoryFilter& f) { f.pageSize = 5; });
    struct Row { const char* name; HistoryFilter filter; const char* keys; bool more; } const rows[] = {
        {"every row, first page", all, "a12 b12 a11 b11 a10", true},
        {"one station, abnormal", with([](HistoryFilter& f) { f.stations = {"beta"}; f.kinds = HistoryFilter::KindAbnormal; }),
            "b12 b9 b6 b3", false},
        {"threshold", with([](HistoryFilter& f) { f.thresholdOn = true; f.thresholdCelsius = 37.05; }), "a12 b12 a11 b11",
            false},
        {"name and cameras", with([](HistoryFilter& f) { f.text = "p1"; f.cameraIds = {"CAM2", "CAM3"}; }),
            "a11 b11 a10 b10", false},
        {"name or library, each row once", with([](HistoryFilter& f) { f.text = "PAT"; }), "d1 d2", false},
        {"text found nowhere", with([](HistoryFilter& f) { f.text = "nobody"; }), "", false},
        {"text in too many values to look up", with([](HistoryFilter& f) { f.text = "many"; f.pageSize = 3; }),
            "d300 d299 d298", true},
    };
    CSiteHistorySource source(site);
    EXPECT_TRUE(source.IsSite());
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        HistoryPage page;
        QString error;
        ASSERT_EQ(source.Page(r.filter, nullptr, page, error), IHistorySource::Result::Ok) << qPrintable(error);
        EXPECT_EQ(keys(page), r.keys);
        EXPECT_EQ(page.hasMore, r.more);
    }
    HistoryPage first, second, newer;
    QString error;
    ASSERT_EQ(source.Page(all, nullptr, first, error), IHistorySource::Result::Ok);
    const HistoryKey after = first.rows.back().key();
    ASSERT_EQ(source.Page(all, &after, second, error), IHistorySource::Result::Ok);
    EXPECT_EQ(keys(second), "b10 a9 b9 a8 b8");
    EXPECT_EQ(first.rows.front().event.faceJpeg, face);
    EXPECT_EQ(first.rows.front().event.cameraId, "CAM0");

    b.journal->Append(numbered(13));
    a.journal->Append(numbered(13));
    ASSERT_TRUE(waitUntil([&] { return a.replicator->Acknowledged() == 13 && b.replicator->Acknowledged() == 13; }, 20000));
    ASSERT_EQ(source.Newer(all, first.watermark, newer, error), IHistorySource::Result::Ok);
    EXPECT_EQ(keys(newer), "a13 b13");
    EXPECT_GT(newer.watermark, first.watermark);

    // Two writers committing out of step: a row numbered first but committed
    // last is still followed (the later writer waits for the earlier commit).
    ASSERT_TRUE(early.ExecScript("BEGIN")
        && early.ExecScript("INSERT INTO bt_events(station, journal, event_id, time) VALUES('gamma', 'j', 1, 1700000050)"))
        << qPrintable(early.error());
    b.journal->Append(numbered(14));
    testsupport::pump(700);  // the replicator's batch is now waiting behind the open transaction
    HistoryPage between, later;
    ASSERT_EQ(source.Newer(all, newer.watermark, between, error), IHistorySource::Result::Ok);
    ASSERT_TRUE(early.ExecScript("COMMIT"));
    ASSERT_TRUE(waitUntil([&] { return b.replicator->Acknowledged() == 14; }, 20000));
    ASSERT_EQ(source.Newer(all, std::max(newer.watermark, between.watermark), later, error), IHistorySource::Result::Ok);
    EXPECT_EQ(keys(between) + "|" + keys(later), "|g1 b14");

    // The shift report of the whole site, with a station column (of one station: CShiftReportExporter_test).
    ShiftReportRequest request;
    request.journalPath = path(QStringLiteral("beta.db"));
    request.from = QDateTime::fromSecsSinceEpoch(1700000000);
    request.to = QDateTime::fromSecsSinceEpoch(1700000100);
    request.folder = path(QStringLiteral("report"));
    QDir().mkpath(request.folder);
    request.site = std::make_shared<const clientcommonlogical::SiteRecordConfig>(site);
    std::atomic<bool> cancel{false};
    std::atomic<int> progress{0};
    const auto result = CShiftReportExporter::Run(request, cancel, progress);
    ASSERT_EQ(result.outcome, CShiftReportExporter::Outcome::Written) << qPrintable(result.error);
    const QStringList lines = QString::fromUtf8(testsupport::readFile(result.files.value(0)).mid(3)).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 28 + 1);
    EXPECT_EQ(lines[0].split(QLatin1Char(',')).size(), 12);
    EXPECT_TRUE(lines[0].contains(QStringLiteral("Station")));
    EXPECT_EQ(lines.filter(QStringLiteral(",alpha,")).size(), 13);
    QProcess pdf;
    pdf.start(QStringLiteral("pdftotext"), {result.files.value(1), QStringLiteral("-")});
    ASSERT_TRUE(pdf.waitForFinished(30000));
    const QString text = QString::fromUtf8(pdf.readAllStandardOutput());
    EXPECT_TRUE(text.contains(QStringLiteral("Station")));
    EXPECT_TRUE(text.contains(QStringLiteral("alpha")));
}

// A stop (the module unloaded) never waits for the server.
TEST_F(SiteRecordTest, StopCutsOffAConnectionOrStatementInFlight)
{
    testsupport::SilentListener silent;
    ASSERT_GT(silent.port(), 0);
    {
        CStopSignal stop;
        CSiteConnection conn(s_cluster->Site("stop"), stop);
        QString why;
        ASSERT_TRUE(conn.Connect(10000) && CSiteSchema::Migrate(conn, why)) << qPrintable(conn.error() + why);
    }
    QProcess locker;  // holds the table while the station inserts
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("PGPASSWORD"), QString::fromLatin1(testsupport::PrivatePgCluster::kPassword));
    locker.setProcessEnvironment(env);
    locker.setStandardOutputFile(QProcess::nullDevice());
    locker.setStandardErrorFile(QProcess::nullDevice());
    locker.start(QStringLiteral("psql"), {QStringLiteral("-h127.0.0.1"), QStringLiteral("-p%1").arg(s_cluster->port()),
        QStringLiteral("-Ubt"), QStringLiteral("-dpostgres"), QStringLiteral("-cBEGIN; LOCK TABLE bt_events; SELECT pg_sleep(60);")});
    ASSERT_TRUE(waitUntil([&] {
        return s_cluster->Psql(QStringLiteral("SELECT count(*) FROM pg_locks WHERE mode = 'AccessExclusiveLock'"
                                              " AND relation = 'bt_events'::regclass")) == QStringLiteral("1");
    }, 10000));
    struct Row { const char* name; int port; } const rows[] = {
        {"silent server", silent.port()}, {"locked table", s_cluster->port()}};
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        clientcommonlogical::SiteRecordConfig site = s_cluster->Site("stop");
        site.port = r.port;
        auto station = std::make_unique<Station>(path(QString::fromLatin1(r.name) + QStringLiteral(".db")), site);
        station->journal->Append(numbered(1));
        ASSERT_TRUE(station->journal->Flush());
        testsupport::pump(500);  // the sender is waiting for the server now
        EXPECT_EQ(station->replicator->Acknowledged(), 0);
        station->journal.reset();
        QElapsedTimer timer;
        timer.start();
        station->replicator.reset();
        EXPECT_LT(timer.elapsed(), 100);
    }
    locker.kill();
    locker.waitForFinished(5000);
    s_cluster->Psql(QStringLiteral("SELECT pg_terminate_backend(pid) FROM pg_stat_activity"
                                   " WHERE query LIKE '%pg_sleep(60)%' AND pid <> pg_backend_pid()"));
}

// The banner names the site record while it cannot take events, and clears.
TEST_F(SiteRecordTest, BannerReportsTheSiteRecordAndItsRecovery)
{
    QTranslator english;
    ASSERT_TRUE(english.load(QStringLiteral(":/BodyTemperature/i18n/BodyTemperature_en.qm")));
    QCoreApplication::installTranslator(&english);
    QWidget frame;
    frame.resize(1200, 700);
    auto* banner = new CDeviceHealthBanner(&frame);
    frame.show();
    s_cluster->Stop();
    clientcommonlogical::CConfigMgr::Instance()->SetSiteRecord(s_cluster->Site("banner"));
    {
        CScreeningRecord record(nullptr, path(QStringLiteral("banner.db")));
        QObject::connect(&record, &CScreeningRecord::signalSiteRecordState, banner, &CDeviceHealthBanner::OnSiteRecord);
        record.Journal()->Append(numbered(1));
        ASSERT_TRUE(waitUntil([&] { return banner->isVisible(); }, 10000));
        const QString text = banner->findChild<QLabel*>(QStringLiteral("m_pDeviceHealthText"))->text();
        EXPECT_TRUE(text.startsWith(QStringLiteral("Site record unreachable since %1")
                                        .arg(QTime::currentTime().toString(QStringLiteral("hh:mm")))))
            << qPrintable(text);
        ASSERT_TRUE(s_cluster->Restart().isEmpty());
        EXPECT_TRUE(waitUntil([&] { return !banner->isVisible(); }, 10000));
        EXPECT_EQ(record.Replicator()->Acknowledged(), 1);
    }
    clientcommonlogical::CConfigMgr::Instance()->SetSiteRecord({});
    QCoreApplication::removeTranslator(&english);
}

} // namespace
