#include "ui/ShowCard/CPopUpUnit.h"

namespace BodyTemperature {

CPopUpUnit::CPopUpUnit(QWidget* parent) : CAlarmUnit(parent)
{
    setFixedSize(630, 468);
}

CPopUpUnit::~CPopUpUnit() = default;

void CPopUpUnit::SetAlarmInfo(const AlarmShowInfo& info, bool bLarge)
{
    CAlarmUnit::SetAlarmInfo(info, bLarge);
}

void CPopUpUnit::onClose()
{
    emit signalClose();
    close();
}

} // namespace BodyTemperature
