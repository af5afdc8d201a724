#include "ui/Report/CShiftReportDialog.h"

#include <QCheckBox>
#include <QDateTimeEdit>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QStandardPaths>
#include <QTimer>
#include <QToolButton>

#include "CThreadHandOff.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "ui/SettingsPageLook.h"

namespace BodyTemperature {

CShiftReportDialog::CShiftReportDialog(QWidget* parent, const QString& journalPath, const QDateTime& pageOpenedAt)
    : QDialog(parent), m_journalPath(journalPath), m_openedAt(pageOpenedAt)
{
    setObjectName(QStringLiteral("ShiftReportDialog"));
    const SettingsDialogFrame parts = MakeSettingsDialogFrame(this, QStringLiteral("m_pReportFrame"),
        tr("ShiftReport"), tr("Close"), tr("ReportExport"), tr("Cancel"));
    m_pExportBtn = parts.save;
    m_pExportBtn->setObjectName(QStringLiteral("m_pExportBtn"));
    m_pCancelBtn = parts.cancel;
    m_pCancelBtn->setObjectName(QStringLiteral("m_pCancelExportBtn"));

    auto* body = new QGridLayout();
    body->setHorizontalSpacing(10);
    body->setVerticalSpacing(10);
    addRangeRows(body, parts.frame);
    addOutputRows(body, parts.frame);
    addFilterRow(body, parts.frame);
    addProgressRows(body, parts.frame);
    body->setColumnStretch(1, 1);

    LayOutSettingsDialog(this, parts, body, 16, QSize(520, 410));

    m_pProgressTimer = new QTimer(this);
    m_pProgressTimer->setInterval(100);
    connect(m_pProgressTimer, &QTimer::timeout, this, [this] {
        if (m_job)
            m_pProgress->setValue(m_job->progress.load());
    });
    m_pWatcher = new QFutureWatcher<CShiftReportExporter::Result>(this);
    connect(m_pWatcher, &QFutureWatcherBase::finished, this, &CShiftReportDialog::onFinished);
    connect(m_pExportBtn, &QPushButton::clicked, this, &CShiftReportDialog::onExport);
    connect(m_pCancelBtn, &QPushButton::clicked, this, &CShiftReportDialog::onCancel);
    connect(parts.close, &QToolButton::clicked, this, &CShiftReportDialog::reject);
    onSincePageOpened();
}

// Rows 0 to 2: from, to and the range presets.
void CShiftReportDialog::addRangeRows(QGridLayout* body, QWidget* frame)
{
    const QString format = QStringLiteral("yyyy-MM-dd hh:mm");
    m_pFrom = new QDateTimeEdit(frame);
    m_pFrom->setObjectName(QStringLiteral("m_pReportFrom"));
    m_pFrom->setDisplayFormat(format);
    m_pFrom->setCalendarPopup(true);
    m_pTo = new QDateTimeEdit(frame);
    m_pTo->setObjectName(QStringLiteral("m_pReportTo"));
    m_pTo->setDisplayFormat(format);
    m_pTo->setCalendarPopup(true);
    body->addWidget(new QLabel(tr("ReportFrom"), frame), 0, 0);
    body->addWidget(m_pFrom, 0, 1);
    body->addWidget(new QLabel(tr("ReportTo"), frame), 1, 0);
    body->addWidget(m_pTo, 1, 1);

    auto* presets = new QHBoxLayout();
    auto* since = new QPushButton(tr("ReportSincePageOpened"), frame);
    since->setObjectName(QStringLiteral("m_pPresetSinceOpened"));
    auto* last8 = new QPushButton(tr("ReportLast8Hours"), frame);
    last8->setObjectName(QStringLiteral("m_pPresetLast8"));
    auto* last24 = new QPushButton(tr("ReportLast24Hours"), frame);
    last24->setObjectName(QStringLiteral("m_pPresetLast24"));
    presets->addWidget(since);
    presets->addWidget(last8);
    presets->addWidget(last24);
    presets->addStretch(1);
    body->addLayout(presets, 2, 1);
    connect(since, &QPushButton::clicked, this, &CShiftReportDialog::onSincePageOpened);
    connect(last8, &QPushButton::clicked, this, [this] { onLastHours(8); });
    connect(last24, &QPushButton::clicked, this, [this] { onLastHours(24); });
}

// Rows 3 and 4: the output folder and the formats.
void CShiftReportDialog::addOutputRows(QGridLayout* body, QWidget* frame)
{
    m_pFolder = new QLineEdit(frame);
    m_pFolder->setObjectName(QStringLiteral("m_pReportFolder"));
    QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    m_pFolder->setText(QDir::toNativeSeparators(documents.isEmpty() ? QDir::homePath() : documents));
    auto* browse = new QToolButton(frame);
    browse->setObjectName(QStringLiteral("m_pReportBrowse"));
    browse->setText(QStringLiteral("..."));
    browse->setToolTip(tr("ReportChooseFolder"));
    auto* folderRow = new QHBoxLayout();
    folderRow->addWidget(m_pFolder, 1);
    folderRow->addWidget(browse);
    body->addWidget(new QLabel(tr("ReportFolder"), frame), 3, 0);
    body->addLayout(folderRow, 3, 1);

    m_pCsv = new QCheckBox(QStringLiteral("CSV"), frame);
    m_pCsv->setObjectName(QStringLiteral("m_pReportCsv"));
    m_pCsv->setChecked(true);
    m_pPdf = new QCheckBox(QStringLiteral("PDF"), frame);
    m_pPdf->setObjectName(QStringLiteral("m_pReportPdf"));
    m_pPdf->setChecked(true);
    auto* formats = new QHBoxLayout();
    formats->addWidget(m_pCsv);
    formats->addWidget(m_pPdf);
    formats->addStretch(1);
    body->addWidget(new QLabel(tr("ReportFormats"), frame), 4, 0);
    body->addLayout(formats, 4, 1);
    connect(browse, &QToolButton::clicked, this, &CShiftReportDialog::onBrowse);
}

// Row 5: the history filter handed on, hidden until one is set.
void CShiftReportDialog::addFilterRow(QGridLayout* body, QWidget* frame)
{
    m_pFilterRow = new QWidget(frame);
    m_pFilterRow->setObjectName(QStringLiteral("m_pReportFilterRow"));
    auto* filterRow = new QHBoxLayout(m_pFilterRow);
    filterRow->setContentsMargins(0, 0, 0, 0);
    m_pFilterLbl = new QLabel(m_pFilterRow);
    m_pFilterLbl->setObjectName(QStringLiteral("m_pReportFilterLbl"));
    m_pFilterLbl->setWordWrap(true);
    auto* clearFilter = new QPushButton(tr("ReportClearFilter"), m_pFilterRow);
    clearFilter->setObjectName(QStringLiteral("m_pReportClearFilter"));
    filterRow->addWidget(m_pFilterLbl, 1);
    filterRow->addWidget(clearFilter);
    m_pFilterRow->hide();
    body->addWidget(m_pFilterRow, 5, 0, 1, 2);
    connect(clearFilter, &QPushButton::clicked, this, [this] {
        m_filter.reset();
        m_site.reset();
        m_pFilterRow->hide();
    });
}

// Rows 6 to 8: progress, status and the journal's size on disk.
void CShiftReportDialog::addProgressRows(QGridLayout* body, QWidget* frame)
{
    m_pProgress = new QProgressBar(frame);
    m_pProgress->setObjectName(QStringLiteral("m_pReportProgress"));
    m_pProgress->setRange(0, 1000);
    m_pProgress->setTextVisible(false);
    m_pProgress->setValue(0);
    body->addWidget(m_pProgress, 6, 0, 1, 2);
    m_pStatus = new QLabel(frame);
    m_pStatus->setObjectName(QStringLiteral("m_pReportStatus"));
    m_pStatus->setWordWrap(true);
    body->addWidget(m_pStatus, 7, 0, 1, 2);
    auto* journalSize = new QLabel(JournalSizeText(m_journalPath), frame);
    journalSize->setObjectName(QStringLiteral("m_pJournalSize"));
    journalSize->setWordWrap(true);
    body->addWidget(journalSize, 8, 0, 1, 2);
}

QString CShiftReportDialog::JournalSizeText(const QString& journalPath)
{
    // The file and its write-ahead log: what the journal takes on the disk.
    const qint64 bytes = QFileInfo(journalPath).size() + QFileInfo(journalPath + QStringLiteral("-wal")).size();
    const int64_t limit = clientcommonlogical::CConfigMgr::Instance()->GetRecordMaxBytes();
    const QLocale locale;
    const QString size = locale.formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat);
    return limit > 0
        ? tr("ReportJournalSizeOf").arg(size, locale.formattedDataSize(limit, 1, QLocale::DataSizeTraditionalFormat))
        : tr("ReportJournalSize").arg(size);
}

