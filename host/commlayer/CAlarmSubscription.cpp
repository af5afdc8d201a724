#include "commlayer/CAlarmSubscription.h"

#include <QString>
#include <chrono>
#include <ctime>
#include <memory>
#include <nlohmann/json.hpp>
#include <sys/socket.h>

#include "Base/Base.h"
#include "Base/Log.h"
#include "commlayer/CAlarmEventDecoder.h"
#include "commlayer/CDeviceStateNotifier.h"
#include "commlayer/CMultipartReader.h"
#include "commlayer/DeviceHttp.h"
#include "publicdatacontroller/AlarmTransfer.h"

namespace commlayer {

namespace {

using Clock = std::chrono::steady_clock;

uint64_t threadCpuNs()
{
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return uint64_t(ts.tv_sec) * 1000000000ULL + uint64_t(ts.tv_nsec);
}

std::string boundaryOf(const std::string& contentType)
{
    const size_t at = contentType.find("boundary=");
    if (at == std::string::npos)
        return CAlarmSubscription::kBoundaryDefault;
    std::string b = contentType.substr(at + 9);
    const size_t end = b.find(';');
    if (end != std::string::npos)
        b.resize(end);
    if (b.size() >= 2 && b.front() == '"' && b.back() == '"')
        b = b.substr(1, b.size() - 2);
    return b.empty() ? std::string(CAlarmSubscription::kBoundaryDefault) : b;
}

uint64_t pictureBytes(const publicdatacontroller::IntelAlarmEventInfo& info)
{
    uint64_t n = uint64_t(info.alarmInfo.comparison.libraryPic.size());
    for (const auto& f : info.faceInfoList)
        n += uint64_t(f.bkPic.size() + f.SubPic.size() + f.ThermalPic.size());
    return n;
}

} // namespace

CAlarmSubscription::CAlarmSubscription(clientcommonlogical::DeviceConfig device, int statusPollMs)
    : m_device(std::move(device)), m_statusPollMs(statusPollMs)
{
}

CAlarmSubscription::~CAlarmSubscription()
{
    Stop();
}

void CAlarmSubscription::Start()
{
    if (m_stream.joinable())
        return;
    detail::GlobalInit();
    m_stop = false;
    m_stream = std::thread([this] { runStream(); });
    if (m_statusPollMs > 0)
        m_status = std::thread([this] { runStatus(); });
}

void CAlarmSubscription::RequestStop()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
    }
    m_cv.notify_all();
    {
        // Cut an open transfer now rather than at libcurl's next progress call.
        std::lock_guard<std::mutex> lock(m_socketMutex);
        if (m_socket >= 0)
            shutdown(m_socket, SHUT_RDWR);
        if (m_statusSocket >= 0)
            shutdown(m_statusSocket, SHUT_RDWR);
    }
}

void CAlarmSubscription::Stop()
{
    RequestStop();
    if (m_stream.joinable())
        m_stream.join();
    if (m_status.joinable())
        m_status.join();
}

bool CAlarmSubscription::waitStop(int ms)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_cv.wait_for(lock, std::chrono::milliseconds(ms), [this] { return m_stop.load(); });
}

