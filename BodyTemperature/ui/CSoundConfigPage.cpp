#include "ui/CSoundConfigPage.h"

namespace BodyTemperature {

CSoundConfigPage::CSoundConfigPage(QWidget* parent) : QDialog(parent) {}
CSoundConfigPage::~CSoundConfigPage() = default;
void CSoundConfigPage::SetConfig(const AlarmDisplayConfig& config) { m_config = config; }

} // namespace BodyTemperature
