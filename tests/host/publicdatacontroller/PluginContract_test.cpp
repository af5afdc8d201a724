// The module as the host sees it, through dlopen and its two exported functions.
// It keeps its current descriptor globally: each step deletes what it made.
#include <QLibrary>
#include <QPixmap>
#include <QPointer>
#include <QWidget>
#include <dlfcn.h>
#include <gtest/gtest.h>

#include "Base/CSingleton.h"
#include "publicdatacontroller/AlarmTransfer.h"
#include "publicdatacontroller/IAIInterface.h"
#include "publicdatacontroller/IAIWidget.h"
#include "support/TestSupport.h"

using namespace publicdatacontroller;

namespace {

struct Module {
    QLibrary lib{testsupport::modulePath()};
    GetAIInterfaceFn getInterface = nullptr;
    GetAIWidgetFn getWidget = nullptr;
};

Module& module()
{
    static Module m;
    if (!m.lib.isLoaded()) {
        EXPECT_TRUE(m.lib.load()) << qPrintable(m.lib.errorString());
        m.getInterface = reinterpret_cast<GetAIInterfaceFn>(m.lib.resolve("getAIInterface"));
        m.getWidget = reinterpret_cast<GetAIWidgetFn>(m.lib.resolve("getAIWidget"));
    }
    return m;
}

bool alarmIntakeConnected()
{
    auto* transfer = Base::CSingleton<AlarmTransfer>::Instance();
    return transfer->listenerCount() > 0;
}

QWidget& hostFrame()
{
    static QWidget frame;
    return frame;
}

} // namespace

TEST(PluginContract, ExportsExactlyTheTwoEntryPoints)
{
    Module& m = module();
    ASSERT_NE(m.getInterface, nullptr);
    ASSERT_NE(m.getWidget, nullptr);
    // Nothing else of the module is visible to the loader.
    void* handle = dlopen(testsupport::modulePath().toLocal8Bit().constData(), RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(handle, nullptr);
    for (const char* hidden : {"_ZN15BodyTemperature24BodyTemperatureInterfaceC1Ev", "CreateDescriptor",
             "_ZN15BodyTemperature17CurrentDescriptorEv", "qInitResources_BodyTemperature"})
        EXPECT_EQ(dlsym(handle, hidden), nullptr) << hidden;
    dlclose(handle);
}

TEST(PluginContract, DescriptorDescribesThePage)
{
    std::unique_ptr<IAIInterface> d(module().getInterface());
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->getObjectName(), QStringLiteral("m_BodyTemperatureBtn"));
    EXPECT_EQ(d->getAIName(), QStringLiteral("EpidemicPreventionAnHjjMjujt"));  // no translator installed
    EXPECT_EQ(d->getAIIconUrl(), QStringLiteral(":/Images/Images/AIDashboard/BodyTemperature.png"));
    EXPECT_EQ(d->getAIDllName(), QStringLiteral("BodyTemperature"));
    EXPECT_FALSE(QPixmap(d->getAIIconUrl()).isNull()) << "the icon resource ships with the module";
}

TEST(PluginContract, OneWidgetPerDescriptorAndTheCExportReachesTheLatest)
{
    Module& m = module();
    IAIInterface* first = m.getInterface();
    IAIInterface* second = m.getInterface();
    ASSERT_NE(first, second);

    QWidget otherParent;
    IAIWidget* w1 = first->getAIWidget(&hostFrame());
    ASSERT_NE(w1, nullptr);
    EXPECT_EQ(first->getAIWidget(&otherParent), w1) << "a later parent is ignored";
    EXPECT_EQ(w1->parentWidget(), &hostFrame());

    IAIWidget* w2 = m.getWidget(&hostFrame());
    ASSERT_NE(w2, nullptr);
    EXPECT_NE(w2, w1);
    EXPECT_EQ(second->getAIWidget(nullptr), w2);

    // Destroying a descriptor never deletes its widget (the Qt parent owns it).
    QPointer<IAIWidget> guard(w1);
    delete first;
    EXPECT_FALSE(guard.isNull());
    delete w1;
    delete w2;
    delete second;
    EXPECT_EQ(m.getWidget(&hostFrame()), nullptr) << "no current descriptor once it is gone";
}

TEST(PluginContract, SaveAndReadStateAlternate)
{
    Module& m = module();
    std::unique_ptr<IAIInterface> d(m.getInterface());
    IAIWidget* page = d->getAIWidget(&hostFrame());
    ASSERT_NE(page, nullptr);
    EXPECT_FALSE(alarmIntakeConnected()) << "a new page waits for readState";

    page->readState();
    EXPECT_TRUE(alarmIntakeConnected());
    page->readState();
    page->saveState();
    EXPECT_TRUE(page->stateList().isEmpty()) << "no camera open, nothing saved";
    EXPECT_FALSE(alarmIntakeConnected());

    // Saved cameras come back with readState; the next saveState finds them again.
    page->stateList() = {AIStateItem{"CAM-A", {}}, AIStateItem{"CAM-B", {}}};
    page->readState();
    EXPECT_TRUE(alarmIntakeConnected());
    page->saveState();
    QList<QByteArray> names;
    for (const AIStateItem& item : page->stateList()) {
        names.append(item.name);
        EXPECT_TRUE(item.values.isEmpty());
    }
    EXPECT_EQ(names, (QList<QByteArray>{"CAM-A", "CAM-B"}));

    // saveState closed them, so a second one in a row saves nothing.
    page->saveState();
    EXPECT_TRUE(page->stateList().isEmpty());
    delete page;
}
