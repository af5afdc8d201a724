// The host log keeps a bounded amount on disk and writes debug records only
// when switched on.
#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "Base/Log.h"
#include "support/TestSupport.h"

TEST(HostLog, RollsOverBySizeAndKeepsAFewFiles)
{
    const std::string before = Base::Log::CurrentFile();
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("host.log"));
    Base::Log::Init(file.toStdString(), 4096, 2);
    for (int i = 0; i < 400; ++i)
        BASE_LOG_INFO("record %d of a long run", i);
    BASE_LOG_DEBUG("a debug record while debug is off");
    Base::Log::SetDebug(true);
    BASE_LOG_DEBUG("a debug record while debug is on");
    Base::Log::SetDebug(false);
    Base::Log::Init(before);

    const QStringList files = QDir(dir.path()).entryList(QDir::Files, QDir::Name);
    EXPECT_EQ(files, (QStringList{QStringLiteral("host.log"), QStringLiteral("host.log.1"), QStringLiteral("host.log.2")}));
    QByteArray all;
    for (const QString& f : files) {
        const QByteArray bytes = testsupport::readFile(dir.filePath(f));
        EXPECT_LE(bytes.size(), 4096 + 512) << qPrintable(f);  // one record may cross the bound
        all += bytes;
    }
    EXPECT_TRUE(all.contains("record 399 of a long run"));
    EXPECT_FALSE(all.contains("record 0 of a long run"));  // rolled out of the oldest file
    EXPECT_FALSE(all.contains("while debug is off"));
    EXPECT_TRUE(all.contains("while debug is on"));
}
