#include "ui/ShowCard/ReCustomer/CHFPDSearchWorker.h"

#include <map>

#include "Base/Base.h"
#include "Base/Log.h"
#include "CapabilitySet/HFPDSearchFaceResult.h"
#include "commlayer/CDataStatisticsComm.h"
#include "protocol/DevicePassThrough.h"
#include "commlayer/CRequestCancel.h"
#include "ui/ShowCard/ReCustomer/CHFPDRecordBuilder.h"

namespace BodyTemperature {

bool CHFPDSearchWorker::SearchRecords(const std::string& deviceId, const std::string& taskId,
    HFPDRecordList& records, commlayer::CRequestCancel* cancel) const
{
    records.clear();
    if (deviceId.empty())
        return false;

    protocol::DvapiPassThroughReq req;
    req.requestLine = "GET /DVAPI/SDT/HFPD/searchTask/result/recordData/" + taskId + "?format=json\r\n";
    req.timeout = kRequestTimeoutMs;
    CapabilitySet::HFPDSearchFaceResult result;
    // The device decides when the task is complete: there is no poll limit,
    // only the user's cancel ends an unfinished task.
    for (;;) {
        if (cancel != nullptr && cancel->IsCancelled())
            return false;
        protocol::DvapiPassThroughRspData rsp;
        if (!commlayer::CDataStatisticsComm::dvapiRequest(deviceId, rsp, req, cancel)) {
            const auto err = Base::Error::GetLastError();
            BASE_LOG_WARN("HFPD result of task [%s] on [%s] failed [%d-%d]", taskId.c_str(), deviceId.c_str(),
                err.first, err.second);
            return false;
        }
        result.Parse(rsp.body);
        if (result.progress == 100)
            break;
        if (cancel != nullptr) {
            if (!cancel->WaitFor(std::chrono::milliseconds(kPollIntervalMs)))
                return false;
        } else {
            commlayer::CRequestCancel never;
            never.WaitFor(std::chrono::milliseconds(kPollIntervalMs));
        }
    }

    // A task holds up to hundreds of thousands of records on a few channels:
    // a channel the device has mapped once is not asked again in this search
    // (a failed mapping is, record by record).
    std::map<std::string, std::string> mappedChannels;
    for (const CapabilitySet::HFPDFaceResultItem& item : result.results) {
        if (cancel != nullptr && cancel->IsCancelled())
            return false;
        HFPDRecord record = CHFPDRecordBuilder::Build(item);
        auto known = mappedChannels.find(record.channelID);
        if (known == mappedChannels.end()) {
            std::string mapped;
            if (!MapChannel(deviceId, record.channelID, mapped, cancel))
                continue;
            known = mappedChannels.emplace(record.channelID, std::move(mapped)).first;
        }
        record.channelID = known->second;
        records.push_back(std::move(record));
    }
    return true;
}

bool CHFPDSearchWorker::MapChannel(const std::string& deviceId, const std::string& channelText,
    std::string& mapped, commlayer::CRequestCancel* cancel) const
{
    int channel = 0;
    std::string error;
    if (!CHFPDRecordBuilder::ParseChannel(channelText, channel, error)) {
        BASE_LOG_WARN("HFPD channel [%s]: %s", channelText.c_str(), error.c_str());
        return false;
    }
    protocol::NetsdkPassThroughReq req;
    req.function = "DEV_SDKChannelToDVAPI";
    req.params = {Base::Encrypt::Base64EncodeEx(std::to_string(channel)), Base::Encrypt::Base64EncodeEx("false")};
    req.timeout = kRequestTimeoutMs;
    protocol::NetsdkPassThroughRspData rsp;
    if (!commlayer::CDataStatisticsComm::devnetsdkrequest(deviceId, rsp, req, cancel))
        return false;
    return Base::Encrypt::Base64DecodeEx(rsp.data, mapped);
}

} // namespace BodyTemperature
