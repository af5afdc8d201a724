#pragma once
// What the emulator does to behave like real devices at their worst, for the
// tests of the host's defences: the alert stream's keep-alive part (sent while
// no event flows, as real devices do), silence on open alert streams without
// closing them, and answers whose body never ends. Any thread.
#include <string>

namespace httplib {
class Server;
struct Response;
}

namespace devicesim {

class SimContext;

// One keep-alive part of the alert stream: {"heartbeat":{"intervalSec":N,"dateTime":...}}.
std::string keepAlivePart(int intervalMs);

// Makes res an answer with this status whose body never ends (until the
// client goes away or the emulator stops).
void setEndlessBody(httplib::Response& res, int status, SimContext& sim);

// POST /control/alertStream/silence {"silent":true}: open alert streams stay
// open but carry nothing (no events, no keep-alives) until it is set false.
// POST /control/keepAlive {"ms":N,"mode":"fixed"|"idle"}: keep-alive period of
// the alert stream (0: none); "fixed" sends them on the period whether or not
// events flow, "idle" only while none does.
void addHostileRoutes(httplib::Server& http, SimContext& sim);

} // namespace devicesim
