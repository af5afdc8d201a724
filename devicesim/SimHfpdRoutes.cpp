// Returning-person (HFPD) record search results and their pictures.
#include <QDateTime>
#include <QString>
#include <httplib.h>
#include <random>

#include "SimContext.h"
#include "SimHttp.h"
#include "SimRoutes.h"

namespace devicesim {

using httplib::Request;
using httplib::Response;

namespace {

// The records of a task: deterministic for its identifier, none when it
// contains "empty".
nlohmann::json hfpdTargets(const std::string& task, const SimContext& sim)
{
    nlohmann::json targets = nlohmann::json::array();
    std::seed_seq seq(task.begin(), task.end());
    std::mt19937 rng(seq);
    const bool empty = task.find("empty") != std::string::npos;
    const int count = empty ? 0 : 5 + int(rng() % 21);
    static const char* ages[] = {"young", "middle", "old", "prime", "teenager"};
    static const char* exprs[] = {"happy", "poker-faced", "surprised", "sad"};
    static const char* glasses[] = {"no", "yes", "sunglasses", "unknown"};
    for (int i = 0; i < count; ++i) {
        const int ch = 1 + int(rng() % unsigned(std::max(1, sim.opts.channels)));
        const auto when = QDateTime::currentDateTimeUtc().addSecs(-3600 * (i + 1));
        const std::string pic = "/DVAPI/pictures/hfpd/" + task + "/" + std::to_string(i + 1) + ".jpg";
        targets.push_back({{"index", i + 1},
            {"captureTime", when.toString(QStringLiteral("yyyy-MM-ddThh:mm:ss+08:00")).toStdString()},
            {"channelID", std::to_string(ch)}, {"cameraName", sim.channelName(ch)}, {"picUrl", pic},
            {"facePicUrl", pic + "?face=1"}, {"ageGroup", ages[rng() % 5]},
            {"gender", rng() % 2 ? "male" : "female"}, {"glass", glasses[rng() % 4]},
            {"mask", rng() % 2 ? "yes" : "no"}, {"hat", rng() % 3 ? "no" : "yes"},
            {"expression", exprs[rng() % 4]}, {"smile", rng() % 2 ? "yes" : "no"},
            {"rect", {{"x", 0.12 + 0.16 * (i % 5)}, {"y", 0.22}, {"width", 0.09}, {"height", 0.21}}}});
    }
    return targets;
}

} // namespace

void addHfpdRoutes(httplib::Server& http, SimContext& sim)
{
    http.Get(R"(/DVAPI/SDT/HFPD/searchTask/result/recordData/([^/?]+))", [&sim](const Request& req, Response& res) {
        const std::string task = req.matches[1];
        int polls = 0;
        {
            std::lock_guard<std::mutex> lock(sim.mutex);
            polls = ++sim.hfpdPolls[task];
        }
        const int need = std::max(1, sim.hfpdPollsNeeded());
        const int progress = polls >= need ? 100 : polls * 100 / need;
        const nlohmann::json targets =
            progress == 100 ? hfpdTargets(task, sim) : nlohmann::json::array();
        res.set_content(nlohmann::json{{"taskID", task}, {"progress", progress}, {"totalMatches", targets.size()},
                                      {"targets", targets}}.dump(),
            "application/json");
    });

    http.Get(R"(/DVAPI/pictures/hfpd/([^/]+)/(\d+)\.jpg)", [&sim](const Request& req, Response& res) {
        const int n = std::atoi(req.matches[2].str().c_str());
        FaceLook look;
        look.person = n + int(std::hash<std::string>()(req.matches[1]) % 40);
        look.mask = n % 2 == 0;
        double rect[4];
        const Jpeg jpeg = req.has_param("face")
            ? sim.pictures.face(look)
            : sim.pictures.scene(1, QString::fromStdString(sim.channelName(1)), look, rect);
        res.set_content(*jpeg, "image/jpeg");
    });
}

} // namespace devicesim
