#include "commlayer/DeviceHttp.h"

#include <chrono>
#include <curl/curl.h>
#include <libxml/parser.h>
#include <mutex>
#include <sys/socket.h>
#include <unistd.h>
#include <nlohmann/json.hpp>

#include "Base/Base.h"
#include "Base/Log.h"
#include "commlayer/CommErrors.h"

namespace commlayer {
namespace detail {

namespace {

using Clock = std::chrono::steady_clock;

struct Transfer {
    explicit Transfer(const HttpExchange& e)
        : ex(&e), abortFlag(e.abortFlag != nullptr ? e.abortFlag : e.cancel != nullptr ? e.cancel->Flag() : nullptr),
          limit(e.maxBodyBytes)
    {
    }
    const HttpExchange* ex = nullptr;
    const std::atomic<bool>* abortFlag = nullptr;
    HttpResult* result = nullptr;
    bool headersReported = false;
    bool aborted = false;
    bool offeredBasic = false;
    bool offeredDigest = false;
    CBodyLimit limit;
    Clock::time_point lastByte = Clock::now();
    bool idleCut = false;
};

size_t onHeader(char* data, size_t size, size_t n, void* user)
{
    auto* t = static_cast<Transfer*>(user);
    const size_t len = size * n;
    std::string line(data, len);
    t->lastByte = Clock::now();
    if (line.compare(0, 5, "HTTP/") == 0) {
        // A new response (digest negotiation sends a 401 first): start over.
        t->result->body.clear();
        t->result->contentType.clear();
        t->headersReported = false;
        t->offeredBasic = t->offeredDigest = false;
        const size_t sp = line.find(' ');
        t->result->status = sp == std::string::npos ? 0 : std::atol(line.c_str() + sp + 1);
        t->limit.StartResponse(t->result->status);
    } else if ((line == "\r\n" || line == "\n") && t->ex->sink && !t->headersReported && t->result->status >= 200
        && t->result->status != 401) {
        // End of the final answer's headers: a stream is open before any body byte.
        t->headersReported = true;
        if (t->ex->onHeaders)
            t->ex->onHeaders(t->result->status, t->result->contentType);
    } else if (line.size() > 13 && strncasecmp(line.c_str(), "content-type:", 13) == 0) {
        std::string v = line.substr(13);
        while (!v.empty() && (v.front() == ' ' || v.front() == '\t'))
            v.erase(v.begin());
        while (!v.empty() && (v.back() == '\r' || v.back() == '\n' || v.back() == ' '))
            v.pop_back();
        t->result->contentType = v;
    } else if (line.size() > 17 && strncasecmp(line.c_str(), "www-authenticate:", 17) == 0) {
        t->offeredBasic = t->offeredBasic || strcasestr(line.c_str() + 17, "basic") != nullptr;
        t->offeredDigest = t->offeredDigest || strcasestr(line.c_str() + 17, "digest") != nullptr;
    }
    return len;
}

size_t onBody(char* data, size_t size, size_t n, void* user)
{
    auto* t = static_cast<Transfer*>(user);
    const size_t len = size * n;
    t->lastByte = Clock::now();
    if (t->ex->sink) {
        if (!t->limit.AcceptUnlessSuccess(len))
            return 0;
        // Only the final answer is streamed; a 401 challenge body is ignored.
        if (t->result->status == 401)
            return len;
        if (!t->headersReported) {
            t->headersReported = true;
            if (t->ex->onHeaders)
                t->ex->onHeaders(t->result->status, t->result->contentType);
        }
        if (t->result->status >= 300) {
            t->result->body.append(data, len);
            return len;
        }
        if (!t->ex->sink(data, len)) {
            t->aborted = true;
            return 0;
        }
        return len;
    }
    if (!t->limit.Accept(len))
        return 0;
    t->result->body.append(data, len);
    return len;
}

int onProgress(void* user, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
{
    auto* t = static_cast<Transfer*>(user);
    if (t->abortFlag && *t->abortFlag) {
        t->aborted = true;
        return 1;
    }
    if (t->ex->idleLimitMs > 0 && Clock::now() - t->lastByte > std::chrono::milliseconds(t->ex->idleLimitMs)) {
        t->idleCut = true;
        return 1;
    }
    return 0;
}

curl_socket_t onOpenSocket(void* user, curlsocktype, struct curl_sockaddr* addr)
{
    auto* t = static_cast<Transfer*>(user);
    if (t->ex->cancel != nullptr)
        return t->ex->cancel->OpenSocket(addr->family, addr->socktype, addr->protocol);
    // Under the same lock as the stopper: a stop either sees this socket or
    // is seen here, so no connection outlives it.
    std::lock_guard<std::mutex> lock(*t->ex->socketMutex);
    if (t->ex->abortFlag && *t->ex->abortFlag)
        return CURL_SOCKET_BAD;
    const curl_socket_t fd = socket(addr->family, addr->socktype | SOCK_CLOEXEC, addr->protocol);
    if (fd >= 0)
        *t->ex->socketFd = fd;
    return fd;
}

int onCloseSocket(void* user, curl_socket_t fd)
{
    auto* t = static_cast<Transfer*>(user);
    if (t->ex->cancel != nullptr)
        return t->ex->cancel->CloseSocket(fd);
    std::lock_guard<std::mutex> lock(*t->ex->socketMutex);
    if (*t->ex->socketFd == fd)
        *t->ex->socketFd = -1;
    return close(fd);
}

} // namespace

void GlobalInit()
{
    static std::once_flag s_once;
    std::call_once(s_once, [] {
        curl_global_init(CURL_GLOBAL_DEFAULT);
        xmlInitParser();
    });
}

std::string BaseUrl(const clientcommonlogical::DeviceConfig& dev)
{
    std::string scheme = dev.scheme.empty() ? std::string("http") : dev.scheme;
    std::string host = dev.address;
    if (host.find(':') != std::string::npos && host.front() != '[')
        host = "[" + host + "]";
    return scheme + "://" + host + ":" + std::to_string(dev.port);
}

namespace {

void setConnection(CURL* curl, const clientcommonlogical::DeviceConfig& dev, const HttpExchange& ex, bool verifiedTls)
{
    const std::string url = BaseUrl(dev) + ex.path;
    curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, 0L);
    // The password travels only hashed (digest), or in clear inside a TLS
    // connection whose certificate was verified.
    curl_easy_setopt(curl, CURLOPT_HTTPAUTH, verifiedTls ? long(CURLAUTH_DIGEST | CURLAUTH_BASIC) : long(CURLAUTH_DIGEST));
    curl_easy_setopt(curl, CURLOPT_USERNAME, dev.user.c_str());
    curl_easy_setopt(curl, CURLOPT_PASSWORD, dev.password.c_str());
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT_MS, ex.connectTimeoutMs);
    if (ex.timeoutMs > 0)
        curl_easy_setopt(curl, CURLOPT_TIMEOUT_MS, ex.timeoutMs);
    if (ex.lowSpeedTimeSec > 0) {
        curl_easy_setopt(curl, CURLOPT_LOW_SPEED_LIMIT, 1L);
        curl_easy_setopt(curl, CURLOPT_LOW_SPEED_TIME, ex.lowSpeedTimeSec);
    }
    if (dev.scheme == "https") {
        curl_easy_setopt(curl, CURLOPT_SSL_VERIFYPEER, dev.verifyPeer ? 1L : 0L);
        curl_easy_setopt(curl, CURLOPT_SSL_VERIFYHOST, dev.verifyPeer ? 2L : 0L);
        if (!dev.caFile.empty())
            curl_easy_setopt(curl, CURLOPT_CAINFO, dev.caFile.c_str());
    }
}

void setCallbacks(CURL* curl, Transfer& t, const HttpExchange& ex)
{
    curl_easy_setopt(curl, CURLOPT_HEADERFUNCTION, onHeader);
    curl_easy_setopt(curl, CURLOPT_HEADERDATA, &t);
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, onBody);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &t);
    if (t.abortFlag || ex.idleLimitMs > 0) {
        curl_easy_setopt(curl, CURLOPT_NOPROGRESS, 0L);
        curl_easy_setopt(curl, CURLOPT_XFERINFOFUNCTION, onProgress);
        curl_easy_setopt(curl, CURLOPT_XFERINFODATA, &t);
    }
    if (ex.cancel || (ex.socketFd && ex.socketMutex)) {
        curl_easy_setopt(curl, CURLOPT_OPENSOCKETFUNCTION, onOpenSocket);
        curl_easy_setopt(curl, CURLOPT_OPENSOCKETDATA, &t);
        curl_easy_setopt(curl, CURLOPT_CLOSESOCKETFUNCTION, onCloseSocket);
        curl_easy_setopt(curl, CURLOPT_CLOSESOCKETDATA, &t);
    }
}

