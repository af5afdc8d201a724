#pragma once
// Does the work of CHFPDSearchManager: polls the device's frequent-person
// search task until it is complete, then builds the records and maps each
// channel through the device SDK. Stateless between searches, so any number
// of search tasks may use one worker at once. Blocking; never the GUI thread.
#include <string>

#include "ui/ShowCard/ReCustomer/HFPDRecord.h"

namespace BodyTemperature {

class CHFPDCancelToken;

class CHFPDSearchWorker final {
public:
    static constexpr int kPollIntervalMs = 1000;
    static constexpr int kRequestTimeoutMs = 30000;

    bool SearchRecords(const std::string& deviceId, const std::string& taskId, HFPDRecordList& records,
        CHFPDCancelToken* cancel) const;

private:
    // The device-API channel for the device's channel text; false when it has none.
    bool MapChannel(const std::string& deviceId, const std::string& channelText, std::string& mapped) const;
};

} // namespace BodyTemperature
