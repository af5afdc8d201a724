#pragma once
// One thumbnail of the frequent-person detail view: the capture's face, its
// time, and its place on the page ("PicLsh", 1..20). Shows "loading" until
// its picture arrives, or the failure text of its own download. Its state is
// also kept in the dynamic property "thumbState" ("loading", "loaded",
// "failed"). Created by CHFPDPicLabelList as a child; GUI thread.
#include <QPixmap>
#include <QWidget>

namespace BodyTemperature {

class CHFPDPicLabel final : public QWidget {
    Q_OBJECT
public:
    CHFPDPicLabel(unsigned int uPicLsh, const QString& strTime, QWidget* parent = nullptr);

    unsigned int PicLsh() const { return m_uPicLsh; }
    // Shows another capture: loading again, unchecked.
    void Reset(unsigned int uPicLsh, const QString& strTime);
    void SetPicture(const QPixmap& picture);
    void SetFailed(const QString& message);
    void SetChecked(bool checked);
    bool IsChecked() const { return m_bChecked; }

signals:
    void SignalClicked(unsigned int uPicLsh);
    void SignalDoubleClicked(unsigned int uPicLsh);
    void SignalEnterEvent();
    void SignalPicCheckStateChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    unsigned int m_uPicLsh;
    QString m_strTime;
    QPixmap m_picture;
    QString m_strMessage;
    bool m_bChecked = false;
    bool m_bHover = false;
};

} // namespace BodyTemperature
