// The screening history window on a real journal. With BT_GALLERY set it saves the
// window as PNG in both languages (run under Xvfb at 1920x1080 for a real screen).
#include <QAbstractItemModel>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDateTimeEdit>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTranslator>
#include <gtest/gtest.h>

#include "record/CEventJournal.h"
#include "record/CJournalDatabase.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "record/CJournalHistorySource.h"
#include "support/TestSupport.h"
#include "ui/History/CHistoryTableModel.h"
#include "ui/History/CHistoryWindow.h"
#include "ui/Report/CShiftReportDialog.h"
#include "ui/ShowCard/CComparisonDetail.h"

using namespace BodyTemperature;
using testsupport::waitUntil;

namespace {

class HistoryWindowTest : public ::testing::TestWithParam<int> {
protected:
    void SetUp() override
    {
        const QString suffix = GetParam() == 1 ? QStringLiteral("zh_CN") : QStringLiteral("en");
        ASSERT_TRUE(m_translator.load(QStringLiteral(":/BodyTemperature/i18n/BodyTemperature_%1.qm").arg(suffix)));
        QCoreApplication::installTranslator(&m_translator);
        clientcommonlogical::CConfigMgr::Instance()->SetLanguage(GetParam());
        m_journal = m_dir.filePath(QStringLiteral("journal.db"));
        m_face = CEventJournal::EncodeFace(QImage::fromData(testsupport::makeJpeg(120, 160), "JPEG"));
        m_now = QDateTime::currentSecsSinceEpoch();
        append(0, 120);
    }
    void TearDown() override
    {
        m_window.reset();
        QCoreApplication::removeTranslator(&m_translator);
        clientcommonlogical::CConfigMgr::Instance()->SetLanguage(2);
    }

    // Event i: 20 s apart going back from now; every fourth abnormal. Into this test's journal, or another.
    void append(int first, int count, int64_t newest = 0, const QString& journal = QString())
    {
        CJournalDatabase db;
        ASSERT_TRUE(db.Open(journal.isEmpty() ? m_journal : journal, CJournalDatabase::OpenMode::Write));
        std::vector<JournalEvent> rows;
        for (int i = first; i < first + count; ++i) {
            JournalEvent e;
            e.time = newest != 0 ? newest : m_now - 20 * i;
            e.cameraId = "cam-" + std::to_string(i % 3);
            e.cameraName = i % 2 ? "Gate 1" : "入口 2";
            e.kind = i % 5 == 0 ? 0 : 4;
            e.temperatureMeasured = true;
            e.temperature = i % 4 == 0 ? 38.2 : 36.5;
            e.temperatureType = i % 4 == 0 ? 0 : 1;
            e.maskType = i % 3 == 0 ? 1 : 2;
            e.mask = e.maskType == 1 ? 1 : 2;
            if (e.kind == 0) {
                e.personName = "王小明";
                e.library = "Staff";
                e.similarity = 0.91;
            }
            e.faceJpeg = m_face;
            rows.push_back(std::move(e));
        }
        ASSERT_TRUE(db.Insert(rows));
    }

    void open(std::unique_ptr<IHistorySource> site = nullptr)
    {
        CHistoryTab::Options options;
        options.site = std::move(site);
        options.cameras = {{"cam-0", QStringLiteral("入口 2")}, {"cam-1", QStringLiteral("Gate 1")},
            {"cam-2", QStringLiteral("Gate 2")}};
        options.language = GetParam();
        options.liveIntervalMs = 100;
        m_window = std::make_unique<CHistoryWindow>(nullptr, m_journal, QDateTime::currentDateTime().addSecs(-3600),
            std::move(options));
        m_window->show();
        // Custom range around now: the test does not depend on the time of day.
        auto* range = testsupport::child<QComboBox>(m_window, "m_pHistoryRange");
        range->setCurrentIndex(2);
        testsupport::child<QDateTimeEdit>(m_window, "m_pHistoryFrom")->setDateTime(QDateTime::currentDateTime().addDays(-1));
        testsupport::child<QDateTimeEdit>(m_window, "m_pHistoryTo")->setDateTime(QDateTime::currentDateTime().addDays(1));
        m_table = testsupport::child<QTableView>(m_window, "m_pHistoryTable");
        m_model = qobject_cast<CHistoryTableModel*>(m_table->model());
        testsupport::pump(400);  // the filter settles before the checks begin
    }

    int64_t idAt(int row) const { return m_model->Row(row).event.id; }

