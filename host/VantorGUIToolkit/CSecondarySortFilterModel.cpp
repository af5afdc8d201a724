#include "VantorGUIToolkit/CSecondarySortFilterModel.h"

namespace VantorGUIToolkit {

CSecondarySortFilterModel::CSecondarySortFilterModel(QObject* parent) : QSortFilterProxyModel(parent) {}

CSecondarySortFilterModel::~CSecondarySortFilterModel() = default;

void CSecondarySortFilterModel::setSecondarySortRole(int role)
{
    m_iSecondaryRole = role;
    invalidate();
}

bool CSecondarySortFilterModel::rowMatches(const QModelIndex& sourceIndex) const
{
    const QRegExp rx = filterRegExp();
    if (rx.isEmpty())
        return true;
    const QVariant value = sourceIndex.data(filterRole());
    // Rows that carry no filter value (headers, separators) are not filtered.
    if (!value.isValid())
        return true;
    return rx.exactMatch(value.toString());
}

bool CSecondarySortFilterModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    const QAbstractItemModel* source = sourceModel();
    if (source == nullptr)
        return false;
    const QModelIndex index = source->index(sourceRow, filterKeyColumn() < 0 ? 0 : filterKeyColumn(), sourceParent);
    if (rowMatches(index))
        return true;
    const int children = source->rowCount(index);
    for (int i = 0; i < children; ++i)
        if (filterAcceptsRow(i, index))
            return true;
    return false;
}

bool CSecondarySortFilterModel::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    const QVariant l = left.data(sortRole());
    const QVariant r = right.data(sortRole());
    if (l != r)
        return QSortFilterProxyModel::lessThan(left, right);
    return QString::localeAwareCompare(left.data(m_iSecondaryRole).toString(), right.data(m_iSecondaryRole).toString()) < 0;
}

} // namespace VantorGUIToolkit
