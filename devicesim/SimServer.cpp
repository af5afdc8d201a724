#include "SimServer.h"
#include "RtspServer.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <chrono>
#include <cstdarg>
#include <httplib.h>
#include <openssl/evp.h>
#include <openssl/rand.h>
#include <regex>
#include <thread>

namespace devicesim {

namespace {

std::string md5hex(const std::string& s)
{
    unsigned char md[EVP_MAX_MD_SIZE];
    unsigned int len = 0;
    EVP_Digest(s.data(), s.size(), md, &len, EVP_md5(), nullptr);
    static const char* hex = "0123456789abcdef";
    std::string out;
    for (unsigned i = 0; i < len; ++i) {
        out += hex[md[i] >> 4];
        out += hex[md[i] & 15];
    }
    return out;
}

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

std::string xmlEscape(const std::string& s)
{
    std::string out;
    for (char c : s) {
        switch (c) {
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '&': out += "&amp;"; break;
        case '"': out += "&quot;"; break;
        default: out += c;
        }
    }
    return out;
}

// The text of the first <tag>...</tag> of a small document we produced or
// accept; good enough for the emulator's own needs.
std::string tagText(const std::string& xml, const std::string& tag)
{
    const std::string open = "<" + tag + ">";
    const size_t a = xml.find(open);
    if (a == std::string::npos)
        return std::string();
    const size_t b = xml.find("</" + tag + ">", a);
    if (b == std::string::npos)
        return std::string();
    return xml.substr(a + open.size(), b - a - open.size());
}

std::string statusXml(int statusCode, const std::string& text, int subStatus)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ResponseStatus><statusCode>" + std::to_string(statusCode)
        + "</statusCode><statusString>" + xmlEscape(text) + "</statusString><subStatusCode>"
        + std::to_string(subStatus) + "</subStatusCode></ResponseStatus>";
}

void sendStatus(httplib::Response& res, int http, int statusCode, const std::string& text, int subStatus)
{
    res.status = http;
    res.set_content(statusXml(statusCode, text, subStatus), "application/xml");
}

void sendJsonError(httplib::Response& res, int http, const std::string& text, int subStatus = 0)
{
    res.status = http;
    res.set_content(nlohmann::json{{"statusCode", 4}, {"statusString", text}, {"subStatusCode", subStatus}}.dump(),
        "application/json");
}

const char* kXmlHead = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

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

uint32_t le32(const std::string& s, size_t at)
{
    if (s.size() < at + 4)
        return 0;
    return uint32_t(uint8_t(s[at])) | uint32_t(uint8_t(s[at + 1])) << 8 | uint32_t(uint8_t(s[at + 2])) << 16
        | uint32_t(uint8_t(s[at + 3])) << 24;
}

} // namespace

SimServer::SimServer(SimOptions opts)
    : m_opts(std::move(opts)),
      m_http(m_opts.tlsCert.empty()
              ? std::make_unique<httplib::Server>()
              : std::unique_ptr<httplib::Server>(std::make_unique<httplib::SSLServer>(m_opts.tlsCert.c_str(), m_opts.tlsKey.c_str()))),
      m_pictures(m_opts.sceneWidth, m_opts.sceneHeight),
      m_events(m_opts, m_pictures),
      m_rng(m_opts.seed)
{
    unsigned char raw[16];
    RAND_bytes(raw, sizeof raw);
    m_nonce = md5hex(std::string(reinterpret_cast<char*>(raw), sizeof raw));
    m_hub.setRate(m_opts.rate);
}

SimServer::~SimServer()
{
    stop();
    if (m_log && m_log != stderr)
        fclose(m_log);
}

void SimServer::logLine(const char* fmt, ...)
{
    std::lock_guard<std::mutex> lock(m_logMutex);
    const std::string when = QDateTime::currentDateTime().toString(QStringLiteral("hh:mm:ss.zzz")).toStdString();
    fprintf(m_log, "%s ", when.c_str());
    va_list ap;
    va_start(ap, fmt);
    vfprintf(m_log, fmt, ap);
    va_end(ap);
    fputc('\n', m_log);
    fflush(m_log);
}

