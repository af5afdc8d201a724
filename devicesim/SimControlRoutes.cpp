// The unauthenticated control API of tests and demos: inject events and
// bursts, faults, channel states, run-time settings, libraries, statistics.
#include <QByteArray>
#include <httplib.h>

#include "SimContext.h"
#include "SimHttp.h"
#include "SimRoutes.h"

namespace devicesim {

using httplib::Request;
using httplib::Response;

namespace {

// A picture the caller supplied (base64), or none.
Jpeg suppliedJpeg(const nlohmann::json& d, const char* key)
{
    if (!d.contains(key) || !d[key].is_string())
        return nullptr;
    const QByteArray raw = QByteArray::fromBase64(QByteArray::fromStdString(d[key].get<std::string>()));
    return std::make_shared<const std::string>(raw.constData(), size_t(raw.size()));
}

void addEventInjection(httplib::Server& http, SimContext& sim)
{
    http.Post("/control/event", [&sim](const Request& req, Response& res) {
        nlohmann::json d;
        if (!readJsonBody(req, res, d))
            return;
        std::string error;
        SimEvent ev;
        {
            std::lock_guard<std::mutex> lock(sim.mutex);
            ev = sim.events.fromDescription(sim.rng, d, error);
        }
        if (!error.empty()) {
            sendJsonError(res, 400, error);
            return;
        }
        sim.hub.publish(EventFactory::serialize(ev));
        sendOk(res, {{"eventID", ev.doc.value("eventID", std::string())}, {"clients", sim.hub.subscribers()}});
    });

    http.Post("/control/burst", [&sim](const Request& req, Response& res) {
        nlohmann::json d;
        if (!readJsonBody(req, res, d))
            return;
        const int count = d.value("count", 100);
        const unsigned code = d.value("eventCode", 100119u);
        // Pictures are encoded once and shared by every event of the burst;
        // the caller may supply its own scene and face JPEGs.
        const Jpeg scene = suppliedJpeg(d, "scene");
        const Jpeg face = suppliedJpeg(d, "face");
        std::vector<Chunks> events;
        events.reserve(size_t(std::max(0, count)));
        {
            std::lock_guard<std::mutex> lock(sim.mutex);
            for (int i = 0; i < count; ++i) {
                SimEvent ev = sim.events.generate(sim.rng, 1 + i % sim.opts.channels, code, 1);
                for (auto& p : ev.pictures) {
                    if (scene && p.first.compare(0, 2, "bk") == 0)
                        p.second.data = scene;
                    else if (face && p.first.compare(0, 3, "sub") == 0)
                        p.second.data = face;
                }
                events.push_back(EventFactory::serialize(ev));
            }
        }
        for (const Chunks& ev : events)
            sim.hub.publish(ev);
        sendOk(res, {{"count", count}});
    });
}

void addFaultInjection(httplib::Server& http, SimContext& sim)
{
    http.Post("/control/fault", [&sim](const Request& req, Response& res) {
        nlohmann::json d;
        if (!readJsonBody(req, res, d))
            return;
        Fault f;
        f.delayMs = d.value("delayMs", 0);
        f.answerDelayMs = d.value("answerDelayMs", 0);
        f.drop = d.value("drop", false);
        f.status = d.value("status", 0);
        f.subStatus = d.value("subStatus", 0);
        f.malformed = d.value("malformed", false);
        f.endless = d.value("endless", false);
        f.remaining = d.value("count", -1);
        {
            std::lock_guard<std::mutex> lock(sim.mutex);
            sim.faults[d.value("path", std::string("/"))] = f;
        }
        sendOk(res);
    });
    http.Delete("/control/fault", [&sim](const Request&, Response& res) {
        {
            std::lock_guard<std::mutex> lock(sim.mutex);
            sim.faults.clear();
        }
        sendOk(res);
    });

    // A misbehaving RTSP stream: {"path":"/ch1/h264/sub", "keyFrames":false,
    // "width":N, "height":N, "loss":SHARE}; DELETE puts every stream right.
    http.Post("/control/rtsp", [&sim](const Request& req, Response& res) {
        nlohmann::json d;
        if (!readJsonBody(req, res, d))
            return;
        RtspFault f;
        f.dropKeyFrames = !d.value("keyFrames", true);
        f.width = d.value("width", 0);
        f.height = d.value("height", 0);
        f.loss = d.value("loss", 0.0);
        if (f.width < 0 || f.height < 0 || f.width % 2 != 0 || f.height % 2 != 0 || (f.width == 0) != (f.height == 0)
            || f.loss < 0 || f.loss > 1) {
            sendJsonError(res, 400, "width and height: both even or both 0; loss: 0 to 1");
            return;
        }
        sim.rtsp.setFault(d.value("path", std::string("/")), f);
        sendOk(res);
    });
    http.Delete("/control/rtsp", [&sim](const Request&, Response& res) {
        sim.rtsp.clearFaults();
        sendOk(res);
    });
}

void addDeviceState(httplib::Server& http, SimContext& sim)
{
    http.Post("/control/channel", [&sim](const Request& req, Response& res) {
        nlohmann::json d;
        if (!readJsonBody(req, res, d))
            return;
        sim.setChannelOnline(d.value("channel", 1), d.value("online", true));
        sendOk(res);
    });

    http.Post("/control/alertStream/drop", [&sim](const Request&, Response& res) {
        sim.hub.dropAll();
        sendOk(res);
    });

    http.Post("/control/settings", [&sim](const Request& req, Response& res) {
        nlohmann::json d;
        if (!readJsonBody(req, res, d))
            return;
        if (d.contains("rate"))
            sim.hub.setRate(d.value("rate", 2.0));
        if (d.contains("hfpdPolls"))
            sim.setHfpdPollsNeeded(d.value("hfpdPolls", 3));
        {
            std::lock_guard<std::mutex> lock(sim.mutex);
            if (d.contains("abnormalShare"))
                sim.events.abnormalShare = d.value("abnormalShare", 0.1);
            if (d.contains("unit"))
                sim.events.unit = d.value("unit", std::string("C")) == "F" ? 'F' : 'C';
        }
        sendOk(res);
    });

    http.Post("/control/library", [&sim](const Request& req, Response& res) {
        nlohmann::json d;
        if (!readJsonBody(req, res, d))
            return;
        Library l;
        l.FDID = d.value("FDID", std::string());
        l.name = d.value("name", l.FDID);
        l.type = d.value("type", std::string("normal"));
        l.capacity = d.value("capacity", 1000);
        if (l.FDID.empty()) {
            sendJsonError(res, 400, "FDID missing");
            return;
        }
        sim.store.putLibrary(l);
        sendOk(res);
    });
}

void addInspection(httplib::Server& http, SimContext& sim)
{
    http.Get("/control/uploads", [&sim](const Request& req, Response& res) {
        nlohmann::json list = nlohmann::json::array();
        for (const FaceRecord& r : sim.store.records(req.get_param_value("FDID"), false))
            list.push_back({{"PID", r.PID}, {"FDID", r.FDID}, {"name", r.name}, {"xml", r.xml},
                {"pictureSize", r.pictureSize}, {"created", r.created}});
        res.set_content(nlohmann::json{{"records", list}}.dump(), "application/json");
    });

    http.Get("/control/stats", [&sim](const Request&, Response& res) {
        res.set_content(nlohmann::json{{"clients", sim.hub.subscribers()}, {"published", sim.hub.published()},
                                       {"rate", sim.hub.rate()}, {"rtspConnections", sim.rtsp.connections()}, {"delaying", sim.delaying.load()},
                                       {"clientsGone", sim.clientsGone.load()}}.dump(),
            "application/json");
    });
}

} // namespace

void addControlRoutes(httplib::Server& http, SimContext& sim)
{
    addEventInjection(http, sim);
    addFaultInjection(http, sim);
    addDeviceState(http, sim);
    addInspection(http, sim);
}

} // namespace devicesim
