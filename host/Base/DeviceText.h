#pragma once
// Texts that devices send (names, labels, picture references) come from
// outside: every reader of device answers passes its texts through
// DeviceText once, as it reads them, so that no label, table, report or log
// line downstream has to care. Any thread.
#include <string>

namespace Base {

// The UTF-8 text without its bidirectional embedding, override and isolate
// controls (U+202A..U+202E, U+2066..U+2069), which would reorder what the
// operator reads around them.
std::string DeviceText(std::string text);

} // namespace Base
