#include "ui/CTypeConfigPage.h"

namespace BodyTemperature {

CTypeConfigPage::CTypeConfigPage(QWidget* parent) : QWidget(parent) {}
CTypeConfigPage::~CTypeConfigPage() = default;
void CTypeConfigPage::SetConfig(const AlarmDisplayConfig& config) { m_config = config; }
void CTypeConfigPage::onDealCheck(bool)
{
    TemperatureAlarm alarm = m_config;
    emit signalCheckState(alarm);
}

} // namespace BodyTemperature
