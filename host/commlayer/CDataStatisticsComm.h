#pragma once
// Device requests of the modules: device-API pass-through, device-SDK
// function pass-through and the face-upload batch. Every call blocks the
// calling thread until the device answers or the request's time-out passes
// (any thread; no shared state). The device is looked up by the host's
// identifier in clientcommonlogical::CConfigMgr. On failure false is returned
// and Base::Error::GetLastError() gives (TransportError, device sub-status).
// Each call takes an optional CRequestCancel by which another thread ends it
// at once (error pair (kErrCancelled, 0)).
#include <string>
#include <vector>

#include "protocol/DevicePassThrough.h"

namespace commlayer {
class CRequestCancel;
}

namespace commlayer {

class CDataStatisticsComm final {
public:
    // Sends req.requestLine (+ body) and returns the answer body in rsp.
    // A 2xx answer that is not well-formed XML/JSON counts as a failure.
    static bool dvapiRequest(const std::string& deviceId, protocol::DvapiPassThroughRspData& rsp,
        const protocol::DvapiPassThroughReq& req, CRequestCancel* cancel = nullptr);

    // Calls a device-SDK function; rsp.data is the base64 answer.
    static bool devnetsdkrequest(const std::string& deviceId, protocol::NetsdkPassThroughRspData& rsp,
        const protocol::NetsdkPassThroughReq& req, CRequestCancel* cancel = nullptr);

    // One round of the face-upload batch. Fills results (one per target) and
    // sets finished when the device has nothing more to do for this batch.
    // A device-reported failure state returns true but leaves its sub-status
    // in the error pair (kErrDeviceStatus, sub-status).
    static bool uploadToFaceLibSDKRequest(bool& finished, const std::string& deviceId,
        std::vector<protocol::UploadResult>& results, protocol::BatchPassThroughReq& req,
        CRequestCancel* cancel = nullptr);
};

} // namespace commlayer