// Sets the method and body; returns the header list to free after the transfer.
curl_slist* setMethod(CURL* curl, const HttpExchange& ex)
{
    struct curl_slist* headers = nullptr;
    if (ex.method == "GET") {
        curl_easy_setopt(curl, CURLOPT_HTTPGET, 1L);
    } else {
        curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, ex.method.c_str());
        if (ex.method != "DELETE" || !ex.body.empty()) {
            curl_easy_setopt(curl, CURLOPT_POSTFIELDS, ex.body.data());
            curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t(ex.body.size()));
        }
        if (!ex.contentType.empty())
            headers = curl_slist_append(headers, ("Content-Type: " + ex.contentType).c_str());
        // No "Expect: 100-continue" round trip for big uploads.
        headers = curl_slist_append(headers, "Expect:");
        curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers);
    }
    return headers;
}

// Status, cancellation and refused insecure authentication, read before the
// handle is cleaned up.
void readOutcome(CURL* curl, const HttpExchange& ex, const Transfer& t, bool verifiedTls, HttpResult& result)
{
    if (result.curlCode == CURLE_OK || result.status == 0)
        curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &result.status);
    if (ex.cancel != nullptr) {
        curl_off_t connectUs = 0;
        curl_easy_getinfo(curl, CURLINFO_CONNECT_TIME_T, &connectUs);
        ex.cancel->SetReached(connectUs > 0);
        result.cancelled = result.curlCode != CURLE_OK && ex.cancel->IsCancelled();
    }
    result.insecureAuthRefused = result.status == 401 && t.offeredBasic && !t.offeredDigest && !verifiedTls;
}

} // namespace

