// Main of every test executable: a headless QApplication around GoogleTest.
#include <QApplication>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <cstdlib>
#include <gtest/gtest.h>

#include "Base/Log.h"

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);
    ::testing::InitGoogleTest(&argc, argv);
    QApplication app(argc, argv);
    QTemporaryDir logDir;
    Base::Log::Init(logDir.filePath(QStringLiteral("test.log")).toStdString());
    return RUN_ALL_TESTS();
}
