#include "SimHostile.h"

#include <QDateTime>
#include <algorithm>
#include <httplib.h>

#include "EventFactory.h"
#include "SimContext.h"
#include "SimHttp.h"

namespace devicesim {

std::string keepAlivePart(int intervalMs)
{
    const nlohmann::json doc = {{"heartbeat",
        {{"intervalSec", (intervalMs + 999) / 1000},
            {"dateTime", QDateTime::currentDateTimeUtc().toString(Qt::ISODate).toStdString()}}}};
    const std::string body = doc.dump();
    return std::string("--") + kBoundary + "\r\nContent-Type: application/json\r\nContent-Length: "
        + std::to_string(body.size()) + "\r\n\r\n" + body + "\r\n";
}

void setEndlessBody(httplib::Response& res, int status, SimContext& sim)
{
    res.status = status;
    const auto chunk = std::make_shared<const std::string>(64 * 1024, 'x');
    res.set_chunked_content_provider(status >= 300 ? "text/html" : "application/xml",
        [&sim, chunk](size_t, httplib::DataSink& sink) {
            return !sim.stopping && sink.write(chunk->data(), chunk->size());
        });
}

void addHostileRoutes(httplib::Server& http, SimContext& sim)
{
    http.Post("/control/alertStream/silence", [&sim](const httplib::Request& req, httplib::Response& res) {
        nlohmann::json d;
        if (!readJsonBody(req, res, d))
            return;
        sim.alertSilent = d.value("silent", true);
        sim.logLine("alert streams %s", sim.alertSilent ? "fall silent" : "speak again");
        sendOk(res);
    });
    http.Post("/control/keepAlive", [&sim](const httplib::Request& req, httplib::Response& res) {
        nlohmann::json d;
        if (!readJsonBody(req, res, d))
            return;
        sim.keepAliveMs = std::max(0, d.value("ms", sim.opts.keepAliveMs));
        const std::string mode = d.value("mode", std::string());
        if (mode == "fixed" || mode == "idle")
            sim.keepAliveIdleOnly = mode == "idle";
        sendOk(res);
    });
}

} // namespace devicesim