HttpResult Perform(const clientcommonlogical::DeviceConfig& dev, const HttpExchange& ex)
{
    GlobalInit();
    HttpResult result;
    Transfer t(ex);
    t.result = &result;

    CURL* curl = curl_easy_init();
    if (!curl) {
        result.curlCode = CURLE_FAILED_INIT;
        return result;
    }
    const bool verifiedTls = dev.scheme == "https" && dev.verifyPeer;
    setConnection(curl, dev, ex, verifiedTls);
    setCallbacks(curl, t, ex);
    struct curl_slist* headers = setMethod(curl, ex);
    result.curlCode = curl_easy_perform(curl);
    readOutcome(curl, ex, t, verifiedTls, result);
    curl_easy_cleanup(curl);
    curl_slist_free_all(headers);
    result.idleLimitMs = ex.idleLimitMs;
    result.idleCut = t.idleCut;
    if (t.limit.Exceeded()) {
        result.bodyTooLarge = true;
        result.bodyLimit = t.limit.CurrentLimit();
        BASE_LOG_ERROR("answer of device [%s] to %s %s cut: body over %zu bytes (http %ld)", dev.id.c_str(),
            ex.method.c_str(), ex.path.c_str(), result.bodyLimit, result.status);
    } else if (result.curlCode != CURLE_OK && result.status == 401 && !result.insecureAuthRefused) {
        // The 401 was the digest challenge; the authenticated request got no answer.
        result.status = 0;
        result.afterChallenge = true;
    }
    return result;
}