void CAlarmSubscription::runStream()
{
    const QString id = QString::fromStdString(m_device.id);
    const uint64_t cpuStart = threadCpuNs();
    int backoffMs = 500;
    bool wasOnline = false;
    // After a silence cut the device counts as back only once it speaks
    // again: a reconnection that is answered but stays silent keeps it offline.
    bool cutForSilence = false;
    while (!m_stop) {
        CAlarmEventDecoder decoder(m_device);
        std::unique_ptr<CMultipartReader> reader;
        bool streaming = false;
        detail::HttpExchange ex;
        ex.path = kAlertPath;
        ex.timeoutMs = 0;  // a stream has no end; silence is caught by the limits below
        ex.connectTimeoutMs = 5000;
        ex.lowSpeedTimeSec = 90;
        // Until the answer's headers come, silence counts for every device.
        ex.idleLimitMs = m_silenceLimitMs;
        ex.abortFlag = &m_stop;
        ex.socketFd = &m_socket;
        ex.socketMutex = &m_socketMutex;
        // Events that keep coming with no gap over the silence limit for a
        // while show a device that keeps its stream busy (such a device may
        // send keep-alives only when it has nothing else to say).
        Clock::time_point runStart{};
        Clock::time_point lastEvent{};
        auto learn = [this, &ex](const char* how) {
            if (!m_keepsAlive) {
                m_keepsAlive = true;
                BASE_LOG_INFO("alarm stream of device [%s] is kept alive (%s): silence over %d ms reconnects",
                    m_device.id.c_str(), how, m_silenceLimitMs);
            }
            ex.idleLimitMs = m_silenceLimitMs;
        };
        decoder.onError = [this](const std::string& why) {
            ++m_stats.errors;
            BASE_LOG_ERROR("alarm stream of device [%s]: %s", m_device.id.c_str(), why.c_str());
        };
        decoder.onEvent = [this, cpuStart, &runStart, &lastEvent, &learn](
                              publicdatacontroller::IntelAlarmEventInfo&& info) {
            m_stats.pictureBytes += pictureBytes(info);
            BASE_LOG_DEBUG("alarm %u from device [%s] camera [%s] event [%s] faces %zu", info.eventType,
                info.deviceID.c_str(), info.cameraID.c_str(), info.eventID.c_str(), info.faceInfoList.size());
            auto alarm = std::make_shared<const publicdatacontroller::CIntelAlarmObject>(std::move(info));
            Base::CSingleton<publicdatacontroller::AlarmTransfer>::Instance()->publishAlarm(std::move(alarm));
            ++m_stats.events;
            m_stats.cpuNs = threadCpuNs() - cpuStart;
            if (!m_keepsAlive) {
                const Clock::time_point now = Clock::now();
                if (lastEvent == Clock::time_point{} || now - lastEvent > std::chrono::milliseconds(m_silenceLimitMs))
                    runStart = now;
                else if (now - runStart >= std::chrono::milliseconds(m_silenceLimitMs) * kSteadyRunFactor)
                    learn("a steady flow of events");
                lastEvent = now;
            }
        };
        decoder.onKeepAlive = [&learn](int) { learn("keep-alives"); };
        ex.onHeaders = [&](long status, const std::string& contentType) {
            if (status != 200)
                return;
            streaming = true;
            ex.idleLimitMs = m_keepsAlive ? m_silenceLimitMs : 0;
            reader = std::make_unique<CMultipartReader>(boundaryOf(contentType), kMaxPartBytes);
            reader->onPart = [&decoder](CMultipartReader::Part& part) { decoder.onPart(part); };
            reader->onError = [&decoder](const std::string& why) { decoder.onPartLost(why); };
            ++m_stats.connects;
            backoffMs = 500;
            BASE_LOG_INFO("alarm stream of device [%s] connected", m_device.id.c_str());
            if (!wasOnline && !cutForSilence) {
                wasOnline = true;
                CDeviceStateNotifier::Instance()->SetDeviceOnline(id, true);
            }
        };
        uint64_t copiedBefore = 0;
        ex.sink = [&](const char* data, size_t len) {
            if (reader) {
                if (cutForSilence && len > 0) {
                    cutForSilence = false;
                    BASE_LOG_INFO("alarm stream of device [%s] speaks again", m_device.id.c_str());
                    wasOnline = true;
                    CDeviceStateNotifier::Instance()->SetDeviceOnline(id, true);
                }
                reader->feed(data, len);
                m_stats.copiedBytes += reader->bytesCopied() - copiedBefore;
                copiedBefore = reader->bytesCopied();
            }
            return !m_stop;
        };
        const detail::HttpResult r = detail::Perform(m_device, ex);
        if (m_stop)
            break;
        const std::string why = detail::DescribeFailure(r);
        if (r.idleCut) {
            ++m_stats.silences;
            BASE_LOG_WARN("alarm stream of device [%s] silent for %d ms (%s): reconnecting", m_device.id.c_str(),
                m_silenceLimitMs, streaming ? "after the answer" : "no answer");
            wasOnline = false;
            cutForSilence = true;
            CDeviceStateNotifier::Instance()->SetDeviceOnline(id, false,
                QStringLiteral("alarm stream silent for %1 s").arg(m_silenceLimitMs / 1000.0, 0, 'f', 1));
        } else if (streaming) {
            BASE_LOG_WARN("alarm stream of device [%s] lost (%s); reconnecting", m_device.id.c_str(), why.c_str());
        } else {
            BASE_LOG_WARN("alarm stream of device [%s] unavailable (%s); retry in %d ms", m_device.id.c_str(),
                why.c_str(), backoffMs);
            wasOnline = false;
            CDeviceStateNotifier::Instance()->SetDeviceOnline(id, false, QString::fromStdString(why));
        }
        if (waitStop(streaming ? 200 : backoffMs))
            break;
        if (!streaming)
            backoffMs = std::min(backoffMs * 2, 10000);
    }
    if (wasOnline)
        CDeviceStateNotifier::Instance()->SetDeviceOnline(id, false);
    BASE_LOG_INFO("alarm stream of device [%s] stopped", m_device.id.c_str());
}

