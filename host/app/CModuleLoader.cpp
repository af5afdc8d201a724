#include "CModuleLoader.h"

#include <QDir>
#include <QFileInfo>

#include "Base/Log.h"

CModuleLoader::~CModuleLoader()
{
    for (LoadedModule& m : m_modules) {
        delete m.descriptor;
        m.descriptor = nullptr;
    }
}

int CModuleLoader::LoadFolder(const QString& folder)
{
    QDir dir(folder);
    if (!dir.exists()) {
        BASE_LOG_WARN("modules folder %s does not exist", qUtf8Printable(folder));
        return 0;
    }
    int loaded = 0;
    const QFileInfoList entries = dir.entryInfoList(QDir::Files | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& fi : entries) {
        if (LoadFile(fi.absoluteFilePath()))
            ++loaded;
    }
    return loaded;
}

bool CModuleLoader::LoadFile(const QString& filePath)
{
    if (!QLibrary::isLibrary(filePath)) {
        BASE_LOG_WARN("skipping %s: not a library", qUtf8Printable(filePath));
        return false;
    }
    auto lib = std::make_unique<QLibrary>(filePath);
    if (!lib->load()) {
        BASE_LOG_WARN("skipping %s: %s", qUtf8Printable(filePath), qUtf8Printable(lib->errorString()));
        return false;
    }
    auto getInterface = reinterpret_cast<GetAIInterfaceFn>(lib->resolve("getAIInterface"));
    auto getWidget = reinterpret_cast<GetAIWidgetFn>(lib->resolve("getAIWidget"));
    if (getInterface == nullptr || getWidget == nullptr) {
        BASE_LOG_WARN("skipping %s: it does not export getAIInterface and getAIWidget", qUtf8Printable(filePath));
        lib->unload();
        return false;
    }
    publicdatacontroller::IAIInterface* descriptor = getInterface();
    if (descriptor == nullptr) {
        BASE_LOG_WARN("skipping %s: getAIInterface returned no descriptor", qUtf8Printable(filePath));
        return false;
    }
    BASE_LOG_INFO("loaded module %s (%s) from %s", qUtf8Printable(descriptor->getAIDllName()),
        qUtf8Printable(descriptor->getObjectName()), qUtf8Printable(filePath));
    LoadedModule m;
    m.filePath = filePath;
    m.library = std::move(lib);
    m.getInterface = getInterface;
    m.getWidget = getWidget;
    m.descriptor = descriptor;
    m_modules.push_back(std::move(m));
    return true;
}
