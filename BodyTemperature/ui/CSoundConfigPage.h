#pragma once
// Modal settings dialog of the information display; works on its own copy of
// the settings and saves them itself. Created each time its button is pressed.
#include <QDialog>

#include "AlarmDisplayConfig.h"

namespace BodyTemperature {

class CSoundConfigPage final : public QDialog {
    Q_OBJECT
public:
    explicit CSoundConfigPage(QWidget* parent = nullptr);
    ~CSoundConfigPage() override;

    void SetConfig(const AlarmDisplayConfig& config);
    const AlarmDisplayConfig& GetConfig() const { return m_config; }

private:
    AlarmDisplayConfig m_config;
};

} // namespace BodyTemperature
