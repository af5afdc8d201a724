// Returning-person (HFPD) record search results and their pictures.
#include <QDateTime>
#include <QString>
#include <climits>
#include <httplib.h>
#include <random>

#include "SimContext.h"
#include "SimHttp.h"
#include "SimRoutes.h"

namespace devicesim {

using httplib::Request;
using httplib::Response;

namespace {

// The person drawn in a record's pictures.
int hfpdPerson(const std::string& task, int n)
{
    return n + int(std::hash<std::string>()(task) % 40);
}

// The records of a task as the text of a JSON array, written record by
// record (a task may hold hundreds of thousands): deterministic for its
// identifier, none when it contains "empty"; a script may set their number
// and fields.
std::string hfpdTargets(const std::string& task, const HfpdScript& script, SimContext& sim, int& count)
{
    std::string targets = "[";
    std::seed_seq seq(task.begin(), task.end());
    std::mt19937 rng(seq);
    const bool empty = task.find("empty") != std::string::npos;
    count = script.count >= 0 ? script.count : empty ? 0 : 5 + int(rng() % 21);
    const QDateTime now = QDateTime::currentDateTimeUtc();
    static const char* ages[] = {"young", "middle", "old", "prime", "teenager"};
    static const char* exprs[] = {"happy", "poker-faced", "surprised", "sad"};
    static const char* glasses[] = {"no", "yes", "sunglasses", "unknown"};
    for (int i = 0; i < count; ++i) {
        const int ch = 1 + int(rng() % unsigned(std::max(1, sim.opts.channels)));
        const auto when = now.addSecs(-3600 * (i + 1));
        const std::string pic = "/DVAPI/pictures/hfpd/" + task + "/" + std::to_string(i + 1) + ".jpg";
        // The scene is drawn on channel 1 with the record's person (picture route below).
        double r[4];
        sim.pictures.sceneFaceRect(1, hfpdPerson(task, i + 1), r);
        nlohmann::json target = {{"index", i + 1},
            {"captureTime", when.toString(QStringLiteral("yyyy-MM-ddThh:mm:ss+08:00")).toStdString()},
            {"channelID", std::to_string(ch)}, {"cameraName", sim.channelName(ch)}, {"picUrl", pic},
            {"facePicUrl", pic + "?face=1"}, {"ageGroup", ages[rng() % 5]},
            {"gender", rng() % 2 ? "male" : "female"}, {"glass", glasses[rng() % 4]},
            {"mask", (i + 1) % 2 == 0 ? "yes" : "no"}, {"hat", rng() % 3 ? "no" : "yes"},
            {"expression", exprs[rng() % 4]}, {"smile", rng() % 2 ? "yes" : "no"},
            {"rect", {{"x", r[0]}, {"y", r[1]}, {"width", r[2]}, {"height", r[3]}}}};
        if (size_t(i) < script.targets.size() && script.targets[size_t(i)].is_object())
            target.update(script.targets[size_t(i)]);
        if (i > 0)
            targets += ',';
        targets += target.dump();
    }
    return targets + ']';
}

} // namespace

void addHfpdRoutes(httplib::Server& http, SimContext& sim)
{
    sim.hfpd.route(http);  // /control/hfpd: scripted tasks for tests

    http.Get(R"(/DVAPI/SDT/HFPD/searchTask/result/recordData/([^/?]+))", [&sim](const Request& req, Response& res) {
        const std::string task = req.matches[1];
        const int polls = sim.hfpd.countPoll(task);
        const HfpdScript script = sim.hfpd.script(task);
        if (script.dropAtPoll == polls) {
            res.set_content_provider(4096, "application/json", [](size_t, size_t, httplib::DataSink& sink) {
                sink.write("{\"taskID\":", 10);
                return false;
            });
            return;
        }
        const int need = script.polls < 0 ? INT_MAX
                                           : std::max(1, script.polls != 0 ? script.polls : sim.hfpdPollsNeeded());
        const int progress = polls >= need ? 100 : int(std::min<long long>(99, polls * 100LL / need));
        int count = 0;
        const std::string targets = progress == 100 ? hfpdTargets(task, script, sim, count) : std::string("[]");
        std::string head = nlohmann::json{{"taskID", task}, {"progress", progress}, {"totalMatches", count}}.dump();
        head.pop_back();  // the closing brace: the records follow
        res.set_content(head + ",\"targets\":" + targets + '}', "application/json");
    });

    http.Get(R"(/DVAPI/pictures/hfpd/([^/]+)/(\d+)\.jpg)", [&sim](const Request& req, Response& res) {
        const int n = std::atoi(req.matches[2].str().c_str());
        FaceLook look;
        look.person = hfpdPerson(req.matches[1], n);
        look.mask = n % 2 == 0;
        double rect[4];
        const Jpeg jpeg = req.has_param("face")
            ? sim.pictures.face(look)
            : sim.pictures.scene(1, QString::fromStdString(sim.channelName(1)), look, rect);
        res.set_content(*jpeg, "image/jpeg");
    });
}

} // namespace devicesim
