#include "ui/History/CHistoryTab.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPersistentModelIndex>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include "Base/Log.h"
#include "record/HistoryMatch.h"
#include "ui/History/CHistoryTableModel.h"
#include "ui/SettingsPageLook.h"
#include "ui/ShowCard/CComparisonDetail.h"

namespace BodyTemperature {

namespace {

enum Range { RangeToday, RangeShift, RangeCustom };

constexpr int kPageSize = 50;
constexpr int kDebounceMs = 250;
constexpr int kRowHeight = 52;

} // namespace

CHistoryTab::CHistoryTab(QWidget* parent, Options options) : QWidget(parent), m_options(std::move(options))
{
    setObjectName(QStringLiteral("m_pHistoryTab"));
    const bool hasSite = m_options.site != nullptr;
    m_pWorker = new CHistoryQueryWorker(this, std::move(m_options.station), std::move(m_options.site));

    QHBoxLayout* top = buildRangeRow(hasSite);
    QHBoxLayout* second = buildKindRow();
    buildTable();
    QHBoxLayout* bottom = buildPager();

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(second);
    layout->addWidget(m_pTable, 1);
    layout->addLayout(bottom);

    m_pDebounce = new QTimer(this);
    m_pDebounce->setSingleShot(true);
    m_pDebounce->setInterval(kDebounceMs);
    m_pLive = new QTimer(this);
    m_pLive->setInterval(m_options.liveIntervalMs);

    connectControls();
    applyLook();

    applyFilter();
    m_pLive->start();
}

QHBoxLayout* CHistoryTab::buildRangeRow(bool hasSite)
{
    m_pRange = new QComboBox(this);
    m_pRange->setObjectName(QStringLiteral("m_pHistoryRange"));
    m_pRange->addItem(tr("HistoryRangeToday"));
    m_pRange->addItem(tr("HistoryRangeShift"));
    m_pRange->addItem(tr("HistoryRangeCustom"));
    const QString format = QStringLiteral("yyyy-MM-dd hh:mm");
    const QDateTime now = QDateTime::currentDateTime();
    m_pFrom = new QDateTimeEdit(QDateTime(now.date(), QTime(0, 0)), this);
    m_pFrom->setObjectName(QStringLiteral("m_pHistoryFrom"));
    m_pTo = new QDateTimeEdit(now.addSecs(3600), this);
    m_pTo->setObjectName(QStringLiteral("m_pHistoryTo"));
    for (QDateTimeEdit* edit : {m_pFrom, m_pTo}) {
        edit->setDisplayFormat(format);
        edit->setCalendarPopup(true);
        edit->setEnabled(false);
    }

    m_pCameras = new QToolButton(this);
    m_pCameras->setObjectName(QStringLiteral("m_pHistoryCameras"));
    m_pCameras->setPopupMode(QToolButton::InstantPopup);
    m_pCameraMenu = new QMenu(m_pCameras);
    m_pCameraMenu->setObjectName(QStringLiteral("m_pHistoryCameraMenu"));
    for (const auto& [id, name] : m_options.cameras) {
        QAction* action = m_pCameraMenu->addAction(name.isEmpty() ? QString::fromStdString(id) : name);
        action->setCheckable(true);
        action->setData(QString::fromStdString(id));
    }
    m_pCameras->setMenu(m_pCameraMenu);
    updateCameraButton();

    m_pScope = new QComboBox(this);
    m_pScope->setObjectName(QStringLiteral("m_pHistoryScope"));
    m_pScope->addItem(tr("HistoryScopeStation"));
    m_pScope->addItem(tr("HistoryScopeSite"));
    m_pScope->setVisible(hasSite);

    auto* exportBtn = new QPushButton(tr("HistoryExport"), this);
    exportBtn->setObjectName(QStringLiteral("m_pHistoryExport"));
    connect(exportBtn, &QPushButton::clicked, this, [this] { emit signalExport(m_filter, Describe(), m_site); });

    auto* top = new QHBoxLayout();
    top->addWidget(new QLabel(tr("HistoryRange"), this));
    top->addWidget(m_pRange);
    top->addWidget(m_pFrom);
    top->addWidget(new QLabel(QStringLiteral("-"), this));
    top->addWidget(m_pTo);
    top->addSpacing(16);
    top->addWidget(m_pCameras);
    top->addWidget(m_pScope);
    top->addStretch(1);
    top->addWidget(exportBtn);
    return top;
}

QHBoxLayout* CHistoryTab::buildKindRow()
{
    auto* second = new QHBoxLayout();
    const char* const kindKeys[] = {QT_TR_NOOP("HistoryKindAbnormal"), QT_TR_NOOP("HistoryKindNoMask"),
        QT_TR_NOOP("HistoryKindNormal"), QT_TR_NOOP("HistoryKindMatched"), QT_TR_NOOP("HistoryKindReturning")};
    const char* const kindNames[] = {"m_pHistoryKindAbnormal", "m_pHistoryKindNoMask", "m_pHistoryKindNormal",
        "m_pHistoryKindMatched", "m_pHistoryKindReturning"};
    for (size_t i = 0; i < 5; ++i) {
        auto* box = new QCheckBox(tr(kindKeys[i]), this);
        box->setObjectName(QString::fromLatin1(kindNames[i]));
        m_kinds.push_back(box);
        second->addWidget(box);
    }
    second->addSpacing(16);
    m_pThresholdOn = new QCheckBox(tr("HistoryThreshold"), this);
    m_pThresholdOn->setObjectName(QStringLiteral("m_pHistoryThresholdOn"));
    m_pThreshold = new QDoubleSpinBox(this);
    m_pThreshold->setObjectName(QStringLiteral("m_pHistoryThreshold"));
    m_pThreshold->setRange(30.0, 45.0);
    m_pThreshold->setDecimals(1);
    m_pThreshold->setSingleStep(0.1);
    m_pThreshold->setValue(37.3);
    m_pThreshold->setSuffix(QStringLiteral(" \u00b0C"));
    m_pThreshold->setEnabled(false);
    second->addWidget(m_pThresholdOn);
    second->addWidget(m_pThreshold);
    second->addSpacing(16);
    m_pText = new QLineEdit(this);
    m_pText->setObjectName(QStringLiteral("m_pHistoryText"));
    m_pText->setPlaceholderText(tr("HistoryTextHint"));
    m_pText->setClearButtonEnabled(true);
    m_pText->setMinimumWidth(220);
    second->addWidget(m_pText);
    second->addStretch(1);
    return second;
}

void CHistoryTab::buildTable()
{
    m_pModel = new CHistoryTableModel(this, m_options.language);
    m_pTable = new QTableView(this);
    m_pTable->setObjectName(QStringLiteral("m_pHistoryTable"));
    m_pTable->setModel(m_pModel);
    m_pTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_pTable->setSelectionMode(QAbstractItemView::SingleSelection);
    m_pTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_pTable->setIconSize(QSize(40, 48));
    m_pTable->verticalHeader()->setVisible(false);
    m_pTable->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_pTable->verticalHeader()->setDefaultSectionSize(kRowHeight);
    m_pTable->horizontalHeader()->setStretchLastSection(true);
    m_pTable->setAlternatingRowColors(true);
    // Pixels, so live rows above can be compensated exactly.
    m_pTable->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
}

QHBoxLayout* CHistoryTab::buildPager()
{
    m_pStatus = new QLabel(this);
    m_pStatus->setObjectName(QStringLiteral("m_pHistoryStatus"));
    m_pNewerBtn = new QPushButton(tr("HistoryNewerPage"), this);
    m_pNewerBtn->setObjectName(QStringLiteral("m_pHistoryNewer"));
    m_pOlderBtn = new QPushButton(tr("HistoryOlderPage"), this);
    m_pOlderBtn->setObjectName(QStringLiteral("m_pHistoryOlder"));
    m_pPageLbl = new QLabel(this);
    m_pPageLbl->setObjectName(QStringLiteral("m_pHistoryPage"));
    auto* bottom = new QHBoxLayout();
    bottom->addWidget(m_pStatus, 1);
    bottom->addWidget(m_pNewerBtn);
    bottom->addWidget(m_pPageLbl);
    bottom->addWidget(m_pOlderBtn);
    return bottom;
}

void CHistoryTab::connectControls()
{
    connect(m_pDebounce, &QTimer::timeout, this, &CHistoryTab::applyFilter);
    connect(m_pLive, &QTimer::timeout, this, &CHistoryTab::pollNewer);
    connect(m_pWorker, &CHistoryQueryWorker::signalResult, this, &CHistoryTab::onResult);
    connect(m_pRange, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this](int index) {
        m_pFrom->setEnabled(index == RangeCustom);
        m_pTo->setEnabled(index == RangeCustom);
        filterChanged();
    });
    connect(m_pFrom, &QDateTimeEdit::dateTimeChanged, this, &CHistoryTab::filterChanged);
    connect(m_pTo, &QDateTimeEdit::dateTimeChanged, this, &CHistoryTab::filterChanged);
    connect(m_pCameraMenu, &QMenu::triggered, this, [this] {
        updateCameraButton();
        filterChanged();
    });
    connect(m_pScope, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &CHistoryTab::filterChanged);
    for (QCheckBox* box : m_kinds)
        connect(box, &QCheckBox::toggled, this, &CHistoryTab::filterChanged);
    connect(m_pThresholdOn, &QCheckBox::toggled, this, [this](bool on) {
        m_pThreshold->setEnabled(on);
        filterChanged();
    });
    connect(m_pThreshold, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, &CHistoryTab::filterChanged);
    connect(m_pText, &QLineEdit::textChanged, this, &CHistoryTab::filterChanged);
    connect(m_pTable, &QTableView::activated, this, [this](const QModelIndex& index) { openDetail(index.row()); });
    connect(m_pNewerBtn, &QPushButton::clicked, this, [this] {
        if (m_page > 0) {
            --m_page;
            requestPage();
        }
    });
    connect(m_pOlderBtn, &QPushButton::clicked, this, [this] {
        if (m_hasMore && size_t(m_page + 1) < m_pageStarts.size()) {
            ++m_page;
            requestPage();
        }
    });
}

