#pragma once
// One poll of a returning-person (HFPD) search task (JSON answer of
// GET /DVAPI/SDT/HFPD/searchTask/result/recordData/<task>?format=json):
// the progress (100 when complete) and the records found so far.
#include <cstdint>
#include <string>
#include <vector>

namespace CapabilitySet {

struct HFPDFaceResultItem {
    int32_t index = 0;
    std::string captureTime;  // ISO text as the device sends it
    std::string channelID;    // device channel, as text
    std::string cameraName;
    std::string picUrl;       // scene picture reference (CDeviceDownloadsComm)
    std::string facePicUrl;
    std::string ageGroup;
    std::string gender;
    std::string glass;
    std::string mask;
    std::string hat;
    std::string expression;
    std::string smile;
    float x = 0.f;            // face rectangle, fractions of the picture
    float y = 0.f;
    float width = 0.f;
    float height = 0.f;
};

class HFPDSearchFaceResult {
public:
    HFPDSearchFaceResult() = default;
    explicit HFPDSearchFaceResult(const std::string& text) { Parse(text); }
    bool Parse(const std::string& text);

    bool bValid = false;
    int progress = 0;
    std::string taskID;
    std::vector<HFPDFaceResultItem> results;
};

} // namespace CapabilitySet
