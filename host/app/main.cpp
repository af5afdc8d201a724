// vantordesk: the host client. Loads dashboard modules and shows their pages.
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QFont>
#include <QScreen>
#include <QStandardPaths>
#include <QTimer>
#include <QTranslator>
#include <algorithm>
#include <cstdio>
#include <memory>

#include "Base/Log.h"
#include "CHostMainWindow.h"
#include "CModuleLoader.h"
#include "CPageStateStore.h"
#include "CWidgetSnapshot.h"
#include "HostServices.h"
#include "clientcommonlogical/CConfigMgr.h"

namespace {

// The page-state file: the one given, else beside the configuration file,
// else in the user's application data.
QString pageStatePath(const QString& given, const QString& configPath)
{
    if (!given.isEmpty())
        return given;
    return configPath.isEmpty()
        ? QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/pagestate.json")
        : QFileInfo(configPath).absolutePath() + QStringLiteral("/pagestate.json");
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("vantordesk"));
    QApplication::setOrganizationName(QStringLiteral("VantorDesk"));
#ifndef Q_OS_WIN
    // Modules name the Windows UI font; elsewhere its metrics are closest to
    // these, and a wider fallback would clip texts in fixed-size labels.
    QFont::insertSubstitutions(QStringLiteral("Microsoft YaHei"),
        {QStringLiteral("WenQuanYi Micro Hei"), QStringLiteral("Noto Sans CJK SC")});
#endif

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("VantorDesk client"));
    parser.addHelpOption();
    QCommandLineOption modulesOpt(QStringLiteral("modules"), QStringLiteral("Folder of dashboard modules."),
        QStringLiteral("DIR"), QCoreApplication::applicationDirPath() + QStringLiteral("/modules"));
    QCommandLineOption configOpt(QStringLiteral("config"), QStringLiteral("Host configuration file (JSON)."),
        QStringLiteral("FILE"));
    QCommandLineOption openOpt(QStringLiteral("open"), QStringLiteral("Open this module at start."),
        QStringLiteral("NAME"));
    QCommandLineOption languageOpt(QStringLiteral("language"), QStringLiteral("Language: 1 Chinese, other English."),
        QStringLiteral("N"));
    QCommandLineOption quitOpt(QStringLiteral("quit-after"), QStringLiteral("Quit after this many seconds."),
        QStringLiteral("SECONDS"));
    QCommandLineOption snapshotOpt(QStringLiteral("snapshot"),
        QStringLiteral("Before quitting, write window.png and widgets.json here."), QStringLiteral("DIR"));
    QCommandLineOption stateOpt(QStringLiteral("state"), QStringLiteral("Page-state file."), QStringLiteral("FILE"));
    QCommandLineOption dataOpt(QStringLiteral("data-dir"), QStringLiteral("Per-user component folder."),
        QStringLiteral("DIR"));
    QCommandLineOption operateOpt(QStringLiteral("operate"),
        QStringLiteral("With --quit-after, from 4 s before the end: click the button NAME, or choose item N of the"
                       " list box NAME (NAME=N); repeatable, done in order a second apart."),
        QStringLiteral("NAME[=N]"));
    parser.addOptions({modulesOpt, configOpt, openOpt, languageOpt, quitOpt, snapshotOpt, stateOpt, dataOpt, operateOpt});
    parser.process(app);

    Base::Log::Init();
    auto* config = clientcommonlogical::CConfigMgr::Instance();
    if (parser.isSet(configOpt))
        config->Load(parser.value(configOpt));
    Base::Log::SetDebug(config->IsDebugLog());
    if (parser.isSet(languageOpt))
        config->SetLanguage(parser.value(languageOpt).toInt());
    if (parser.isSet(dataOpt))
        HostServices::SetComponentFolder(parser.value(dataOpt));

    CModuleLoader loader;
    loader.LoadFolder(parser.value(modulesOpt));
    std::vector<std::unique_ptr<QTranslator>> translators = HostServices::InstallTranslators(loader, config->GetLanguage());

    CPageStateStore stateStore(pageStatePath(parser.value(stateOpt), config->FilePath()));
    stateStore.Load();

    auto services = HostServices::Start();

    CHostMainWindow window(loader, stateStore);
    if (QScreen* screen = QGuiApplication::primaryScreen())
        window.setGeometry(screen->geometry());
    window.show();
    if (parser.isSet(openOpt))
        window.OpenPage(parser.value(openOpt));

    if (parser.isSet(quitOpt) && parser.isSet(operateOpt)) {
        // A second apart, so that what one step starts (a query, a window) has
        // settled before the next.
        const QStringList steps = parser.values(operateOpt);
        const int at = std::max(0, static_cast<int>(parser.value(quitOpt).toDouble() * 1000) - 4000);
        for (int i = 0; i < steps.size(); ++i) {
            const QString step = steps.at(i);
            QTimer::singleShot(at + 1000 * i, &window, [step]() { WidgetSnapshot::Operate({step}); });
        }
    }
    if (parser.isSet(quitOpt)) {
        const QString snapshot = parser.value(snapshotOpt);
        QTimer::singleShot(static_cast<int>(parser.value(quitOpt).toDouble() * 1000), &window, [&window, snapshot]() {
            if (!snapshot.isEmpty())
                WidgetSnapshot::Write(snapshot, &window);
            window.close();
            QApplication::quit();
        });
    }
    const int rc = app.exec();
    window.LeaveActivePage();
    services.reset();
    return rc;
}
