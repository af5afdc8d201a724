#pragma once
// The state every route area of the emulator shares. Owned by SimServer; the
// HTTP worker threads and the event generator use it concurrently.
// Options given on the command line are read-only after construction;
// everything the control API changes at run time is marked "guarded" and is
// read and written only under `mutex`.
#include <atomic>
#include <cstdio>
#include <map>
#include <mutex>
#include <random>
#include <string>

#include "AlertHub.h"
#include "EventFactory.h"
#include "HfpdScripts.h"
#include "PictureFactory.h"
#include "RtspControl.h"
#include "SimCapabilities.h"
#include "SimOptions.h"
#include "SimStore.h"

namespace devicesim {

struct Fault {
    int delayMs = 0;         // before the request is handled
    int answerDelayMs = 0;   // after it was handled (it took effect), before the answer goes out
    bool drop = false;       // close the connection in the middle of the answer
    int status = 0;          // answer this HTTP status with a status document
    int subStatus = 0;       // sub-status code in that document
    bool malformed = false;  // cut the body and append garbage
    bool endless = false;    // a body that never ends (with `status`, or 200)
    int remaining = -1;      // how many requests it applies to; -1 forever
};

class SimContext final {
public:
    // rtsp: the RTSP streams' faults and counters, owned by main() (outlives the context).
    SimContext(const SimOptions& options, RtspControl& rtsp);
    ~SimContext();
    SimContext(const SimContext&) = delete;
    SimContext& operator=(const SimContext&) = delete;

    // Opens the request log (stderr when none was given).
    bool openLog(std::string& error);
    void logLine(const char* fmt, ...) __attribute__((format(printf, 2, 3)));

    std::string channelName(int ch) const { return "Channel " + std::to_string(ch); }
    bool channelOnline(int ch);
    void setChannelOnline(int ch, bool online);
    // A random event on a random online channel, as the generator publishes
    // them; false when every channel is offline.
    bool randomEvent(SimEvent& ev);
    // How many polls an HFPD task needs before it reports 100 % (run-time setting).
    int hfpdPollsNeeded();
    void setHfpdPollsNeeded(int polls);

    const SimOptions opts;
    SimStore store;          // thread-safe itself
    PictureFactory pictures; // thread-safe itself
    AlertHub hub;            // thread-safe itself
    SimCapabilities capabilities;  // thread-safe itself
    HfpdScripts hfpd;        // thread-safe itself; also counts each task's polls
    RtspControl& rtsp;       // thread-safe itself
    std::atomic<bool> stopping{false};
    std::atomic<int> keepAliveMs;           // alert-stream keep-alive period (run-time setting)
    std::atomic<bool> keepAliveIdleOnly;    // keep-alives only while no event flows (run-time setting)
    std::atomic<bool> alertSilent{false};   // open alert streams carry nothing (run-time setting)
    std::atomic<int> delaying{0};           // requests held back by a fault's delay right now
    std::atomic<int> clientsGone{0};        // held-back requests whose client closed the connection

    std::mutex mutex;  // guards the members below
    EventFactory events;
    std::mt19937 rng;
    std::map<std::string, Fault> faults;

private:
    std::map<int, bool> m_offline;  // guarded
    int m_hfpdPollsNeeded;          // guarded
    FILE* m_log = stderr;
    std::mutex m_logMutex;
};

} // namespace devicesim
