#pragma once
// Fetches the captures of a returning person from the device's frequent-
// person (HFPD) search task. One per process, reached through
// VantorGUIToolkit::CObjectSingleton<CHFPDSearchManager>::Instance() from the
// search task the returning-person card starts (never the GUI thread: a
// search blocks at least one request, and one second per unfinished poll).
// Lives until the module is unloaded; the card waits for its task first.
#include <memory>
#include <string>

#include "ui/ShowCard/ReCustomer/HFPDRecord.h"
#include "VantorGUIToolkit/CObjectSingleton.h"

namespace commlayer {
class CRequestCancel;
}

namespace BodyTemperature {

class CHFPDSearchWorker;

class CHFPDSearchManager final {
public:
    CHFPDSearchManager();
    ~CHFPDSearchManager();
    CHFPDSearchManager(const CHFPDSearchManager&) = delete;
    CHFPDSearchManager& operator=(const CHFPDSearchManager&) = delete;

    static CHFPDSearchManager* Instance() { return VantorGUIToolkit::CObjectSingleton<CHFPDSearchManager>::Instance(); }

    // Polls until the task is complete, then fills records (cleared first) in
    // the device's order, dropping captures whose channel cannot be mapped.
    // False on an empty device identifier, a failed request or a cancel
    // (which also cuts the request in flight; records are then to be ignored).
    bool SearchRecords(const std::string& deviceId, const std::string& taskId, HFPDRecordList& records,
        commlayer::CRequestCancel* cancel = nullptr);

private:
    std::unique_ptr<CHFPDSearchWorker> m_pWorker;
};

} // namespace BodyTemperature
