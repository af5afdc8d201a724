#pragma once
// The host's logic model with the plug-in through which play windows find its
// cameras, a shown play window, and a whole run of the host program. GUI thread.
#include <QProcess>
#include <QStringList>
#include <memory>

#include "UiDataController/CLogicModel.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "playwindow/CLiveViewControllerPlugin.h"
#include "playwindow/CStreamPlayWindowWithTask.h"
#include "support/TestSupport.h"

namespace testsupport {

// The logic model over the devices configured before it is made, and the
// plug-in that finds cameras in it (as a page's plug-in does).
class LogicModelPlugin final : public CLiveViewControllerPlugin {
public:
    vantordesk::IElement* GetElement(const std::string& id) override { return m_model.GetElementByID(id); }

private:
    UiDataController::CLogicModel m_model{UiDataController::StruResouceOfElementParam(),
        std::make_shared<clientcommonlogical::CGroupManagerDeletage>(), nullptr};
};

// A play window of its own, shown at this size; stopped when destroyed.
struct ShownWindow : CStreamPlayWindowWithTask {
    explicit ShownWindow(QSize size = {640, 360}) : CStreamPlayWindowWithTask(0)
    {
        resize(size);
        show();
    }
};

struct HostRun {
    bool finished = false;  // exited on its own, within a minute
    int exitCode = -1;
    QByteArray standardError;
};

// Runs the host program headless with the modules of this build, its data
// (logs) under dataHome and the given arguments.
inline HostRun runHost(const QString& dataHome, const QStringList& arguments)
{
    QProcess host;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("XDG_DATA_HOME"), dataHome);
    host.setProcessEnvironment(env);
    host.start(binDir() + QStringLiteral("/vantordesk"),
        QStringList{QStringLiteral("--modules"), binDir() + QStringLiteral("/modules")} + arguments);
    HostRun run;
    run.finished = host.waitForFinished(60000) && host.exitStatus() == QProcess::NormalExit;
    if (!run.finished) {
        host.kill();
        host.waitForFinished();
    }
    run.exitCode = host.exitCode();
    run.standardError = host.readAllStandardError();
    return run;
}

} // namespace testsupport
