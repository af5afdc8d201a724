#include "CapabilitySet/HFPDSearchFaceResult.h"

#include "CapabilitySet/ParseUtil.h"

namespace CapabilitySet {

namespace {
const struct {
    const char* key;
    std::string HFPDFaceResultItem::*member;
} kTexts[] = {
    {"captureTime", &HFPDFaceResultItem::captureTime},
    {"channelID", &HFPDFaceResultItem::channelID},
    {"cameraName", &HFPDFaceResultItem::cameraName},
    {"picUrl", &HFPDFaceResultItem::picUrl},
    {"facePicUrl", &HFPDFaceResultItem::facePicUrl},
    {"ageGroup", &HFPDFaceResultItem::ageGroup},
    {"gender", &HFPDFaceResultItem::gender},
    {"glass", &HFPDFaceResultItem::glass},
    {"mask", &HFPDFaceResultItem::mask},
    {"hat", &HFPDFaceResultItem::hat},
    {"expression", &HFPDFaceResultItem::expression},
    {"smile", &HFPDFaceResultItem::smile},
};
} // namespace

bool HFPDSearchFaceResult::Parse(const std::string& text)
{
    *this = HFPDSearchFaceResult();
    const nlohmann::json j = detail::parseJson(text);
    if (!j.is_object() || !j.contains("progress"))
        return false;
    HFPDSearchFaceResult r;
    if (!detail::jsonInt(j, "progress", r.progress) || r.progress < 0 || r.progress > 100
        || !detail::jsonString(j, "taskID", r.taskID))
        return false;
    if (j.contains("targets")) {
        if (!j["targets"].is_array())
            return false;
        for (const auto& t : j["targets"]) {
            if (!t.is_object())
                return false;
            HFPDFaceResultItem item;
            if (!detail::jsonInt(t, "index", item.index))
                return false;
            for (const auto& f : kTexts)
                if (!detail::jsonString(t, f.key, item.*(f.member)))
                    return false;
            if (t.contains("rect")) {
                const auto& rect = t["rect"];
                if (!rect.is_object() || !detail::jsonFloat(rect, "x", item.x) || !detail::jsonFloat(rect, "y", item.y)
                    || !detail::jsonFloat(rect, "width", item.width) || !detail::jsonFloat(rect, "height", item.height))
                    return false;
            }
            r.results.push_back(std::move(item));
        }
    }
    r.bValid = true;
    *this = std::move(r);
    return true;
}

} // namespace CapabilitySet
