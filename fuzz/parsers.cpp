// Fuzz entry for the readers of device text. The first byte picks the reader;
// the rest is the text. Every reader must return (true or false) without
// crashing, hanging or reading outside the given bytes.
#include <cstddef>
#include <cstdint>
#include <string>

#include "CapabilitySet/CityCodeCapability.h"
#include "CapabilitySet/FaceDataLibraryCap.h"
#include "CapabilitySet/FaceDataLibraryCfg.h"
#include "CapabilitySet/FaceDataRecordCfg.h"
#include "CapabilitySet/HFPDSearchFaceResult.h"
#include "CapabilitySet/PersonnalInfoExtendListConfig.h"
#include "commlayer/CAlarmEventDecoder.h"
#include "commlayer/CMultipartReader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    switch (data[0] % 8) {
    case 0: CapabilitySet::FaceDataLibraryCap().Parse(text); break;
    case 1: CapabilitySet::FaceDataLibraryCfg().Parse(text); break;
    case 2: {
        CapabilitySet::FaceDataRecordCfg rec;
        if (rec.Parse(text))
            CapabilitySet::FaceDataRecordCfg().Parse(CapabilitySet::FaceDataRecordCfg::StructToXML(rec));
        break;
    }
    case 3: CapabilitySet::PersonnalInfoExtendListConfig().Parse(text); break;
    case 4: CapabilitySet::CityCodeCapability().Parse(text); break;
    case 5: CapabilitySet::HFPDSearchFaceResult().Parse(text); break;
    case 6: {
        publicdatacontroller::IntelAlarmEventInfo info;
        commlayer::CAlarmEventDecoder::PictureRefs refs;
        commlayer::CAlarmEventDecoder::ParseDocument(text, clientcommonlogical::DeviceConfig(), info, refs);
        break;
    }
    case 7: {
        // The stream reader and decoder together, fed in uneven pieces.
        commlayer::CMultipartReader reader("bnd", 1 << 16);
        commlayer::CAlarmEventDecoder decoder{clientcommonlogical::DeviceConfig()};
        reader.onPart = [&decoder](commlayer::CMultipartReader::Part& p) { decoder.onPart(p); };
        reader.onError = [&decoder](const std::string& why) { decoder.onPartLost(why); };
        for (size_t at = 0, step = 1; at < text.size(); at += step, step = step * 3 % 17 + 1)
            reader.feed(text.data() + at, std::min(step, text.size() - at));
        break;
    }
    }
    return 0;
}

#ifndef BT_LIBFUZZER
#include <QDir>
#include <QFile>
#include <cstdio>

// Replay driver: runs every file in the given folders (or the corpus) once per reader.
int main(int argc, char** argv)
{
    QStringList dirs;
    for (int i = 1; i < argc; ++i)
        dirs << QString::fromLocal8Bit(argv[i]);
    if (dirs.isEmpty())
        dirs << QStringLiteral(BT_FUZZ_CORPUS);
    int runs = 0;
    for (const QString& d : dirs) {
        for (const QFileInfo& file : QDir(d).entryInfoList(QDir::Files, QDir::Name)) {
            QFile f(file.filePath());
            const QByteArray bytes = f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
            for (char reader = 0; reader < 8; ++reader, ++runs) {
                const QByteArray input = reader + bytes;
                LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(input.constData()), size_t(input.size()));
            }
        }
    }
    printf("fuzz_parsers: %d runs, no crash\n", runs);
    return 0;
}
#endif
