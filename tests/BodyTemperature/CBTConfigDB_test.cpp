// The settings store on real SQLite files: defaults, round trips, the single
// row, failures that must return false without crashing, concurrent savers.
#include <sqlite3.h>
#include <thread>
#include <vector>
#include <gtest/gtest.h>

#include "CBTConfigDB.h"
#include "support/SqlFile.h"
#include "support/TestSupport.h"

using BodyTemperature::AlarmDisplayConfig;
using BodyTemperature::CBTConfigDB;
using testsupport::sqlExec;
using testsupport::sqlQuery;

namespace {

class ConfigDBTest : public testsupport::TempDirTest {
protected:
    std::string dbPath() const { return path(QStringLiteral("BodyTemperature")).toStdString(); }
    std::string rowCount() const { return sqlQuery(dbPath(), "SELECT COUNT(*) FROM TemperatureConfigure"); }
};

AlarmDisplayConfig sampleConfig()
{
    AlarmDisplayConfig c;
    c.bFaceTemperatureCapture = true;
    c.bFacePictureComparison = true;
    c.bFaceCapture = false;
    c.bPopNoMask = false;
    c.bPopAbnormal = true;
    c.bPopAutoClose = false;
    c.iPopDuration = 1800;
    c.strNoMaskVoice = QStringLiteral("/opt/voice/无口罩.wav");
    c.strNormalVoice = QStringLiteral("/opt/voice/normal.wav");
    c.strAbnormalVoice = QStringLiteral("/opt/voice/abnormal.wav");
    c.bSoundNoMask = true;
    c.bSoundNormal = false;
    c.bSoundAbnormal = true;
    return c;
}

} // namespace

TEST_F(ConfigDBTest, FreshFileLoadsTheDefaults)
{
    CBTConfigDB db(dbPath());
    AlarmDisplayConfig c;
    c.iPopDuration = 99;  // untouched fields stay as they were when there is no row
    ASSERT_TRUE(db.LoadAlarmDisplayConfig(c));
    EXPECT_EQ(c.iPopDuration, 99);
    EXPECT_EQ(rowCount(), "0");
}

TEST_F(ConfigDBTest, RoundTripsEveryFieldAndKeepsOneRow)
{
    CBTConfigDB db(dbPath());
    AlarmDisplayConfig saved = sampleConfig();
    // Long paths that fit are kept whole.
    saved.strNoMaskVoice += QString(540, QLatin1Char('n'));
    saved.strNormalVoice = QStringLiteral("/") + QString(550, QLatin1Char('m'));
    saved.strAbnormalVoice = QStringLiteral("/") + QString(550, QLatin1Char('a'));
    ASSERT_TRUE(db.SaveAlarmDisplayConfig(saved));
    ASSERT_TRUE(db.SaveAlarmDisplayConfig(saved));
    EXPECT_EQ(rowCount(), "1");
    // The three switches land in their own columns, which a hand-made table shares.
    EXPECT_EQ(sqlQuery(dbPath(), "SELECT FaceThermSnap * 100 + FaceSnap * 10 + FaceContrast FROM TemperatureConfigure"), "101");

    AlarmDisplayConfig loaded;
    ASSERT_TRUE(db.LoadAlarmDisplayConfig(loaded));
    EXPECT_TRUE(loaded == saved);
}

// Every column of every row, quoted as SQL literals: equal means byte for byte.
static std::string rowsOf(const std::string& file)
{
    return sqlQuery(file, "SELECT quote(FaceThermSnap)||quote(FaceSnap)||quote(FaceContrast)||quote(NoMask)"
        "||quote(TemAbnormal)||quote(Dispeared)||quote(DispearedTime)||quote(SaveNoMaskPath)||quote(SaveTemNormalPath)"
        "||quote(SaveTemAbnormalPath)||quote(OpenNoMaskSound)||quote(OpenTempNormal)||quote(OpenTempAbnormal) "
        "FROM TemperatureConfigure");
}

