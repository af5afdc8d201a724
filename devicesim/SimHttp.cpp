#include "SimHttp.h"

#include <httplib.h>
#include <openssl/evp.h>

namespace devicesim {

const char* const kXmlHead = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

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
    return std::string(kXmlHead) + "<ResponseStatus><statusCode>" + std::to_string(statusCode)
        + "</statusCode><statusString>" + xmlEscape(text) + "</statusString><subStatusCode>"
        + std::to_string(subStatus) + "</subStatusCode></ResponseStatus>";
}

void sendStatus(httplib::Response& res, int http, int statusCode, const std::string& text, int subStatus)
{
    res.status = http;
    res.set_content(statusXml(statusCode, text, subStatus), "application/xml");
}

void sendJsonError(httplib::Response& res, int http, const std::string& text, int subStatus)
{
    res.status = http;
    res.set_content(nlohmann::json{{"statusCode", 4}, {"statusString", text}, {"subStatusCode", subStatus}}.dump(),
        "application/json");
}

void sendOk(httplib::Response& res, nlohmann::json extra)
{
    extra["ok"] = true;
    res.set_content(extra.dump(), "application/json");
}

bool readJsonBody(const httplib::Request& req, httplib::Response& res, nlohmann::json& out)
{
    out = nlohmann::json::parse(req.body, nullptr, false);
    if (out.is_discarded()) {
        sendJsonError(res, 400, "body is not JSON");
        return false;
    }
    return true;
}

} // namespace devicesim
