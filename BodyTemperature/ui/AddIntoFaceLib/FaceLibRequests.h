#pragma once
// The module's requests for a device's face picture libraries: capability,
// library list, one record, extended person information, city codes and the
// record search. Each one clears its outputs, sends one device-API request
// line (time-out 30000 ms) through the host's communication layer and parses
// the answer into the given record. They block the calling thread (the
// add-to-library dialog calls them on the GUI thread) and keep no state.
// On failure the error pair of the request is in Base::Error::GetLastError().
// Each takes an optional cancel by which another thread cuts it at once.
#include <cstdint>
#include <string>

#include "CapabilitySet/CityCodeCapability.h"
#include "CapabilitySet/FaceDataLibraryCap.h"
#include "CapabilitySet/FaceDataLibraryCfg.h"
#include "CapabilitySet/FaceDataRecordCfg.h"
#include "CapabilitySet/PersonnalInfoExtendListConfig.h"

namespace commlayer {
class CRequestCancel;
}

namespace BodyTemperature {

// Error code left in the output code of a request that failed.
constexpr uint32_t kFaceLibRequestFailed = 23;
constexpr int32_t kFaceLibRequestTimeoutMs = 30000;

bool GetFaceDataLibraryCapability(CapabilitySet::FaceDataLibraryCap& cap, uint32_t& errorCode,
    const std::string& deviceId, commlayer::CRequestCancel* cancel = nullptr);
bool GetFaceDataLibraryCfg(CapabilitySet::FaceDataLibraryCfg& libraries, uint32_t& errorCode,
    const std::string& deviceId, commlayer::CRequestCancel* cancel = nullptr);
bool GetFaceDataRecordConfig(CapabilitySet::FaceDataRecordCfg& record, uint32_t& errorCode,
    const std::string& deviceId, const std::string& FDID, const std::string& PID,
    commlayer::CRequestCancel* cancel = nullptr);
// The extended person-information fields of one library.
bool GetPersonnalInfoExtendListCfg(CapabilitySet::PersonnalInfoExtendListConfig& items, uint32_t& errorCode,
    const std::string& deviceId, const std::string& FDID, commlayer::CRequestCancel* cancel = nullptr);
// The extended person-information fields of the device.
bool GetPersonnalInfoExtendListCfg(CapabilitySet::PersonnalInfoExtendListConfig& items, uint32_t& errorCode,
    const std::string& deviceId, commlayer::CRequestCancel* cancel = nullptr);
bool GetCityCodeCapability(CapabilitySet::CityCodeCapability& cities, uint32_t& errorCode,
    const std::string& deviceId, commlayer::CRequestCancel* cancel = nullptr);
// Success only: the device accepted the search conditions.
bool SearchFaceDataRecord(const CapabilitySet::FaceDataRecordCfg& conditions, uint32_t& errorCode,
    const std::string& deviceId, commlayer::CRequestCancel* cancel = nullptr);

// The same search with the device's answer (its list of matching records)
// and a time-out of its own.
bool SearchFaceDataRecords(const CapabilitySet::FaceDataRecordCfg& conditions, uint32_t& errorCode,
    const std::string& deviceId, std::string& answer, int32_t timeoutMs, commlayer::CRequestCancel* cancel);

} // namespace BodyTemperature
