#include "Base/Log.h"

#include <QDir>
#include <QStandardPaths>
#include <cstdarg>
#include <cstdio>
#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

#include <log4cxx/logger.h>
#include <log4cxx/patternlayout.h>
#include <log4cxx/rolling/fixedwindowrollingpolicy.h>
#include <log4cxx/rolling/rollingfileappender.h>
#include <log4cxx/rolling/sizebasedtriggeringpolicy.h>
#include <log4cxx/spi/location/locationinfo.h>

namespace Base {
namespace Log {
namespace {

std::mutex g_initMutex;
bool g_initialised = false;
std::atomic<bool> g_debug{false};
std::string g_file;

std::string defaultFile()
{
    QString dir = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (dir.isEmpty())
        dir = QDir::homePath() + QStringLiteral("/.local/share/vantordesk");
    dir += QStringLiteral("/logs");
    QDir().mkpath(dir);
    return (dir + QStringLiteral("/vantordesk.log")).toStdString();
}

log4cxx::LoggerPtr logger()
{
    static log4cxx::LoggerPtr s_logger = log4cxx::Logger::getLogger("vantordesk");
    return s_logger;
}

void initLocked(const std::string& filePath, size_t maxFileBytes, int backupFiles)
{
    const std::string file = filePath.empty() ? defaultFile() : filePath;
    auto layout = std::make_shared<log4cxx::PatternLayout>(
        LOG4CXX_STR("%d{yyyy-MM-dd HH:mm:ss.SSS} [%t] %-5p %m (%F:%L %M)%n"));
    const log4cxx::LogString path(file.begin(), file.end());
    auto rolling = std::make_shared<log4cxx::rolling::FixedWindowRollingPolicy>();
    rolling->setFileNamePattern(path + LOG4CXX_STR(".%i"));
    rolling->setMinIndex(1);
    rolling->setMaxIndex(backupFiles);
    auto trigger = std::make_shared<log4cxx::rolling::SizeBasedTriggeringPolicy>();
    trigger->setMaxFileSize(maxFileBytes);
    // log4cxx 1.0 frees a FixedWindowRollingPolicy with the wrong size (a
    // fault the address sanitizer stops on): the policies of this process
    // are never freed. One per Init() call, a few bytes each.
    static auto* s_kept = new std::vector<std::shared_ptr<log4cxx::rolling::FixedWindowRollingPolicy>>();
    s_kept->push_back(rolling);
    auto appender = std::make_shared<log4cxx::rolling::RollingFileAppender>();
    appender->setLayout(layout);
    appender->setRollingPolicy(rolling);
    appender->setTriggeringPolicy(trigger);
    appender->setFile(path);
    appender->setAppend(true);
    log4cxx::helpers::Pool pool;
    appender->activateOptions(pool);
    auto root = logger();
    root->removeAllAppenders();
    root->addAppender(appender);
    root->setLevel(g_debug ? log4cxx::Level::getDebug() : log4cxx::Level::getInfo());
    g_file = file;
    g_initialised = true;
}

} // namespace

void Init(const std::string& filePath, size_t maxFileBytes, int backupFiles)
{
    std::lock_guard<std::mutex> lock(g_initMutex);
    initLocked(filePath, maxFileBytes, backupFiles);
}

void SetDebug(bool on)
{
    g_debug = on;
    logger()->setLevel(on ? log4cxx::Level::getDebug() : log4cxx::Level::getInfo());
}

std::string CurrentFile()
{
    std::lock_guard<std::mutex> lock(g_initMutex);
    return g_file;
}

void Write(Level level, const char* file, const char* function, int line, const char* fmt, ...)
{
    {
        std::lock_guard<std::mutex> lock(g_initMutex);
        if (!g_initialised)
            initLocked(std::string(), kMaxFileBytes, kBackupFiles);
    }
    if (level == Level::Debug && !g_debug)
        return;  // not even formatted: debug records are the bulk of the traffic
    va_list args;
    va_start(args, fmt);
    va_list copy;
    va_copy(copy, args);
    const int n = std::vsnprintf(nullptr, 0, fmt, copy);
    va_end(copy);
    std::string text(n > 0 ? static_cast<size_t>(n) : 0, '\0');
    if (n > 0)
        std::vsnprintf(&text[0], text.size() + 1, fmt, args);
    va_end(args);

    const log4cxx::spi::LocationInfo where(file, log4cxx::spi::LocationInfo::calcShortFileName(file), function, line);
    auto l = logger();
    switch (level) {
    case Level::Debug: l->debug(text, where); break;
    case Level::Info: l->info(text, where); break;
    case Level::Warn: l->warn(text, where); break;
    case Level::Error: l->error(text, where); break;
    }
}

} // namespace Log
} // namespace Base
