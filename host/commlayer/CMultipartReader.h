#pragma once
// Incremental reader of a multipart body (the device's alarm stream). Bytes
// are fed as they arrive; each complete part is handed to onPart with its
// body in a QByteArray allocated once at its declared Content-Length and
// filled straight from the fed buffers, so a picture's bytes are copied once.
//
// A part whose declared length is missing or above the limit, or whose body
// is not followed by the boundary (truncated), is skipped: onError is called
// and reading resumes at the next boundary found in the data. A truncated
// part is only noticed once its declared length has been read, so the event
// after it is recovered when enough later bytes have arrived. One thread
// (the subscription's); not thread-safe.
#include <QByteArray>
#include <cstdint>
#include <functional>
#include <string>

namespace commlayer {

class CMultipartReader final {
public:
    struct Part {
        std::string contentType;
        std::string contentId;
        QByteArray body;
    };

    CMultipartReader(std::string boundary, qint64 maxPartBytes);

    void feed(const char* data, size_t len);
    void reset();

    std::function<void(Part&)> onPart;
    std::function<void(const std::string&)> onError;

    // Body bytes written into part buffers since construction.
    uint64_t bytesCopied() const { return m_bytesCopied; }

private:
    enum class State { Preamble, Headers, Body, AfterBody, Boundary, Skip, LineEnd };
    // Each consumes bytes for its state and returns how many it used; refeed
    // receives bytes to read again after a resynchronisation.
    size_t step(const char* d, size_t n, std::string& refeed);
    size_t readHeader(const char* d, size_t n, std::string& refeed);
    size_t readBody(const char* d, size_t n);
    size_t readBodyEnd(const char* d, size_t n, std::string& refeed);
    size_t readBoundary(const char* d, size_t n);
    size_t skipToBoundary(const char* d, size_t n, std::string& refeed);
    bool takeLine(const char*& d, size_t& n, size_t& used, std::string& line);
    void beginBody(std::string& refeed);
    void fail(const std::string& why, std::string& refeed, const char* extra, size_t extraLen);

    std::string m_boundaryLine;  // "--boundary"
    std::string m_delimiter;     // "\r\n--boundary"
    qint64 m_max;
    State m_state = State::Preamble;
    std::string m_line;
    Part m_part;
    qint64 m_declared = -1;
    qint64 m_filled = 0;
    std::string m_carry;
    uint64_t m_bytesCopied = 0;
};

} // namespace commlayer
