#include "commlayer/CAlarmIntake.h"

#include "Base/Log.h"

namespace commlayer {

CAlarmIntake::CAlarmIntake(const std::vector<clientcommonlogical::DeviceConfig>& devices)
{
    for (const auto& dev : devices) {
        if (dev.address.empty() || dev.id.empty()) {
            BASE_LOG_WARN("device without id or address skipped");
            continue;
        }
        BASE_LOG_INFO("alarm intake for device [%s] at %s://%s:%d (user %s)", dev.id.c_str(), dev.scheme.c_str(),
            dev.address.c_str(), dev.port, dev.user.c_str());
        m_subs.push_back(std::make_unique<CAlarmSubscription>(dev));
        m_subs.back()->Start();
    }
}

CAlarmIntake::~CAlarmIntake()
{
    // Stop all first so they wind down in parallel, then join.
    for (auto& sub : m_subs)
        sub->RequestStop();
    m_subs.clear();
}

} // namespace commlayer
