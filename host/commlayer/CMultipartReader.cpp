#include "commlayer/CMultipartReader.h"

#include <cerrno>
#include <cstring>
#include <limits>
#include <strings.h>

namespace commlayer {

namespace {
constexpr size_t kMaxHeaderLine = 8192;

std::string trim(const std::string& s)
{
    const size_t a = s.find_first_not_of(" \t\r\n");
    if (a == std::string::npos)
        return std::string();
    const size_t b = s.find_last_not_of(" \t\r\n");
    return s.substr(a, b - a + 1);
}

// Position of needle in hay, or npos.
size_t find(const char* hay, size_t hayLen, const std::string& needle)
{
    const void* p = memmem(hay, hayLen, needle.data(), needle.size());
    return p ? size_t(static_cast<const char*>(p) - hay) : std::string::npos;
}
} // namespace

CMultipartReader::CMultipartReader(std::string boundary, qint64 maxPartBytes)
    : m_boundaryLine("--" + boundary), m_delimiter("\r\n--" + boundary), m_max(maxPartBytes)
{
}

void CMultipartReader::reset()
{
    m_state = State::Preamble;
    m_line.clear();
    m_part = Part();
    m_declared = -1;
    m_filled = 0;
    m_carry.clear();
}

void CMultipartReader::feed(const char* data, size_t len)
{
    std::string owned;
    while (len > 0) {
        std::string refeed;
        const size_t used = step(data, len, refeed);
        data += used;
        len -= used;
        if (!refeed.empty()) {
            // Bytes recovered after a resynchronisation come before the rest.
            refeed.append(data, len);
            owned.swap(refeed);
            data = owned.data();
            len = owned.size();
        }
    }
}

bool CMultipartReader::takeLine(const char*& d, size_t& n, size_t& used, std::string& line)
{
    const void* nl = memchr(d, '\n', n);
    const size_t take = nl ? size_t(static_cast<const char*>(nl) - d) + 1 : n;
    m_line.append(d, take);
    d += take;
    n -= take;
    used += take;
    if (!nl) {
        if (m_line.size() > kMaxHeaderLine) {
            m_line.clear();
            line = "\x01";  // too long: treated as garbage by callers
            return true;
        }
        return false;
    }
    line.swap(m_line);
    m_line.clear();
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r'))
        line.pop_back();
    return true;
}

void CMultipartReader::fail(const std::string& why, std::string& refeed, const char* extra, size_t extraLen)
{
    if (onError)
        onError(why);
    // Look for the next boundary in what we already hold, then in the stream.
    std::string held(m_part.body.constData(), size_t(std::min<qint64>(m_filled, m_part.body.size())));
    held.append(extra, extraLen);
    m_part = Part();
    m_declared = -1;
    m_filled = 0;
    const size_t at = find(held.data(), held.size(), m_delimiter);
    if (at != std::string::npos) {
        m_state = State::LineEnd;
        refeed = held.substr(at + m_delimiter.size());
        if (refeed.empty())
            return;
        return;
    }
    m_state = State::Skip;
    m_carry = held.size() >= m_delimiter.size() ? held.substr(held.size() - (m_delimiter.size() - 1)) : held;
}

void CMultipartReader::beginBody(std::string& refeed)
{
    if (m_declared < 0) {
        fail("part without Content-Length skipped", refeed, nullptr, 0);
        return;
    }
    if (m_declared > m_max) {
        const std::string why = "part of " + std::to_string(m_declared) + " bytes exceeds the limit of "
            + std::to_string(m_max) + ": skipped";
        m_declared = -1;
        fail(why, refeed, nullptr, 0);
        return;
    }
    m_part.body = QByteArray(int(m_declared), Qt::Uninitialized);
    m_filled = 0;
    m_state = m_declared == 0 ? State::AfterBody : State::Body;
}

size_t CMultipartReader::step(const char* d, size_t n, std::string& refeed)
{
    size_t used = 0;
    std::string line;
    switch (m_state) {
    case State::Preamble:
        if (takeLine(d, n, used, line) && line == m_boundaryLine)
            m_state = State::Headers;
        return used;
    case State::LineEnd:
        // Rest of a boundary line: "\r\n", or "--\r\n" after the last part.
        if (takeLine(d, n, used, line))
            m_state = line.compare(0, 2, "--") == 0 ? State::Preamble : State::Headers;
        return used;
    case State::Headers:
        return readHeader(d, n, refeed);
    case State::Body:
        return readBody(d, n);
    case State::AfterBody:
        return readBodyEnd(d, n, refeed);
    case State::Boundary:
        return readBoundary(d, n);
    case State::Skip:
        return skipToBoundary(d, n, refeed);
    }
    return n;
}

size_t CMultipartReader::readHeader(const char* d, size_t n, std::string& refeed)
{
    size_t used = 0;
    std::string line;
    if (!takeLine(d, n, used, line))
        return used;
    if (line.empty()) {
        beginBody(refeed);
        return used;
    }
    const size_t colon = line.find(':');
    if (colon == std::string::npos) {
        fail("malformed part header skipped", refeed, nullptr, 0);
        return used;
    }
    const std::string name = trim(line.substr(0, colon));
    const std::string value = trim(line.substr(colon + 1));
    if (strcasecmp(name.c_str(), "Content-Type") == 0) {
        m_part.contentType = value;
    } else if (strcasecmp(name.c_str(), "Content-ID") == 0) {
        m_part.contentId = value;
    } else if (strcasecmp(name.c_str(), "Content-Length") == 0) {
        char* end = nullptr;
        errno = 0;
        const long long v = std::strtoll(value.c_str(), &end, 10);
        m_declared = (errno == 0 && end && *end == '\0' && v >= 0) ? v : std::numeric_limits<qint64>::max();
    }
    return used;
}

size_t CMultipartReader::readBody(const char* d, size_t n)
{
    const size_t want = size_t(m_declared - m_filled);
    const size_t take = std::min(want, n);
    memcpy(m_part.body.data() + m_filled, d, take);
    m_filled += qint64(take);
    m_bytesCopied += take;
    if (m_filled == m_declared)
        m_state = State::AfterBody;
    return take;
}

size_t CMultipartReader::readBodyEnd(const char* d, size_t n, std::string& refeed)
{
    // The body ends with CRLF; the part is handed over at once, without
    // waiting for the next boundary (which only comes with the next event).
    const size_t want = 2 - m_line.size();
    const size_t take = std::min(want, n);
    m_line.append(d, take);
    if (m_line.size() < 2)
        return take;
    if (m_line == "\r\n") {
        m_line.clear();
        m_state = State::Boundary;
        Part done = std::move(m_part);
        m_part = Part();
        m_declared = -1;
        if (onPart)
            onPart(done);
        return take;
    }
    // The body did not end where it said: a truncated part.
    std::string tail;
    tail.swap(m_line);
    fail("truncated part (" + std::to_string(m_declared) + " bytes declared) skipped", refeed, tail.data(), tail.size());
    return take;
}

size_t CMultipartReader::readBoundary(const char* d, size_t n)
{
    size_t used = 0;
    std::string line;
    if (!takeLine(d, n, used, line))
        return used;
    if (line == m_boundaryLine) {
        m_state = State::Headers;
    } else if (line == m_boundaryLine + "--") {
        m_state = State::Preamble;
    } else if (!line.empty()) {
        if (onError)
            onError("data between parts skipped");
        m_state = State::Skip;
        m_carry = "\r\n";  // the line just read ended with one
    }
    return used;
}

size_t CMultipartReader::skipToBoundary(const char* d, size_t n, std::string& refeed)
{
    std::string hay = m_carry;
    hay.append(d, n);
    const size_t at = find(hay.data(), hay.size(), m_delimiter);
    if (at == std::string::npos) {
        m_carry = hay.size() >= m_delimiter.size() ? hay.substr(hay.size() - (m_delimiter.size() - 1)) : hay;
        return n;
    }
    m_carry.clear();
    m_state = State::LineEnd;
    refeed = hay.substr(at + m_delimiter.size());
    return n;
}

} // namespace commlayer
