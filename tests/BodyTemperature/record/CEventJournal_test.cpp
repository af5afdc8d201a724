// The screening journal against real SQLite files: rows from the display,
// restarts, old schemas, pruning, unwritable files and a writer killed mid-batch.
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QThread>
#include <cstdio>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "record/CEventJournal.h"
#include "record/CJournalDatabase.h"
#include "record/CJournalHistorySource.h"
#include "record/CScreeningRecord.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include "support/SqlFile.h"
#include "ui/CBTShowWidget.h"
#include "BodyTemperature/ui/DashboardRecords.h"

using namespace BodyTemperature;
using testsupport::waitUntil;

namespace {

// The journal's table and index as the first release created them.
constexpr char kFirstJournalTable[] =
    "CREATE TABLE events(id INTEGER PRIMARY KEY, time INTEGER NOT NULL, device_id TEXT,"
    " device_name TEXT, camera_id TEXT, camera_name TEXT, event_code INTEGER, kind INTEGER,"
    " pop_type INTEGER, mask_type INTEGER, temperature_type INTEGER, alarm_type INTEGER,"
    " temperature REAL, temperature_unit INTEGER, mask INTEGER, person_name TEXT, library TEXT,"
    " similarity REAL, face BLOB); CREATE INDEX events_time ON events(time);";

std::vector<JournalEvent> readAll(const QString& path)
{
    std::vector<JournalEvent> rows;
    CJournalDatabase db;
    EXPECT_TRUE(db.Open(path, CJournalDatabase::OpenMode::Read)) << qPrintable(db.error());
    db.Select(0, INT64_MAX, CJournalDatabase::Rows::AllWithFaces, [&](JournalEvent&& e) {
        rows.push_back(std::move(e));
        return true;
    });
    return rows;
}

JournalEvent numbered(int64_t time, int n)
{
    JournalEvent e;
    e.time = time;
    e.cameraId = "CAM" + std::to_string(n % 4);
    e.personName = std::to_string(n);
    return e;
}

class JournalTest : public testsupport::TempDirTest {};

// Records as the alarm stream gives them (its parsing is the stream's test) through the display.
TEST_F(JournalTest, DisplayedAlarmsBecomeRows)
{
    dashtest::storeSettings(dashtest::voiceConfig());
    QString journalPath;
    {
        CBTShowWidget display;
        const auto deal = [&display](publicdatacontroller::IntelAlarmEventInfo r) {
            r.deviceID = "TEST0001";
            r.captureTime = QDateTime::currentSecsSinceEpoch();  // inside the retention
            dashtest::deal(display, r);
        };
        auto hot = dashtest::record(dashtest::kTemperatureCapture, dashtest::face(1, 1, 1, false), "E1", "TEST0001-CH2");
        hot.faceInfoList[0].Temperature = 38.4;
        hot.faceInfoList[0].SubPic = testsupport::makeJpeg(240, 320);
        deal(hot);
        auto match = dashtest::record(dashtest::kComparison, protocol::IntelAlarmFaceInfo(), "E2", "TEST0001-CH3");
        match.alarmInfo.comparison.similarity = 0.87;
        match.alarmInfo.comparison.people.name = "张伟";
        deal(match);
        deal(dashtest::record(dashtest::kCapture, dashtest::face(0, 0, 2, false), "E3", "TEST0001-CH1"));
        deal(dashtest::record(dashtest::kReturning, protocol::IntelAlarmFaceInfo(), "E4", "TEST0001-CH4"));
        journalPath = CEventJournal::DefaultPath();
    }  // the display's journal commits and joins here

    const std::vector<JournalEvent> rows = readAll(journalPath);
    ASSERT_EQ(rows.size(), 4u);
    std::map<uint32_t, const JournalEvent*> byCode;
    for (const JournalEvent& e : rows) {
        byCode[e.eventCode] = &e;
        EXPECT_EQ(e.deviceId, "TEST0001");
    }
    const JournalEvent& hot = *byCode.at(100119);
    EXPECT_EQ(std::make_tuple(hot.cameraId, hot.kind, hot.temperatureMeasured, hot.mask, hot.countsAbnormal(), hot.countsNoMask(),
                  hot.shown), std::make_tuple(std::string("TEST0001-CH2"), 4u, true, 1u, true, true, 1));
    EXPECT_NEAR(hot.temperature, 38.4, 1e-6);
    EXPECT_LE(hot.faceJpeg.size(), JournalEvent::kMaxFaceBytes);
    EXPECT_FALSE(QImage::fromData(hot.faceJpeg, "JPEG").isNull());
    const JournalEvent& match = *byCode.at(100103);
    EXPECT_EQ(match.personName, "张伟");
    EXPECT_NEAR(match.similarity, 0.87, 1e-6);
    EXPECT_EQ(byCode.at(100101)->maskType, 2u);
    // No view shows channel 4: the returning person is kept but raised no count.
    EXPECT_EQ(byCode.at(100112)->shown, 0);
}

TEST_F(JournalTest, RowsSurviveARestartAndAnOldSchemaIsMigrated)
{
    const QString path = this->path(QStringLiteral("journal.db"));
    ASSERT_TRUE(testsupport::sqlExec(path.toStdString(), std::string(kFirstJournalTable)
            + "INSERT INTO events(time, kind, temperature_type, mask_type, person_name, camera_id)"
              " VALUES(100, 0, 0, 2, 'old', 'cam-1'); PRAGMA user_version = 1;"));
    const int64_t now = QDateTime::currentSecsSinceEpoch();
    for (int run = 0; run < 2; ++run) {
        CEventJournal journal({path, 0, nullptr});
        for (int i = 0; i < 3; ++i)
            journal.Append(numbered(now, run * 3 + i));
        ASSERT_TRUE(journal.Flush());
    }
    EXPECT_EQ(testsupport::sqlQuery(path.toStdString(), "PRAGMA user_version"), std::to_string(CJournalDatabase::kSchemaVersion));
    const std::vector<JournalEvent> rows = readAll(path);
    ASSERT_EQ(rows.size(), 7u);
    EXPECT_EQ(rows[0].personName, "old");
    EXPECT_EQ(rows[0].shown, 1);
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(rows[size_t(i) + 1].personName, std::to_string(i));
    // The old row is found by the history's indexed filters and by the names the upgrade gathered.
    HistoryFilter f;
    f.kinds = HistoryFilter::KindAbnormal;
    f.cameraIds = {"cam-1"};
    f.text = "OL";
    HistoryPage page;
    QString error;
    ASSERT_EQ(CJournalHistorySource(path).Page(f, nullptr, page, error), IHistorySource::Result::Ok) << qPrintable(error);
    ASSERT_EQ(page.rows.size(), 1u);
    EXPECT_EQ(page.rows[0].event.personName, "old");
    // A missing journal is an empty history, not an error.
    EXPECT_EQ(CJournalHistorySource(this->path(QStringLiteral("none.db"))).Page(f, nullptr, page, error),
        IHistorySource::Result::Ok);
    EXPECT_TRUE(page.rows.empty());
}

TEST_F(JournalTest, RetentionPrunesOldRowsInTheBackground)
{
    const int64_t day = 86400;
    const int64_t now = QDateTime::currentSecsSinceEpoch();
    struct Row { int retentionDays; size_t kept; } const rows[] = {{90, 2}, {1, 1}, {0, 3}};
    for (const Row& r : rows) {
        const QString path = this->path(QStringLiteral("retention-%1.db").arg(r.retentionDays));
        {
            CEventJournal journal({path, 0, nullptr});
            journal.Append(numbered(now - 100 * day, 0));
            journal.Append(numbered(now - 2 * day, 1));
            journal.Append(numbered(now, 2));
            ASSERT_TRUE(journal.Flush());
        }
        {
            CEventJournal journal({path, r.retentionDays, nullptr});
            journal.Append(numbered(now, 3));
            ASSERT_TRUE(journal.Flush());
        }
        EXPECT_EQ(readAll(path).size(), r.kept + 1) << "retention " << r.retentionDays;
    }
}

// A size bound drops the oldest rows first and the newest stay; without a
// bound, or under it, nothing goes (the log line: RequestCancel_test).
TEST_F(JournalTest, ASizeBoundDropsTheOldestRowsFirst)
{
    const int64_t now = QDateTime::currentSecsSinceEpoch();
    QByteArray face(4000, '\0');
    for (int i = 0; i < face.size(); ++i)
        face[i] = char((i * 7919) >> 3);  // hardly compressible, like a JPEG
    struct Row { const char* name; int64_t limit; bool pruned; } const rows[] = {
        {"bounded", 256 * 1024, true}, {"unbounded", 0, false}, {"under the bound", 64 << 20, false}};
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        const QString file = path(QStringLiteral("size-%1.db").arg(r.limit));
        CEventJournal journal({file, 0, nullptr});
        journal.SetSizeLimit(r.limit);
        for (int i = 0; i < 300; ++i) {
            JournalEvent e = numbered(now - 300 + i, i);
            e.faceJpeg = face;
            journal.Append(std::move(e));
            if (i % 50 == 49) {
                ASSERT_TRUE(journal.Flush());
            }
        }
        const std::vector<JournalEvent> kept = readAll(file);
        ASSERT_FALSE(kept.empty());
        EXPECT_EQ(kept.back().personName, "299");
        // What is left is the newest, without a gap.
        EXPECT_EQ(kept.front().personName, std::to_string(300 - int(kept.size())));
        EXPECT_EQ(kept.size() < 300, r.pruned) << kept.size();
        if (r.limit > 0) {
            CJournalDatabase db;
            ASSERT_TRUE(db.Open(file, CJournalDatabase::OpenMode::Read));
            EXPECT_LE(db.UsedBytes(), r.limit);
        }
    }
}

