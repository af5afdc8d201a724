// The shift report tab opened from the page. With BT_GALLERY set it saves the page
// and the dialog as PNG (run under Xvfb at 1920x1080 for a real screen).
#include <QCoreApplication>
#include <QDateTimeEdit>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QToolButton>
#include <QTranslator>
#include <gtest/gtest.h>

#include "record/CEventJournal.h"
#include "record/CScreeningRecord.h"
#include "DashboardRecords.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "commlayer/CDeviceStateNotifier.h"
#include "ui/CBTShowWidget.h"
#include "ui/CBodyTemperatureDlg.h"
#include "ui/Report/CShiftReportDialog.h"

using namespace BodyTemperature;
using testsupport::waitUntil;

namespace {

class ShiftReportDialogTest : public ::testing::TestWithParam<int> {
protected:
    void SetUp() override
    {
        dashtest::storeSettings(dashtest::voiceConfig());
        // A journal of this test's own (the settings connection keeps its file).
        CUserDataPath::Instance()->setComponentPath(m_component.path().toStdString());
        const QString suffix = GetParam() == 1 ? QStringLiteral("zh_CN") : QStringLiteral("en");
        ASSERT_TRUE(m_translator.load(QStringLiteral(":/BodyTemperature/i18n/BodyTemperature_%1.qm").arg(suffix)));
        QCoreApplication::installTranslator(&m_translator);
        clientcommonlogical::CConfigMgr::Instance()->SetLanguage(GetParam());
        m_dlg = std::make_unique<CBodyTemperatureDlg>();
        m_dlg->resize(1920, 1080);
        m_dlg->show();
    }
    void TearDown() override
    {
        m_dlg.reset();
        QCoreApplication::removeTranslator(&m_translator);
        clientcommonlogical::CConfigMgr::Instance()->SetLanguage(2);
    }
    CShiftReportDialog* openDialog()
    {
        auto* button = m_dlg->findChild<QToolButton*>(QStringLiteral("m_pReportBtn"));
        EXPECT_NE(button, nullptr);
        EXPECT_FALSE(button->toolTip().isEmpty());
        EXPECT_NE(button->toolTip(), QStringLiteral("ShiftReport"));
        button->click();
        // The report is the second tab of the history window.
        auto* report = m_dlg->findChild<CShiftReportDialog*>();
        if (auto* tabs = m_dlg->findChild<QTabWidget*>(QStringLiteral("m_pHistoryTabs")); tabs != nullptr && report != nullptr)
            tabs->setCurrentWidget(report);
        return report;
    }

