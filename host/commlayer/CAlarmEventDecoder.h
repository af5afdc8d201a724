#pragma once
// Turns the alarm stream's parts into host alarm records. An event arrives as
// a JSON document part followed by the picture parts it lists (by id, in
// order). When the last picture has arrived the record is complete and
// handed to onEvent. A document that cannot be read, or an event whose
// picture part was lost, is reported through onError and dropped; the next
// one is read normally. A keep-alive document ({"heartbeat":{"intervalSec":N}},
// sent by the device while it has no event) goes to onKeepAlive and leaves a
// pending event alone. One thread (the subscription's).
#include <QByteArray>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "clientcommonlogical/CConfigMgr.h"
#include "commlayer/CMultipartReader.h"
#include "publicdatacontroller/IntelAlarmEventInfo.h"

namespace commlayer {

class CAlarmEventDecoder final {
public:
    explicit CAlarmEventDecoder(clientcommonlogical::DeviceConfig device);

    void onPart(CMultipartReader::Part& part);
    // A part was lost (truncated or oversized): the pending event is incomplete.
    void onPartLost(const std::string& why);
    void reset();

    std::function<void(publicdatacontroller::IntelAlarmEventInfo&&)> onEvent;
    std::function<void(const std::string&)> onError;
    // intervalSec: the period the device announces; 0 when it gives none.
    std::function<void(int intervalSec)> onKeepAlive;

    // Picture ids a document refers to, attached once the parts have arrived.
    struct FaceRefs {
        std::string bk;
        std::string sub;
        std::string thermal;
    };
    struct PictureRefs {
        std::vector<FaceRefs> faces;
        std::string library;
        std::vector<std::string> order;  // ids of the picture parts that follow
    };

    // Reads one event document; pictures are looked up later by id. False when
    // the document is not an event.
    static bool IsKeepAlive(const std::string& json, int& intervalSec);
    static bool ParseDocument(const std::string& json, const clientcommonlogical::DeviceConfig& device,
        publicdatacontroller::IntelAlarmEventInfo& info, PictureRefs& refs);

private:
    void complete();

    clientcommonlogical::DeviceConfig m_device;
    bool m_pending = false;
    publicdatacontroller::IntelAlarmEventInfo m_info;
    PictureRefs m_refs;
    size_t m_next = 0;
    std::map<std::string, QByteArray> m_pictures;
};

} // namespace commlayer
