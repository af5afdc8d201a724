#pragma once
// Small helpers every route area of the emulator uses: status documents,
// JSON errors, the JSON-body preamble and the XML escaping of our own
// documents. Free functions, callable from any HTTP worker thread.
#include <nlohmann/json.hpp>
#include <string>

namespace httplib {
struct Request;
struct Response;
}

namespace devicesim {

extern const char* const kXmlHead;

std::string md5hex(const std::string& s);
std::string xmlEscape(const std::string& s);
// The text of the first <tag>...</tag> of a small document we produced or
// accept; good enough for the emulator's own needs.
std::string tagText(const std::string& xml, const std::string& tag);
std::string statusXml(int statusCode, const std::string& text, int subStatus);

void sendStatus(httplib::Response& res, int http, int statusCode, const std::string& text, int subStatus);
void sendJsonError(httplib::Response& res, int http, const std::string& text, int subStatus = 0);
// {"ok":true} plus the given members.
void sendOk(httplib::Response& res, nlohmann::json extra = nlohmann::json::object());
// Parses the request body as JSON into out; answers 400 and returns false
// when it is not JSON.
bool readJsonBody(const httplib::Request& req, httplib::Response& res, nlohmann::json& out);

} // namespace devicesim
