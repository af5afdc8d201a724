#include "ui/ShowCard/ReCustomer/CFrequenterUnit.h"

namespace BodyTemperature {

CFrequenterUnit::CFrequenterUnit(QWidget* parent) : CRightUnitBase(parent)
{
    setFixedSize(380, 222);
}

CFrequenterUnit::~CFrequenterUnit() = default;

void CFrequenterUnit::SetAlarmInfo(const AlarmShowInfo&, bool) {}

void CFrequenterUnit::SetFrequenterInfo(const AlarmShowInfo& info)
{
    m_info = info;
}

void CFrequenterUnit::ShowDetails() {}

} // namespace BodyTemperature
