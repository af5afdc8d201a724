// Fuzz entry: the readers of the device's JSON documents (city codes, face
// search results, status documents). Every reader gets every input.
#include <cstddef>
#include <cstdint>
#include <string>

#include "CapabilitySet/CityCodeCapability.h"
#include "CapabilitySet/HFPDSearchFaceResult.h"
#include "commlayer/DeviceHttp.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    CapabilitySet::CityCodeCapability().Parse(text);
    CapabilitySet::HFPDSearchFaceResult().Parse(text);
    commlayer::detail::ParseSubStatus(text);
    return 0;
}
