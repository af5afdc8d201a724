// The host application: module discovery, page life, saved state across runs
// and the diagnostic snapshot, through the real vantordesk program.
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPushButton>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "CHostMainWindow.h"
#include "CModuleLoader.h"
#include "CPageStateStore.h"
#include "publicdatacontroller/IAIWidget.h"
#include "support/HostRuns.h"

TEST(HostApplication, LoadsModulesFromAnyPathAndSkipsWhatIsNotAModule)
{
    QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("my modules ü 模块"));
    ASSERT_TRUE(QDir().mkpath(folder));
    ASSERT_TRUE(QFile::copy(testsupport::modulePath(), folder + QStringLiteral("/libBodyTemperature.so")));
    ASSERT_TRUE(testsupport::writeFile(folder + QStringLiteral("/readme.txt"), "not a library"));
    ASSERT_TRUE(testsupport::writeFile(folder + QStringLiteral("/libbroken.so"), "\x7f" "ELF but truncated"));
    // A real library that is not a module.
    ASSERT_TRUE(QFile::copy(testsupport::binDir() + QStringLiteral("/libSqlite3DO.so"),
        folder + QStringLiteral("/libSqlite3DO.so")));

    CModuleLoader loader;
    EXPECT_EQ(loader.LoadFolder(folder), 1);
    ASSERT_EQ(loader.Modules().size(), 1u);
    EXPECT_EQ(loader.Modules()[0].descriptor->getAIDllName(), QStringLiteral("BodyTemperature"));

    const QString log = QString::fromUtf8(testsupport::logText());
    EXPECT_TRUE(log.contains(QStringLiteral("readme.txt: not a library")));
    EXPECT_TRUE(log.contains(QStringLiteral("libbroken.so")));
    EXPECT_TRUE(log.contains(QStringLiteral("libSqlite3DO.so: it does not export getAIInterface and getAIWidget")));
}

TEST(HostApplication, PageStateSurvivesARestart)
{
    QTemporaryDir dir;
    const QString stateFile = dir.filePath(QStringLiteral("pagestate.json"));
    CModuleLoader loader;
    ASSERT_TRUE(loader.LoadFile(testsupport::modulePath()));
    {
        CPageStateStore store(stateFile);
        store.Set(QStringLiteral("m_BodyTemperatureBtn"), {publicdatacontroller::AIStateItem{"CAM-\x01\xff", {1, -2}}});
        ASSERT_TRUE(store.Save());
    }
    CPageStateStore store(stateFile);
    ASSERT_TRUE(store.Load());
    const auto items = store.Get(QStringLiteral("m_BodyTemperatureBtn"));
    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items[0].name, QByteArray("CAM-\x01\xff"));
    EXPECT_EQ(items[0].values, (QList<qint32>{1, -2}));

    CHostMainWindow window(loader, store);
    QPushButton* button = window.ButtonFor(QStringLiteral("m_BodyTemperatureBtn"));
    ASSERT_NE(button, nullptr);
    button->click();
    ASSERT_NE(window.ActivePage(), nullptr);
    window.LeaveActivePage();
    EXPECT_EQ(window.ActivePage(), nullptr);
    CPageStateStore reread(stateFile);
    ASSERT_TRUE(reread.Load());
    // The page saved what it had open (nothing reopened in this build of the page is playing).
    EXPECT_EQ(reread.Get(QStringLiteral("m_BodyTemperatureBtn")), window.findChild<publicdatacontroller::IAIWidget*>()->stateList());
}

TEST(HostApplication, SnapshotDescribesEveryWidget)
{
    QTemporaryDir dir;
    // A configuration with cameras, in a folder of its own, and no saved state.
    ASSERT_TRUE(QDir().mkpath(dir.filePath(QStringLiteral("config"))));
    const QString configPath = dir.filePath(QStringLiteral("config/vantordesk.json"));
    ASSERT_TRUE(testsupport::writeFile(configPath, R"({"language": 2, "devices": [{"id": "DEV", "address": "127.0.0.1", "port": 9, "scheme": "http",
        "user": "u", "password": "p", "channels": [{"channel": 1, "cameraId": "CAM1", "name": "One", "area": "A"},
        {"channel": 2, "cameraId": "CAM2", "name": "Two", "area": "A"}]}]})"));
    const testsupport::HostRun host = testsupport::runHost(dir.filePath(QStringLiteral("data")),
        {QStringLiteral("--open"), QStringLiteral("m_BodyTemperatureBtn"), QStringLiteral("--quit-after"),
            QStringLiteral("1"), QStringLiteral("--snapshot"), dir.filePath(QStringLiteral("snap")),
            QStringLiteral("--config"), configPath, QStringLiteral("--state"), dir.filePath(QStringLiteral("state.json")),
            QStringLiteral("--data-dir"), dir.filePath(QStringLiteral("component"))});
    ASSERT_TRUE(host.finished) << host.standardError.constData();
    EXPECT_EQ(host.exitCode, 0) << host.standardError.constData();
    EXPECT_FALSE(QImage(dir.filePath(QStringLiteral("snap/window.png"))).isNull());

    const QJsonDocument doc = QJsonDocument::fromJson(testsupport::readFile(dir.filePath(QStringLiteral("snap/widgets.json"))));
    ASSERT_TRUE(doc.isArray());
    bool foundButton = false;
    std::function<void(const QJsonObject&)> walk = [&](const QJsonObject& o) {
        for (const char* key : {"class", "objectName", "visible", "geometry", "styleSheet", "children"})
            EXPECT_TRUE(o.contains(QLatin1String(key))) << key;
        const QJsonObject g = o.value(QStringLiteral("geometry")).toObject();
        for (const char* key : {"x", "y", "width", "height"})
            EXPECT_TRUE(g.contains(QLatin1String(key))) << key;
        if (o.value(QStringLiteral("objectName")).toString() == QStringLiteral("m_BodyTemperatureBtn")) {
            foundButton = true;
            EXPECT_TRUE(o.contains(QStringLiteral("toolTip")));
        }
        for (const QJsonValue& c : o.value(QStringLiteral("children")).toArray())
            walk(c.toObject());
    };
    for (const QJsonValue& v : doc.array())
        walk(v.toObject());
    EXPECT_TRUE(foundButton);
    EXPECT_TRUE(QFile::exists(dir.filePath(QStringLiteral("component/BodyTemperature"))))
        << "the settings database is provisioned on first use";

    // A first start opens no camera: the page saved an empty list.
    const QJsonObject state = QJsonDocument::fromJson(testsupport::readFile(dir.filePath(QStringLiteral("state.json")))).object();
    ASSERT_TRUE(state.contains(QStringLiteral("m_BodyTemperatureBtn")));
    EXPECT_TRUE(state.value(QStringLiteral("m_BodyTemperatureBtn")).toArray().isEmpty());
    // Nothing lands beside the configuration (hidden files included).
    EXPECT_EQ(QDir(dir.filePath(QStringLiteral("config"))).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
        QStringList{QStringLiteral("vantordesk.json")});
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
        (QStringList{QStringLiteral("component"), QStringLiteral("config"), QStringLiteral("data"), QStringLiteral("snap"),
            QStringLiteral("state.json")}));
}
