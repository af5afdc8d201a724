// Decisions of the frequent-person detail view that need no widget: page
// jumps, attribute words, mask bits, colours (pages, pictures and pager
// buttons are checked on the view itself).
#include <gtest/gtest.h>

#include "ui/ShowCard/ReCustomer/CHFPDAttributes.h"
#include "ui/ShowCard/ReCustomer/CHFPDPaging.h"

using namespace BodyTemperature;
using Item = CHFPDAttributes::Item;

TEST(HFPDPagingTest, JumpTargets)
{
    const struct {
        const char* text;
        uint32_t current, pages;
        bool jumps;
        uint32_t target;
    } rows[] = {
        {"", 1, 3, false, 0}, {"   ", 1, 3, false, 0}, {" 3 ", 1, 3, true, 3}, {"2", 2, 3, false, 0},
        {"1", 3, 3, true, 1}, {"4", 1, 3, false, 0}, {"0", 1, 3, false, 0}, {"x", 1, 3, false, 0},
    };
    for (const auto& r : rows) {
        uint32_t target = 0;
        EXPECT_EQ(CHFPDPaging::JumpTarget(QString::fromLatin1(r.text), r.current, r.pages, target), r.jumps) << r.text;
        EXPECT_EQ(target, r.target) << r.text;
    }
}

TEST(HFPDAttributesTest, WordsToCodes)
{
    const struct {
        int (*convert)(const std::string&);
        const char* word;
        int code;
    } rows[] = {
        // Words are matched exactly; anything else is the family's unknown value.
        {CHFPDAttributes::AgeGroupCode, "child", 1}, {CHFPDAttributes::AgeGroupCode, "middleAged", 9},
        {CHFPDAttributes::AgeGroupCode, "Young", 10}, {CHFPDAttributes::AgeGroupCode, "", 10},
        {CHFPDAttributes::ExpressionCode, "poker-faced", 1}, {CHFPDAttributes::ExpressionCode, "panic", 8},
        {CHFPDAttributes::ExpressionCode, "calm", 0},
        {CHFPDAttributes::GenderCode, "female", 2}, {CHFPDAttributes::GenderCode, "m", 0},
        {CHFPDAttributes::GlassesCode, "sunglasses", 3}, {CHFPDAttributes::GlassesCode, "maybe", 0},
    };
    for (const auto& r : rows)
        EXPECT_EQ(r.convert(r.word), r.code) << r.word;
}

TEST(HFPDAttributesTest, MaskBitsChooseItems)
{
    const struct {
        uint32_t mask;
        std::vector<Item> shown;
    } rows[] = {
        {0, {}},
        {0x4, {Item::Glasses}},
        {0x8, {Item::AgeGroup}},
        {0x20, {Item::Gender}},
        {0x100, {Item::Hat}},
        {0x4000, {Item::Mask}},
        {0x2000 | 0x800000, {}},
        {CHFPDAttributes::kReturningPersonMask, {Item::Gender, Item::AgeGroup, Item::Glasses, Item::Mask}},
        {0xFFFFFFFF, {Item::Gender, Item::AgeGroup, Item::Glasses, Item::Mask, Item::Hat}},
    };
    for (const auto& r : rows)
        EXPECT_EQ(CHFPDAttributes::ShownItems(r.mask), r.shown) << std::hex << r.mask;
    EXPECT_EQ(CHFPDAttributes::kReturningPersonMask, 0x80602Cu);
}

TEST(HFPDAttributesTest, ColourCodes)
{
    const struct {
        int code;
        const char* value;
    } rows[] = {{0, "none;"}, {1, "rgb(255, 255, 255);"}, {16, "rgb(34, 31, 53);"}, {17, "none;"}, {-1, "none;"}};
    for (const auto& r : rows)
        EXPECT_EQ(CHFPDAttributes::ColourValue(r.code), r.value) << r.code;
}

TEST(HFPDAttributesTest, IconsAndTitles)
{
    const std::string nor = ":/MixedTargetPropNor/Images/MixedTargetDetectionAlarm/PropertyNormal/";
    const std::string sel = ":/MixedTargetPropSel/Images/MixedTargetDetectionAlarm/PropertySelect/";
    const struct {
        CHFPDAttributes::Look look;
        std::string icon;
        const char* key;
    } rows[] = {
        {CHFPDAttributes::GenderLook(0), nor + "gender_unknow.svg", "Unknown"},
        {CHFPDAttributes::GenderLook(2), sel + "female_sel.svg", "Female"},
        {CHFPDAttributes::GlassesLook(2), nor + "glasses_nor.svg", "DontWearGlassesmIlCdjmf"},
        {CHFPDAttributes::HatLook("helmet"), "", "WearAHelmetvCkgZAKV"},
        {CHFPDAttributes::HatLook("no"), "", "DontWearAHatsatafxnG"},
    };
    for (const auto& r : rows) {
        EXPECT_EQ(r.look.icon, r.icon) << r.key;
        EXPECT_STREQ(r.look.key, r.key);
    }
}
