#include "ui/ShowCard/CSnapUnit.h"

namespace BodyTemperature {

CSnapUnit::CSnapUnit(QWidget* parent) : QFrame(parent)
{
    setFixedSize(130, 146);
}

CSnapUnit::~CSnapUnit() = default;

void CSnapUnit::SetAlarmInfo(const AlarmShowInfo& info)
{
    m_info = info;
}

void CSnapUnit::OnAddToLibBtnClicked()
{
    emit SignalAddToLib(m_strFacePic, m_rectFace);
}

} // namespace BodyTemperature