void CAlarmSubscription::runStatus()
{
    const QString id = QString::fromStdString(m_device.id);
    std::string lastProblem;  // logged once per change, not at every poll
    auto note = [&](const std::string& problem) {
        if (problem == lastProblem)
            return;
        if (problem.empty())
            BASE_LOG_INFO("channel status of device [%s] readable again", m_device.id.c_str());
        else
            BASE_LOG_WARN("channel status of device [%s]: %s", m_device.id.c_str(), problem.c_str());
        lastProblem = problem;
    };
    while (!m_stop) {
        detail::HttpExchange ex;
        ex.path = "/DVAPI/System/channels/status";
        ex.timeoutMs = 5000;
        ex.maxBodyBytes = detail::CBodyLimit::kStatusDocument;
        ex.abortFlag = &m_stop;
        ex.socketFd = &m_statusSocket;
        ex.socketMutex = &m_socketMutex;
        const detail::HttpResult r = detail::Perform(m_device, ex);
        if (m_stop)
            break;
        const bool answered = r.curlCode == 0 && r.status == 200;
        const auto doc = answered ? nlohmann::json::parse(r.body, nullptr, false) : nlohmann::json();
        if (answered && doc.is_object() && doc.contains("channels") && doc["channels"].is_array()) {
            note(std::string());
            for (const auto& ch : doc["channels"]) {
                if (!ch.is_object() || !ch.contains("id") || !ch["id"].is_number_integer())
                    continue;
                const auto online = ch.find("online");
                if (online == ch.end() || !online->is_boolean())
                    continue;  // an entry that says nothing leaves its channel as it was
                CDeviceStateNotifier::Instance()->SetChannelOnline(id, ch["id"].get<int>(), online->get<bool>());
            }
        } else if (answered || r.bodyTooLarge) {
            // The device answered, but not with a status list: what it said last still stands.
            note(std::string(r.bodyTooLarge ? "answer over its size limit" : "unreadable answer")
                + ": keeping the last known channel states");
        } else {
            note(detail::DescribeFailure(r) + ": channels reported offline");
            for (const auto& ch : m_device.channels)
                CDeviceStateNotifier::Instance()->SetChannelOnline(id, ch.channel, false);
        }
        if (waitStop(m_statusPollMs))
            break;
    }
}

} // namespace commlayer