void CHistoryTab::applyLook()
{
    // The report tab's dark look, extended to the table and the number fields.
    ApplySettingsPageLook(this);
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(styleSheet()
        + QStringLiteral("QWidget#m_pHistoryTab { background-color: #0F1D31; }"
                         "QTableView { background-color: #0F1D31; alternate-background-color: #13233A;"
                         " color: #E6EDF5; gridline-color: #24405F; border: 1px solid #24405F;"
                         " selection-background-color: rgba(6, 231, 255, 0.25); selection-color: #FFFFFF; }"
                         "QHeaderView::section { background-color: #13233A; color: #C9D3E0; border: none;"
                         " border-right: 1px solid #24405F; border-bottom: 1px solid #24405F; padding: 4px; }"
                         "QDateTimeEdit, QDoubleSpinBox { background-color: #13233A; color: #E6EDF5;"
                         " border: 1px solid #24405F; padding: 2px 6px; min-height: 22px; }"
                         "QDateTimeEdit:disabled, QDoubleSpinBox:disabled { color: #5C6F86; }"
                         "QToolButton#m_pHistoryCameras { background-color: #13233A; border-color: #24405F; }"));
}

CHistoryTab::~CHistoryTab() = default;

bool CHistoryTab::siteScope() const
{
    return m_pWorker->HasSite() && m_pScope->currentIndex() == 1;
}

