#pragma once
// Internal: one blocking HTTP(S) exchange with a configured device over
// libcurl (digest authentication, TLS verification per device, time-out).
// Any thread; no shared state besides libcurl's global initialisation.
#include <atomic>
#include <cstdint>
#include <mutex>
#include <functional>
#include <string>

#include "clientcommonlogical/CConfigMgr.h"
#include "commlayer/CBodyLimit.h"
#include "commlayer/CRequestCancel.h"

namespace commlayer {
namespace detail {

struct HttpExchange {
    std::string method = "GET";
    std::string path;          // "/DVAPI/..." (query included)
    std::string body;
    std::string contentType;   // of the body
    long timeoutMs = 30000;    // whole exchange; 0: none (streams)
    long connectTimeoutMs = 5000;
    // Streaming: when set, body bytes go here instead of into result.body.
    // Return false to abort the transfer.
    std::function<bool(const char*, size_t)> sink;
    std::function<void(long status, const std::string& contentType)> onHeaders;
    const std::atomic<bool>* abortFlag = nullptr;  // polled during the transfer, set by another thread
    long lowSpeedTimeSec = 0;  // abort when under 1 byte/s for this long
    long idleLimitMs = 0;      // abort when no byte arrived for this long; 0: no limit
    // Limit of a buffered successful body (error bodies have their own, smaller one).
    size_t maxBodyBytes = CBodyLimit::kDocument;
    // The connection's socket while it is open, so another thread can cut it
    // (shutdown) at once; both guarded by socketMutex.
    int* socketFd = nullptr;
    std::mutex* socketMutex = nullptr;
    // A caller's cancel: polled like abortFlag, and its Cancel() cuts the
    // connection at once. Used instead of abortFlag and socketFd.
    CRequestCancel* cancel = nullptr;
};

struct HttpResult {
    int curlCode = 0;
    long status = 0;
    std::string contentType;
    std::string body;
    // A 401 offered only Basic where the password may not travel in clear.
    bool insecureAuthRefused = false;
    bool bodyTooLarge = false;  // cut: the body went over bodyLimit
    size_t bodyLimit = 0;
    bool idleCut = false;       // cut: nothing arrived for idleLimitMs
    long idleLimitMs = 0;
    bool afterChallenge = false;  // failed after the digest challenge, before any answer to it
    bool cancelled = false;       // ended by the exchange's CRequestCancel
};

void GlobalInit();
std::string BaseUrl(const clientcommonlogical::DeviceConfig& dev);
HttpResult Perform(const clientcommonlogical::DeviceConfig& dev, const HttpExchange& ex);

// Maps an exchange that failed (transport or HTTP status) to the error pair
// and stores it with Base::Error::SetLastError. Returns false when it failed.
bool CheckResult(const HttpResult& r, bool requireWellFormed);

// What went wrong, for log lines: "http 503", "time-out after the digest
// challenge", "transfer error 60 (SSL peer certificate ...)", ...
std::string DescribeFailure(const HttpResult& r);

// Sub-status code from a device status document (XML or JSON); 0 when none.
int ParseSubStatus(const std::string& body);
// Splits "GET /path\r\n" into method and path. False on a malformed line.
bool SplitRequestLine(const std::string& line, std::string& method, std::string& path);

} // namespace detail
} // namespace commlayer
