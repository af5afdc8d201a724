#pragma once
// Builds face events as the device pushes them on its alert stream, and
// serialises them into multipart bytes.
//
// Wire format (multipart/mixed; boundary=kBoundary), per event:
//   one part "Content-Type: application/json" with the event document, then
//   one part per picture it lists: "Content-Type: image/jpeg",
//   "Content-ID: <id>", "Content-Length: <n>".
// The document: eventCode, eventID, channelID, channelName, dateTime (ISO),
// eventName, ruleName, taskID (100112), thermometry{}, comparison{similarity,
// libraryPic, person{...}}, faces[{attribute codes, bkPic, SubPic,
// ThermalPic, bNoSubPic, faceRects[]}], pictures[{id, length}].
#include <atomic>
#include <memory>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

#include "PictureFactory.h"
#include "SimOptions.h"

namespace devicesim {

constexpr const char* kBoundary = "btalertboundary7d1f";

struct PictureBlob {
    Jpeg data;
    long long declaredLength = -1;  // Content-Length to announce; -1: the real size
    long long truncateTo = -1;      // bytes actually sent; -1: all
};

struct SimEvent {
    nlohmann::json doc;
    std::vector<std::pair<std::string, PictureBlob>> pictures;
};

using Chunks = std::vector<std::shared_ptr<const std::string>>;

class EventFactory final {
public:
    EventFactory(const SimOptions& opts, PictureFactory& pictures);

    // A random event (deterministic for a seed). code 0: pick one. subPic:
    // 1 always a separate face picture, 0 never (scene with face rectangles
    // only), -1 mostly with one.
    SimEvent generate(std::mt19937& rng, int channel, unsigned code, int subPic);
    // An event described by the control API: generated defaults overridden by
    // every field given; pictures may be supplied (base64), truncated, or
    // announced with another size.
    SimEvent fromDescription(std::mt19937& rng, const nlohmann::json& desc, std::string& error);

    static Chunks serialize(const SimEvent& ev);
    static unsigned pickCode(std::mt19937& rng);

    double abnormalShare;
    char unit;

private:
    void addTemperature(std::mt19937& rng, nlohmann::json& face) const;
    void addComparison(
        std::mt19937& rng, SimEvent& ev, unsigned code, const FaceLook& captured, const nlohmann::json& sex);

    const SimOptions& m_opts;
    PictureFactory& m_pictures;
    std::atomic<unsigned long long> m_seq{0};
};

} // namespace devicesim
