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

// Events that keep coming with no gap over the silence limit for a while
// show a device that keeps its stream busy (such a device may send
// keep-alives only when it has nothing else to say).
class SteadyRun {
public:
    // Notes an event now; true once events have come with no gap over limit
    // for kSteadyRunFactor times the limit.
    bool note(std::chrono::milliseconds limit)
    {
        const Clock::time_point now = Clock::now();
        bool steady = false;
        if (m_last == Clock::time_point{} || now - m_last > limit)
            m_start = now;
        else if (now - m_start >= limit * CAlarmSubscription::kSteadyRunFactor)
            steady = true;
        m_last = now;
        return steady;
    }

private:
    Clock::time_point m_start{};
    Clock::time_point m_last{};
};

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

struct CAlarmSubscription::Link {
    QString id;
    int backoffMs = 500;
    bool wasOnline = false;
    // After a silence cut the device counts as back only once it speaks
    // again: a reconnection that is answered but stays silent keeps it offline.
    bool cutForSilence = false;
    bool streaming = false;  // the last request was answered with the stream
};

void CAlarmSubscription::runStream()
{
    const uint64_t cpuStart = threadCpuNs();
    Link link;
    link.id = QString::fromStdString(m_device.id);
    while (!m_stop) {
        const detail::HttpResult r = streamOnce(link, cpuStart);
        if (m_stop)
            break;
        noteStreamEnd(r, link);
        if (waitStop(link.streaming ? 200 : link.backoffMs))
            break;
        if (!link.streaming)
            link.backoffMs = std::min(link.backoffMs * 2, 10000);
    }
    if (link.wasOnline)
        CDeviceStateNotifier::Instance()->SetDeviceOnline(link.id, false);
    BASE_LOG_INFO("alarm stream of device [%s] stopped", m_device.id.c_str());
}

detail::HttpResult CAlarmSubscription::streamOnce(Link& link, uint64_t cpuStart)
{
    CAlarmEventDecoder decoder(m_device);
    std::unique_ptr<CMultipartReader> reader;
    link.streaming = false;
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
    SteadyRun run;
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
    decoder.onEvent = [this, cpuStart, &run, &learn](publicdatacontroller::IntelAlarmEventInfo&& info) {
        publishEvent(std::move(info), cpuStart);
        if (!m_keepsAlive && run.note(std::chrono::milliseconds(m_silenceLimitMs)))
            learn("a steady flow of events");
    };
    decoder.onKeepAlive = [&learn](int) { learn("keep-alives"); };
    ex.onHeaders = [&](long status, const std::string& contentType) {
        if (status != 200)
            return;
        link.streaming = true;
        ex.idleLimitMs = m_keepsAlive ? m_silenceLimitMs : 0;
        reader = std::make_unique<CMultipartReader>(boundaryOf(contentType), kMaxPartBytes);
        reader->onPart = [&decoder](CMultipartReader::Part& part) { decoder.onPart(part); };
        reader->onError = [&decoder](const std::string& why) { decoder.onPartLost(why); };
        ++m_stats.connects;
        link.backoffMs = 500;
        BASE_LOG_INFO("alarm stream of device [%s] connected", m_device.id.c_str());
        if (!link.wasOnline && !link.cutForSilence) {
            link.wasOnline = true;
            CDeviceStateNotifier::Instance()->SetDeviceOnline(link.id, true);
        }
    };
    uint64_t copiedBefore = 0;
    ex.sink = [&](const char* data, size_t len) {
        if (reader) {
            if (link.cutForSilence && len > 0) {
                link.cutForSilence = false;
                BASE_LOG_INFO("alarm stream of device [%s] speaks again", m_device.id.c_str());
                link.wasOnline = true;
                CDeviceStateNotifier::Instance()->SetDeviceOnline(link.id, true);
            }
            reader->feed(data, len);
            m_stats.copiedBytes += reader->bytesCopied() - copiedBefore;
            copiedBefore = reader->bytesCopied();
        }
        return !m_stop;
    };
    return detail::Perform(m_device, ex);
}

void CAlarmSubscription::publishEvent(publicdatacontroller::IntelAlarmEventInfo&& info, uint64_t cpuStart)
{
    m_stats.pictureBytes += pictureBytes(info);
    BASE_LOG_DEBUG("alarm %u from device [%s] camera [%s] event [%s] faces %zu", info.eventType,
        info.deviceID.c_str(), info.cameraID.c_str(), info.eventID.c_str(), info.faceInfoList.size());
    auto alarm = std::make_shared<const publicdatacontroller::CIntelAlarmObject>(std::move(info));
    Base::CSingleton<publicdatacontroller::AlarmTransfer>::Instance()->publishAlarm(std::move(alarm));
    ++m_stats.events;
    m_stats.cpuNs = threadCpuNs() - cpuStart;
}

void CAlarmSubscription::noteStreamEnd(const detail::HttpResult& r, Link& link)
{
    const std::string why = detail::DescribeFailure(r);
    if (r.idleCut) {
        ++m_stats.silences;
        BASE_LOG_WARN("alarm stream of device [%s] silent for %d ms (%s): reconnecting", m_device.id.c_str(),
            m_silenceLimitMs, link.streaming ? "after the answer" : "no answer");
        link.wasOnline = false;
        link.cutForSilence = true;
        CDeviceStateNotifier::Instance()->SetDeviceOnline(link.id, false,
            QStringLiteral("alarm stream silent for %1 s").arg(m_silenceLimitMs / 1000.0, 0, 'f', 1));
    } else if (link.streaming) {
        BASE_LOG_WARN("alarm stream of device [%s] lost (%s); reconnecting", m_device.id.c_str(), why.c_str());
    } else {
        BASE_LOG_WARN("alarm stream of device [%s] unavailable (%s); retry in %d ms", m_device.id.c_str(),
            why.c_str(), link.backoffMs);
        link.wasOnline = false;
        CDeviceStateNotifier::Instance()->SetDeviceOnline(link.id, false, QString::fromStdString(why));
    }
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