    dashtest::VoiceLog m_voices;  // outlives the page
    QTranslator m_translator;
    QTemporaryDir m_out;
    QTemporaryDir m_component;
    std::unique_ptr<CBodyTemperatureDlg> m_dlg;
};

TEST_P(ShiftReportDialogTest, ExportsWhileAlarmsKeepArriving)
{
    auto* display = m_dlg->findChild<CBTShowWidget*>();
    ASSERT_NE(display, nullptr);
    for (int i = 0; i < 30; ++i) {
        auto r = dashtest::record(dashtest::kTemperatureCapture, dashtest::face(1, i % 3 == 0, i % 2 ? 1 : 2),
            "E" + std::to_string(i));
        r.captureTime = QDateTime::currentSecsSinceEpoch();
        r.cameraName = "入口 1";
        display->DealAlarmInfo(r);
    }
    CShiftReportDialog* dialog = openDialog();
    ASSERT_NE(dialog, nullptr);
    ASSERT_TRUE(waitUntil([&] { return dialog->isVisible(); }));
    auto* from = dialog->findChild<QDateTimeEdit*>(QStringLiteral("m_pReportFrom"));
    auto* to = dialog->findChild<QDateTimeEdit*>(QStringLiteral("m_pReportTo"));
    // Minutes are what the fields show.
    EXPECT_LE(std::abs(from->dateTime().secsTo(QDateTime::currentDateTime())), 120);
    dialog->findChild<QPushButton*>(QStringLiteral("m_pPresetLast8"))->click();
    EXPECT_NEAR(from->dateTime().secsTo(to->dateTime()), 8 * 3600 + 60, 61);
    dialog->findChild<QPushButton*>(QStringLiteral("m_pPresetLast24"))->click();
    EXPECT_NEAR(from->dateTime().secsTo(to->dateTime()), 24 * 3600 + 60, 61);
    // The 30 alarms reach the journal once their cards are built; all of them are in the file.
    ASSERT_TRUE(dashtest::cardsBuilt(*display));
    ASSERT_TRUE(m_dlg->findChild<CScreeningRecord*>()->Journal()->Flush());
    // The journal's size on the disk next to its bound (2048 MB unless configured).
    const QString size = dialog->findChild<QLabel*>(QStringLiteral("m_pJournalSize"))->text();
    EXPECT_TRUE(size.contains(QStringLiteral("2.0 GB"))) << qPrintable(size);
    EXPECT_NE(size.left(8), QStringLiteral("ReportJo"));

    if (!qEnvironmentVariableIsEmpty("BT_GALLERY")) {
        commlayer::CDeviceStateNotifier::Instance()->SetDeviceOnline(QStringLiteral("GALLERY01"), true);
        commlayer::CDeviceStateNotifier::Instance()->SetDeviceOnline(
            QStringLiteral("GALLERY01"), false, QStringLiteral("alarm stream silent for 12.0 s"));
        testsupport::pump(1200);
        QImage page = m_dlg->grab().toImage();
        QPainter p(&page);
        const QImage dlg = dialog->grab().toImage();
        p.drawImage((page.width() - dlg.width()) / 2, (page.height() - dlg.height()) / 2, dlg);
        p.end();
        page.save(qEnvironmentVariable("BT_GALLERY") + QStringLiteral("report-page-%1.png").arg(GetParam()));
        commlayer::CDeviceStateNotifier::Instance()->SetDeviceOnline(QStringLiteral("GALLERY01"), true);
    }

    auto* folder = dialog->findChild<QLineEdit*>(QStringLiteral("m_pReportFolder"));
    auto* status = dialog->findChild<QLabel*>(QStringLiteral("m_pReportStatus"));
    folder->setText(m_out.filePath(QStringLiteral("missing")));
    VantorGUIToolkit::CInformationDlg::ClearShownMessages();
    QSignalSpy done(dialog, &CShiftReportDialog::signalExportFinished);
    dialog->findChild<QPushButton*>(QStringLiteral("m_pExportBtn"))->click();
    ASSERT_TRUE(done.wait(10000));
    EXPECT_FALSE(done.takeFirst().at(0).toBool());
    EXPECT_TRUE(status->text().contains(QDir::toNativeSeparators(m_out.filePath(QStringLiteral("missing")))));

    folder->setText(m_out.path());
    dialog->findChild<QPushButton*>(QStringLiteral("m_pExportBtn"))->click();
    // The page goes on while the worker writes.
    for (int i = 0; i < 5; ++i)
        display->DealAlarmInfo(dashtest::record(dashtest::kCapture, dashtest::face(0, 0, 2), "L" + std::to_string(i)));
    ASSERT_TRUE(done.count() == 1 || done.wait(20000));
    EXPECT_TRUE(done.takeFirst().at(0).toBool()) << qPrintable(status->text());
    EXPECT_EQ(m_dlg->findChild<QLabel*>(QStringLiteral("labelAllNum"))->text(), QStringLiteral("35"));
    EXPECT_TRUE(status->text().contains(QDir::toNativeSeparators(m_out.path()))) << qPrintable(status->text());
    EXPECT_EQ(VantorGUIToolkit::CInformationDlg::ShownMessages().size(), 2);
    const QStringList files = QDir(m_out.path()).entryList(QDir::Files);
    ASSERT_EQ(files.size(), 2) << qPrintable(files.join(QLatin1Char(' ')));
    QFile csv(m_out.filePath(files.filter(QStringLiteral(".csv")).value(0)));
    ASSERT_TRUE(csv.open(QIODevice::ReadOnly));
    EXPECT_EQ(csv.readAll().count("\r\n"), 31);  // header + the 30 alarms committed before the export
    dialog->close();
}

INSTANTIATE_TEST_SUITE_P(Languages, ShiftReportDialogTest, ::testing::Values(2, 1));

} // namespace
