#pragma once
// The emulated device: device API (digest-protected), alert stream, live
// video, and the unauthenticated control API used by tests and demos.
// main() owns the server: start() on its thread, run() blocks in the HTTP
// server (on a thread of its own) until stop() is called from another thread.
// The routes live in one file per area (SimRoutes.h) and share SimContext.
#include <memory>
#include <string>

#include "SimContext.h"
#include "SimOptions.h"

namespace httplib {
class Server;
struct Request;
struct Response;
}

namespace devicesim {

class SimServer final {
public:
    SimServer(const SimOptions& opts, RtspControl& rtsp);
    ~SimServer();

    bool start(std::string& error);  // opens the store and binds the port
    void run();                      // serves until stop()
    void stop();

private:
    void configureServer();
    bool checkDigest(const httplib::Request& req, httplib::Response& res);
    bool applyFault(const httplib::Request& req, httplib::Response& res);
    // Holds the request back for ms; false when its client closed the connection meanwhile.
    bool hold(const httplib::Request& req, int ms);

    SimContext m_sim;
    std::unique_ptr<httplib::Server> m_http;
    std::string m_nonce;
    const std::string m_realm = "DVAPI";
};

} // namespace devicesim
