#include "HostServices.h"

#include <QCoreApplication>

#include "Base/Log.h"
#include "CModuleLoader.h"
#include "CommonMethodLib/CUserDataPath.h"

namespace HostServices {

namespace {
class NoServices final : public Running {};
}

std::unique_ptr<Running> Start()
{
    return std::make_unique<NoServices>();
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