TEST_F(JournalTest, AJournalThatCannotBeWrittenIsAnnouncedOnceAndThePageGoesOn)
{
    const QString key = CScreeningRecord::tr("ScreeningRecordUnavailable");
    const QString damaged = CScreeningRecord::tr("ScreeningRecordDamaged");
    enum class Case { MissingFolder, Locked, Corrupt, FullDisk };
    struct Row { const char* name; Case what; bool rowsKept; QString message; } const rows[] = {
        {"cannot open", Case::MissingFolder, false, key},
        {"locked by another process", Case::Locked, false, key},
        {"corrupt", Case::Corrupt, true, damaged},
        {"full disk", Case::FullDisk, false, key},
    };
    const QByteArray bigFace(9000, 'x');
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        QString path = this->path(QStringLiteral("%1/journal.db").arg(QString::fromLatin1(r.name).replace(QLatin1Char(' '), QLatin1Char('_'))));
        QDir().mkpath(QFileInfo(path).path());
        sqlite3* holder = nullptr;
        std::unique_ptr<testsupport::SmallDisk> disk;
        switch (r.what) {
        case Case::MissingFolder:
            path = this->path(QStringLiteral("no/such/folder/journal.db"));
            break;
        case Case::Locked: {
            // Another writer that keeps the file locked for itself.
            ASSERT_EQ(sqlite3_open(QFile::encodeName(path).constData(), &holder), SQLITE_OK);
            ASSERT_EQ(sqlite3_exec(holder, "PRAGMA locking_mode=EXCLUSIVE; CREATE TABLE t(x); INSERT INTO t VALUES(1);",
                          nullptr, nullptr, nullptr),
                SQLITE_OK);
            break;
        }
        case Case::Corrupt:
            ASSERT_TRUE(testsupport::writeFile(path, QByteArray(8192, 'Z')));
            break;
        case Case::FullDisk:
            disk = std::make_unique<testsupport::SmallDisk>(QFileInfo(path).path(), "96k");
            if (!disk->mounted()) {
                std::printf("[  SKIPPED ] full disk: mounting a small file system is not permitted here\n");
                continue;
            }
            break;
        }
        VantorGUIToolkit::CInformationDlg::ClearShownMessages();
        {
            CScreeningRecord record(nullptr, path);
            QSignalSpy states(&record, &CScreeningRecord::signalJournalState);
            AlarmShowInfo info = AlarmShowInfo::FromRecord(dashtest::record(dashtest::kComparison, dashtest::face(1, 1, 1)));
            info.captureTime = QDateTime::currentSecsSinceEpoch();  // inside the retention
            for (int i = 0; i < 60; ++i) {
                JournalEvent e = CScreeningRecord::EventOf(info, 1);
                e.faceJpeg = bigFace;  // fills a small disk quickly
                record.Journal()->Append(std::move(e));
                if (i % 20 == 19)
                    testsupport::pump(300);
            }
            const bool flushed = record.Journal()->Flush(3000);
            EXPECT_EQ(flushed, r.rowsKept);
            ASSERT_TRUE(waitUntil([&] { return states.count() >= 1; }));
            testsupport::pump(200);
            EXPECT_EQ(VantorGUIToolkit::CInformationDlg::ShownMessages().count(r.message), 1);
            EXPECT_EQ(VantorGUIToolkit::CInformationDlg::ShownMessages().size(), 1);
        }
        if (holder != nullptr)
            sqlite3_close(holder);
        if (r.what == Case::Corrupt) {
            EXPECT_EQ(readAll(path).size(), 60u);
            const QStringList aside = QDir(QFileInfo(path).path()).entryList({QStringLiteral("journal.db.corrupt-*")});
            ASSERT_EQ(aside.size(), 1);
        }
    }
}

