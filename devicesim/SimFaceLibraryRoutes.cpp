// Face libraries, their records, the person-information extensions and the
// city codes the add-to-library dialog reads.
#include <httplib.h>

#include "SimContext.h"
#include "SimHttp.h"
#include "SimRoutes.h"

namespace devicesim {

using httplib::Request;
using httplib::Response;

namespace {

std::string extendListXml()
{
    return "<PersonInfoExtendList>"
           "<PersonInfoExtend><id>1</id><enable>true</enable><name>Department</name><value></value></PersonInfoExtend>"
           "<PersonInfoExtend><id>2</id><enable>true</enable><name>Employee No.</name><value></value></PersonInfoExtend>"
           "<PersonInfoExtend><id>3</id><enable>false</enable><name>Remark</name><value></value></PersonInfoExtend>"
           "</PersonInfoExtendList>";
}

std::string faceRecordXml(const FaceRecord& r)
{
    // The uploaded person document carries the fields; PID and FDID are ours.
    std::string inner = tagText(r.xml, "FaceAppendData");
    if (inner.empty())
        inner = "<name>" + xmlEscape(r.name) + "</name>";
    return std::string(kXmlHead) + "<FaceAppendData>" + inner + "<FDID>" + xmlEscape(r.FDID) + "</FDID><PID>"
        + r.PID + "</PID><picURL>/DVAPI/Intelligent/FDLib/" + r.FDID + "/picture/" + r.PID
        + "/image</picURL></FaceAppendData>";
}

nlohmann::json province(const char* code, const char* name, std::initializer_list<std::pair<const char*, const char*>> cities)
{
    nlohmann::json list = nlohmann::json::array();
    for (const auto& c : cities)
        list.push_back({{"cityCode", c.first}, {"cityName", c.second}});
    return {{"provinceCode", code}, {"provinceName", name}, {"cities", list}};
}

} // namespace

void addFaceLibraryRoutes(httplib::Server& http, SimContext& sim)
{
    http.Get("/DVAPI/Intelligent/FDLib", [&sim](const Request&, Response& res) {
        std::string xml = std::string(kXmlHead) + "<FDLibBaseCfgList>";
        int id = 1;
        for (const Library& l : sim.store.libraries())
            xml += "<FDLibBaseCfg><id>" + std::to_string(id++) + "</id><FDID>" + xmlEscape(l.FDID) + "</FDID><name>"
                + xmlEscape(l.name) + "</name><faceLibType>" + xmlEscape(l.type) + "</faceLibType><capacity>"
                + std::to_string(l.capacity) + "</capacity><count>" + std::to_string(l.count) + "</count></FDLibBaseCfg>";
        res.set_content(xml + "</FDLibBaseCfgList>", "application/xml");
    });

    http.Get(R"(/DVAPI/Intelligent/FDLib/([^/]+)/picture/([^/]+)/image)", [&sim](const Request& req, Response& res) {
        FaceRecord r;
        if (!sim.store.record(req.matches[1], req.matches[2], r)) {
            sendStatus(res, 404, 4, "No such record", 0);
            return;
        }
        res.set_content(r.picture, "image/jpeg");
    });

    http.Get(R"(/DVAPI/Intelligent/FDLib/([^/]+)/picture/([^/]+))", [&sim](const Request& req, Response& res) {
        FaceRecord r;
        if (!sim.store.record(req.matches[1], req.matches[2], r)) {
            sendStatus(res, 404, 4, "No such record", 0);
            return;
        }
        res.set_content(faceRecordXml(r), "application/xml");
    });

    http.Post("/DVAPI/Intelligent/FDLib/FDSearch", [&sim](const Request& req, Response& res) {
        const std::string& cond = req.body;
        if (cond.find("<FaceAppendData") == std::string::npos) {
            sendStatus(res, 400, 6, "Invalid Content", 0);
            return;
        }
        const std::string name = tagText(cond, "name");
        const std::string fdid = tagText(cond, "FDID");
        std::string list;
        int n = 0;
        for (const FaceRecord& r : sim.store.records(fdid, false)) {
            if (!name.empty() && r.name.find(name) == std::string::npos)
                continue;
            ++n;
            list += "<MatchElement>" + tagText(faceRecordXml(r), "FaceAppendData") + "</MatchElement>";
        }
        res.set_content(std::string(kXmlHead) + "<FDSearchResult><responseStatus>true</responseStatus><numOfMatches>"
                + std::to_string(n) + "</numOfMatches><totalMatches>" + std::to_string(n)
                + "</totalMatches><MatchList>" + list + "</MatchList></FDSearchResult>",
            "application/xml");
    });

    auto extend = [](const Request&, Response& res) {
        res.set_content(std::string(kXmlHead) + extendListXml(), "application/xml");
    };
    http.Get(R"(/DVAPI/Intelligent/faceContrast/personInfoExtend/FDID/([^/]+))", extend);
    http.Get("/DVAPI/Intelligent/faceContrast/personInfoExtend", extend);

    http.Get("/DVAPI/System/cityCode", [](const Request&, Response& res) {
        const nlohmann::json provinces = nlohmann::json::array({
            province("11", "Beijing", {{"01", "Shixiaqu"}}),
            province("44", "Guangdong", {{"01", "Guangzhou"}, {"03", "Shenzhen"}, {"04", "Zhuhai"}}),
            province("46", "Hainan", {{"01", "Haikou"}, {"02", "Sanya"}, {"90", "Shengzhixia"}}),
        });
        res.set_content(nlohmann::json{{"CityCode", provinces}}.dump(), "application/json");
    });
}

} // namespace devicesim
