#pragma once
// One capture of a returning person as the device's frequent-person search
// reports it, ready for the detail view, and the library person the card
// matched. Plain values; a search's whole list is handed from the search
// task to the GUI thread without a copy (HFPDRecordsPtr).
#include <cstdint>
#include <ctime>
#include <memory>
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
// A search's records, shared read-only between the search task, the card and
// its detail view: a hundred thousand of them must not be copied on the GUI
// thread.
using HFPDRecordsPtr = std::shared_ptr<const HFPDRecordList>;

// The library person of the event; valid is false when the event carried none.
struct HFPDPersonInfo {
    bool valid = false;
    std::string name;
    uint32_t gender = 3;  // 1 male, 2 female, 3 unknown
    std::string contact;
};

} // namespace BodyTemperature
