#pragma once
// The settings file as the pages and the display use it: the process-wide
// connection on a temporary folder, emptied before each test.
#include <QAbstractButton>
#include <QFile>
#include <QTemporaryDir>
#include <memory>
#include <optional>
#include <ostream>
#include <gtest/gtest.h>

#include "CBTConfigDB.h"
#include "CommonMethodLib/CUserDataPath.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include "support/TestSupport.h"

// Readable QStrings in failure messages.
inline void PrintTo(const QString& s, std::ostream* os) { *os << '"' << s.toStdString() << '"'; }

namespace settingstest {

// An empty settings table, as a fresh install has it.
inline void emptyTable()
{
    ASSERT_TRUE(BodyTemperature::CBTConfigDB::Instance()->Execute("DELETE FROM TemperatureConfigure;"));
}

// While alive, the settings connection refuses every write, as on a read-only
// file (how the store itself fails is the store's test; pages see false).
struct ReadOnlySettings {
    ReadOnlySettings() { BodyTemperature::CBTConfigDB::Instance()->Execute("PRAGMA query_only = 1;"); }
    ~ReadOnlySettings() { BodyTemperature::CBTConfigDB::Instance()->Execute("PRAGMA query_only = 0;"); }
};

class SettingsFileTest : public testsupport::TempDirTest {
protected:
    void SetUp() override
    {
        TempDirTest::SetUp();
        // The connection is process-wide and opens its file once: one folder per program.
        static QTemporaryDir shared;
        CUserDataPath::Instance()->setComponentPath((shared.path() + QStringLiteral("/component/")).toStdString());
        ASSERT_TRUE(BodyTemperature::CBTConfigDB::Instance()->IsOpen());
        emptyTable();
        VantorGUIToolkit::CInformationDlg::ClearShownMessages();
    }

    // Every write transaction changes the file (its change counter at least).
    static QByteArray fileBytes()
    {
        QFile f(QString::fromStdString(BodyTemperature::CBTConfigDB::DatabasePath()));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    // What a restarted host would load: a fresh connection on the same file.
    static BodyTemperature::AlarmDisplayConfig reloaded()
    {
        BodyTemperature::CBTConfigDB fresh(BodyTemperature::CBTConfigDB::DatabasePath());
        BodyTemperature::AlarmDisplayConfig c;
        EXPECT_TRUE(fresh.LoadAlarmDisplayConfig(c));
        return c;
    }
    static bool store(const BodyTemperature::AlarmDisplayConfig& c)
    {
        return BodyTemperature::CBTConfigDB::Instance()->SaveAlarmDisplayConfig(c);
    }
    // Clicks a page's Save, on read-only settings when asked.
    static void clickSave(QAbstractButton* save, bool readOnly)
    {
        std::optional<ReadOnlySettings> guard;
        if (readOnly)
            guard.emplace();
        save->click();
    }
    // A settings page as the display opens it, with the row it shows stored.
    template <typename Page>
    static std::unique_ptr<Page> openPage(const BodyTemperature::AlarmDisplayConfig& c)
    {
        EXPECT_TRUE(store(c));
        auto page = std::make_unique<Page>();
        page->SetConfig(c);
        page->show();
        return page;
    }
    static QStringList messages() { return VantorGUIToolkit::CInformationDlg::ShownMessages(); }
};

} // namespace settingstest
