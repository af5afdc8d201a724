#include "ui/CPopConfigPage.h"

namespace BodyTemperature {

CPopConfigPage::CPopConfigPage(QWidget* parent) : QDialog(parent) {}
CPopConfigPage::~CPopConfigPage() = default;
void CPopConfigPage::SetConfig(const AlarmDisplayConfig& config) { m_config = config; }

} // namespace BodyTemperature
