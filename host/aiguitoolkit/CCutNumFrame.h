#pragma once
// The window-division selector: a small pop-up with one button per division
// (1, 4, 9 windows). A click emits SignalClickedBtn with the division type and
// closes the pop-up. GUI thread.
#include <QFrame>
#include <QList>

class QToolButton;

namespace aiguitoolkit {

class CCutNumFrame : public QFrame {
    Q_OBJECT
public:
    explicit CCutNumFrame(QWidget* parent = nullptr);
    ~CCutNumFrame() override;

    // Offers only divisions of at most count windows (hidden, or disabled when !bHide).
    void SetMaxWndNum(int count, bool bHide);
    // The window counts of the divisions offered now.
    QList<int> OfferedWindowCounts() const;
    QToolButton* ButtonOfType(int type) const;

signals:
    void SignalClickedBtn(int iType);

private:
    struct Entry {
        int type;
        int windows;
        QToolButton* button;
    };
    QList<Entry> m_entries;
};

} // namespace aiguitoolkit
