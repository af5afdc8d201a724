#pragma once
// The shift report dialog, opened from the information display's header: a
// time range (since the page was opened, or the last 8 or 24 hours), an output
// folder and the formats. The export runs on a worker (CShiftReportExporter)
// with a progress bar and a cancel button while the page goes on; the result
// is announced at the lower right of the screen. GUI thread. The dialog owns
// the export: closing or destroying it cancels and waits for the worker.
#include <QDateTime>
#include <QDialog>
#include <QFutureWatcher>
#include <atomic>
#include <memory>

#include "report/CShiftReportExporter.h"

class QCheckBox;
class QDateTimeEdit;
class QGridLayout;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTimer;

namespace BodyTemperature {

class CShiftReportDialog final : public QDialog {
    Q_OBJECT
public:
    CShiftReportDialog(QWidget* parent, const QString& journalPath, const QDateTime& pageOpenedAt);
    ~CShiftReportDialog() override;

    bool IsExporting() const;
    // "Screening record: 1.2 GB of 2.0 GB": the journal's size on the disk
    // and the configured bound.
    static QString JournalSizeText(const QString& journalPath);

    // The screening history's Export: the range becomes the filter's (its open
    // end the current time) and only the filter's rows are written until the
    // operator clears it; `description` says what it keeps. With `site`, the
    // report covers every station's rows in the site record.
    void SetFilter(const HistoryFilter& filter, const QString& description,
        std::shared_ptr<const clientcommonlogical::SiteRecordConfig> site = nullptr);

signals:
    void signalExportFinished(bool ok);

private slots:
    void onSincePageOpened();
    void onLastHours(int hours);
    void onBrowse();
    void onExport();
    void onCancel();
    void onFinished();

private:
    struct Job {
        std::atomic<bool> cancel{false};
        std::atomic<int> progress{0};
    };

    void addRangeRows(QGridLayout* body, QWidget* frame);
    void addOutputRows(QGridLayout* body, QWidget* frame);
    void addFilterRow(QGridLayout* body, QWidget* frame);
    void addProgressRows(QGridLayout* body, QWidget* frame);
    void setBusy(bool busy);
    void reject() override;

    QString m_journalPath;
    QDateTime m_openedAt;
    QDateTimeEdit* m_pFrom = nullptr;
    QDateTimeEdit* m_pTo = nullptr;
    QLineEdit* m_pFolder = nullptr;
    QCheckBox* m_pCsv = nullptr;
    QCheckBox* m_pPdf = nullptr;
    QProgressBar* m_pProgress = nullptr;
    QLabel* m_pStatus = nullptr;
    QPushButton* m_pExportBtn = nullptr;
    QPushButton* m_pCancelBtn = nullptr;
    QTimer* m_pProgressTimer = nullptr;
    QWidget* m_pFilterRow = nullptr;
    QLabel* m_pFilterLbl = nullptr;
    std::shared_ptr<const HistoryFilter> m_filter;
    std::shared_ptr<const clientcommonlogical::SiteRecordConfig> m_site;
    std::shared_ptr<Job> m_job;
    QFutureWatcher<CShiftReportExporter::Result>* m_pWatcher = nullptr;
};

} // namespace BodyTemperature
