#pragma once
// The history tab of the screening history window: the filters (time range,
// cameras, kinds, temperature threshold, name/ID text, and this station or
// the whole site when a site record is given), the paged table newest first
// with live rows arriving at the top, the detail dialog on double-click or
// Enter, and Export.
//
// GUI thread. Owns its query worker, which owns the history sources; no
// query ever runs on the GUI thread, and a filter change cancels the one in
// flight. Destroying the tab joins the worker.
#include <QDateTime>
#include <QWidget>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "clientcommonlogical/CConfigMgr.h"
#include "record/CHistoryQueryWorker.h"

class QCheckBox;
class QComboBox;
class QDateTimeEdit;
class QDoubleSpinBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class QTableView;
class QTimer;
class QToolButton;

namespace BodyTemperature {

class CHistoryTableModel;

class CHistoryTab final : public QWidget {
    Q_OBJECT
public:
    struct Options {
        std::unique_ptr<IHistorySource> station;
        std::unique_ptr<IHistorySource> site;  // nullptr: no scope selector
        // Where the site source reads (the report of the site scope reads there too).
        std::shared_ptr<const clientcommonlogical::SiteRecordConfig> siteRecord;
        std::vector<std::pair<std::string, QString>> cameras;  // id, name (the page's camera model)
        QDateTime shiftStart;                                 // "this shift" starts here
        int language = 2;                                     // 1 Chinese
        int liveIntervalMs = 1000;
    };

    CHistoryTab(QWidget* parent, Options options);
    ~CHistoryTab() override;

    // The filter the table shows (what Export hands on).
    HistoryFilter Filter() const { return m_filter; }
    QString Describe() const;

signals:
    // `site`: the filter is of the whole site's rows (the site scope).
    void signalExport(const BodyTemperature::HistoryFilter& filter, const QString& description, bool site);

private:
    QHBoxLayout* buildRangeRow(bool hasSite);
    QHBoxLayout* buildKindRow();
    void buildTable();
    QHBoxLayout* buildPager();
    void connectControls();
    void applyLook();
    HistoryFilter filterFromControls() const;
    void filterChanged();
    void applyFilter();
    void requestPage();
    void pollNewer();
    void onResult(const std::shared_ptr<CHistoryQueryWorker::Reply>& reply);
    void onPageResult(const CHistoryQueryWorker::Reply& reply);
    void onNewerResult(CHistoryQueryWorker::Reply& reply);
    void openDetail(int row);
    void updatePaging();
    void updateCameraButton();
    bool siteScope() const;

    Options m_options;
    CHistoryQueryWorker* m_pWorker = nullptr;
    CHistoryTableModel* m_pModel = nullptr;
    QComboBox* m_pRange = nullptr;
    QDateTimeEdit* m_pFrom = nullptr;
    QDateTimeEdit* m_pTo = nullptr;
    QToolButton* m_pCameras = nullptr;
    QMenu* m_pCameraMenu = nullptr;
    QComboBox* m_pScope = nullptr;
    std::vector<QCheckBox*> m_kinds;  // in HistoryFilter::Kind bit order
    QCheckBox* m_pThresholdOn = nullptr;
    QDoubleSpinBox* m_pThreshold = nullptr;
    QLineEdit* m_pText = nullptr;
    QTableView* m_pTable = nullptr;
    QLabel* m_pStatus = nullptr;
    QLabel* m_pPageLbl = nullptr;
    QPushButton* m_pNewerBtn = nullptr;
    QPushButton* m_pOlderBtn = nullptr;
    QTimer* m_pDebounce = nullptr;
    QTimer* m_pLive = nullptr;

    HistoryFilter m_filter;
    bool m_site = false;
    uint64_t m_ticket = 0;
    uint64_t m_pageTicket = 0;  // the page request awaited (0: none)
    uint64_t m_liveTicket = 0;  // the live request awaited (0: none)
    std::vector<std::optional<HistoryKey>> m_pageStarts;  // where each page seen so far starts
    int m_page = 0;
    bool m_hasMore = false;
    bool m_loaded = false;
    int64_t m_watermark = 0;
};

} // namespace BodyTemperature