// Delete and insert are two separate statements: a save failing at the insert
// leaves the table empty (the next load gives the defaults); one failing at
// both leaves the previous row.
TEST_F(ConfigDBTest, AFailedSaveEmptiesTheTableOrLeavesItAsItWas)
{
    struct Case {
        const char* name;
        std::function<void(AlarmDisplayConfig&)> change;
        const char* otherConnection;  // SQL a second connection runs and holds during the save
        const char* schema;           // SQL run on the file before the save
        bool emptied;                 // the delete went through, the insert did not
    };
    const Case cases[] = {
        {"a quote in a path", [](AlarmDisplayConfig& c) { c.strNormalVoice = QStringLiteral("/home/o'neil/n.wav"); },
            nullptr, nullptr, true},
        // Run whole, a path ending the statement would drop the table or empty it again.
        {"a path ending the statement", [](AlarmDisplayConfig& c) {
             c.strAbnormalVoice = QStringLiteral("x','1','1','1'); DROP TABLE TemperatureConfigure; --");
         }, nullptr, nullptr, true},
        {"a path ending the statement twice", [](AlarmDisplayConfig& c) {
             c.strAbnormalVoice = QStringLiteral("x','1','1','1');; DELETE FROM TemperatureConfigure");
         }, nullptr, nullptr, true},
        {"a NUL in a path", [](AlarmDisplayConfig& c) { c.strAbnormalVoice = QString::fromUtf8("/a\0b.wav", 8); },
            nullptr, nullptr, true},
        {"a statement longer than its buffer",
            [](AlarmDisplayConfig& c) { c.strNoMaskVoice = QString(2000, QChar(0x4E2D)); }, nullptr, nullptr, true},
        {"another writer holds the file", [](AlarmDisplayConfig&) {}, "BEGIN IMMEDIATE;", nullptr, false},
        {"a reader keeps the writes from happening", [](AlarmDisplayConfig&) {},
            "BEGIN; SELECT COUNT(*) FROM TemperatureConfigure;", nullptr, false},
        {"the insert is refused after the delete", [](AlarmDisplayConfig&) {}, nullptr,
            "CREATE TRIGGER refuse BEFORE INSERT ON TemperatureConfigure BEGIN SELECT RAISE(ABORT, 'no'); END;", true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CBTConfigDB db(dbPath());
        ASSERT_TRUE(db.SaveAlarmDisplayConfig(sampleConfig()));
        const std::string before = rowsOf(dbPath());
        ASSERT_FALSE(before.empty());
        if (c.schema)
            sqlExec(dbPath(), c.schema);

        sqlite3* other = nullptr;
        if (c.otherConnection) {
            ASSERT_EQ(sqlite3_open(dbPath().c_str(), &other), SQLITE_OK);
            ASSERT_EQ(sqlite3_exec(other, c.otherConnection, nullptr, nullptr, nullptr), SQLITE_OK);
        }
        AlarmDisplayConfig changed = sampleConfig();
        changed.iPopDuration = 7;
        c.change(changed);
        EXPECT_FALSE(db.SaveAlarmDisplayConfig(changed));
        if (other) {
            sqlite3_exec(other, "ROLLBACK;", nullptr, nullptr, nullptr);
            sqlite3_close(other);
        }
        EXPECT_EQ(rowsOf(dbPath()), c.emptied ? std::string() : before);
        // The connection is usable afterwards.
        sqlExec(dbPath(), "DROP TRIGGER IF EXISTS refuse;");
        AlarmDisplayConfig next = sampleConfig();
        next.iPopDuration = 9;
        EXPECT_TRUE(db.SaveAlarmDisplayConfig(next));
        AlarmDisplayConfig loaded;
        ASSERT_TRUE(db.LoadAlarmDisplayConfig(loaded));
        EXPECT_EQ(loaded.iPopDuration, 9);
    }
}

// A hand-made table of thirteen untyped columns holding text loads as the store's own;
// durations out of range read as the default.
TEST_F(ConfigDBTest, HandMadeRowsLoadAndOutOfRangeDurationsReadAsTheDefault)
{
    const std::pair<const char*, int> rows[] = {{"-5", 5}, {"0", 5}, {"3000000", 5}, {"99999999999", 5},
        {"'abc'", 5}, {"1801", 5}, {"-1", -1}, {"'-1'", -1}, {"1", 1}, {"1800", 1800}};
    const std::string file = path(QStringLiteral("handmade")).toStdString();
    sqlExec(file,
        "CREATE TABLE TemperatureConfigure (FaceThermSnap, FaceSnap, FaceContrast, NoMask, TemAbnormal, "
        "Dispeared, DispearedTime, SaveNoMaskPath, SaveTemNormalPath, SaveTemAbnormalPath, OpenNoMaskSound, "
        "OpenTempNormal, OpenTempAbnormal);");
    CBTConfigDB db(file);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.first);
        sqlExec(file, std::string("DELETE FROM TemperatureConfigure; INSERT INTO TemperatureConfigure VALUES ")
                + "('1','0','1','0','1','1'," + row.first + ",'a.wav','b.wav','c.wav','0','1','0');");
        AlarmDisplayConfig c;
        ASSERT_TRUE(db.LoadAlarmDisplayConfig(c));
        EXPECT_EQ(c.iPopDuration, row.second);
        EXPECT_EQ(std::make_tuple(c.bFaceTemperatureCapture, c.bFaceCapture, c.bFacePictureComparison, c.bPopNoMask,
                      c.bSoundNoMask, c.bSoundNormal, c.strNoMaskVoice, c.strNormalVoice, c.strAbnormalVoice),
            std::make_tuple(true, false, true, false, false, true, QStringLiteral("a.wav"), QStringLiteral("b.wav"),
                QStringLiteral("c.wav")));
    }
}

