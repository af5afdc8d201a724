#pragma once
// Does the work of CHFPDSearchManager: polls the device's frequent-person
// search task until it is complete, then builds the records and maps each
// channel through the device SDK. Stateless between searches, so any number
// of search tasks may use one worker at once. Blocking; never the GUI thread.
// The caller's cancel ends the request in flight as well as the polling.
#include <string>

#include "ui/ShowCard/ReCustomer/HFPDRecord.h"

namespace commlayer {
class CRequestCancel;
}

namespace BodyTemperature {


class CHFPDSearchWorker final {
public:
    static constexpr int kPollIntervalMs = 1000;
    static constexpr int kRequestTimeoutMs = 30000;

    bool SearchRecords(const std::string& deviceId, const std::string& taskId, HFPDRecordList& records,
        commlayer::CRequestCancel* cancel) const;

private:
    // The device-API channel for the device's channel text; false when it has none.
    bool MapChannel(const std::string& deviceId, const std::string& channelText, std::string& mapped,
        commlayer::CRequestCancel* cancel) const;
};

} // namespace BodyTemperature