void CHistoryTab::updateCameraButton()
{
    int checked = 0;
    for (QAction* a : m_pCameraMenu->actions())
        checked += a->isChecked() ? 1 : 0;
    m_pCameras->setText(checked == 0 ? tr("HistoryAllCameras") : tr("HistoryCameras").arg(checked));
}

HistoryFilter CHistoryTab::filterFromControls() const
{
    HistoryFilter f;
    f.pageSize = kPageSize;
    const QDateTime now = QDateTime::currentDateTime();
    switch (m_pRange->currentIndex()) {
    case RangeToday:
        f.from = QDateTime(now.date(), QTime(0, 0)).toSecsSinceEpoch();
        f.to = QDateTime(now.date().addDays(1), QTime(0, 0)).toSecsSinceEpoch();
        break;
    case RangeShift:
        // A page left open overnight: the shift starts at today's midnight.
        f.from = (m_options.shiftStart.isValid() && m_options.shiftStart.date() == now.date()
                         ? m_options.shiftStart
                         : QDateTime(now.date(), QTime(0, 0)))
                     .toSecsSinceEpoch();
        break;
    default:
        f.from = m_pFrom->dateTime().toSecsSinceEpoch();
        f.to = m_pTo->dateTime().toSecsSinceEpoch();
        break;
    }
    for (QAction* a : m_pCameraMenu->actions())
        if (a->isChecked())
            f.cameraIds.push_back(a->data().toString().toStdString());
    for (size_t i = 0; i < m_kinds.size(); ++i)
        if (m_kinds[i]->isChecked())
            f.kinds |= 1u << i;
    f.thresholdOn = m_pThresholdOn->isChecked();
    f.thresholdCelsius = m_pThreshold->value();
    f.text = m_pText->text().trimmed().toStdString();
    return f;
}

