// Fuzz entry: every reader of the device's XML documents on every input; a record
// that was read is written back and read again.
#include <cstddef>
#include <cstdint>
#include <string>

#include "CapabilitySet/FaceDataLibraryCap.h"
#include "CapabilitySet/FaceDataLibraryCfg.h"
#include "CapabilitySet/FaceDataRecordCfg.h"
#include "CapabilitySet/PersonnalInfoExtendListConfig.h"
#include "commlayer/DeviceHttp.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    CapabilitySet::FaceDataLibraryCap().Parse(text);
    CapabilitySet::FaceDataLibraryCfg().Parse(text);
    CapabilitySet::PersonnalInfoExtendListConfig().Parse(text);
    CapabilitySet::FaceDataRecordCfg record;
    if (record.Parse(text))
        CapabilitySet::FaceDataRecordCfg().Parse(CapabilitySet::FaceDataRecordCfg::StructToXML(record));
    commlayer::detail::ParseSubStatus(text);
    return 0;
}
