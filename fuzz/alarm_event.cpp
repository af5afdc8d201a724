// Fuzz entry: the alarm event document reader, on its own (the stream target
// reaches it only behind a well-formed multipart framing).
#include <cstddef>
#include <cstdint>
#include <string>

#include "commlayer/CAlarmEventDecoder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    clientcommonlogical::DeviceConfig device;
    device.id = "fuzz";
    publicdatacontroller::IntelAlarmEventInfo info;
    commlayer::CAlarmEventDecoder::PictureRefs refs;
    commlayer::CAlarmEventDecoder::ParseDocument(text, device, info, refs);
    return 0;
}
