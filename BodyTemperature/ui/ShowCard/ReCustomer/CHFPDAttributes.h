#pragma once
// The device's attribute words of a capture as codes, which attributes an
// opener's mask shows, and how each is drawn (icon, title key, colour).
// Pure functions, any thread.
#include <cstdint>
#include <string>
#include <vector>

namespace BodyTemperature {

class CHFPDAttributes final {
public:
    enum class Item { Glasses, AgeGroup, Gender, Hat, Mask };

    // Bits of the attribute mask an opener hands to the detail view.
    static constexpr uint32_t kGlassesBit = 0x4;
    static constexpr uint32_t kAgeGroupBit = 0x8;
    static constexpr uint32_t kGenderBit = 0x20;
    static constexpr uint32_t kHatBit = 0x100;
    static constexpr uint32_t kMaskBit = 0x4000;
    // What the returning-person card shows: glasses, age group, gender, mask.
    static constexpr uint32_t kReturningPersonMask = 8413228;  // 0x80602C

    static int AgeGroupCode(const std::string& word);
    static int ExpressionCode(const std::string& word);
    static int GenderCode(const std::string& word);
    static int GlassesCode(const std::string& word);

    // Shown items for a mask, in display order.
    static std::vector<Item> ShownItems(uint32_t mask);

    // "background-color:" value of a colour code ("none;" when unknown).
    static std::string ColourValue(int code);

    // Icon resource ("" when the item has none) and untranslated title key.
    struct Look {
        const char* icon;
        const char* key;
    };
    static Look GenderLook(int code);
    static Look GlassesLook(int code);
    static Look AgeGroupLook(int code);
    static Look HatLook(const std::string& word);
    static Look MaskLook(const std::string& word);
};

} // namespace BodyTemperature
