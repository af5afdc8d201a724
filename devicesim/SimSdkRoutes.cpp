// The device-SDK functions carried over HTTP: channel mapping and the batch
// face upload.
#include <QByteArray>
#include <cstring>
#include <httplib.h>

#include "SimContext.h"
#include "SimHttp.h"
#include "SimRoutes.h"

namespace devicesim {

using httplib::Request;
using httplib::Response;

namespace {

uint32_t le32(const std::string& s, size_t at)
{
    if (s.size() < at + 4)
        return 0;
    return uint32_t(uint8_t(s[at])) | uint32_t(uint8_t(s[at + 1])) << 8 | uint32_t(uint8_t(s[at + 2])) << 16
        | uint32_t(uint8_t(s[at + 3])) << 24;
}

std::string fromBase64(const std::string& text)
{
    return QByteArray::fromBase64(QByteArray::fromStdString(text)).toStdString();
}

} // namespace

void addSdkRoutes(httplib::Server& http, SimContext& sim)
{
    http.Post("/DVAPI/SDK/passThrough", [&sim](const Request& req, Response& res) {
        auto j = nlohmann::json::parse(req.body, nullptr, false);
        if (!j.is_object() || !j.contains("function") || !j["function"].is_string()) {
            sendJsonError(res, 400, "Invalid Content");
            return;
        }
        const std::string fn = j["function"];
        std::vector<std::string> params;
        if (j.contains("params") && j["params"].is_array())
            for (const auto& p : j["params"])
                if (p.is_string())
                    params.push_back(fromBase64(p.get<std::string>()));
        if (fn != "DEV_SDKChannelToDVAPI") {
            sendJsonError(res, 400, "Unknown function", 23);
            return;
        }
        // SDK channels 1..N and IP channels 33..32+N map to device-API channels 1..N.
        const int sdk = params.empty() ? 0 : std::atoi(params[0].c_str());
        int mapped = 0;
        if (sdk >= 1 && sdk <= sim.opts.channels)
            mapped = sdk;
        else if (sdk >= 33 && sdk < 33 + sim.opts.channels)
            mapped = sdk - 32;
        if (mapped == 0) {
            sendJsonError(res, 400, "Invalid channel", 17);
            return;
        }
        const std::string text = std::to_string(mapped);
        res.set_content(nlohmann::json{{"statusCode", 1},
                                       {"data", QByteArray::fromStdString(text).toBase64().toStdString()}}.dump(),
            "application/json");
    });

    http.Post("/DVAPI/SDK/batch", [&sim](const Request& req, Response& res) {
        auto j = nlohmann::json::parse(req.body, nullptr, false);
        if (!j.is_object() || j.value("command", 0u) != 9005u) {
            sendJsonError(res, 400, "Unsupported command");
            return;
        }
        const std::string cond = fromBase64(j.value("condition", std::string()));
        if (cond.size() != 388 || le32(cond, 0) != 388) {
            sendJsonError(res, 400, "Invalid condition");
            return;
        }
        const std::string fdid(cond.c_str() + 4, strnlen(cond.c_str() + 4, 256));
        FaceRecord rec;
        rec.FDID = fdid;
        rec.xml = j.value("xml", std::string());
        rec.name = tagText(rec.xml, "name");
        rec.picture = fromBase64(j.value("picture", std::string()));
        nlohmann::json result;
        if (rec.picture.size() < 4 || uint8_t(rec.picture[0]) != 0xFF || uint8_t(rec.picture[1]) != 0xD8) {
            result = {{"state", 3}, {"subStatus", 0}};
        } else {
            switch (sim.store.addRecord(rec)) {
            case SimStore::AddResult::Added: result = {{"state", 1}, {"subStatus", 0}, {"PID", rec.PID}}; break;
            case SimStore::AddResult::Full: result = {{"state", 10}, {"subStatus", 843}}; break;
            case SimStore::AddResult::NoLibrary: result = {{"state", 3}, {"subStatus", 0}}; break;
            case SimStore::AddResult::Error: result = {{"state", 6}, {"subStatus", 0}}; break;
            }
        }
        sim.logLine("face upload to library %s: state %d", fdid.c_str(), result["state"].get<int>());
        res.set_content(nlohmann::json{{"finished", true}, {"results", nlohmann::json::array({result})}}.dump(),
            "application/json");
    });
}

} // namespace devicesim
