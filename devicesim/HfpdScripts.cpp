#include "HfpdScripts.h"

#include <httplib.h>

namespace devicesim {

void HfpdScripts::route(httplib::Server& server)
{
    server.Post("/control/hfpd", [this](const httplib::Request& req, httplib::Response& res) {
        const auto d = nlohmann::json::parse(req.body, nullptr, false);
        if (!d.is_object() || !d.contains("taskID") || !d["taskID"].is_string()) {
            res.status = 400;
            res.set_content(R"({"ok":false,"error":"taskID missing"})", "application/json");
            return;
        }
        HfpdScript s;
        s.polls = d.value("polls", 0);
        s.dropAtPoll = d.value("dropAtPoll", 0);
        s.count = d.value("count", -1);
        if (d.contains("targets") && d["targets"].is_array())
            s.targets = d["targets"];
        std::lock_guard<std::mutex> lock(m_mutex);
        m_scripts[d["taskID"].get<std::string>()] = s;
        res.set_content(R"({"ok":true})", "application/json");
    });
    server.Get(R"(/control/hfpd/([^/?]+))", [this](const httplib::Request& req, httplib::Response& res) {
        std::lock_guard<std::mutex> lock(m_mutex);
        const auto it = m_polls.find(req.matches[1]);
        res.set_content(nlohmann::json{{"polls", it == m_polls.end() ? 0 : it->second}}.dump(), "application/json");
    });
}

int HfpdScripts::countPoll(const std::string& task)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return ++m_polls[task];
}

HfpdScript HfpdScripts::script(const std::string& task) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    const auto it = m_scripts.find(task);
    return it == m_scripts.end() ? HfpdScript() : it->second;
}

} // namespace devicesim
