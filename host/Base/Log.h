#pragma once
// The host logger (log4cxx). Any thread may log. Init() picks the log file
// (default: "<user data folder>/logs/vantordesk.log"); logging before Init()
// initialises with the default. Records carry file, function signature, line.
// The file rolls over by size: vantordesk.log, vantordesk.log.1 .. .N, so a
// post that runs for months keeps a bounded amount of log. Info level unless
// debug is switched on (the host configuration's "logLevel").
#include <string>

namespace Base {
namespace Log {

enum class Level { Debug, Info, Warn, Error };

constexpr size_t kMaxFileBytes = 4 * 1024 * 1024;
constexpr int kBackupFiles = 4;

// Sets up the rolling file appender; safe to call more than once (later calls
// switch the file). Keeps the current level.
void Init(const std::string& filePath = std::string(), size_t maxFileBytes = kMaxFileBytes,
    int backupFiles = kBackupFiles);
// Debug records are written only while this is on (off at start).
void SetDebug(bool on);
std::string CurrentFile();
void Write(Level level, const char* file, const char* function, int line, const char* fmt, ...)
    __attribute__((format(printf, 5, 6)));

} // namespace Log
} // namespace Base

#define BASE_LOG_DEBUG(...) ::Base::Log::Write(::Base::Log::Level::Debug, __FILE__, __PRETTY_FUNCTION__, __LINE__, __VA_ARGS__)
#define BASE_LOG_INFO(...) ::Base::Log::Write(::Base::Log::Level::Info, __FILE__, __PRETTY_FUNCTION__, __LINE__, __VA_ARGS__)
#define BASE_LOG_WARN(...) ::Base::Log::Write(::Base::Log::Level::Warn, __FILE__, __PRETTY_FUNCTION__, __LINE__, __VA_ARGS__)
#define BASE_LOG_ERROR(...) ::Base::Log::Write(::Base::Log::Level::Error, __FILE__, __PRETTY_FUNCTION__, __LINE__, __VA_ARGS__)
// Debug output of the portable runtime.
#define PRT_DEBUG(...) BASE_LOG_DEBUG(__VA_ARGS__)