    QTemporaryDir m_dir;
    QTranslator m_translator;
    QString m_journal;
    QByteArray m_face;
    int64_t m_now = 0;
    std::unique_ptr<CHistoryWindow> m_window;
    QTableView* m_table = nullptr;
    CHistoryTableModel* m_model = nullptr;
};

TEST_P(HistoryWindowTest, FindsPagesFollowsLiveRowsAndOpensDetails)
{
    open();
    auto* older = testsupport::child<QPushButton>(m_window, "m_pHistoryOlder");
    auto* page = testsupport::child<QLabel>(m_window, "m_pHistoryPage");
    ASSERT_TRUE(waitUntil([&] { return m_model->rowCount() == 50 && older->isEnabled(); }));
    EXPECT_EQ(idAt(0), 1);  // the newest
    older->click();
    ASSERT_TRUE(waitUntil([&] { return m_model->rowCount() == 50 && idAt(0) == 51; }));
    EXPECT_TRUE(page->text().contains(QLatin1Char('2')));
    older->click();
    ASSERT_TRUE(waitUntil([&] { return m_model->rowCount() == 20 && !older->isEnabled(); }));
    testsupport::child<QPushButton>(m_window, "m_pHistoryNewer")->click();
    ASSERT_TRUE(waitUntil([&] { return m_model->rowCount() == 50 && idAt(0) == 51; }));

    // A kind filter starts again at the first page.
    auto* abnormal = testsupport::child<QCheckBox>(m_window, "m_pHistoryKindAbnormal");
    abnormal->setChecked(true);
    ASSERT_TRUE(waitUntil([&] { return m_model->rowCount() == 30; }));
    for (int r = 0; r < 30; ++r)
        ASSERT_EQ(m_model->Row(r).event.temperatureType, 0u);
    abnormal->setChecked(false);
    ASSERT_TRUE(waitUntil([&] { return m_model->rowCount() == 50 && idAt(0) == 1; }));

    if (!qEnvironmentVariableIsEmpty("BT_GALLERY")) {
        m_window->resize(1920, 1080);
        testsupport::pump(300);
        m_window->grab().save(qEnvironmentVariable("BT_GALLERY") + QStringLiteral("history-%1.png").arg(GetParam()));
    }

    // Scrolled down with a row selected: live rows arrive above, nothing moves.
    m_table->selectRow(12);
    m_table->verticalScrollBar()->setValue(m_table->verticalScrollBar()->maximum() / 2);
    testsupport::pump(50);
    const int64_t selected = idAt(m_table->selectionModel()->selectedRows().value(0).row());
    const int64_t firstShown = idAt(m_table->indexAt(QPoint(1, 1)).row());
    append(120, 3, m_now + 5);
    ASSERT_TRUE(waitUntil([&] { return m_model->rowCount() == 53; }));
    EXPECT_EQ(idAt(m_table->selectionModel()->selectedRows().value(0).row()), selected);
    EXPECT_EQ(idAt(m_table->indexAt(QPoint(1, 1)).row()), firstShown);
    // At the top, the newest shows.
    m_table->scrollToTop();
    append(123, 1, m_now + 9);
    ASSERT_TRUE(waitUntil([&] { return m_model->rowCount() == 54; }));
    EXPECT_EQ(m_table->indexAt(QPoint(1, 1)).row(), 0);
    EXPECT_EQ(idAt(0), 124);

    // Enter opens the detail dialog of the row from the journal's data.
    m_table->setFocus();
    m_table->setCurrentIndex(m_model->index(5, 1));
    QTest::keyClick(m_table, Qt::Key_Return);
    CComparisonDetail* detail = nullptr;
    ASSERT_TRUE(waitUntil([&] {
        detail = m_window->findChild<CComparisonDetail*>();
        return detail != nullptr && detail->isVisible();
    }));
    detail->close();

    // Export moves to the report with the filter.
    testsupport::child<QCheckBox>(m_window, "m_pHistoryKindNoMask")->setChecked(true);
    testsupport::pump(400);
    testsupport::child<QPushButton>(m_window, "m_pHistoryExport")->click();
    auto* tabs = testsupport::child<QTabWidget>(m_window, "m_pHistoryTabs");
    EXPECT_EQ(tabs->currentWidget(), m_window->Report());
    EXPECT_TRUE(testsupport::child<QWidget>(m_window, "m_pReportFilterRow")->isVisible());
    EXPECT_FALSE(testsupport::child<QLabel>(m_window, "m_pReportFilterLbl")->text().isEmpty());
    if (!qEnvironmentVariableIsEmpty("BT_GALLERY"))
        m_window->grab().save(qEnvironmentVariable("BT_GALLERY") + QStringLiteral("history-report-%1.png").arg(GetParam()));
}

TEST_P(HistoryWindowTest, TheSiteScopeShowsOnlyWithASiteSourceAndAddsTheStationColumn)
{
    open();
    EXPECT_FALSE(testsupport::child<QComboBox>(m_window, "m_pHistoryScope")->isVisible());
    ASSERT_TRUE(waitUntil([&] { return m_model->rowCount() == 50; }));
    EXPECT_EQ(m_model->columnCount(), int(CHistoryTableModel::ColStation));

    // Another journal stands in for the site's record.
    const QString site = m_dir.filePath(QStringLiteral("site.db"));
    append(0, 7, 0, site);
    open(std::make_unique<CJournalHistorySource>(site));
    auto* scope = testsupport::child<QComboBox>(m_window, "m_pHistoryScope");
    EXPECT_TRUE(scope->isVisible());
    ASSERT_TRUE(waitUntil([&] { return m_model->rowCount() == 50; }));
    scope->setCurrentIndex(1);
    ASSERT_TRUE(waitUntil([&] { return m_model->rowCount() == 7; }));
    EXPECT_EQ(m_model->columnCount(), int(CHistoryTableModel::ColStation) + 1);
    if (!qEnvironmentVariableIsEmpty("BT_GALLERY"))
        m_window->grab().save(qEnvironmentVariable("BT_GALLERY") + QStringLiteral("history-site-%1.png").arg(GetParam()));
    // Export hands the scope on: the report says it covers the whole site.
    testsupport::child<QPushButton>(m_window, "m_pHistoryExport")->click();
    EXPECT_TRUE(testsupport::child<QLabel>(m_window, "m_pReportFilterLbl")->text().contains(scope->currentText()));
}

INSTANTIATE_TEST_SUITE_P(Languages, HistoryWindowTest, ::testing::Values(2, 1));

} // namespace
