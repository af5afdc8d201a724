#include "playwindow/CRtpLossLog.h"

#include <cstdarg>
#include <cstring>
#include <map>

extern "C" {
#include <libavutil/log.h>
}

namespace playwindow {
namespace {

constexpr const char* kMissed = "RTP: missed %d packets\n";

std::mutex& Lock()
{
    static std::mutex m;
    return m;
}

// Format context -> packets missed, not yet taken.
std::map<const void*, int>& Counts()
{
    static std::map<const void*, int> counts;
    return counts;
}

void Callback(void* avcl, int level, const char* fmt, va_list vl)
{
    if (fmt != nullptr && std::strcmp(fmt, kMissed) == 0) {
        va_list copy;
        va_copy(copy, vl);
        const int missed = va_arg(copy, int);
        va_end(copy);
        std::lock_guard<std::mutex> lock(Lock());
        auto it = Counts().find(avcl);
        if (it != Counts().end() && missed > 0)
            it->second += missed;
    }
    av_log_default_callback(avcl, level, fmt, vl);
}

} // namespace

CRtpLossLog::CRtpLossLog(const void* formatContext) : m_context(formatContext)
{
    static std::once_flag once;
    std::call_once(once, [] { av_log_set_callback(&Callback); });
    std::lock_guard<std::mutex> lock(Lock());
    Counts()[m_context] = 0;
}

CRtpLossLog::~CRtpLossLog()
{
    std::lock_guard<std::mutex> lock(Lock());
    Counts().erase(m_context);
}

int CRtpLossLog::Take()
{
    std::lock_guard<std::mutex> lock(Lock());
    auto it = Counts().find(m_context);
    if (it == Counts().end())
        return 0;
    const int n = it->second;
    it->second = 0;
    return n;
}

} // namespace playwindow
