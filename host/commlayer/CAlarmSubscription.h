#pragma once
// The live alarm intake of one device: a worker thread keeps the device's
// alert stream open (reconnecting with back-off), turns each event into an
// IntelAlarmEventInfo and publishes it through AlarmTransfer::publishAlarm;
// a second thread polls the channel status every few seconds. Both update
// CDeviceStateNotifier. Owned by CAlarmIntake (or a test); the destructor
// stops and joins both threads promptly (an open transfer is cut).
//
// Silence: once the device has shown that it keeps its stream alive (a
// keep-alive, or events with no gap over the limit for kSteadyRunFactor
// times the limit), in this connection or an earlier one, a stream that
// brings no byte for SilenceLimitMs is cut, reported offline (reason "alarm
// stream silent ...") and reopened; so is an answer whose headers do not come
// within that time. After such a cut the device is reported online again
// only once the new stream brings a byte: a reconnection into silence keeps
// it offline with its reason. A device that has shown neither falls back to
// the 90 s low-speed rule.
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

#include "clientcommonlogical/CConfigMgr.h"

namespace publicdatacontroller {
struct IntelAlarmEventInfo;
}

namespace commlayer {

namespace detail {
struct HttpResult;
}

struct IntakeStats {
    std::atomic<uint64_t> events{0};         // published
    std::atomic<uint64_t> errors{0};         // parts or events skipped
    std::atomic<uint64_t> connects{0};       // successful stream openings
    std::atomic<uint64_t> pictureBytes{0};   // picture bytes in published events
    std::atomic<uint64_t> copiedBytes{0};    // body bytes copied out of the network buffers
    std::atomic<uint64_t> cpuNs{0};          // CPU time of the intake thread
    std::atomic<uint64_t> silences{0};       // streams cut for silence
};

class CAlarmSubscription final {
public:
    explicit CAlarmSubscription(clientcommonlogical::DeviceConfig device, int statusPollMs = 3000);
    ~CAlarmSubscription();
    CAlarmSubscription(const CAlarmSubscription&) = delete;
    CAlarmSubscription& operator=(const CAlarmSubscription&) = delete;

    // Before Start(): how long a stream may stay silent (default kSilenceLimitMs).
    void SetSilenceLimitMs(int ms) { m_silenceLimitMs = ms; }
    void Start();
    // Asks the threads to end without waiting; Stop() also joins them.
    void RequestStop();
    void Stop();
    const IntakeStats& Stats() const { return m_stats; }

    static constexpr const char* kAlertPath = "/DVAPI/Event/notification/alertStream";
    static constexpr const char* kBoundaryDefault = "btalertboundary7d1f";
    static constexpr qint64 kMaxPartBytes = 16 * 1024 * 1024;
    static constexpr int kSilenceLimitMs = 12000;
    static constexpr int kSteadyRunFactor = 3;

private:
    struct Link;  // the stream thread's state across reconnections
    void runStream();
    // One request of the alarm stream, from connection to its end.
    detail::HttpResult streamOnce(Link& link, uint64_t cpuStart);
    void publishEvent(publicdatacontroller::IntelAlarmEventInfo&& info, uint64_t cpuStart);
    // Logs how the stream ended and reports the device's state.
    void noteStreamEnd(const detail::HttpResult& r, Link& link);
    void runStatus();
    bool waitStop(int ms);

    clientcommonlogical::DeviceConfig m_device;
    int m_statusPollMs;
    int m_silenceLimitMs = kSilenceLimitMs;
    bool m_keepsAlive = false;  // stream thread only: silence is watched from now on
    std::atomic<bool> m_stop{false};
    std::mutex m_mutex;
    std::condition_variable m_cv;
    std::mutex m_socketMutex;
    int m_socket = -1;        // the stream's connection while open
    int m_statusSocket = -1;  // the status poll's connection while open
    std::thread m_stream;
    std::thread m_status;
    IntakeStats m_stats;
};

} // namespace commlayer
