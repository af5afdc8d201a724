#include "HostServices.h"

#include <QCoreApplication>

#include "Base/Log.h"
#include "CModuleLoader.h"
#include "CommonMethodLib/CUserDataPath.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "commlayer/CAlarmIntake.h"
#include "commlayer/CDeviceStateNotifier.h"

namespace HostServices {

namespace {

// The live alarm intake of every configured device.
class IntakeServices final : public Running {
public:
    explicit IntakeServices(const std::vector<clientcommonlogical::DeviceConfig>& devices)
    {
        // Created on the GUI thread so its signals are emitted there.
        commlayer::CDeviceStateNotifier::Instance();
        m_intake = std::make_unique<commlayer::CAlarmIntake>(devices);
    }

private:
    std::unique_ptr<commlayer::CAlarmIntake> m_intake;
};

} // namespace

std::unique_ptr<Running> Start()
{
    const auto devices = clientcommonlogical::CConfigMgr::Instance()->GetDevices();
    BASE_LOG_INFO("starting the alarm intake for %zu device(s)", devices.size());
    return std::make_unique<IntakeServices>(devices);
}

void SetComponentFolder(const QString& folder)
{
    CUserDataPath::Instance()->setComponentPath(folder.toLocal8Bit().toStdString());
}

std::vector<std::unique_ptr<QTranslator>> InstallTranslators(CModuleLoader& loader, int language)
{
    std::vector<std::unique_ptr<QTranslator>> out;
    const QString suffix = language == 1 ? QStringLiteral("zh_CN") : QStringLiteral("en");
    QStringList names{QStringLiteral("vantordesk")};
    for (LoadedModule& m : loader.Modules())
        names.append(m.descriptor->getAIDllName());
    for (const QString& name : names) {
        auto translator = std::make_unique<QTranslator>();
        const QString path = QStringLiteral(":/%1/i18n/%1_%2.qm").arg(name, suffix);
        if (translator->load(path)) {
            QCoreApplication::installTranslator(translator.get());
            out.push_back(std::move(translator));
        } else {
            BASE_LOG_INFO("no translation %s", qUtf8Printable(path));
        }
    }
    return out;
}

} // namespace HostServices
