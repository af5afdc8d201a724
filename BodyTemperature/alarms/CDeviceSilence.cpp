#include "alarms/CDeviceSilence.h"

#include <algorithm>

namespace BodyTemperature {

bool CDeviceSilence::SetOnline(const QString& deviceId, bool online, int64_t nowMs)
{
    if (online)
        return m_since.erase(deviceId) > 0;
    // A repeated "lost" keeps the first moment: the device has been silent since then.
    return m_since.emplace(deviceId, nowMs).second;
}

std::vector<CDeviceSilence::Silent> CDeviceSilence::SilentDevices() const
{
    std::vector<Silent> out;
    for (const auto& s : m_since)
        out.push_back({s.first, s.second});
    std::stable_sort(out.begin(), out.end(), [](const Silent& a, const Silent& b) { return a.sinceMs < b.sinceMs; });
    return out;
}

QString CDeviceSilence::FormatDuration(int64_t ms)
{
    const int64_t s = std::max<int64_t>(0, ms / 1000);
    if (s < 60)
        return QStringLiteral("%1 s").arg(s);
    if (s < 3600)
        return QStringLiteral("%1 min %2 s").arg(s / 60).arg(s % 60, 2, 10, QLatin1Char('0'));
    return QStringLiteral("%1 h %2 min").arg(s / 3600).arg((s % 3600) / 60, 2, 10, QLatin1Char('0'));
}

} // namespace BodyTemperature
