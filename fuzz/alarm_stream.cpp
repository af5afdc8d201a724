// Fuzz entry: the multipart reader and event decoder together, fed in pieces sized
// by the input; every event handed on carries exactly the picture parts it listed.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "commlayer/CAlarmEventDecoder.h"
#include "commlayer/CMultipartReader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const char* text = reinterpret_cast<const char*>(data);
    clientcommonlogical::DeviceConfig device;
    device.id = "fuzz";
    // A small part limit so that oversized parts are reached within the input.
    commlayer::CMultipartReader reader("btalertboundary7d1f", 1 << 16);
    commlayer::CAlarmEventDecoder decoder{device};
    decoder.onEvent = [](publicdatacontroller::IntelAlarmEventInfo&& info) {
        for (const auto& face : info.faceInfoList)
            if (face.bkPic.size() > (1 << 16) || face.SubPic.size() > (1 << 16))
                std::abort();
    };
    reader.onPart = [&decoder](commlayer::CMultipartReader::Part& p) { decoder.onPart(p); };
    reader.onError = [&decoder](const std::string& why) { decoder.onPartLost(why); };
    unsigned step = size > 0 ? data[size - 1] : 1u;
    for (size_t at = 0; at < size;) {
        step = step * 33u % 257u + 1u;
        const size_t n = std::min<size_t>(step, size - at);
        reader.feed(text + at, n);
        at += n;
    }
    return 0;
}
