#pragma once
// The emulated device: device API (digest-protected), alert stream, live
// video, and the unauthenticated control API used by tests and demos.
// run() blocks in the HTTP server until stop() is called from another thread.
#include <atomic>
#include <cstdio>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <set>
#include <string>

#include "AlertHub.h"
#include "EventFactory.h"
#include "HfpdScripts.h"
#include "PictureFactory.h"
#include "SimOptions.h"
#include "SimStore.h"

namespace httplib {
class Server;
struct Request;
struct Response;
}

namespace devicesim {

struct Fault {
    int delayMs = 0;
    bool drop = false;       // close the connection in the middle of the answer
    int status = 0;          // answer this HTTP status with a status document
    int subStatus = 0;       // sub-status code in that document
    bool malformed = false;  // cut the body and append garbage
    int remaining = -1;      // how many requests it applies to; -1 forever
};

class SimServer final {
public:
    explicit SimServer(SimOptions opts);
    ~SimServer();

    bool start(std::string& error);  // opens the store and binds the port
    void run();                      // serves until stop()
    void stop();

private:
    void routeDevice();
    void routeControl();
    bool checkDigest(const httplib::Request& req, httplib::Response& res);
    bool applyFault(const httplib::Request& req, httplib::Response& res);
    void logLine(const char* fmt, ...) __attribute__((format(printf, 2, 3)));
    void generateOne();
    std::string channelName(int ch) const { return "Channel " + std::to_string(ch); }
    // The person of a returning-person record's pictures, and the face's place in its scene.
    static int hfpdPerson(const std::string& task, int n) { return n + int(std::hash<std::string>()(task) % 40); }
    nlohmann::json hfpdFaceRect(const std::string& task, int n) const;
    bool channelOnline(int ch);

    SimOptions m_opts;
    std::unique_ptr<httplib::Server> m_http;
    SimStore m_store;
    PictureFactory m_pictures;
    EventFactory m_events;
    AlertHub m_hub;
    HfpdScripts m_hfpd;
    std::atomic<bool> m_stopping{false};
    std::string m_nonce;
    std::string m_realm = "DVAPI";
    FILE* m_log = stderr;
    std::mutex m_logMutex;

    std::mutex m_mutex;  // guards the members below
    std::mt19937 m_rng;
    std::map<std::string, Fault> m_faults;
    std::map<int, bool> m_offline;
    int m_nextChannel = 0;
};

} // namespace devicesim
