// The two functions the host looks up in the module library.
#include "BodyTemperatureInterface.h"
#include "publicdatacontroller/IAIWidget.h"

#define BT_EXPORT extern "C" __attribute__((visibility("default")))

BT_EXPORT publicdatacontroller::IAIInterface* getAIInterface()
{
    return BodyTemperature::CreateDescriptor();
}

BT_EXPORT publicdatacontroller::IAIWidget* getAIWidget(QWidget* parent)
{
    BodyTemperature::BodyTemperatureInterface* descriptor = BodyTemperature::CurrentDescriptor();
    if (descriptor == nullptr)
        return nullptr;
    return descriptor->getAIWidget(parent);
}
