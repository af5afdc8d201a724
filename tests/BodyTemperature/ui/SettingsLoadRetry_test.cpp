// The settings file is locked by another program while the page starts: the
// page runs on defaults without writing them anywhere, reads the user's row
// as soon as the lock clears, and a save the user asks for starts from that row.
#include <QCheckBox>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

#include "SettingsFileFixture.h"
#include "ui/CBTShowWidget.h"

using BodyTemperature::AlarmDisplayConfig;
using BodyTemperature::CBTShowWidget;

namespace {

AlarmDisplayConfig userRow()
{
    AlarmDisplayConfig c;
    c.bFaceCapture = false;
    c.bPopAutoClose = false;
    c.iPopDuration = 1800;
    c.strNoMaskVoice = QStringLiteral("/srv/voice/mask.wav");
    c.strNormalVoice = QStringLiteral("/srv/voice/ok.wav");
    c.strAbnormalVoice = QStringLiteral("/srv/voice/fever.wav");
    c.bSoundNormal = false;
    return c;
}

class SettingsLoadRetryTest : public settingstest::SettingsFileTest {
protected:
    // Whether the display takes a face capture in (it reports its counters).
    static bool accepted(CBTShowWidget& w)
    {
        publicdatacontroller::IntelAlarmEventInfo r;
        r.eventType = 100101;
        QSignalSpy spy(&w, &CBTShowWidget::signalNum);
        w.DealAlarmInfo(r);
        return spy.count() == 1;
    }
    // Another program holds the file exclusively until release().
    void lock()
    {
        ASSERT_EQ(sqlite3_open(BodyTemperature::CBTConfigDB::DatabasePath().c_str(), &m_other), SQLITE_OK);
        ASSERT_EQ(sqlite3_exec(m_other, "BEGIN EXCLUSIVE;", nullptr, nullptr, nullptr), SQLITE_OK);
    }
    void release()
    {
        sqlite3_exec(m_other, "ROLLBACK;", nullptr, nullptr, nullptr);
        sqlite3_close(m_other);
        m_other = nullptr;
    }
    void TearDown() override
    {
        if (m_other)
            release();
        SettingsFileTest::TearDown();
    }
    sqlite3* m_other = nullptr;
};

TEST_F(SettingsLoadRetryTest, ALockedFileAtStartIsNeverOverwrittenAndIsReadOnceFree)
{
    struct Case {
        const char* name;
        bool userToggles;  // the user unchecks face comparison right after the lock clears
    };
    const Case cases[] = {{"nobody touches the settings", false}, {"the user saves a switch", true}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        settingstest::emptyTable();
        ASSERT_TRUE(store(userRow()));
        const QByteArray before = fileBytes();
        lock();
        CBTShowWidget w;
        // The defaults are in use (face captures shown), and written nowhere.
        EXPECT_TRUE(accepted(w));
        testsupport::pump(1500);
        EXPECT_EQ(fileBytes(), before);
        release();

        AlarmDisplayConfig expected = userRow();
        if (c.userToggles) {
            w.findChild<QToolButton*>(QStringLiteral("m_pAlarmTypeBtn"))->click();
            auto* box = w.findChild<QCheckBox*>(QStringLiteral("m_pFaceComparisonCheckBox"));
            ASSERT_NE(box, nullptr);
            // The panel shows the stored switches, not the defaults.
            EXPECT_FALSE(w.findChild<QCheckBox*>(QStringLiteral("m_pFaceCaptureCheckBox"))->isChecked());
            QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, 8));
            expected.bFacePictureComparison = false;
        } else {
            // The user's row is read once the lock clears: face captures are off again.
            ASSERT_TRUE(testsupport::waitUntil([&] { return !accepted(w); }, 15000));
            EXPECT_EQ(fileBytes(), before);
        }
        EXPECT_TRUE(reloaded() == expected);
    }
}

} // namespace
