#include "ui/AddIntoFaceLib/InpotFaceDataRecordThread.h"

#include <algorithm>
#include <cstring>

#include "Base/Base.h"
#include "Base/Log.h"
#include "commlayer/CDataStatisticsComm.h"

namespace BodyTemperature {

namespace {
constexpr size_t kFDIDOffset = 4;
constexpr size_t kFDIDSize = 256;
constexpr size_t kOverwriteOffset = 261;
} // namespace

CInportFaceDataRecordThread::CInportFaceDataRecordThread(QObject* parent) : QThread(parent) {}

CInportFaceDataRecordThread::~CInportFaceDataRecordThread()
{
    // The owner waits after the waiting dialog; this only guards early exits.
    m_bCancelled = true;
    wait();
}

void CInportFaceDataRecordThread::SetTarget(const std::string& deviceId, const std::string& FDID, bool overwrite)
{
    m_strDeviceId = deviceId;
    m_strFDID = FDID;
    m_bOverwrite = overwrite;
}

void CInportFaceDataRecordThread::SetPicture(const char* data, uint32_t length)
{
    if (data == nullptr || length == 0)
        return;
    m_picture.assign(data, data + length);
    m_uPictureLen = length;
}

void CInportFaceDataRecordThread::SetPersonRecord(const CapabilitySet::FaceDataRecordCfg& record)
{
    m_record = record;
}

std::string CInportFaceDataRecordThread::BuildCondition(const std::string& FDID, bool overwrite)
{
    std::string cond(protocol::kUploadConditionSize, '\0');
    const uint32_t size = protocol::kUploadConditionSize;
    for (int i = 0; i < 4; ++i)
        cond[size_t(i)] = char((size >> (8 * i)) & 0xFF);
    std::memcpy(&cond[kFDIDOffset], FDID.data(), std::min(FDID.size(), kFDIDSize));
    cond[kOverwriteOffset] = overwrite ? 1 : 0;
    return cond;
}

void CInportFaceDataRecordThread::OnCancelThread()
{
    m_bStop = true;
    m_bCancelled = true;
    emit SignalStop(true);
}

void CInportFaceDataRecordThread::run()
{
    m_bCancelled = false;
    m_bSuccess = false;
    if (!m_picture.empty() && m_uPictureLen != 0) {
        if (upload()) {
            m_bSuccess = true;
        } else {
            BASE_LOG_ERROR("GetFaceToLibRes failed, error code: [%d-%d]", m_iFirstCode.load(), m_iSecondCode.load());
            m_bSuccess = false;
        }
    }
    m_bStop = true;
    emit SignalStop(false);
}

bool CInportFaceDataRecordThread::upload()
{
    protocol::BatchPassThroughReq req;
    req.command = protocol::kBatchCmdUploadFace;
    req.encoding = "base64";
    req.xml = CapabilitySet::FaceDataRecordCfg::StructToXML(m_record);
    req.picture = Base::Encrypt::Base64EncodeEx(reinterpret_cast<const unsigned char*>(m_picture.data()), m_uPictureLen);
    req.condition = BuildCondition(m_strFDID, m_bOverwrite);
    protocol::BatchSendData target;
    target.deviceId = m_strDeviceId;
    req.sendData.push_back(target);

    bool finished = false;
    bool first = true;
    while (!finished) {
        if (!first)
            req.sendData.clear();
        first = false;
        req.cancelled = m_bCancelled;
        if (!commlayer::CDataStatisticsComm::uploadToFaceLibSDKRequest(finished, m_strDeviceId, m_results, req)) {
            const auto err = Base::Error::GetLastError();
            m_iFirstCode = err.first;
            m_iSecondCode = err.second;
            BASE_LOG_ERROR("CDataStatisticsComm::request failed, error code: [%d-%d]", err.first, err.second);
            return false;
        }
    }
    if (m_results.empty())
        return true;
    const int32_t state = m_results.front().state;
    if (state == 1) {
        PRT_DEBUG("iState Success  ----- [%d]", state);
        return true;
    }
    if (state <= 2 && state != -1)
        return true;
    // The error pair stays as it was: a failed state picks its message from
    // the state table, and a sub-status left behind must not outrank it.
    m_uUploadState = uint32_t(state);
    if (state == 10) {
        m_bLibraryFull = true;
        m_bStop = true;
    }
    PRT_DEBUG("iState failed  ----- [%d]", state);
    return false;
}

} // namespace BodyTemperature
