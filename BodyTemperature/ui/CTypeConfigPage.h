#pragma once
// The small non-modal panel with the three alarm-type switches. Every click
// takes effect at once through signalCheckState. Created by the information
// display each time its button is pressed. GUI thread.
#include <QWidget>

#include "AlarmDisplayConfig.h"

namespace BodyTemperature {

class CTypeConfigPage final : public QWidget {
    Q_OBJECT
public:
    explicit CTypeConfigPage(QWidget* parent = nullptr);
    ~CTypeConfigPage() override;

    void SetConfig(const AlarmDisplayConfig& config);
    const AlarmDisplayConfig& GetConfig() const { return m_config; }

signals:
    void signalCheckState(BodyTemperature::TemperatureAlarm& struInfo);

public slots:
    void onDealCheck(bool bChecked);

private:
    AlarmDisplayConfig m_config;
};

} // namespace BodyTemperature
