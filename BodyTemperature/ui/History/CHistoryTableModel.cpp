#include "ui/History/CHistoryTableModel.h"

#include <QStringList>
#include <algorithm>

#include "report/ReportTexts.h"
#include "record/HistoryMatch.h"

namespace BodyTemperature {

namespace {

// Newest first: time descending, station ascending, id descending.
bool before(const HistoryRow& a, const HistoryRow& b)
{
    if (a.event.time != b.event.time)
        return a.event.time > b.event.time;
    if (a.station != b.station)
        return a.station < b.station;
    return a.event.id > b.event.id;
}

} // namespace

CHistoryTableModel::CHistoryTableModel(QObject* parent, int language)
    : QAbstractTableModel(parent), m_texts(std::make_unique<ReportTexts>(language))
{
}

CHistoryTableModel::~CHistoryTableModel() = default;

void CHistoryTableModel::SetRows(std::vector<HistoryRow> rows, bool showStation)
{
    beginResetModel();
    m_rows.clear();
    m_rows.reserve(rows.size());
    for (HistoryRow& r : rows)
        m_rows.push_back(Item{std::move(r), QPixmap()});
    m_showStation = showStation;
    endResetModel();
}

int CHistoryTableModel::InsertNewer(std::vector<HistoryRow> rows, bool lastPage)
{
    int inserted = 0;
    for (HistoryRow& r : rows) {
        const auto at = std::lower_bound(m_rows.begin(), m_rows.end(), r,
            [](const Item& item, const HistoryRow& row) { return before(item.row, row); });
        if (at == m_rows.end() && !lastPage)
            continue;
        if (at != m_rows.end() && at->row.event.id == r.event.id && at->row.station == r.station)
            continue;
        const int pos = int(at - m_rows.begin());
        beginInsertRows(QModelIndex(), pos, pos);
        m_rows.insert(at, Item{std::move(r), QPixmap()});
        endInsertRows();
        ++inserted;
    }
    return inserted;
}

int CHistoryTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int CHistoryTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : (m_showStation ? ColStation + 1 : ColStation);
}

QString CHistoryTableModel::kindText(const JournalEvent& e) const
{
    const uint32_t kinds = HistoryKindsOf(e);
    QStringList parts;
    if (kinds & HistoryFilter::KindAbnormal)
        parts << tr("HistoryKindAbnormal");
    if (kinds & HistoryFilter::KindNoMask)
        parts << tr("HistoryKindNoMask");
    if (kinds & HistoryFilter::KindNormal)
        parts << tr("HistoryKindNormal");
    if (kinds & HistoryFilter::KindMatched)
        parts << tr("HistoryKindMatched");
    if (kinds & HistoryFilter::KindReturning)
        parts << tr("HistoryKindReturning");
    if (parts.isEmpty())
        parts << m_texts->kind(e.kind);
    return parts.join(tr("HistoryKindSeparator"));
}

QVariant CHistoryTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= int(m_rows.size()))
        return QVariant();
    const Item& item = m_rows[size_t(index.row())];
    const JournalEvent& e = item.row.event;
    if (role == Qt::DecorationRole && index.column() == ColFace) {
        if (item.face.isNull() && !e.faceImage.isNull())
            item.face = QPixmap::fromImage(e.faceImage);
        return item.face;
    }
    if (role == Qt::ForegroundRole && index.column() == ColTemperature && e.temperatureType == 0)
        return QColor(0xff, 0x4d, 0x4f);
    if (role == Qt::TextAlignmentRole)
        return int(Qt::AlignVCenter | Qt::AlignLeft);
    if (role != Qt::DisplayRole)
        return QVariant();
    switch (index.column()) {
    case ColTime: return ReportTexts::time(e.time);
    case ColCamera: return QString::fromStdString(e.cameraName.empty() ? e.cameraId : e.cameraName);
    case ColKind: return kindText(e);
    case ColTemperature: return ReportTexts::temperature(e);
    case ColMask: return m_texts->mask(e);
    case ColName: return QString::fromStdString(e.personName);
    case ColSimilarity:
        return e.kind <= 2 && e.similarity > 0 ? QString::number(int(e.similarity * 100 + 0.5)) + QLatin1Char('%')
                                               : QString();
    case ColStation: return QString::fromStdString(item.row.station);
    default: return QVariant();
    }
}

QVariant CHistoryTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case ColFace: return tr("HistoryColFace");
    case ColTime: return tr("HistoryColTime");
    case ColCamera: return tr("HistoryColCamera");
    case ColKind: return tr("HistoryColKind");
    case ColTemperature: return tr("HistoryColTemperature");
    case ColMask: return tr("HistoryColMask");
    case ColName: return tr("HistoryColName");
    case ColSimilarity: return tr("HistoryColSimilarity");
    case ColStation: return tr("HistoryColStation");
    default: return QVariant();
    }
}

} // namespace BodyTemperature
