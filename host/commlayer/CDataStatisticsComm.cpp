#include "commlayer/CDataStatisticsComm.h"

#include <nlohmann/json.hpp>

#include "Base/Base.h"
#include "Base/Log.h"
#include "commlayer/CDeviceDownloadsComm.h"
#include "commlayer/CommErrors.h"
#include "commlayer/DeviceHttp.h"

namespace commlayer {

namespace {

bool findDevice(const std::string& deviceId, clientcommonlogical::DeviceConfig& dev)
{
    if (clientcommonlogical::CConfigMgr::Instance()->FindDevice(deviceId, dev))
        return true;
    BASE_LOG_ERROR("unknown device [%s]", deviceId.c_str());
    Base::Error::SetLastError(kErrNoDevice, 0);
    return false;
}

// Path relative to the device for a reference that may be an absolute URL.
std::string devicePath(const std::string& reference)
{
    std::string ref = reference;
    const size_t scheme = ref.find("://");
    if (scheme != std::string::npos) {
        const size_t slash = ref.find('/', scheme + 3);
        ref = slash == std::string::npos ? std::string("/") : ref.substr(slash);
    }
    if (ref.empty() || ref.front() != '/')
        ref.insert(ref.begin(), '/');
    return ref;
}

// POSTs body as JSON to one of the device's SDK endpoints and parses the
// answer (reply keeps the raw text). On failure the error pair is set; what
// names the call in the log.
bool postSdkJson(const std::string& deviceId, const char* path, const nlohmann::json& body, int timeout,
    const char* what, nlohmann::json& answer, std::string& reply, CRequestCancel* cancel)
{
    clientcommonlogical::DeviceConfig dev;
    if (!findDevice(deviceId, dev))
        return false;
    detail::HttpExchange ex;
    ex.method = "POST";
    ex.path = path;
    ex.body = body.dump();
    ex.contentType = "application/json";
    ex.timeoutMs = timeout > 0 ? timeout : 30000;
    ex.cancel = cancel;
    const detail::HttpResult r = detail::Perform(dev, ex);
    if (!detail::CheckResult(r, true)) {
        const auto err = Base::Error::GetLastError();
        BASE_LOG_WARN("%s on device [%s] failed [%d-%d]: %s", what, deviceId.c_str(), err.first, err.second,
            detail::DescribeFailure(r).c_str());
        return false;
    }
    answer = nlohmann::json::parse(r.body, nullptr, false);
    reply = r.body;
    return true;
}

} // namespace

bool CDataStatisticsComm::dvapiRequest(const std::string& deviceId, protocol::DvapiPassThroughRspData& rsp,
    const protocol::DvapiPassThroughReq& req, CRequestCancel* cancel)
{
    rsp = protocol::DvapiPassThroughRspData();
    detail::HttpExchange ex;
    if (!detail::SplitRequestLine(req.requestLine, ex.method, ex.path)) {
        BASE_LOG_ERROR("malformed request line for device [%s]", deviceId.c_str());
        Base::Error::SetLastError(kErrParam, 0);
        return false;
    }
    clientcommonlogical::DeviceConfig dev;
    if (!findDevice(deviceId, dev))
        return false;
    ex.body = req.body;
    if (!ex.body.empty())
        ex.contentType = ex.body.front() == '{' ? "application/json" : "application/xml";
    ex.timeoutMs = req.timeout > 0 ? req.timeout : 30000;
    ex.connectTimeoutMs = std::min<long>(ex.timeoutMs, 10000);
    ex.maxBodyBytes = detail::CBodyLimit::ForDevicePath(ex.path);
    ex.cancel = cancel;
    detail::HttpResult r = detail::Perform(dev, ex);
    rsp.httpStatus = int32_t(r.status);
    rsp.contentType = r.contentType;
    const bool ok = detail::CheckResult(r, true);
    if (!ok) {
        const auto err = Base::Error::GetLastError();
        BASE_LOG_WARN("%s %s on device [%s] failed [%d-%d]: %s", ex.method.c_str(), ex.path.c_str(),
            deviceId.c_str(), err.first, err.second, detail::DescribeFailure(r).c_str());
        return false;
    }
    rsp.body = std::move(r.body);
    return true;
}

bool CDataStatisticsComm::devnetsdkrequest(const std::string& deviceId, protocol::NetsdkPassThroughRspData& rsp,
    const protocol::NetsdkPassThroughReq& req, CRequestCancel* cancel)
{
    rsp = protocol::NetsdkPassThroughRspData();
    if (req.function.empty()) {
        Base::Error::SetLastError(kErrParam, 0);
        return false;
    }
    nlohmann::json j;
    j["function"] = req.function;
    j["params"] = req.params;
    nlohmann::json answer;
    std::string reply;
    const std::string what = "SDK function " + req.function;
    if (!postSdkJson(deviceId, "/DVAPI/SDK/passThrough", j, req.timeout, what.c_str(), answer, reply, cancel))
        return false;
    if (!answer.is_object() || !answer.contains("data") || !answer["data"].is_string()) {
        Base::Error::SetLastError(kErrBadAnswer, 0);
        return false;
    }
    rsp.data = answer["data"].get<std::string>();
    return true;
}

bool CDataStatisticsComm::uploadToFaceLibSDKRequest(bool& finished, const std::string& deviceId,
    std::vector<protocol::UploadResult>& results, protocol::BatchPassThroughReq& req, CRequestCancel* cancel)
{
    finished = false;
    results.clear();
    if (req.command != protocol::kBatchCmdUploadFace) {
        BASE_LOG_ERROR("unsupported batch command %u", req.command);
        Base::Error::SetLastError(kErrParam, 0);
        return false;
    }
    if (req.cancelled) {
        // Nothing more is sent once the user cancelled.
        finished = true;
        Base::Error::SetLastError(0, 0);
        return true;
    }
    nlohmann::json j;
    j["command"] = req.command;
    j["encoding"] = req.encoding;
    j["xml"] = req.xml;
    j["picture"] = req.picture;
    j["condition"] = Base::Encrypt::Base64EncodeEx(req.condition);
    nlohmann::json answer;
    std::string reply;
    if (!postSdkJson(deviceId, "/DVAPI/SDK/batch", j, req.timeout, "face upload", answer, reply, cancel))
        return false;
    if (!answer.is_object() || !answer.contains("results") || !answer["results"].is_array()) {
        Base::Error::SetLastError(kErrBadAnswer, 0);
        return false;
    }
    finished = answer.value("finished", true);
    int failedSub = 0;
    for (const auto& item : answer["results"]) {
        if (!item.is_object())
            continue;
        protocol::UploadResult res;
        res.deviceId = deviceId;
        res.state = item.value("state", 0);
        res.subStatus = item.value("subStatus", 0);
        res.PID = item.value("PID", std::string());
        if ((res.state >= 3 || res.state == -1) && failedSub == 0)
            failedSub = res.subStatus != 0 ? res.subStatus : -1;
        results.push_back(res);
    }
    req.sendData.clear();
    protocol::BatchSendData sent;
    sent.deviceId = deviceId;
    sent.reply = std::move(reply);
    req.sendData.push_back(sent);
    Base::Error::SetLastError(failedSub != 0 ? kErrDeviceStatus : 0, failedSub > 0 ? failedSub : 0);
    return true;
}

bool CDeviceDownloadsComm::request(const std::string& reference, const std::string& deviceId, QByteArray& data,
    int timeoutMs, CRequestCancel* cancel)
{
    data.clear();
    if (reference.empty()) {
        Base::Error::SetLastError(kErrParam, 0);
        return false;
    }
    clientcommonlogical::DeviceConfig dev;
    if (!findDevice(deviceId, dev))
        return false;
    detail::HttpExchange ex;
    ex.path = devicePath(reference);
    ex.timeoutMs = timeoutMs > 0 ? timeoutMs : 30000;
    ex.maxBodyBytes = detail::CBodyLimit::kPicture;
    ex.cancel = cancel;
    detail::HttpResult r = detail::Perform(dev, ex);
    if (!detail::CheckResult(r, false)) {
        const auto err = Base::Error::GetLastError();
        BASE_LOG_WARN("download %s from device [%s] failed [%d-%d]: %s", ex.path.c_str(), deviceId.c_str(),
            err.first, err.second, detail::DescribeFailure(r).c_str());
        return false;
    }
    data = QByteArray(r.body.data(), int(r.body.size()));
    return true;
}

} // namespace commlayer
