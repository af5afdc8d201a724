#pragma once
// The pager under the thumbnail strip: record count, first / previous / next /
// last, the current page in a line edit ("GoTo" on Return) and the page
// count. Emits SignalPageChanged(current) after every change. The rules live
// in CHFPDPaging. Created as a child of the detail view; GUI thread.
#include <QWidget>

namespace VantorGUIToolkit {
class CIntValidator;
}
class QLabel;
class QLineEdit;
class QPushButton;

namespace BodyTemperature {

class CTargetPageController final : public QWidget {
    Q_OBJECT
public:
    explicit CTargetPageController(QWidget* parent = nullptr);

    // Page count (at least 1 is used) and record count; the current page becomes 1
    // and the line edit empty. Emits nothing.
    void SetPageInfo(unsigned int uPageCount, unsigned int uRecordCount);
    unsigned int CurrentPage() const { return m_uCurrentPage; }
    unsigned int PageCount() const { return m_uPageCount; }

signals:
    void SignalPageChanged(unsigned int uCurrentPage);

public slots:
    void OnHomePageClicked();
    void OnPreviousBtnClicked();
    void OnNextBtnClicked();
    void OnLastPageBtnClicked();
    void OnJump();
    void OnCurrentPageChanged();

private:
    void goTo(unsigned int uPage);
    void updateButtons();

    QLabel* m_pCountLabel = nullptr;
    QPushButton* m_pHomePageBtn = nullptr;
    QPushButton* m_pPreviousBtn = nullptr;
    QPushButton* m_pNextBtn = nullptr;
    QPushButton* m_pLastPageBtn = nullptr;
    QLabel* m_pGoToLabel = nullptr;
    QLineEdit* m_pPageEdit = nullptr;
    VantorGUIToolkit::CIntValidator* m_pPageValidator = nullptr;
    QLabel* m_pPageLabel = nullptr;
    unsigned int m_uCurrentPage = 1;
    unsigned int m_uPageCount = 1;
};

} // namespace BodyTemperature
