#pragma once
// Scripted returning-person (HFPD) search tasks, so tests can ask for a task
// that never completes, one whose connection drops at a given poll, a given
// number of records, or records with chosen fields (an unmappable channel, a
// time text without zone). Tasks without a script keep the generated answer.
// Also counts the polls of every task. Thread-safe (server worker threads).
#include <map>
#include <mutex>
#include <nlohmann/json.hpp>
#include <string>

namespace httplib {
class Server;
}

namespace devicesim {

struct HfpdScript {
    int polls = 0;        // polls until progress 100; 0: the emulator's setting; -1: never
    int dropAtPoll = 0;   // this poll's connection is cut mid-answer (0: none)
    int count = -1;       // number of records (-1: generated)
    nlohmann::json targets = nlohmann::json::array();  // per-record field overrides, in order
};

class HfpdScripts final {
public:
    // POST /control/hfpd {"taskID","polls","dropAtPoll","count","targets":[{...}]}
    // GET  /control/hfpd/<task> -> {"polls":n}
    void route(httplib::Server& server);

    int countPoll(const std::string& task);  // returns the poll number (1 for the first)
    HfpdScript script(const std::string& task) const;

private:
    mutable std::mutex m_mutex;
    std::map<std::string, HfpdScript> m_scripts;
    std::map<std::string, int> m_polls;
};

} // namespace devicesim
