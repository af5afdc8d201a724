#include "BodyTemperatureInterface.h"

#include <QObject>
#include <new>

#include "BodyTemperatureWid.h"

namespace BodyTemperature {

namespace {
BodyTemperatureInterface* g_currentDescriptor = nullptr;
}

BodyTemperatureInterface::~BodyTemperatureInterface()
{
    if (g_currentDescriptor == this)
        g_currentDescriptor = nullptr;
}

QString BodyTemperatureInterface::getObjectName() const
{
    return QStringLiteral("m_BodyTemperatureBtn");
}

QString BodyTemperatureInterface::getAIName() const
{
    return QObject::tr("EpidemicPreventionAnHjjMjujt");
}

QString BodyTemperatureInterface::getAIIconUrl() const
{
    return QStringLiteral(":/Images/Images/AIDashboard/BodyTemperature.png");
}

publicdatacontroller::IAIWidget* BodyTemperatureInterface::getAIWidget(QWidget* parent)
{
    if (m_pWidget == nullptr)
        m_pWidget = new (std::nothrow) BodyTemperatureWid(parent);
    return m_pWidget;
}

QString BodyTemperatureInterface::getAIDllName() const
{
    return QStringLiteral("BodyTemperature");
}

BodyTemperatureInterface* CurrentDescriptor()
{
    return g_currentDescriptor;
}

BodyTemperatureInterface* CreateDescriptor()
{
    g_currentDescriptor = new (std::nothrow) BodyTemperatureInterface();
    return g_currentDescriptor;
}

} // namespace BodyTemperature