bool SimServer::start(std::string& error)
{
    if (!m_opts.log.empty()) {
        m_log = fopen(m_opts.log.c_str(), "a");
        if (!m_log) {
            m_log = stderr;
            error = "cannot open log " + m_opts.log;
            return false;
        }
    }
    if (!m_store.open(m_opts.db, error))
        return false;
    if (!m_http->is_valid()) {
        error = "cannot load the TLS certificate or key";
        return false;
    }
    // Every live stream and alert stream holds a worker: room for many.
    m_http->new_task_queue = [] { return new httplib::ThreadPool(64); };
    m_http->set_keep_alive_max_count(1000);
    m_http->set_read_timeout(10, 0);
    m_http->set_write_timeout(10, 0);
    m_http->set_payload_max_length(64 * 1024 * 1024);
    m_http->set_logger([this](const httplib::Request& req, const httplib::Response& res) {
        logLine("%s %s %d %zu", req.method.c_str(), req.target.c_str(), res.status, res.body.size());
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
        logLine("%s %s failed: %s", req.method.c_str(), req.path.c_str(), what.c_str());
        sendJsonError(res, 400, what);
    });
    m_http->set_post_routing_handler([](const httplib::Request&, httplib::Response& res) {
        if (res.has_header("X-Sim-Malformed")) {
            res.body = res.body.substr(0, res.body.size() / 2) + "<<\x01garbage{[";
            res.headers.erase("X-Sim-Malformed");
            res.headers.erase("Content-Length");
            res.set_header("Content-Length", std::to_string(res.body.size()));
        }
    });
    routeDevice();
    routeControl();
    if (!m_http->bind_to_port(m_opts.listen, m_opts.port)) {
        error = "cannot listen on " + m_opts.listen + ":" + std::to_string(m_opts.port);
        return false;
    }
    m_hub.startGenerator([this] { generateOne(); });
    logLine("devicesim %s listening on %s:%d, %d channels, %.2f events/s, seed %u", m_opts.serial.c_str(),
        m_opts.listen.c_str(), m_opts.port, m_opts.channels, m_opts.rate, m_opts.seed);
    return true;
}

void SimServer::run()
{
    m_http->listen_after_bind();
}

void SimServer::stop()
{
    if (m_stopping.exchange(true))
        return;
    m_hub.stop();
    m_http->stop();
}

bool SimServer::checkDigest(const httplib::Request& req, httplib::Response& res)
{
    const std::string auth = req.get_header_value("Authorization");
    if (auth.compare(0, 7, "Digest ") == 0) {
        auto p = parseDigest(auth);
        const std::string ha1 = md5hex(m_opts.user + ":" + m_realm + ":" + m_opts.password);
        const std::string ha2 = md5hex(req.method + ":" + p["uri"]);
        const std::string expected = md5hex(ha1 + ":" + p["nonce"] + ":" + p["nc"] + ":" + p["cnonce"] + ":auth:" + ha2);
        if (p["username"] == m_opts.user && p["realm"] == m_realm && p["qop"] == "auth" && p["nonce"] == m_nonce
            && p["uri"] == req.target && p["response"] == expected)
            return true;
        logLine("auth failed for %s %s (user %s)", req.method.c_str(), req.path.c_str(), p["username"].c_str());
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
        std::lock_guard<std::mutex> lock(m_mutex);
        auto best = m_faults.end();
        for (auto it = m_faults.begin(); it != m_faults.end(); ++it)
            if (req.path.compare(0, it->first.size(), it->first) == 0 && it->second.remaining != 0
                && (best == m_faults.end() || it->first.size() > best->first.size()))
                best = it;
        if (best == m_faults.end())
            return false;
        fault = best->second;
        if (best->second.remaining > 0)
            --best->second.remaining;
    }
    logLine("fault on %s: delay %d drop %d status %d malformed %d", req.path.c_str(), fault.delayMs, fault.drop,
        fault.status, fault.malformed);
    for (int waited = 0; waited < fault.delayMs && !m_stopping; waited += 20)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
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

bool SimServer::channelOnline(int ch)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    auto it = m_offline.find(ch);
    return it == m_offline.end() || !it->second;
}

