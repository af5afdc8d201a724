#pragma once
// Turns one entry of the device's frequent-person answer into an HFPDRecord
// (time text, text fields, rectangle) and reads its channel text. Pure
// functions, any thread; the channel mapping itself is a device call made by
// the search manager.
#include <string>

#include "CapabilitySet/HFPDSearchFaceResult.h"
#include "ui/ShowCard/ReCustomer/HFPDRecord.h"

namespace BodyTemperature {

class CHFPDRecordBuilder final {
public:
    // "2020-05-01T10:20:30+08:00" and "2020-05-01T10:20:30Z" -> "2020-05-01 10:20:30":
    // the device's local wall time, the zone suffix dropped.
    static std::string RewriteCaptureTime(const std::string& deviceText);

    // The record with the device's channel text still in channelID.
    static HFPDRecord Build(const CapabilitySet::HFPDFaceResultItem& item);

    // Decimal channel number as std::stoi reads it. On failure returns false and
    // error is "invalid stoi argument" or "stoi argument out of range".
    static bool ParseChannel(const std::string& text, int& channel, std::string& error);
};

} // namespace BodyTemperature
