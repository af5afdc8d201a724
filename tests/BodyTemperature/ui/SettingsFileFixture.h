#pragma once
// Fixture of the settings-page tests: the real settings connection on a real
// file in a temporary component folder, emptied before every test, plus
// helpers that look at the file from outside (raw SQLite, file bytes) the way
// another program would.
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTranslator>
#include <functional>
#include <memory>
#include <QTemporaryDir>
#include <sqlite3.h>
#include <ostream>
#include <string>
#include <vector>
#include <gtest/gtest.h>

#include "CBTConfigDB.h"
#include "CommonMethodLib/CUserDataPath.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include "support/TestSupport.h"

// Readable QStrings in failure messages.
inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }

namespace settingstest {

// An empty settings table, as a fresh install has it.
inline void recreateTable()
{
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(BodyTemperature::CBTConfigDB::DatabasePath().c_str(), &db), SQLITE_OK);
    const char* sql = "DROP TABLE IF EXISTS TemperatureConfigure;"
        "CREATE TABLE TemperatureConfigure (FaceThermSnap INTEGER, FaceSnap INTEGER, FaceContrast INTEGER, "
        "NoMask INTEGER, TemAbnormal INTEGER, Dispeared INTEGER, DispearedTime INTEGER, SaveNoMaskPath TEXT, "
        "SaveTemNormalPath TEXT, SaveTemAbnormalPath TEXT, OpenNoMaskSound INTEGER, OpenTempNormal INTEGER, "
        "OpenTempAbnormal INTEGER);";
    EXPECT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
    sqlite3_close(db);
}

class SettingsFileTest : public testsupport::TempDirTest {
protected:
    void SetUp() override
    {
        TempDirTest::SetUp();
        // The connection is process-wide and opens its file once, so every
        // test of the program shares one component folder; each starts with
        // an empty table.
        CUserDataPath::Instance()->setComponentPath(sharedFolder().toStdString());
        ASSERT_TRUE(BodyTemperature::CBTConfigDB::Instance()->IsOpen());
        recreateTable();
        VantorGUIToolkit::CInformationDlg::ClearShownMessages();
    }

    static QString sharedFolder()
    {
        static QTemporaryDir dir;
        return dir.path() + QStringLiteral("/component/");
    }
    static std::string settingsFile() { return BodyTemperature::CBTConfigDB::DatabasePath(); }

    // Raw SQL on the file through a second connection.
    static void exec(const char* sql)
    {
        sqlite3* db = nullptr;
        ASSERT_EQ(sqlite3_open(settingsFile().c_str(), &db), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
        sqlite3_close(db);
    }
    static int rowCount()
    {
        sqlite3* db = nullptr;
        sqlite3_open(settingsFile().c_str(), &db);
        sqlite3_stmt* st = nullptr;
        int n = -1;
        if (sqlite3_prepare_v2(db, "SELECT COUNT(*) FROM TemperatureConfigure", -1, &st, nullptr) == SQLITE_OK
            && sqlite3_step(st) == SQLITE_ROW)
            n = sqlite3_column_int(st, 0);
        sqlite3_finalize(st);
        sqlite3_close(db);
        return n;
    }
    // Every write transaction changes the file (its change counter at least).
    static QByteArray fileBytes()
    {
        QFile f(QString::fromStdString(settingsFile()));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    // What a restarted host would load: a fresh connection on the same file.
    static BodyTemperature::AlarmDisplayConfig reloaded()
    {
        BodyTemperature::CBTConfigDB fresh(settingsFile());
        BodyTemperature::AlarmDisplayConfig c;
        EXPECT_TRUE(fresh.LoadAlarmDisplayConfig(c));
        return c;
    }
    static bool store(const BodyTemperature::AlarmDisplayConfig& c)
    {
        return BodyTemperature::CBTConfigDB::Instance()->SaveAlarmDisplayConfig(c);
    }
    static QStringList messages() { return VantorGUIToolkit::CInformationDlg::ShownMessages(); }
};

// Ways a save really fails, each with its undo. The connection stays the
// real one; only the file or its use around it is broken.
struct SaveFailure {
    const char* name;
    void (*breakIt)(sqlite3** holder);
    void (*repair)(sqlite3** holder);
};

inline const std::vector<SaveFailure>& saveFailures()
{
    static const std::vector<SaveFailure> cases = {
        {"table dropped by another program",
            [](sqlite3**) {
                sqlite3* db = nullptr;
                sqlite3_open(BodyTemperature::CBTConfigDB::DatabasePath().c_str(), &db);
                sqlite3_exec(db, "DROP TABLE TemperatureConfigure;", nullptr, nullptr, nullptr);
                sqlite3_close(db);
            },
            [](sqlite3**) { recreateTable(); }},
        {"connection made read-only",
            [](sqlite3**) { BodyTemperature::CBTConfigDB::Instance()->Execute("PRAGMA query_only = 1;"); },
            [](sqlite3**) { BodyTemperature::CBTConfigDB::Instance()->Execute("PRAGMA query_only = 0;"); }},
        {"file locked by another writer",
            [](sqlite3** holder) {
                sqlite3_open(BodyTemperature::CBTConfigDB::DatabasePath().c_str(), holder);
                sqlite3_exec(*holder, "BEGIN EXCLUSIVE;", nullptr, nullptr, nullptr);
            },
            [](sqlite3** holder) {
                sqlite3_exec(*holder, "ROLLBACK;", nullptr, nullptr, nullptr);
                sqlite3_close(*holder);
                *holder = nullptr;
            }},
    };
    return cases;
}

// Writes PNGs of a page into $BT_SNAPSHOT_DIR, once with the bare keys and
// once per shipped translation, the last one under the module's style sheet;
// make() builds the page after the translator is in place. Skips when the
// variable is unset.
inline void renderInLanguages(const QString& name, const std::function<std::unique_ptr<QWidget>(int language)>& make)
{
    const QString dir = qEnvironmentVariable("BT_SNAPSHOT_DIR");
    if (dir.isEmpty())
        GTEST_SKIP() << "set BT_SNAPSHOT_DIR to write the pictures";
    struct Lang {
        const char* suffix;
        int language;
        bool styled;
    };
    QFile qss(QStringLiteral(":/BodyTemperature/Qss/BodyTemperature/BodyTemperature.qss"));
    const QString style = qss.open(QIODevice::ReadOnly) ? QString::fromUtf8(qss.readAll()) : QString();
    for (const Lang& l : {Lang{"keys", 2, false}, Lang{"en", 2, false}, Lang{"zh_CN", 1, true}}) {
        QTranslator translator;
        const bool translated = translator.load(
            QStringLiteral(":/BodyTemperature/i18n/BodyTemperature_%1.qm").arg(QLatin1String(l.suffix)));
        if (translated)
            QCoreApplication::installTranslator(&translator);
        std::unique_ptr<QWidget> page = make(l.language);
        if (l.styled)
            page->setStyleSheet(style);
        page->show();
        testsupport::pump(50);
        EXPECT_TRUE(page->grab().save(QDir(dir).filePath(name + QLatin1Char('_') + QLatin1String(l.suffix) + QStringLiteral(".png"))));
        page.reset();
        if (translated)
            QCoreApplication::removeTranslator(&translator);
    }
}

} // namespace settingstest
