#pragma once
// How many body bytes one device answer may bring, by kind: a broken or
// hostile device must not be able to make the host buffer without end (an
// error page that never ends, a status document that keeps flowing).
// Used by DeviceHttp's transfer callbacks, one per transfer, on the thread
// that runs the transfer; not thread-safe.
#include <cstddef>
#include <string>

namespace commlayer {
namespace detail {

class CBodyLimit final {
public:
    static constexpr size_t kDocument = 8u * 1024 * 1024;   // XML / JSON answers
    static constexpr size_t kPicture = 32u * 1024 * 1024;   // downloaded pictures
    static constexpr size_t kErrorBody = 64u * 1024;        // bodies of 3xx..5xx answers, digest challenges
    static constexpr size_t kStatusDocument = 256u * 1024;  // the channel-status poll
    // A returning-person task's records come in one answer of about 430 bytes
    // a record: room for 300 000.
    static constexpr size_t kRecordList = 128u * 1024 * 1024;

    // The answer limit of a device-API request by its path.
    static size_t ForDevicePath(const std::string& path);

    // answerLimit: for the body of a successful answer that is buffered.
    explicit CBodyLimit(size_t answerLimit) : m_answerLimit(answerLimit) {}

    // A new response begins (digest negotiation sends a challenge first).
    void StartResponse(long status);
    // Counts len more bytes of the current response; false once over its limit.
    bool Accept(size_t len);
    // Counts only error bodies (a stream's successful body is bounded by its parts).
    bool AcceptUnlessSuccess(size_t len);

    bool Exceeded() const { return m_exceeded; }
    size_t CurrentLimit() const;

private:
    size_t m_answerLimit;
    long m_status = 0;
    size_t m_received = 0;
    bool m_exceeded = false;
};

} // namespace detail
} // namespace commlayer
