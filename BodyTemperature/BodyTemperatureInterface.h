#pragma once
// The module's descriptor, handed to the host by getAIInterface(). It creates
// the page widget once, on the first getAIWidget() call; the widget belongs to
// its Qt parent, so destroying the descriptor never deletes it. GUI thread.
#include "publicdatacontroller/IAIInterface.h"

namespace BodyTemperature {

class BodyTemperatureWid;

class BodyTemperatureInterface final : public publicdatacontroller::IAIInterface {
public:
    BodyTemperatureInterface() = default;
    ~BodyTemperatureInterface() override;

    QString getObjectName() const override;
    QString getAIName() const override;
    QString getAIIconUrl() const override;
    publicdatacontroller::IAIWidget* getAIWidget(QWidget* parent) override;
    QString getAIDllName() const override;

private:
    BodyTemperatureWid* m_pWidget = nullptr;
};

// The descriptor the C getAIWidget() reaches: the last one getAIInterface() made.
BodyTemperatureInterface* CurrentDescriptor();
BodyTemperatureInterface* CreateDescriptor();

} // namespace BodyTemperature