void SimServer::generateOne()
{
    int channel = 0;
    SimEvent ev;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        for (int tries = 0; tries < m_opts.channels && channel == 0; ++tries) {
            const int ch = 1 + std::uniform_int_distribution<int>(0, m_opts.channels - 1)(m_rng);
            auto it = m_offline.find(ch);
            if (it == m_offline.end() || !it->second)
                channel = ch;
        }
        if (channel == 0)
            return;
        ev = m_events.generate(m_rng, channel, 0, -1);
    }
    m_hub.publish(EventFactory::serialize(ev));
}

void SimServer::routeDevice()
{
    using httplib::Request;
    using httplib::Response;
    auto& s = *m_http;

    s.Get("/DVAPI/System/deviceInfo", [this](const Request&, Response& res) {
        res.set_content(std::string(kXmlHead) + "<DeviceInfo><deviceName>Thermal face camera</deviceName><serialNumber>"
                + xmlEscape(m_opts.serial) + "</serialNumber><channels>" + std::to_string(m_opts.channels)
                + "</channels></DeviceInfo>",
            "application/xml");
    });

    s.Get("/DVAPI/System/channels/status", [this](const Request&, Response& res) {
        nlohmann::json list = nlohmann::json::array();
        for (int ch = 1; ch <= m_opts.channels; ++ch) {
            list.push_back({{"id", ch}, {"name", channelName(ch)}, {"online", channelOnline(ch)}});
            if (m_opts.rtspPort > 0)
                list.back()["streams"] = RtspServer::describe(m_opts, ch);
        }
        res.set_content(nlohmann::json{{"channels", list}}.dump(), "application/json");
    });

    s.Get("/DVAPI/Event/notification/alertStream", [this](const Request&, Response& res) {
        auto sub = m_hub.subscribe();
        logLine("alert stream opened (%zu clients)", m_hub.subscribers());
        res.set_chunked_content_provider(std::string("multipart/mixed; boundary=") + kBoundary,
            [this, sub](size_t, httplib::DataSink& sink) {
                Chunks ev;
                if (!AlertHub::next(*sub, ev, std::chrono::milliseconds(200))) {
                    if (m_stopping || sub->dropped)
                        return false;
                    return sink.is_writable();
                }
                for (const auto& c : ev)
                    if (!sink.write(c->data(), c->size()))
                        return false;
                return true;
            },
            [this, sub](bool) {
                m_hub.unsubscribe(sub);
                logLine("alert stream closed");
            });
    });

    s.Get(R"(/DVAPI/Streaming/channels/(\d+)/mjpeg)", [this](const Request& req, Response& res) {
        const int ch = std::atoi(req.matches[1].str().c_str());
        if (ch < 1 || ch > m_opts.channels || !channelOnline(ch)) {
            sendStatus(res, 404, 4, "No such channel", 0);
            return;
        }
        const auto start = std::chrono::steady_clock::now();
        auto frameNo = std::make_shared<long long>(0);
        res.set_content_provider("multipart/x-mixed-replace; boundary=frame",
            [this, ch, start, frameNo](size_t, httplib::DataSink& sink) {
                if (m_stopping || !channelOnline(ch))
                    return false;
                const auto due = start + std::chrono::microseconds(1000000LL * *frameNo / std::max(1, m_opts.videoFps));
                std::this_thread::sleep_until(due);
                ++*frameNo;
                const QByteArray jpeg = m_pictures.frame(ch, QString::fromStdString(channelName(ch)),
                    QDateTime::currentMSecsSinceEpoch(), m_opts.videoWidth, m_opts.videoHeight);
                const std::string head = "--frame\r\nContent-Type: image/jpeg\r\nContent-Length: "
                    + std::to_string(jpeg.size()) + "\r\n\r\n";
                return sink.write(head.data(), head.size()) && sink.write(jpeg.constData(), size_t(jpeg.size()))
                    && sink.write("\r\n", 2);
            });
    });

    s.Get("/DVAPI/Intelligent/FDLib/capabilities", [](const Request&, Response& res) {
        res.set_content(std::string(kXmlHead)
                + "<FaceDataLibraryCap><supported>true</supported>"
                  "<FDNameRule>^[^\\\\/:*?&quot;&lt;&gt;|]{1,32}$</FDNameRule>"
                  "<contact><enabled>true</enabled><maxLen>0</maxLen></contact>"
                  "<certificateNumber><enabled>true</enabled><minLen>8</minLen><maxLen>18</maxLen></certificateNumber>"
                  "<bornTime><enabled>true</enabled></bornTime>"
                  "<region><enabled>true</enabled></region>"
                  "<sex><enabled>true</enabled><opt>male</opt><opt>female</opt><opt>unlimited</opt></sex>"
                  "<certificateType><enabled>true</enabled><opt>officerID</opt><opt>ID</opt><opt>passportID</opt>"
                  "<opt>other</opt></certificateType>"
                + extendListXml() + "</FaceDataLibraryCap>",
            "application/xml");
    });

    s.Get("/DVAPI/Intelligent/FDLib", [this](const Request&, Response& res) {
        std::string xml = std::string(kXmlHead) + "<FDLibBaseCfgList>";
        int id = 1;
        for (const Library& l : m_store.libraries())
            xml += "<FDLibBaseCfg><id>" + std::to_string(id++) + "</id><FDID>" + xmlEscape(l.FDID) + "</FDID><name>"
                + xmlEscape(l.name) + "</name><faceLibType>" + xmlEscape(l.type) + "</faceLibType><capacity>"
                + std::to_string(l.capacity) + "</capacity><count>" + std::to_string(l.count) + "</count></FDLibBaseCfg>";
        res.set_content(xml + "</FDLibBaseCfgList>", "application/xml");
    });

    s.Get(R"(/DVAPI/Intelligent/FDLib/([^/]+)/picture/([^/]+)/image)", [this](const Request& req, Response& res) {
        FaceRecord r;
        if (!m_store.record(req.matches[1], req.matches[2], r)) {
            sendStatus(res, 404, 4, "No such record", 0);
            return;
        }
        res.set_content(r.picture, "image/jpeg");
    });

    s.Get(R"(/DVAPI/Intelligent/FDLib/([^/]+)/picture/([^/]+))", [this](const Request& req, Response& res) {
        FaceRecord r;
        if (!m_store.record(req.matches[1], req.matches[2], r)) {
            sendStatus(res, 404, 4, "No such record", 0);
            return;
        }
        res.set_content(faceRecordXml(r), "application/xml");
    });

    s.Post("/DVAPI/Intelligent/FDLib/FDSearch", [this](const Request& req, Response& res) {
        const std::string cond = req.body;
        if (cond.find("<FaceAppendData") == std::string::npos) {
            sendStatus(res, 400, 6, "Invalid Content", 0);
            return;
        }
        const std::string name = tagText(cond, "name");
        const std::string fdid = tagText(cond, "FDID");
        std::string list;
        int n = 0;
        for (const FaceRecord& r : m_store.records(fdid, false)) {
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
    s.Get(R"(/DVAPI/Intelligent/faceContrast/personInfoExtend/FDID/([^/]+))", extend);
    s.Get("/DVAPI/Intelligent/faceContrast/personInfoExtend", extend);

    s.Get("/DVAPI/System/cityCode", [](const Request&, Response& res) {
        nlohmann::json provinces = nlohmann::json::array();
        provinces.push_back({{"provinceCode", "11"}, {"provinceName", "Beijing"},
            {"cities", nlohmann::json::array({{{"cityCode", "01"}, {"cityName", "Shixiaqu"}}})}});
        provinces.push_back({{"provinceCode", "44"}, {"provinceName", "Guangdong"},
            {"cities", nlohmann::json::array({{{"cityCode", "01"}, {"cityName", "Guangzhou"}},
                           {{"cityCode", "03"}, {"cityName", "Shenzhen"}}, {{"cityCode", "04"}, {"cityName", "Zhuhai"}}})}});
        provinces.push_back({{"provinceCode", "46"}, {"provinceName", "Hainan"},
            {"cities", nlohmann::json::array({{{"cityCode", "01"}, {"cityName", "Haikou"}},
                           {{"cityCode", "02"}, {"cityName", "Sanya"}}, {{"cityCode", "90"}, {"cityName", "Shengzhixia"}}})}});
        res.set_content(nlohmann::json{{"CityCode", provinces}}.dump(), "application/json");
    });

    s.Get(R"(/DVAPI/SDT/HFPD/searchTask/result/recordData/([^/?]+))", [this](const Request& req, Response& res) {
        const std::string task = req.matches[1];
        int polls;
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            polls = ++m_hfpdPolls[task];
        }
        const int need = std::max(1, m_opts.hfpdPolls);
        const int progress = polls >= need ? 100 : polls * 100 / need;
        nlohmann::json targets = nlohmann::json::array();
        if (progress == 100) {
            std::seed_seq seq(task.begin(), task.end());
            std::mt19937 rng(seq);
            const bool empty = task.find("empty") != std::string::npos;
            const int count = empty ? 0 : 5 + int(rng() % 21);
            static const char* ages[] = {"young", "middle", "old", "prime", "teenager"};
            static const char* exprs[] = {"happy", "poker-faced", "surprised", "sad"};
            static const char* glasses[] = {"no", "yes", "sunglasses", "unknown"};
            for (int i = 0; i < count; ++i) {
                const int ch = 1 + int(rng() % unsigned(std::max(1, m_opts.channels)));
                const auto when = QDateTime::currentDateTimeUtc().addSecs(-3600 * (i + 1));
                const std::string pic = "/DVAPI/pictures/hfpd/" + task + "/" + std::to_string(i + 1) + ".jpg";
                targets.push_back({{"index", i + 1},
                    {"captureTime", when.toString(QStringLiteral("yyyy-MM-ddThh:mm:ss+08:00")).toStdString()},
                    {"channelID", std::to_string(ch)}, {"cameraName", channelName(ch)}, {"picUrl", pic},
                    {"facePicUrl", pic + "?face=1"}, {"ageGroup", ages[rng() % 5]},
                    {"gender", rng() % 2 ? "male" : "female"}, {"glass", glasses[rng() % 4]},
                    {"mask", rng() % 2 ? "yes" : "no"}, {"hat", rng() % 3 ? "no" : "yes"},
                    {"expression", exprs[rng() % 4]}, {"smile", rng() % 2 ? "yes" : "no"},
                    {"rect", {{"x", 0.12 + 0.16 * (i % 5)}, {"y", 0.22}, {"width", 0.09}, {"height", 0.21}}}});
            }
        }
        res.set_content(nlohmann::json{{"taskID", task}, {"progress", progress}, {"totalMatches", targets.size()},
                                      {"targets", targets}}.dump(),
            "application/json");
    });

    s.Get(R"(/DVAPI/pictures/hfpd/([^/]+)/(\d+)\.jpg)", [this](const Request& req, Response& res) {
        const int n = std::atoi(req.matches[2].str().c_str());
        FaceLook look;
        look.person = n + int(std::hash<std::string>()(req.matches[1]) % 40);
        look.mask = n % 2 == 0;
        double rect[4];
        Jpeg jpeg = req.has_param("face") ? m_pictures.face(look)
                                          : m_pictures.scene(1, QString::fromStdString(channelName(1)), look, rect);
        res.set_content(*jpeg, "image/jpeg");
    });

    s.Post("/DVAPI/SDK/passThrough", [this](const Request& req, Response& res) {
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
                    params.push_back(QByteArray::fromBase64(QByteArray::fromStdString(p.get<std::string>())).toStdString());
        if (fn != "DEV_SDKChannelToDVAPI") {
            sendJsonError(res, 400, "Unknown function", 23);
            return;
        }
        // SDK channels 1..N and IP channels 33..32+N map to device-API channels 1..N.
        const int sdk = params.empty() ? 0 : std::atoi(params[0].c_str());
        int mapped = 0;
        if (sdk >= 1 && sdk <= m_opts.channels)
            mapped = sdk;
        else if (sdk >= 33 && sdk < 33 + m_opts.channels)
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

    s.Post("/DVAPI/SDK/batch", [this](const Request& req, Response& res) {
        auto j = nlohmann::json::parse(req.body, nullptr, false);
        if (!j.is_object() || j.value("command", 0u) != 9005u) {
            sendJsonError(res, 400, "Unsupported command");
            return;
        }
        const std::string cond = QByteArray::fromBase64(QByteArray::fromStdString(j.value("condition", std::string())))
                                     .toStdString();
        if (cond.size() != 388 || le32(cond, 0) != 388) {
            sendJsonError(res, 400, "Invalid condition");
            return;
        }
        const std::string fdid(cond.c_str() + 4, strnlen(cond.c_str() + 4, 256));
        FaceRecord rec;
        rec.FDID = fdid;
        rec.xml = j.value("xml", std::string());
        rec.name = tagText(rec.xml, "name");
        rec.picture = QByteArray::fromBase64(QByteArray::fromStdString(j.value("picture", std::string()))).toStdString();
        nlohmann::json result;
        if (rec.picture.size() < 4 || uint8_t(rec.picture[0]) != 0xFF || uint8_t(rec.picture[1]) != 0xD8) {
            result = {{"state", 3}, {"subStatus", 0}};
        } else {
            switch (m_store.addRecord(rec)) {
            case SimStore::AddResult::Added: result = {{"state", 1}, {"subStatus", 0}, {"PID", rec.PID}}; break;
            case SimStore::AddResult::Full: result = {{"state", 10}, {"subStatus", 843}}; break;
            case SimStore::AddResult::NoLibrary: result = {{"state", 3}, {"subStatus", 0}}; break;
            case SimStore::AddResult::Error: result = {{"state", 6}, {"subStatus", 0}}; break;
            }
        }
        logLine("face upload to library %s: state %d", fdid.c_str(), result["state"].get<int>());
        res.set_content(nlohmann::json{{"finished", true}, {"results", nlohmann::json::array({result})}}.dump(),
            "application/json");
    });
}

void SimServer::routeControl()
{
    using httplib::Request;
    using httplib::Response;
    auto& s = *m_http;
    auto body = [](const Request& req, Response& res, nlohmann::json& out) {
        out = nlohmann::json::parse(req.body, nullptr, false);
        if (out.is_discarded()) {
            sendJsonError(res, 400, "body is not JSON");
            return false;
        }
        return true;
    };
    auto ok = [](Response& res, nlohmann::json extra = nlohmann::json::object()) {
        extra["ok"] = true;
        res.set_content(extra.dump(), "application/json");
    };

    s.Post("/control/event", [this, body, ok](const Request& req, Response& res) {
        nlohmann::json d;
        if (!body(req, res, d))
            return;
        std::string error;
        SimEvent ev;
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            ev = m_events.fromDescription(m_rng, d, error);
        }
        if (!error.empty()) {
            sendJsonError(res, 400, error);
            return;
        }
        m_hub.publish(EventFactory::serialize(ev));
        ok(res, {{"eventID", ev.doc.value("eventID", std::string())}, {"clients", m_hub.subscribers()}});
    });

    s.Post("/control/burst", [this, body, ok](const Request& req, Response& res) {
        nlohmann::json d;
        if (!body(req, res, d))
            return;
        const int count = d.value("count", 100);
        const unsigned code = d.value("eventCode", 100119u);
        // Pictures are encoded once and shared by every event of the burst;
        // the caller may supply its own scene and face JPEGs (base64).
        auto supplied = [&d](const char* key) -> Jpeg {
            if (!d.contains(key) || !d[key].is_string())
                return nullptr;
            const QByteArray raw = QByteArray::fromBase64(QByteArray::fromStdString(d[key].get<std::string>()));
            return std::make_shared<const std::string>(raw.constData(), size_t(raw.size()));
        };
        const Jpeg scene = supplied("scene");
        const Jpeg face = supplied("face");
        std::vector<Chunks> events;
        events.reserve(size_t(std::max(0, count)));
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            for (int i = 0; i < count; ++i) {
                SimEvent ev = m_events.generate(m_rng, 1 + i % m_opts.channels, code, 1);
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
            m_hub.publish(ev);
        ok(res, {{"count", count}});
    });

    s.Post("/control/fault", [this, body, ok](const Request& req, Response& res) {
        nlohmann::json d;
        if (!body(req, res, d))
            return;
        Fault f;
        f.delayMs = d.value("delayMs", 0);
        f.drop = d.value("drop", false);
        f.status = d.value("status", 0);
        f.subStatus = d.value("subStatus", 0);
        f.malformed = d.value("malformed", false);
        f.remaining = d.value("count", -1);
        std::lock_guard<std::mutex> lock(m_mutex);
        m_faults[d.value("path", std::string("/"))] = f;
        ok(res);
    });
    s.Delete("/control/fault", [this, ok](const Request&, Response& res) {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_faults.clear();
        ok(res);
    });

    s.Post("/control/channel", [this, body, ok](const Request& req, Response& res) {
        nlohmann::json d;
        if (!body(req, res, d))
            return;
        std::lock_guard<std::mutex> lock(m_mutex);
        m_offline[d.value("channel", 1)] = !d.value("online", true);
        ok(res);
    });

    s.Post("/control/alertStream/drop", [this, ok](const Request&, Response& res) {
        m_hub.dropAll();
        ok(res);
    });

    s.Post("/control/settings", [this, body, ok](const Request& req, Response& res) {
        nlohmann::json d;
        if (!body(req, res, d))
            return;
        std::lock_guard<std::mutex> lock(m_mutex);
        if (d.contains("rate"))
            m_hub.setRate(d.value("rate", 2.0));
        if (d.contains("abnormalShare"))
            m_events.abnormalShare = d.value("abnormalShare", 0.1);
        if (d.contains("unit"))
            m_events.unit = d.value("unit", std::string("C")) == "F" ? 'F' : 'C';
        if (d.contains("hfpdPolls"))
            m_opts.hfpdPolls = d.value("hfpdPolls", 3);
        ok(res);
    });

    s.Post("/control/library", [this, body, ok](const Request& req, Response& res) {
        nlohmann::json d;
        if (!body(req, res, d))
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
        m_store.putLibrary(l);
        ok(res);
    });

    s.Get("/control/uploads", [this](const Request& req, Response& res) {
        nlohmann::json list = nlohmann::json::array();
        for (const FaceRecord& r : m_store.records(req.get_param_value("FDID"), false))
            list.push_back({{"PID", r.PID}, {"FDID", r.FDID}, {"name", r.name}, {"xml", r.xml},
                {"pictureSize", r.pictureSize}, {"created", r.created}});
        res.set_content(nlohmann::json{{"records", list}}.dump(), "application/json");
    });

    s.Get("/control/stats", [this](const Request&, Response& res) {
        res.set_content(nlohmann::json{{"clients", m_hub.subscribers()}, {"published", m_hub.published()},
                                       {"rate", m_hub.rate()}}.dump(),
            "application/json");
    });
}

} // namespace devicesim
