#pragma once
// The small face-capture card of the bottom strip: the face, the capture time
// and, while the mouse is over it, a button that offers the face to a face
// picture library. Created, connected, filled once and owned by the bottom
// strip (GUI thread).
#include <QByteArray>
#include <QFrame>
#include <string>

#include "AlarmShowInfo.h"

class QLabel;
class QPushButton;

namespace BodyTemperature {

class CSnapUnit final : public QFrame {
    Q_OBJECT
public:
    explicit CSnapUnit(QWidget* parent = nullptr);
    ~CSnapUnit() override;

    void SetAlarmInfo(const AlarmShowInfo& info);

    const AlarmShowInfo& info() const { return m_info; }
    // The encoded picture the face was taken from, and the face's place in it.
    const QByteArray& facePictureData() const { return m_strFacePic; }
    const protocol::PictureRect& faceRect() const { return m_rectFace; }

signals:
    void SignalSnapPicClicked(const char* pPic, uint uPicLen);
    void SignalAddToLib(std::string strFace, protocol::PictureRect rectFace);

public slots:
    void OnAddToLibBtnClicked();

protected:
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    AlarmShowInfo m_info;
    QPushButton* m_pAddToLibBtn = nullptr;
    QPushButton* m_pSecondBtn = nullptr;  // never created; kept for the layout of older strips
    QLabel* m_pFacePicLabel = nullptr;
    QLabel* m_pTimeLabel = nullptr;
    QByteArray m_strFacePic;  // shares the record's bytes
    protocol::PictureRect m_rectFace;
};

} // namespace BodyTemperature
