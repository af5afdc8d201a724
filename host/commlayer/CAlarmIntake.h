#pragma once
// The host's alarm intake: one CAlarmSubscription per configured device.
// Created by the host at start-up (GUI thread); destroying it stops and joins
// every subscription.
#include <memory>
#include <vector>

#include "clientcommonlogical/CConfigMgr.h"
#include "commlayer/CAlarmSubscription.h"

namespace commlayer {

class CAlarmIntake final {
public:
    explicit CAlarmIntake(const std::vector<clientcommonlogical::DeviceConfig>& devices);
    ~CAlarmIntake();
    CAlarmIntake(const CAlarmIntake&) = delete;
    CAlarmIntake& operator=(const CAlarmIntake&) = delete;


private:
    std::vector<std::unique_ptr<CAlarmSubscription>> m_subs;
};

} // namespace commlayer
