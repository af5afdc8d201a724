// What the device says its face libraries support, and the control requests
// that replace that answer:
//   POST /control/capabilities {"faceLibrary":"<FaceDataLibraryCap>...</FaceDataLibraryCap>"}
//   DELETE /control/capabilities   (back to the default)
#include <httplib.h>
#include <nlohmann/json.hpp>

#include "SimContext.h"
#include "SimRoutes.h"

namespace devicesim {

void addCapabilityRoutes(httplib::Server& http, SimContext& sim)
{
    http.Get("/DVAPI/Intelligent/FDLib/capabilities", [&sim](const httplib::Request&, httplib::Response& res) {
        res.set_content(sim.capabilities.faceLibrary(), "application/xml");
    });
    http.Post("/control/capabilities", [&sim](const httplib::Request& req, httplib::Response& res) {
        const auto d = nlohmann::json::parse(req.body, nullptr, false);
        if (!d.is_object() || !d.contains("faceLibrary") || !d["faceLibrary"].is_string()) {
            res.status = 400;
            res.set_content(R"({"ok":false,"statusString":"faceLibrary missing"})", "application/json");
            return;
        }
        sim.capabilities.setFaceLibrary(d["faceLibrary"].get<std::string>());
        res.set_content(R"({"ok":true})", "application/json");
    });
    http.Delete("/control/capabilities", [&sim](const httplib::Request&, httplib::Response& res) {
        sim.capabilities.setFaceLibrary(std::string());
        res.set_content(R"({"ok":true})", "application/json");
    });
}

} // namespace devicesim
