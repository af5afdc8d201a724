#pragma once
// Finds dashboard modules in a folder and loads each through its two exported
// C functions. A file that is not a library, or lacks the exports, is skipped
// with a logged warning. GUI thread. The loader keeps the libraries loaded for
// the life of the process (pages hold code from them).
#include <QLibrary>
#include <QString>
#include <memory>
#include <vector>

#include "publicdatacontroller/IAIInterface.h"

struct LoadedModule {
    QString filePath;
    std::unique_ptr<QLibrary> library;
    GetAIInterfaceFn getInterface = nullptr;
    GetAIWidgetFn getWidget = nullptr;
    publicdatacontroller::IAIInterface* descriptor = nullptr;  // owned; deleted by the loader
};

class CModuleLoader final {
public:
    CModuleLoader() = default;
    ~CModuleLoader();
    CModuleLoader(const CModuleLoader&) = delete;
    CModuleLoader& operator=(const CModuleLoader&) = delete;

    // Loads every module of the folder (sorted by file name); returns how many loaded.
    int LoadFolder(const QString& folder);
    // Loads one file; false (and a logged warning) when it is not a usable module.
    bool LoadFile(const QString& filePath);

    std::vector<LoadedModule>& Modules() { return m_modules; }

private:
    std::vector<LoadedModule> m_modules;
};
