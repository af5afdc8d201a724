#pragma once
// The small face-capture card of the bottom strip. Created, filled once and
// owned by the bottom strip (GUI thread).
#include <QFrame>
#include <string>

#include "AlarmShowInfo.h"

namespace BodyTemperature {

class CSnapUnit final : public QFrame {
    Q_OBJECT
public:
    explicit CSnapUnit(QWidget* parent = nullptr);
    ~CSnapUnit() override;

    void SetAlarmInfo(const AlarmShowInfo& info);
    const AlarmShowInfo& info() const { return m_info; }

signals:
    void SignalSnapPicClicked(const char* pPic, uint uPicLen);
    void SignalAddToLib(std::string strFace, protocol::PictureRect rectFace);

public slots:
    void OnAddToLibBtnClicked();

private:
    AlarmShowInfo m_info;
    std::string m_strFacePic;
    protocol::PictureRect m_rectFace;
};

} // namespace BodyTemperature
