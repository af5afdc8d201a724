#pragma once
// One capture of a returning person as the device's frequent-person search
// reports it, ready for the detail view, and the library person the card
// matched. Plain values, copied between the search task and the GUI thread.
#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include "CapabilitySet/HFPDSearchFaceResult.h"

namespace BodyTemperature {

// The device's entry with two fields rewritten for the view (see
// CHFPDRecordBuilder): captureTime holds "yyyy-MM-dd hh:mm:ss" as the device
// meant it, channelID the device-API channel number mapped from the device's
// text.
struct HFPDRecord : CapabilitySet::HFPDFaceResultItem {
    HFPDRecord() = default;
    explicit HFPDRecord(const CapabilitySet::HFPDFaceResultItem& item) : CapabilitySet::HFPDFaceResultItem(item) {}

    std::time_t captureSeconds = -1;  // captureTime as local time; -1 when unreadable
};

using HFPDRecordList = std::vector<HFPDRecord>;

// The library person of the event; valid is false when the event carried none.
struct HFPDPersonInfo {
    bool valid = false;
    std::string name;
    uint32_t gender = 3;  // 1 male, 2 female, 3 unknown
    std::string contact;
};

} // namespace BodyTemperature
