#pragma once
// Small host base helpers: error pair of the last failed device request,
// base64, time conversion and local-to-UTF-8 conversion. Thread-safe.
#include <cstdint>
#include <ctime>
#include <string>
#include <utility>

namespace Base {

// Converts text in the local 8-bit encoding to UTF-8.
std::string LocalToUTF8(const std::string& local);
// Converts UTF-8 text to the local 8-bit encoding.
std::string UTF8ToLocal(const std::string& utf8);

namespace Error {
// The (SDK error code, device sub-status code) pair of the calling thread's
// last failed request; (0, 0) when none failed.
std::pair<int, int> GetLastError();
void SetLastError(int first, int second);
} // namespace Error

namespace Encrypt {
std::string Base64EncodeEx(const unsigned char* data, size_t length);
std::string Base64EncodeEx(const std::string& data);
// Returns false (and clears out) when the text is not valid base64.
bool Base64DecodeEx(const std::string& text, std::string& out);
} // namespace Encrypt

namespace TimeUtil {
// "yyyy-MM-dd hh:mm:ss" (local time) to seconds since 1970; -1 when unparsable.
std::time_t StrDatetime2TimeT(const std::string& text);
} // namespace TimeUtil

} // namespace Base
