#pragma once
// The host logger (log4cxx). Any thread may log. Init() picks the log file
// (default: "<user data folder>/logs/vantordesk.log"); logging before Init()
// initialises with the default. Records carry file, function signature, line.
#include <string>

namespace Base {
namespace Log {

enum class Level { Debug, Info, Warn, Error };

// Sets up the file appender; safe to call more than once (later calls switch the file).
void Init(const std::string& filePath = std::string());
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
