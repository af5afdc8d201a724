#include "ui/History/CHistoryWindow.h"

#include <QTabWidget>
#include <QVBoxLayout>

#include "record/CJournalHistorySource.h"
#include "ui/Report/CShiftReportDialog.h"

namespace BodyTemperature {

CHistoryWindow::CHistoryWindow(QWidget* parent, const QString& journalPath, const QDateTime& pageOpenedAt,
    CHistoryTab::Options tab)
    : QWidget(parent, Qt::Window)
{
    setObjectName(QStringLiteral("ScreeningHistoryWindow"));
    setWindowTitle(tr("HistoryWindowTitle"));
    tab.station = std::make_unique<CJournalHistorySource>(journalPath);
    std::shared_ptr<const clientcommonlogical::SiteRecordConfig> siteRecord = tab.siteRecord;
    if (!tab.shiftStart.isValid())
        tab.shiftStart = pageOpenedAt;

    m_pTabs = new QTabWidget(this);
    m_pTabs->setObjectName(QStringLiteral("m_pHistoryTabs"));
    m_pHistory = new CHistoryTab(m_pTabs, std::move(tab));
    m_pReport = new CShiftReportDialog(m_pTabs, journalPath, pageOpenedAt);
    // The report lives in a tab here, not in a window of its own.
    m_pReport->setWindowFlags(Qt::Widget);
    m_pTabs->addTab(m_pHistory, tr("HistoryTab"));
    m_pTabs->addTab(m_pReport, tr("HistoryReportTab"));

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->addWidget(m_pTabs);
    resize(1400, 860);

    connect(m_pHistory, &CHistoryTab::signalExport, this,
        [this, siteRecord](const HistoryFilter& filter, const QString& description, bool site) {
            m_pReport->SetFilter(filter, description, site ? siteRecord : nullptr);
            m_pTabs->setCurrentWidget(m_pReport);
        });
    // The report's own close button closes the window it sits in.
    connect(m_pReport, &QDialog::rejected, this, [this] {
        m_pReport->show();
        close();
    });
}

CHistoryWindow::~CHistoryWindow() = default;

} // namespace BodyTemperature