CShiftReportDialog::~CShiftReportDialog()
{
    if (m_job)
        m_job->cancel = true;
    m_pWatcher->disconnect(this);
    m_pWatcher->waitForFinished();
}

bool CShiftReportDialog::IsExporting() const
{
    return m_pWatcher->isRunning();
}

void CShiftReportDialog::SetFilter(const HistoryFilter& filter, const QString& description,
    std::shared_ptr<const clientcommonlogical::SiteRecordConfig> site)
{
    m_filter = std::make_shared<const HistoryFilter>(filter);
    m_site = std::move(site);
    const QDateTime now = QDateTime::currentDateTime();
    m_pFrom->setDateTime(QDateTime::fromSecsSinceEpoch(filter.from));
    m_pTo->setDateTime(filter.to > now.addSecs(60).toSecsSinceEpoch() ? now.addSecs(60)
                                                                      : QDateTime::fromSecsSinceEpoch(filter.to));
    m_pFilterLbl->setText(tr("ReportHistoryFilter").arg(description));
    m_pFilterRow->show();
}

void CShiftReportDialog::onSincePageOpened()
{
    const QDateTime now = QDateTime::currentDateTime();
    // A page left open overnight starts the report at today's midnight.
    const QDateTime midnight(now.date(), QTime(0, 0));
    m_pFrom->setDateTime(m_openedAt.date() == now.date() ? m_openedAt : midnight);
    m_pTo->setDateTime(now.addSecs(60));
}

