#pragma once
// Which devices' alarm streams are lost and since when, fed by the host's
// device-state notifications. Plain class, GUI thread; times are
// milliseconds since 1970 so tests can pass their own clock.
#include <QString>
#include <cstdint>
#include <map>
#include <vector>

namespace BodyTemperature {

class CDeviceSilence final {
public:
    struct Silent {
        QString deviceId;
        int64_t sinceMs = 0;
    };

    // True when the set of silent devices changed.
    bool SetOnline(const QString& deviceId, bool online, int64_t nowMs);
    // Silent devices, longest silent first.
    std::vector<Silent> SilentDevices() const;
    bool IsEmpty() const { return m_since.empty(); }

    // "45 s", "3 min 05 s", "2 h 07 min".
    static QString FormatDuration(int64_t ms);

private:
    std::map<QString, int64_t> m_since;
};

} // namespace BodyTemperature