TEST_F(ConfigDBTest, BadFilesReturnFalseWithoutCrashing)
{
    struct Case { const char* name; std::function<std::string(ConfigDBTest&)> prepare; };
    const Case cases[] = {
        {"missing table", [](ConfigDBTest& t) {
             const std::string p = t.path(QStringLiteral("notable.db")).toStdString();
             sqlExec(p, "CREATE TABLE Other (x INTEGER);");
             return p;
         }},
        {"corrupt file", [](ConfigDBTest& t) {
             const QString p = t.path(QStringLiteral("corrupt.db"));
             EXPECT_TRUE(testsupport::writeFile(p, QByteArray("this is not a database at all").repeated(200)));
             return p.toStdString();
         }},
        {"folder that cannot exist (its parent is a file)", [](ConfigDBTest& t) {
             const QString parent = t.path(QStringLiteral("plainfile"));
             EXPECT_TRUE(testsupport::writeFile(parent, "x"));
             return (parent + QStringLiteral("/BodyTemperature")).toStdString();
         }},
    };
    for (const Case& c : cases) {
        CBTConfigDB db(c.prepare(*this));
        AlarmDisplayConfig config;
        EXPECT_FALSE(db.LoadAlarmDisplayConfig(config)) << c.name;
        EXPECT_TRUE(config == AlarmDisplayConfig()) << c.name;
        EXPECT_FALSE(db.SaveAlarmDisplayConfig(sampleConfig())) << c.name;
    }
}

TEST_F(ConfigDBTest, ConcurrentSaversNeverLeaveTwoRows)
{
    CBTConfigDB db(dbPath());
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&db, &failures, t] {
            for (int i = 0; i < 50; ++i) {
                AlarmDisplayConfig c;
                c.iPopDuration = t * 100 + i;
                if (!db.SaveAlarmDisplayConfig(c))
                    ++failures;
            }
        });
    }
    for (auto& th : threads)
        th.join();
    EXPECT_EQ(failures.load(), 0);
    EXPECT_EQ(rowCount(), "1");
}

TEST_F(ConfigDBTest, TheInstanceLivesInTheComponentFolder)
{
    const std::string expected = path(QStringLiteral("component/BodyTemperature")).toStdString();
    EXPECT_EQ(CBTConfigDB::DatabasePath(), expected);
}