void CShiftReportDialog::onLastHours(int hours)
{
    const QDateTime now = QDateTime::currentDateTime();
    m_pFrom->setDateTime(now.addSecs(-3600 * qint64(hours)));
    m_pTo->setDateTime(now.addSecs(60));
}

void CShiftReportDialog::onBrowse()
{
    const QString folder = QFileDialog::getExistingDirectory(this, tr("ReportChooseFolder"), m_pFolder->text());
    if (!folder.isEmpty())
        m_pFolder->setText(QDir::toNativeSeparators(folder));
}

void CShiftReportDialog::setBusy(bool busy)
{
    m_pExportBtn->setEnabled(!busy);
    m_pFrom->setEnabled(!busy);
    m_pTo->setEnabled(!busy);
    m_pFolder->setEnabled(!busy);
    m_pCsv->setEnabled(!busy);
    m_pPdf->setEnabled(!busy);
    m_pCancelBtn->setText(busy ? tr("ReportCancelExport") : tr("Cancel"));
    if (busy)
        m_pProgressTimer->start();
    else
        m_pProgressTimer->stop();
}

void CShiftReportDialog::onExport()
{
    if (IsExporting())
        return;
    if (!m_pCsv->isChecked() && !m_pPdf->isChecked()) {
        m_pStatus->setText(tr("ReportChooseFormat"));
        return;
    }
    if (m_pFrom->dateTime() >= m_pTo->dateTime()) {
        m_pStatus->setText(tr("ReportEmptyRange"));
        return;
    }
    ShiftReportRequest request;
    request.journalPath = m_journalPath;
    request.from = m_pFrom->dateTime();
    request.to = m_pTo->dateTime();
    request.folder = QDir::fromNativeSeparators(m_pFolder->text().trimmed());
    request.csv = m_pCsv->isChecked();
    request.pdf = m_pPdf->isChecked();
    request.language = clientcommonlogical::CConfigMgr::Instance()->GetLanguage();
    request.filter = m_filter;
    request.site = m_site;
    m_job = std::make_shared<Job>();
    std::shared_ptr<Job> job = m_job;
    m_pProgress->setValue(0);
    m_pStatus->setText(tr("ReportExporting"));
    setBusy(true);
    m_pWatcher->setFuture(handoff::Run(QThreadPool::globalInstance(), job,
        [request, job] { return CShiftReportExporter::Run(request, job->cancel, job->progress); }));
}

void CShiftReportDialog::onCancel()
{
    if (IsExporting()) {
        m_job->cancel = true;
        return;
    }
    reject();
}

void CShiftReportDialog::reject()
{
    // Closing while exporting cancels; the dialog closes when the worker is done.
    if (IsExporting()) {
        m_job->cancel = true;
        return;
    }
    QDialog::reject();
}

void CShiftReportDialog::onFinished()
{
    setBusy(false);
    handoff::Acquire(m_job.get());
    const CShiftReportExporter::Result result = m_pWatcher->result();
    QString message;
    switch (result.outcome) {
    case CShiftReportExporter::Outcome::Written:
        m_pProgress->setValue(1000);
        message = tr("ReportSaved").arg(QDir::toNativeSeparators(QFileInfo(result.files.value(0)).absolutePath()));
        break;
    case CShiftReportExporter::Outcome::Cancelled:
        m_pProgress->setValue(0);
        message = tr("ReportCancelled");
        break;
    case CShiftReportExporter::Outcome::Failed:
        message = result.error;
        break;
    }
    m_pStatus->setText(message);
    VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(message);
    emit signalExportFinished(result.outcome == CShiftReportExporter::Outcome::Written);
}

} // namespace BodyTemperature
