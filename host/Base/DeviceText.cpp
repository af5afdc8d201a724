#include "Base/DeviceText.h"

namespace Base {

std::string DeviceText(std::string text)
{
    // U+202A..U+202E are E2 80 AA..AE in UTF-8, U+2066..U+2069 E2 81 A6..A9.
    size_t out = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\xE2' && i + 2 < text.size()) {
            const auto b1 = static_cast<unsigned char>(text[i + 1]);
            const auto b2 = static_cast<unsigned char>(text[i + 2]);
            if ((b1 == 0x80 && b2 >= 0xAA && b2 <= 0xAE) || (b1 == 0x81 && b2 >= 0xA6 && b2 <= 0xA9)) {
                i += 2;
                continue;
            }
        }
        text[out++] = text[i];
    }
    text.resize(out);
    return text;
}

} // namespace Base
