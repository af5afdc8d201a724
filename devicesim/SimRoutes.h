#pragma once
// The route areas of the emulator. Each function registers its area's
// handlers on the server; SimServer::start calls one per area. A new area
// lives in its own file and adds one declaration here and one call there.
// Handlers run on the HTTP worker threads and share the SimContext.
namespace httplib {
class Server;
}

namespace devicesim {

class SimContext;

void addStreamRoutes(httplib::Server& http, SimContext& sim);       // device info, channels, alerts, video
void addFaceLibraryRoutes(httplib::Server& http, SimContext& sim);  // libraries, records, extensions, city codes
void addHfpdRoutes(httplib::Server& http, SimContext& sim);         // returning-person records and pictures
void addSdkRoutes(httplib::Server& http, SimContext& sim);          // SDK pass-through and face upload
void addControlRoutes(httplib::Server& http, SimContext& sim);      // /control/: tests and demos
void addCapabilityRoutes(httplib::Server& http, SimContext& sim);   // face-library capability, replaceable

} // namespace devicesim