QString CHistoryTab::Describe() const
{
    QStringList parts;
    for (size_t i = 0; i < m_kinds.size(); ++i)
        if (m_kinds[i]->isChecked())
            parts << m_kinds[i]->text();
    QStringList cameras;
    for (QAction* a : m_pCameraMenu->actions())
        if (a->isChecked())
            cameras << a->text();
    if (!cameras.isEmpty())
        parts << cameras.join(QStringLiteral(", "));
    if (m_filter.thresholdOn)
        parts << QStringLiteral("\u2265 %1 \u00b0C").arg(m_filter.thresholdCelsius, 0, 'f', 1);
    if (!m_filter.text.empty())
        parts << QStringLiteral("\"%1\"").arg(QString::fromStdString(m_filter.text));
    if (m_site)
        parts.prepend(tr("HistoryScopeSite"));
    return parts.isEmpty() ? tr("HistoryAllEvents") : parts.join(QStringLiteral("; "));
}

void CHistoryTab::filterChanged()
{
    m_pDebounce->start();
}

void CHistoryTab::applyFilter()
{
    m_filter = filterFromControls();
    m_site = siteScope();
    m_pageStarts.assign(1, std::nullopt);
    m_page = 0;
    m_hasMore = false;
    m_loaded = false;
    m_liveTicket = 0;  // a live request waiting is replaced by the page request
    requestPage();
}

void CHistoryTab::requestPage()
{
    CHistoryQueryWorker::Request request;
    request.ticket = ++m_ticket;
    request.site = m_site;
    request.filter = m_filter;
    request.after = m_pageStarts[size_t(m_page)];
    m_pageTicket = request.ticket;
    m_liveTicket = 0;
    m_pStatus->setText(tr("HistoryLoading"));
    m_pWorker->Submit(std::move(request), true);
    updatePaging();
}

void CHistoryTab::pollNewer()
{
    // Live rows only above the first page, and never in place of a page request.
    if (m_page != 0 || !m_loaded || m_pageTicket != 0 || m_liveTicket != 0 || !isVisible())
        return;
    CHistoryQueryWorker::Request request;
    request.ticket = ++m_ticket;
    request.site = m_site;
    request.newer = true;
    request.filter = m_filter;
    request.watermark = m_watermark;
    m_liveTicket = request.ticket;
    m_pWorker->Submit(std::move(request), false);
}