int ParseSubStatus(const std::string& body)
{
    const size_t start = body.find_first_not_of(" \t\r\n");
    if (start == std::string::npos)
        return 0;
    if (body[start] == '{') {
        auto j = nlohmann::json::parse(body, nullptr, false);
        if (j.is_object()) {
            auto it = j.find("subStatusCode");
            if (it != j.end() && it->is_number_integer())
                return it->get<int>();
        }
        return 0;
    }
    static const std::string open = "<subStatusCode>";
    const size_t p = body.find(open);
    if (p == std::string::npos)
        return 0;
    return std::atoi(body.c_str() + p + open.size());
}

bool SplitRequestLine(const std::string& line, std::string& method, std::string& path)
{
    std::string l = line;
    while (!l.empty() && (l.back() == '\n' || l.back() == '\r'))
        l.pop_back();
    const size_t sp = l.find(' ');
    if (sp == std::string::npos || sp == 0)
        return false;
    method = l.substr(0, sp);
    path = l.substr(sp + 1);
    if (path.empty() || path.front() != '/' || path.find_first_of(" \r\n") != std::string::npos)
        return false;
    for (char c : method)
        if (c < 'A' || c > 'Z')
            return false;
    return true;
}

namespace {
bool wellFormed(const std::string& contentType, const std::string& body)
{
    const size_t start = body.find_first_not_of(" \t\r\n");
    if (start == std::string::npos)
        return true;  // an empty answer is a valid "done"
    const bool json = contentType.find("json") != std::string::npos
        || (contentType.find("xml") == std::string::npos && body[start] == '{');
    if (json)
        return nlohmann::json::accept(body);
    if (contentType.find("xml") == std::string::npos && body[start] != '<')
        return true;  // neither XML nor JSON: nothing to check
    xmlDocPtr doc = xmlReadMemory(body.data(), int(body.size()), "answer.xml", nullptr,
        XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    const bool ok = doc != nullptr;
    xmlFreeDoc(doc);
    return ok;
}
} // namespace

bool CheckResult(const HttpResult& r, bool requireWellFormed)
{
    int first = kErrNone;
    int second = 0;
    if (r.cancelled) {
        Base::Error::SetLastError(kErrCancelled, 0);
        return false;
    }
    if (r.bodyTooLarge) {
        Base::Error::SetLastError(kErrTooLarge, int(r.status));
        return false;
    }
    switch (r.idleCut ? CURLE_OPERATION_TIMEDOUT : CURLcode(r.curlCode)) {
    case CURLE_OK:
        break;
    case CURLE_OPERATION_TIMEDOUT:
        first = kErrTimeout;
        break;
    case CURLE_COULDNT_CONNECT:
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
        first = kErrConnect;
        break;
    case CURLE_SEND_ERROR:
        first = kErrSend;
        break;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_CERTPROBLEM:
        first = kErrTls;
        break;
    default:
        first = kErrRecv;
        second = r.curlCode;
        break;
    }
    if (first == kErrNone) {
        if (r.insecureAuthRefused) {
            first = kErrInsecureAuth;
            second = 401;
        } else if (r.status == 401) {
            first = kErrPassword;
            second = 401;
        } else if (r.status < 200 || r.status >= 300) {
            second = ParseSubStatus(r.body);
            first = second != 0 ? kErrDeviceStatus : kErrHttp;
            if (second == 0)
                second = int(r.status);
        } else if (requireWellFormed && !wellFormed(r.contentType, r.body)) {
            first = kErrBadAnswer;
        }
    }
    if (first != kErrNone) {
        Base::Error::SetLastError(first, second);
        return false;
    }
    Base::Error::SetLastError(0, 0);
    return true;
}

} // namespace detail
} // namespace commlayer
