// Device information, channel states, the alert stream and live video.
#include <QDateTime>
#include <QString>
#include <algorithm>
#include <chrono>
#include <httplib.h>
#include <thread>

#include "RtspServer.h"
#include "SimContext.h"
#include "SimHostile.h"
#include "SimHttp.h"
#include "SimRoutes.h"

namespace devicesim {

using httplib::Request;
using httplib::Response;

namespace {

void addAlertStream(httplib::Server& http, SimContext& sim)
{
    http.Get("/DVAPI/Event/notification/alertStream", [&sim](const Request&, Response& res) {
        auto sub = sim.hub.subscribe();
        sim.logLine("alert stream opened (%zu clients)", sim.hub.subscribers());
        using Clock = std::chrono::steady_clock;
        struct Times {
            Clock::time_point lastWrite = Clock::now();  // any part
            Clock::time_point lastBeat = Clock::now();   // keep-alives
        };
        auto times = std::make_shared<Times>();
        res.set_chunked_content_provider(std::string("multipart/mixed; boundary=") + kBoundary,
            [&sim, sub, times](size_t, httplib::DataSink& sink) {
                if (sim.alertSilent) {  // frozen: the connection stays open, nothing is sent
                    std::this_thread::sleep_for(std::chrono::milliseconds(100));
                    return !sim.stopping && !sub->dropped && sink.is_writable();
                }
                // A real device beats on its fixed period whether or not events
                // flow; the idle-only mode beats only while none does.
                const int keepAlive = sim.keepAliveMs;
                const Clock::time_point since = sim.keepAliveIdleOnly ? times->lastWrite : times->lastBeat;
                if (keepAlive > 0 && Clock::now() - since >= std::chrono::milliseconds(keepAlive)) {
                    const std::string part = keepAlivePart(keepAlive);
                    times->lastWrite = times->lastBeat = Clock::now();
                    return sink.write(part.data(), part.size());
                }
                Chunks ev;
                if (!AlertHub::next(*sub, ev, std::chrono::milliseconds(keepAlive > 0 ? std::clamp(keepAlive, 20, 200) : 200))) {
                    if (sim.stopping || sub->dropped)
                        return false;
                    return sink.is_writable();
                }
                times->lastWrite = Clock::now();
                for (const auto& c : ev)
                    if (!sink.write(c->data(), c->size()))
                        return false;
                return true;
            },
            [&sim, sub](bool) {
                sim.hub.unsubscribe(sub);
                sim.logLine("alert stream closed");
            });
    });
}

void addMjpegStream(httplib::Server& http, SimContext& sim)
{
    http.Get(R"(/DVAPI/Streaming/channels/(\d+)/mjpeg)", [&sim](const Request& req, Response& res) {
        const int ch = std::atoi(req.matches[1].str().c_str());
        if (ch < 1 || ch > sim.opts.channels || !sim.channelOnline(ch)) {
            sendStatus(res, 404, 4, "No such channel", 0);
            return;
        }
        const auto start = std::chrono::steady_clock::now();
        auto frameNo = std::make_shared<long long>(0);
        res.set_content_provider("multipart/x-mixed-replace; boundary=frame",
            [&sim, ch, start, frameNo](size_t, httplib::DataSink& sink) {
                if (sim.stopping || !sim.channelOnline(ch))
                    return false;
                const auto due =
                    start + std::chrono::microseconds(1000000LL * *frameNo / std::max(1, sim.opts.videoFps));
                std::this_thread::sleep_until(due);
                ++*frameNo;
                const QByteArray jpeg = sim.pictures.frame(ch, QString::fromStdString(sim.channelName(ch)),
                    QDateTime::currentMSecsSinceEpoch(), sim.opts.videoWidth, sim.opts.videoHeight);
                const std::string head = "--frame\r\nContent-Type: image/jpeg\r\nContent-Length: "
                    + std::to_string(jpeg.size()) + "\r\n\r\n";
                return sink.write(head.data(), head.size()) && sink.write(jpeg.constData(), size_t(jpeg.size()))
                    && sink.write("\r\n", 2);
            });
    });
}

} // namespace

void addStreamRoutes(httplib::Server& http, SimContext& sim)
{
    http.Get("/DVAPI/System/deviceInfo", [&sim](const Request&, Response& res) {
        res.set_content(std::string(kXmlHead) + "<DeviceInfo><deviceName>Thermal face camera</deviceName><serialNumber>"
                + xmlEscape(sim.opts.serial) + "</serialNumber><channels>" + std::to_string(sim.opts.channels)
                + "</channels></DeviceInfo>",
            "application/xml");
    });

    http.Get("/DVAPI/System/channels/status", [&sim](const Request&, Response& res) {
        nlohmann::json list = nlohmann::json::array();
        for (int ch = 1; ch <= sim.opts.channels; ++ch) {
            list.push_back({{"id", ch}, {"name", sim.channelName(ch)}, {"online", sim.channelOnline(ch)}});
            if (sim.opts.rtspPort > 0)
                list.back()["streams"] = RtspServer::describe(sim.opts, ch);
        }
        res.set_content(nlohmann::json{{"channels", list}}.dump(), "application/json");
    });

    addAlertStream(http, sim);
    addMjpegStream(http, sim);
}

} // namespace devicesim
