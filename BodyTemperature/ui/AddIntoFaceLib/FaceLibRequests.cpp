#include "ui/AddIntoFaceLib/FaceLibRequests.h"

#include <cstdlib>

#include "Base/Log.h"
#include "commlayer/CDataStatisticsComm.h"

namespace BodyTemperature {

namespace {

bool send(const std::string& deviceId, const std::string& requestLine, const std::string& body, std::string& answer,
    commlayer::CRequestCancel* cancel, int32_t timeoutMs = kFaceLibRequestTimeoutMs)
{
    protocol::DvapiPassThroughReq req;
    req.requestLine = requestLine;
    req.body = body;
    req.timeout = timeoutMs;
    protocol::DvapiPassThroughRspData rsp;
    if (!commlayer::CDataStatisticsComm::dvapiRequest(deviceId, rsp, req, cancel))
        return false;
    answer = std::move(rsp.body);
    return true;
}

// The older lines print the identifier with "%d"; the number a numeric
// identifier reads as keeps that line meaningful.
int numericId(const std::string& deviceId)
{
    return std::atoi(deviceId.c_str());
}

// The record was cleared before the request, so after a failure its leading
// flag only stays set when a parser filled it: then the failure is logged,
// otherwise the caller gets the generic failure code.
template <typename Record, typename LogFn>
bool finish(bool sent, const std::string& answer, Record& record, bool Record::*flag, uint32_t& errorCode, LogFn log)
{
    if (sent) {
        record.Parse(answer);
        return true;
    }
    if (record.*flag)
        log();
    else
        errorCode = kFaceLibRequestFailed;
    return false;
}

} // namespace

bool GetFaceDataLibraryCapability(CapabilitySet::FaceDataLibraryCap& cap, uint32_t& errorCode,
    const std::string& deviceId, commlayer::CRequestCancel* cancel)
{
    cap = CapabilitySet::FaceDataLibraryCap();
    errorCode = 0;
    std::string answer;
    const bool sent = send(deviceId, "GET /DVAPI/Intelligent/FDLib/capabilities\r\n", std::string(), answer, cancel);
    return finish(sent, answer, cap, &CapabilitySet::FaceDataLibraryCap::bSupport, errorCode, [&] {
        PRT_DEBUG("[tagma]failure to CCapabilityApp::GetFaceDataLibraryCapability, userID = [%s], error code = [%d]",
            deviceId.c_str(), int(errorCode));
    });
}

bool GetFaceDataLibraryCfg(CapabilitySet::FaceDataLibraryCfg& libraries, uint32_t& errorCode,
    const std::string& deviceId, commlayer::CRequestCancel* cancel)
{
    libraries = CapabilitySet::FaceDataLibraryCfg();
    errorCode = 0;
    std::string answer;
    const bool sent = send(deviceId, "GET /DVAPI/Intelligent/FDLib\r\n", std::string(), answer, cancel);
    return finish(sent, answer, libraries, &CapabilitySet::FaceDataLibraryCfg::bValid, errorCode, [&] {
        PRT_DEBUG("[tagma]failure to CCapabilityApp::GetFaceDataLibraryCfg, userID = [%s], error code = [%d]",
            deviceId.c_str(), int(errorCode));
    });
}

bool GetFaceDataRecordConfig(CapabilitySet::FaceDataRecordCfg& record, uint32_t& errorCode,
    const std::string& deviceId, const std::string& FDID, const std::string& PID, commlayer::CRequestCancel* cancel)
{
    record = CapabilitySet::FaceDataRecordCfg();
    errorCode = 0;
    std::string answer;
    const bool sent
        = send(deviceId, "GET /DVAPI/Intelligent/FDLib/" + FDID + "/picture/" + PID, std::string(), answer, cancel);
    return finish(sent, answer, record, &CapabilitySet::FaceDataRecordCfg::bValid, errorCode, [&] {
        PRT_DEBUG("[tagma]failure to CCapabilityApp::GetFaceDataRecordConfig, userID = [%d], error code = [%d]",
            numericId(deviceId), int(errorCode));
    });
}

namespace {
bool extendRequest(CapabilitySet::PersonnalInfoExtendListConfig& items, uint32_t& errorCode,
    const std::string& deviceId, const std::string& requestLine, commlayer::CRequestCancel* cancel)
{
    items = CapabilitySet::PersonnalInfoExtendListConfig();
    errorCode = 0;
    std::string answer;
    const bool sent = send(deviceId, requestLine, std::string(), answer, cancel);
    return finish(sent, answer, items, &CapabilitySet::PersonnalInfoExtendListConfig::bValid, errorCode, [&] {
        PRT_DEBUG("[tagma]failure to CCapabilityApp::GetPersonnalInfoExtendListCfg, userID = [%d], error code = [%d]",
            numericId(deviceId), int(errorCode));
    });
}
} // namespace

bool GetPersonnalInfoExtendListCfg(CapabilitySet::PersonnalInfoExtendListConfig& items, uint32_t& errorCode,
    const std::string& deviceId, const std::string& FDID, commlayer::CRequestCancel* cancel)
{
    return extendRequest(
        items, errorCode, deviceId, "GET /DVAPI/Intelligent/faceContrast/personInfoExtend/FDID/" + FDID, cancel);
}

bool GetPersonnalInfoExtendListCfg(CapabilitySet::PersonnalInfoExtendListConfig& items, uint32_t& errorCode,
    const std::string& deviceId, commlayer::CRequestCancel* cancel)
{
    return extendRequest(
        items, errorCode, deviceId, "GET /DVAPI/Intelligent/faceContrast/personInfoExtend\r\n", cancel);
}

bool GetCityCodeCapability(CapabilitySet::CityCodeCapability& cities, uint32_t& errorCode, const std::string& deviceId,
    commlayer::CRequestCancel* cancel)
{
    cities = CapabilitySet::CityCodeCapability();
    errorCode = 0;
    std::string answer;
    const bool sent = send(deviceId, "GET /DVAPI/System/cityCode?format=json\r\n", std::string(), answer, cancel);
    return finish(sent, answer, cities, &CapabilitySet::CityCodeCapability::bValid, errorCode, [&] {
        PRT_DEBUG("[tagma]failure to CCapabilityApp::GetPersonnalInfoExtendListCfg, userID = [%d], error code = [%d]",
            numericId(deviceId), int(errorCode));
    });
}

bool SearchFaceDataRecord(const CapabilitySet::FaceDataRecordCfg& conditions, uint32_t& errorCode,
    const std::string& deviceId, commlayer::CRequestCancel* cancel)
{
    std::string answer;
    return SearchFaceDataRecords(conditions, errorCode, deviceId, answer, kFaceLibRequestTimeoutMs, cancel);
}

bool SearchFaceDataRecords(const CapabilitySet::FaceDataRecordCfg& conditions, uint32_t& errorCode,
    const std::string& deviceId, std::string& answer, int32_t timeoutMs, commlayer::CRequestCancel* cancel)
{
    errorCode = 0;
    answer.clear();
    if (send(deviceId, "POST /DVAPI/Intelligent/FDLib/FDSearch\r\n",
            CapabilitySet::FaceDataRecordCfg::StructToXML(conditions), answer, cancel, timeoutMs))
        return true;
    // A search has no answer record: its failure is always logged.
    errorCode = kFaceLibRequestFailed;
    PRT_DEBUG("[tagma]failure to CCapabilityApp::SetFaceDataRecordConfig, userID = [%d], error code = [%d]",
        numericId(deviceId), int(errorCode));
    return false;
}

} // namespace BodyTemperature
