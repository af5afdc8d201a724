#include <curl/curl.h>

#include "commlayer/DeviceHttp.h"

namespace commlayer {
namespace detail {

std::string DescribeFailure(const HttpResult& r)
{
    if (r.cancelled)
        return "cancelled by the caller";
    if (r.bodyTooLarge)
        return "answer body over " + std::to_string(r.bodyLimit) + " bytes (http " + std::to_string(r.status)
            + "): transfer cut";
    if (r.idleCut)
        return "no data for " + std::to_string(r.idleLimitMs) + " ms";
    if (r.curlCode == CURLE_OPERATION_TIMEDOUT && r.afterChallenge)
        return "time-out after the digest challenge (the authenticated request got no answer)";
    if (r.curlCode != CURLE_OK) {
        std::string text = "transfer error " + std::to_string(r.curlCode) + " ("
            + curl_easy_strerror(CURLcode(r.curlCode)) + ")";
        if (r.afterChallenge)
            text += " after the digest challenge";
        return text;
    }
    if (r.status == 401)
        return "http 401 (user name or password refused)";
    return "http " + std::to_string(r.status);
}

} // namespace detail
} // namespace commlayer
