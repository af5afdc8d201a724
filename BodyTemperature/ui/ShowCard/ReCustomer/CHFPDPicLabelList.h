#pragma once
// The thumbnail strip of the frequent-person detail view: one page of
// CHFPDPicLabel in rows, found by their "PicLsh". Created as a child of the
// detail view, which fills it page by page; GUI thread.
#include <QSize>
#include <QWidget>

class QGridLayout;

namespace BodyTemperature {

class CHFPDPicLabel;

class CHFPDPicLabelList final : public QWidget {
    Q_OBJECT
public:
    explicit CHFPDPicLabelList(QWidget* parent = nullptr);

    // Thumbnail size, spacing between them and how many stand in a row.
    void SetGeometryOfLabels(const QSize& thumb, int spacing, int columns);
    CHFPDPicLabel* AddPicLabel(unsigned int uPicLsh, const QString& strTime);
    bool RemovePicLabel(unsigned int uPicLsh);
    // Checks this thumbnail and unchecks the others.
    bool SelectPicLabel(unsigned int uPicLsh);
    // nullptr (and a debug line) when no thumbnail has that number.
    CHFPDPicLabel* FindPicLabel(unsigned int uPicLsh) const;
    void ClearPicLabels();
    int Count() const;

signals:
    void SignalPicLabelClickedWithLsh(unsigned int uPicLsh);
    void SignalLabelDbClicked(unsigned int uPicLsh);

private:
    void relayout();

    QGridLayout* m_pGrid = nullptr;
    QList<CHFPDPicLabel*> m_labels;
    // Cleared thumbnails, hidden and reused by the next page (creating and
    // styling 20 widgets a page would stall the view).
    QList<CHFPDPicLabel*> m_spare;
    QSize m_thumb{125, 169};
    int m_iColumns = 7;
};

} // namespace BodyTemperature
