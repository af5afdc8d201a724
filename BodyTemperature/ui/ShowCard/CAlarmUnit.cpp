#include "ui/ShowCard/CAlarmUnit.h"

namespace BodyTemperature {

CAlarmUnit::CAlarmUnit(QWidget* parent) : CRightUnitBase(parent)
{
    setFixedSize(380, 222);
}

CAlarmUnit::~CAlarmUnit() = default;

void CAlarmUnit::SetAlarmInfo(const AlarmShowInfo& info, bool)
{
    m_info = info;
}

void CAlarmUnit::SetFrequenterInfo(const AlarmShowInfo&) {}

void CAlarmUnit::ShowDetails() {}

} // namespace BodyTemperature
