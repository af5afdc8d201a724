#pragma once
// The rows of the screening history's table: one page, plus the live rows
// that arrived above it. Columns: face, time, camera, kind, temperature,
// mask, name, similarity and, for the site, the station. GUI thread; filled
// by CHistoryTab from the query worker's pages.
#include <QAbstractTableModel>
#include <QPixmap>
#include <memory>
#include <vector>

#include "record/HistoryRow.h"

namespace BodyTemperature {

class ReportTexts;

class CHistoryTableModel final : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { ColFace, ColTime, ColCamera, ColKind, ColTemperature, ColMask, ColName, ColSimilarity, ColStation };

    CHistoryTableModel(QObject* parent, int language);
    ~CHistoryTableModel() override;

    void SetRows(std::vector<HistoryRow> rows, bool showStation);
    // Live rows (newest first): each goes to its place in the newest-first
    // order; one already shown, or older than the last row kept while more
    // pages follow (`lastPage` false), is left out. The count inserted.
    int InsertNewer(std::vector<HistoryRow> rows, bool lastPage);
    const HistoryRow& Row(int row) const { return m_rows[size_t(row)].row; }
    bool ShowsStation() const { return m_showStation; }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Item {
        HistoryRow row;
        mutable QPixmap face;  // made from the decoded thumbnail when first shown
    };
    QString kindText(const JournalEvent& e) const;

    std::unique_ptr<ReportTexts> m_texts;
    std::vector<Item> m_rows;
    bool m_showStation = false;
};

} // namespace BodyTemperature
