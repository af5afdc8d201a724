#include "SimContext.h"

#include <QDateTime>
#include <QString>
#include <cstdarg>

namespace devicesim {

SimContext::SimContext(const SimOptions& options, RtspControl& rtspControl)
    : opts(options),
      pictures(opts.sceneWidth, opts.sceneHeight),
      rtsp(rtspControl),
      keepAliveMs(opts.keepAliveMs),
      keepAliveIdleOnly(opts.keepAliveIdleOnly),
      events(opts, pictures),
      rng(opts.seed),
      m_hfpdPollsNeeded(opts.hfpdPolls)
{
    hub.setRate(opts.rate);
}

SimContext::~SimContext()
{
    if (m_log != nullptr && m_log != stderr)
        fclose(m_log);
}

bool SimContext::openLog(std::string& error)
{
    if (opts.log.empty())
        return true;
    FILE* f = fopen(opts.log.c_str(), "a");
    if (f == nullptr) {
        error = "cannot open log " + opts.log;
        return false;
    }
    std::lock_guard<std::mutex> lock(m_logMutex);
    m_log = f;
    return true;
}

void SimContext::logLine(const char* fmt, ...)
{
    std::lock_guard<std::mutex> lock(m_logMutex);
    const std::string when = QDateTime::currentDateTime().toString(QStringLiteral("hh:mm:ss.zzz")).toStdString();
    fprintf(m_log, "%s ", when.c_str());
    va_list ap;
    va_start(ap, fmt);
    vfprintf(m_log, fmt, ap);
    va_end(ap);
    fputc('\n', m_log);
    fflush(m_log);
}

bool SimContext::channelOnline(int ch)
{
    std::lock_guard<std::mutex> lock(mutex);
    auto it = m_offline.find(ch);
    return it == m_offline.end() || !it->second;
}

void SimContext::setChannelOnline(int ch, bool online)
{
    std::lock_guard<std::mutex> lock(mutex);
    m_offline[ch] = !online;
}

bool SimContext::randomEvent(SimEvent& ev)
{
    std::lock_guard<std::mutex> lock(mutex);
    for (int tries = 0; tries < opts.channels; ++tries) {
        const int ch = 1 + std::uniform_int_distribution<int>(0, opts.channels - 1)(rng);
        auto it = m_offline.find(ch);
        if (it == m_offline.end() || !it->second) {
            ev = events.generate(rng, ch, 0, -1);
            return true;
        }
    }
    return false;
}

int SimContext::hfpdPollsNeeded()
{
    std::lock_guard<std::mutex> lock(mutex);
    return m_hfpdPollsNeeded;
}

void SimContext::setHfpdPollsNeeded(int polls)
{
    std::lock_guard<std::mutex> lock(mutex);
    m_hfpdPollsNeeded = polls;
}

} // namespace devicesim
