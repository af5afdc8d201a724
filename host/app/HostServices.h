#pragma once
// Start-up services of the host around the main window: translators of the
// loaded modules and the background services (device alarm intake). GUI thread.
#include <QString>
#include <QTranslator>
#include <memory>
#include <vector>

class CModuleLoader;

namespace HostServices {

// The running background services; destroying it stops and joins them.
class Running {
public:
    virtual ~Running() = default;
};

std::unique_ptr<Running> Start();
void SetComponentFolder(const QString& folder);
// Installs, for each module, ":/<DllName>/i18n/<DllName>_<lang>.qm" (lang zh_CN for 1, else en).
std::vector<std::unique_ptr<QTranslator>> InstallTranslators(CModuleLoader& loader, int language);

} // namespace HostServices
