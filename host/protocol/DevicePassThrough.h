#pragma once
// Request and answer records that modules hand to the communication layer
// (commlayer) to reach a device. Plain values; no I/O here.
#include <cstdint>
#include <string>
#include <vector>

namespace protocol {

// One device-API request: "METHOD /path\r\n" (the line end is optional), an
// optional body (XML for POST/PUT) and the time-out in milliseconds.
struct DvapiPassThroughReq {
    std::string requestLine;
    std::string body;
    int32_t timeout = 30000;
};

// The device's answer body as it was sent (XML or JSON).
struct DvapiPassThroughRspData {
    std::string body;
    std::string contentType;
    int32_t httpStatus = 0;
};

// A named device-SDK function with its parameters, each base64-encoded.
struct NetsdkPassThroughReq {
    std::string function;
    std::vector<std::string> params;
    int32_t timeout = 30000;
};

// The SDK function's answer, base64-encoded.
struct NetsdkPassThroughRspData {
    std::string data;
};

// One target of a batch request; the communication layer fills the reply.
struct BatchSendData {
    std::string deviceId;
    std::string reply;
};

// Outcome of one face upload as the device reports it. state: 1 success,
// 0/2 nothing done, 3 and above (and -1) failures, 10 library full.
struct UploadResult {
    std::string deviceId;
    int32_t state = 0;
    int32_t subStatus = 0;
    std::string PID;
};

// The face-upload batch (command 9005): person XML, picture as base64 text,
// the 388-byte condition record and the targets. Sent again until the
// communication layer reports it finished; cancelled is read at each call.
struct BatchPassThroughReq {
    uint32_t command = 0;
    std::string encoding;        // "base64"
    std::string xml;             // FaceDataRecordCfg::StructToXML
    std::string picture;         // base64 of the JPEG
    std::string condition;       // raw condition record bytes
    std::vector<BatchSendData> sendData;
    bool cancelled = false;
    int32_t timeout = 30000;
};

constexpr uint32_t kBatchCmdUploadFace = 9005;
constexpr uint32_t kUploadConditionSize = 388;

} // namespace protocol