// Runs in a child process started by the test below: appends numbered rows
// about once a millisecond and reports how many it handed over.
TEST(JournalWriterChild, AppendsUntilKilled)
{
    const QByteArray path = qgetenv("BT_JOURNAL_CHILD");
    if (path.isEmpty())
        GTEST_SKIP() << "only as the child of KillNineLosesAtMostTheLastBatch";
    CEventJournal journal({QString::fromLocal8Bit(path), 0, nullptr});
    const int64_t now = QDateTime::currentSecsSinceEpoch();
    for (int i = 0;; ++i) {
        journal.Append(numbered(now, i));
        if (i % 10 == 9) {
            std::printf("%d\n", i + 1);
            std::fflush(stdout);
        }
        QThread::usleep(1000);
    }
}

TEST_F(JournalTest, KillNineLosesAtMostTheLastBatch)
{
    const QString path = this->path(QStringLiteral("killed.db"));
    QProcess child;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("BT_JOURNAL_CHILD"), path);
    child.setProcessEnvironment(env);
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--gtest_filter=JournalWriterChild.*")});
    ASSERT_TRUE(child.waitForStarted());
    int handedOver = 0;
    ASSERT_TRUE(waitUntil([&] {
        while (child.canReadLine())
            handedOver = child.readLine().trimmed().toInt();
        return handedOver >= 1500;
    }, 20000));
    child.kill();  // SIGKILL
    ASSERT_TRUE(child.waitForFinished());
    while (child.canReadLine())
        handedOver = std::max(handedOver, child.readLine().trimmed().toInt());

    const std::vector<JournalEvent> rows = readAll(path);
    // A prefix without holes, and no more than about a second of rows missing.
    for (size_t i = 0; i < rows.size(); ++i)
        ASSERT_EQ(rows[i].personName, std::to_string(i));
    EXPECT_GE(int(rows.size()), handedOver - 1000);  // at least 500
    EXPECT_EQ(testsupport::sqlQuery(path.toStdString(), "PRAGMA integrity_check"), "ok");
}

} // namespace
