#include "SimServer.h"

#include <chrono>
#include <httplib.h>
#include <arpa/inet.h>
#include <netinet/in.h>
#include <openssl/rand.h>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "SimHostile.h"
#include "SimHttp.h"
#include "SimRoutes.h"

namespace devicesim {

namespace {

std::map<std::string, std::string> parseDigest(const std::string& header)
{
    std::map<std::string, std::string> out;
    size_t i = header.find(' ');
    if (i == std::string::npos)
        return out;
    while (i < header.size()) {
        while (i < header.size() && (header[i] == ' ' || header[i] == ','))
            ++i;
        const size_t eq = header.find('=', i);
        if (eq == std::string::npos)
            break;
        const std::string key = header.substr(i, eq - i);
        std::string value;
        i = eq + 1;
        if (i < header.size() && header[i] == '"') {
            const size_t end = header.find('"', i + 1);
            if (end == std::string::npos)
                break;
            value = header.substr(i + 1, end - i - 1);
            i = end + 1;
        } else {
            const size_t end = header.find(',', i);
            value = header.substr(i, end == std::string::npos ? std::string::npos : end - i);
            i = end == std::string::npos ? header.size() : end;
        }
        out[key] = value;
    }
    return out;
}

// The connection a request came on: the server hands its handlers no socket,
// so it is found by the request's two ports. It stays open while the handler
// runs, so the descriptor cannot change under the caller.
int connectionOf(const httplib::Request& req)
{
    const int limit = int(sysconf(_SC_OPEN_MAX));
    for (int fd = 3; fd < limit && fd < 65536; ++fd) {
        sockaddr_storage peer{}, local{};
        socklen_t peerLen = sizeof peer, localLen = sizeof local;
        if (getpeername(fd, reinterpret_cast<sockaddr*>(&peer), &peerLen) != 0
            || getsockname(fd, reinterpret_cast<sockaddr*>(&local), &localLen) != 0)
            continue;
        auto portOf = [](const sockaddr_storage& a) {
            return a.ss_family == AF_INET6 ? ntohs(reinterpret_cast<const sockaddr_in6&>(a).sin6_port)
                                           : ntohs(reinterpret_cast<const sockaddr_in&>(a).sin_port);
        };
        if (portOf(peer) == req.remote_port && portOf(local) == req.local_port)
            return fd;
    }
    return -1;
}

// True when the client has closed (or reset) the connection.
bool clientGone(int fd)
{
    pollfd p{fd, POLLIN | POLLRDHUP, 0};
    if (poll(&p, 1, 0) <= 0)
        return false;
    if (p.revents & (POLLRDHUP | POLLHUP | POLLERR))
        return true;
    char c;
    return recv(fd, &c, 1, MSG_PEEK | MSG_DONTWAIT) == 0;
}

std::unique_ptr<httplib::Server> makeServer(const SimOptions& opts)
{
    if (opts.tlsCert.empty())
        return std::make_unique<httplib::Server>();
    return std::make_unique<httplib::SSLServer>(opts.tlsCert.c_str(), opts.tlsKey.c_str());
}

} // namespace

SimServer::SimServer(const SimOptions& opts, RtspControl& rtsp) : m_sim(opts, rtsp), m_http(makeServer(opts))
{
    unsigned char raw[16];
    RAND_bytes(raw, sizeof raw);
    m_nonce = md5hex(std::string(reinterpret_cast<char*>(raw), sizeof raw));
}

SimServer::~SimServer()
{
    stop();
}

bool SimServer::start(std::string& error)
{
    if (!m_sim.openLog(error))
        return false;
    if (!m_sim.store.open(m_sim.opts.db, error))
        return false;
    if (!m_http->is_valid()) {
        error = "cannot load the TLS certificate or key";
        return false;
    }
    configureServer();
    addStreamRoutes(*m_http, m_sim);
    addCapabilityRoutes(*m_http, m_sim);
    addFaceLibraryRoutes(*m_http, m_sim);
    addHfpdRoutes(*m_http, m_sim);
    addSdkRoutes(*m_http, m_sim);
    addControlRoutes(*m_http, m_sim);
    addHostileRoutes(*m_http, m_sim);

    const SimOptions& o = m_sim.opts;
    if (!m_http->bind_to_port(o.listen, o.port)) {
        error = "cannot listen on " + o.listen + ":" + std::to_string(o.port);
        return false;
    }
    m_sim.hub.startGenerator([this] {
        SimEvent ev;
        if (m_sim.randomEvent(ev))
            m_sim.hub.publish(EventFactory::serialize(ev));
    });
    m_sim.logLine("devicesim %s listening on %s:%d, %d channels, %.2f events/s, seed %u", o.serial.c_str(),
        o.listen.c_str(), o.port, o.channels, o.rate, o.seed);
    return true;
}

void SimServer::configureServer()
{
    // Every live stream and alert stream holds a worker: room for many.
    m_http->new_task_queue = [] { return new httplib::ThreadPool(64); };
    m_http->set_keep_alive_max_count(1000);
    // Headers and body go out in separate writes: without this every answer
    // waits for the client's delayed acknowledgement (about 40 ms).
    m_http->set_tcp_nodelay(true);
    m_http->set_read_timeout(10, 0);
    m_http->set_write_timeout(10, 0);
    m_http->set_payload_max_length(64 * 1024 * 1024);
    m_http->set_logger([this](const httplib::Request& req, const httplib::Response& res) {
        m_sim.logLine("%s %s %d %zu", req.method.c_str(), req.target.c_str(), res.status, res.body.size());
    });
    m_http->set_pre_routing_handler([this](const httplib::Request& req, httplib::Response& res) {
        if (req.path.compare(0, 9, "/control/") == 0)
            return httplib::Server::HandlerResponse::Unhandled;
        if (!checkDigest(req, res))
            return httplib::Server::HandlerResponse::Handled;
        return applyFault(req, res) ? httplib::Server::HandlerResponse::Handled
                                    : httplib::Server::HandlerResponse::Unhandled;
    });
    m_http->set_exception_handler([this](const httplib::Request& req, httplib::Response& res, std::exception_ptr ep) {
        std::string what = "unknown error";
        try {
            std::rethrow_exception(ep);
        } catch (const std::exception& e) {
            what = e.what();
        } catch (...) {
        }
        m_sim.logLine("%s %s failed: %s", req.method.c_str(), req.path.c_str(), what.c_str());
        sendJsonError(res, 400, what);
    });
    m_http->set_post_routing_handler([this](const httplib::Request& req, httplib::Response& res) {
        if (res.has_header("X-Sim-Answer-Delay")) {
            const int ms = std::atoi(res.get_header_value("X-Sim-Answer-Delay").c_str());
            res.headers.erase("X-Sim-Answer-Delay");
            hold(req, ms);
        }
        if (res.has_header("X-Sim-Malformed")) {
            res.body = res.body.substr(0, res.body.size() / 2) + "<<\x01garbage{[";
            res.headers.erase("X-Sim-Malformed");
            res.headers.erase("Content-Length");
            res.set_header("Content-Length", std::to_string(res.body.size()));
        }
    });
}

void SimServer::run()
{
    m_http->listen_after_bind();
}

void SimServer::stop()
{
    if (m_sim.stopping.exchange(true))
        return;
    m_sim.hub.stop();
    m_http->stop();
}

bool SimServer::checkDigest(const httplib::Request& req, httplib::Response& res)
{
    const SimOptions& o = m_sim.opts;
    const std::string auth = req.get_header_value("Authorization");
    if (auth.compare(0, 7, "Digest ") == 0) {
        auto p = parseDigest(auth);
        const std::string ha1 = md5hex(o.user + ":" + m_realm + ":" + o.password);
        const std::string ha2 = md5hex(req.method + ":" + p["uri"]);
        const std::string expected = md5hex(ha1 + ":" + p["nonce"] + ":" + p["nc"] + ":" + p["cnonce"] + ":auth:" + ha2);
        if (p["username"] == o.user && p["realm"] == m_realm && p["qop"] == "auth" && p["nonce"] == m_nonce
            && p["uri"] == req.target && p["response"] == expected)
            return true;
        m_sim.logLine("auth failed for %s %s (user %s)", req.method.c_str(), req.path.c_str(), p["username"].c_str());
    }
    res.status = 401;
    res.set_header("WWW-Authenticate",
        "Digest realm=\"" + m_realm + "\", qop=\"auth\", nonce=\"" + m_nonce + "\", algorithm=MD5");
    res.set_content(statusXml(4, "Unauthorized", 401), "application/xml");
    return false;
}

bool SimServer::applyFault(const httplib::Request& req, httplib::Response& res)
{
    Fault fault;
    {
        std::lock_guard<std::mutex> lock(m_sim.mutex);
        auto& faults = m_sim.faults;
        auto best = faults.end();
        for (auto it = faults.begin(); it != faults.end(); ++it)
            // Against the target, so a query can tell request kinds apart (a face
            // thumbnail from its scene); a path prefix is a prefix of it as well.
            if (req.target.compare(0, it->first.size(), it->first) == 0 && it->second.remaining != 0
                && (best == faults.end() || it->first.size() > best->first.size()))
                best = it;
        if (best == faults.end())
            return false;
        fault = best->second;
        if (best->second.remaining > 0)
            --best->second.remaining;
    }
    m_sim.logLine("fault on %s: delay %d answer delay %d drop %d status %d malformed %d", req.path.c_str(),
        fault.delayMs, fault.answerDelayMs, fault.drop, fault.status, fault.malformed);
    if (!hold(req, fault.delayMs)) {
        res.status = 499;  // nobody to answer; the request is not carried out
        return true;
    }
    if (fault.answerDelayMs > 0)
        res.set_header("X-Sim-Answer-Delay", std::to_string(fault.answerDelayMs));
    if (fault.endless) {
        setEndlessBody(res, fault.status != 0 ? fault.status : 200, m_sim);
        return true;
    }
    if (fault.drop) {
        res.set_content_provider(4096, "application/xml", [](size_t, size_t, httplib::DataSink& sink) {
            sink.write("<?xml version=\"1.0\"?><Resp", 26);
            return false;
        });
        return true;
    }
    if (fault.status != 0) {
        sendStatus(res, fault.status, 6, "Injected failure", fault.subStatus);
        return true;
    }
    if (fault.malformed)
        res.set_header("X-Sim-Malformed", "1");
    return false;
}

bool SimServer::hold(const httplib::Request& req, int ms)
{
    if (ms <= 0)
        return true;
    const int fd = connectionOf(req);
    ++m_sim.delaying;
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    while (std::chrono::steady_clock::now() < until && !m_sim.stopping) {
        if (fd >= 0 && clientGone(fd)) {
            ++m_sim.clientsGone;
            m_sim.logLine("client of %s %s closed the connection while it was held back", req.method.c_str(),
                req.path.c_str());
            --m_sim.delaying;
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    --m_sim.delaying;
    return true;
}

} // namespace devicesim
