#pragma once
// Proxy between a host tree model and its view. Filters on one item-data role
// with a regular expression; a parent row stays visible while one of its
// descendants passes, so an area keeps its accepted cameras. Rows sort by the
// sort role first and by their display text second, so equal keys keep a
// stable, readable order. GUI thread; the proxy does not own the source.
#include <QSortFilterProxyModel>

namespace VantorGUIToolkit {

class CSecondarySortFilterModel : public QSortFilterProxyModel {
    Q_OBJECT
public:
    explicit CSecondarySortFilterModel(QObject* parent = nullptr);
    ~CSecondarySortFilterModel() override;

    // Role compared when the primary sort keys are equal (display text by default).
    void setSecondarySortRole(int role);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    bool rowMatches(const QModelIndex& sourceIndex) const;

    int m_iSecondaryRole = Qt::DisplayRole;
};

} // namespace VantorGUIToolkit
