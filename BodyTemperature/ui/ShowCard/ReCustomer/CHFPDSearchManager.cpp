#include "ui/ShowCard/ReCustomer/CHFPDSearchManager.h"

#include "ui/ShowCard/ReCustomer/CHFPDSearchWorker.h"

namespace BodyTemperature {

CHFPDSearchManager::CHFPDSearchManager() : m_pWorker(std::make_unique<CHFPDSearchWorker>()) {}

CHFPDSearchManager::~CHFPDSearchManager() = default;

bool CHFPDSearchManager::SearchRecords(const std::string& deviceId, const std::string& taskId,
    HFPDRecordList& records, commlayer::CRequestCancel* cancel)
{
    return m_pWorker->SearchRecords(deviceId, taskId, records, cancel);
}

} // namespace BodyTemperature