void CHistoryTab::onResult(const std::shared_ptr<CHistoryQueryWorker::Reply>& reply)
{
    if (!reply->newer && reply->ticket == m_pageTicket) {
        m_pageTicket = 0;
        onPageResult(*reply);
    } else if (reply->newer && reply->ticket == m_liveTicket) {
        m_liveTicket = 0;
        onNewerResult(*reply);
    }
}

void CHistoryTab::onPageResult(const CHistoryQueryWorker::Reply& reply)
{
    if (reply.result == IHistorySource::Result::Cancelled)
        return;
    if (reply.result == IHistorySource::Result::Failed) {
        BASE_LOG_WARN("screening history: query failed: %s", qUtf8Printable(reply.error));
        m_pStatus->setText(tr("HistoryQueryFailed"));
        m_pModel->SetRows({}, m_site);
        return;
    }
    m_hasMore = reply.page.hasMore;
    m_loaded = true;
    if (m_page == 0)
        m_watermark = reply.page.watermark;
    if (m_hasMore) {
        m_pageStarts.resize(size_t(m_page) + 2);
        m_pageStarts[size_t(m_page) + 1] = reply.page.rows.back().key();
    }
    m_pModel->SetRows(reply.page.rows, m_site);
    m_pTable->setColumnWidth(CHistoryTableModel::ColFace, 56);
    m_pTable->setColumnWidth(CHistoryTableModel::ColTime, 170);
    m_pTable->setColumnWidth(CHistoryTableModel::ColCamera, 180);
    m_pTable->setColumnWidth(CHistoryTableModel::ColKind, 260);
    m_pTable->setColumnWidth(CHistoryTableModel::ColTemperature, 110);
    m_pTable->setColumnWidth(CHistoryTableModel::ColMask, 110);
    m_pTable->setColumnWidth(CHistoryTableModel::ColName, 200);
    m_pTable->setColumnWidth(CHistoryTableModel::ColSimilarity, 100);
    m_pTable->scrollToTop();
    m_pStatus->setText(reply.page.rows.empty() ? tr("HistoryNoEvents") : QString());
    updatePaging();
}

void CHistoryTab::onNewerResult(CHistoryQueryWorker::Reply& reply)
{
    if (reply.result != IHistorySource::Result::Ok || m_page != 0)
        return;
    m_watermark = std::max(m_watermark, reply.page.watermark);
    if (!reply.page.rows.empty()) {
        // The operator keeps the rows being looked at: rows arriving above
        // them push them down only while the view is at the very top.
        QScrollBar* bar = m_pTable->verticalScrollBar();
        const bool atTop = bar->value() == 0;
        const QPersistentModelIndex firstShown(m_pTable->indexAt(QPoint(1, 1)));
        const int offset = firstShown.isValid() ? m_pTable->visualRect(firstShown).top() : 0;
        m_pModel->InsertNewer(std::move(reply.page.rows), !m_hasMore);
        if (!atTop && firstShown.isValid())
            bar->setValue(bar->value() + m_pTable->visualRect(firstShown).top() - offset);
        m_pStatus->clear();
    }
    // The rest of a burst right away.
    if (reply.page.hasMore)
        QTimer::singleShot(0, this, &CHistoryTab::pollNewer);
}

void CHistoryTab::updatePaging()
{
    m_pNewerBtn->setEnabled(m_page > 0);
    m_pOlderBtn->setEnabled(m_hasMore && m_pageTicket == 0);
    m_pPageLbl->setText(tr("HistoryPageN").arg(m_page + 1));
}

void CHistoryTab::openDetail(int row)
{
    if (row < 0 || row >= m_pModel->rowCount())
        return;
    // open(), not exec(): live rows keep arriving while it is shown.
    auto* detail = new CComparisonDetail(window());
    detail->setAttribute(Qt::WA_DeleteOnClose);
    detail->SetAlarmInfo(HistoryDetailOf(m_pModel->Row(row).event));
    detail->open();
}

} // namespace BodyTemperature
