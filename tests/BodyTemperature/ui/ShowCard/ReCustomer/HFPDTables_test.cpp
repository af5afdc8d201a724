// Decisions of the frequent-person detail view that need no widget: pages,
// pictures, pager buttons, jumps, attribute words, mask bits, colours.
#include <gtest/gtest.h>

#include "ui/ShowCard/ReCustomer/CHFPDAttributes.h"
#include "ui/ShowCard/ReCustomer/CHFPDPaging.h"

using namespace BodyTemperature;
using Item = CHFPDAttributes::Item;

TEST(HFPDPagingTest, PagesOfTwentyAndPicturesPerPage)
{
    const struct {
        size_t records;
        uint32_t pages, pagerPages, onFirst, onLast;
    } rows[] = {
        {0, 0, 1, 0, 0},
        {1, 1, 1, 1, 1},
        {20, 1, 1, 20, 20},
        {21, 2, 2, 20, 1},
        {40, 2, 2, 20, 20},
        {41, 3, 3, 20, 1},
        {200, 10, 10, 20, 20},
    };
    for (const auto& r : rows) {
        EXPECT_EQ(CHFPDPaging::PageCount(r.records), r.pages) << r.records;
        EXPECT_EQ(CHFPDPaging::PagerPageCount(r.records), r.pagerPages) << r.records;
        EXPECT_EQ(CHFPDPaging::PictureCount(r.records, 1), r.onFirst) << r.records;
        EXPECT_EQ(CHFPDPaging::PictureCount(r.records, r.pagerPages), r.onLast) << r.records;
        EXPECT_EQ(CHFPDPaging::PictureCount(r.records, r.pagerPages + 1), 0u) << r.records;
    }
}

TEST(HFPDPagingTest, PictureOfPageIsRecord)
{
    const struct {
        uint32_t page, picture;
        size_t record;
    } rows[] = {{1, 1, 0}, {1, 20, 19}, {2, 1, 20}, {3, 1, 40}, {3, 2, 41}, {10, 20, 199}};
    for (const auto& r : rows)
        EXPECT_EQ(CHFPDPaging::RecordIndex(r.page, r.picture), r.record) << r.page << "/" << r.picture;
}

TEST(HFPDPagingTest, ButtonsEnabledByPosition)
{
    const struct {
        uint32_t current, pages;
        bool first, prev, next, last;
    } rows[] = {
        {1, 1, false, false, false, false},
        {1, 3, false, false, true, true},
        {2, 3, true, true, true, true},
        {3, 3, true, true, false, false},
    };
    for (const auto& r : rows) {
        const auto b = CHFPDPaging::ButtonsFor(r.current, r.pages);
        EXPECT_EQ(b.first, r.first) << r.current << "/" << r.pages;
        EXPECT_EQ(b.prev, r.prev) << r.current << "/" << r.pages;
        EXPECT_EQ(b.next, r.next) << r.current << "/" << r.pages;
        EXPECT_EQ(b.last, r.last) << r.current << "/" << r.pages;
    }
}

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
        {CHFPDAttributes::AgeGroupCode, "unknown", 0}, {CHFPDAttributes::AgeGroupCode, "child", 1},
        {CHFPDAttributes::AgeGroupCode, "young", 2}, {CHFPDAttributes::AgeGroupCode, "middle", 3},
        {CHFPDAttributes::AgeGroupCode, "old", 4}, {CHFPDAttributes::AgeGroupCode, "infant", 5},
        {CHFPDAttributes::AgeGroupCode, "kid", 6}, {CHFPDAttributes::AgeGroupCode, "teenager", 7},
        {CHFPDAttributes::AgeGroupCode, "prime", 8}, {CHFPDAttributes::AgeGroupCode, "middleAged", 9},
        {CHFPDAttributes::AgeGroupCode, "Young", 10}, {CHFPDAttributes::AgeGroupCode, "", 10},
        {CHFPDAttributes::ExpressionCode, "poker-faced", 1}, {CHFPDAttributes::ExpressionCode, "happy", 2},
        {CHFPDAttributes::ExpressionCode, "surprised", 3}, {CHFPDAttributes::ExpressionCode, "disgusted", 4},
        {CHFPDAttributes::ExpressionCode, "sad", 5}, {CHFPDAttributes::ExpressionCode, "angry", 6},
        {CHFPDAttributes::ExpressionCode, "contemptuous", 7}, {CHFPDAttributes::ExpressionCode, "panic", 8},
        {CHFPDAttributes::ExpressionCode, "calm", 0},
        {CHFPDAttributes::GenderCode, "unknown", 0}, {CHFPDAttributes::GenderCode, "male", 1},
        {CHFPDAttributes::GenderCode, "female", 2}, {CHFPDAttributes::GenderCode, "m", 0},
        {CHFPDAttributes::GlassesCode, "unknown", 0}, {CHFPDAttributes::GlassesCode, "yes", 1},
        {CHFPDAttributes::GlassesCode, "no", 2}, {CHFPDAttributes::GlassesCode, "sunglasses", 3},
        {CHFPDAttributes::GlassesCode, "maybe", 0},
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
    } rows[] = {{0, "none;"}, {1, "rgb(255, 255, 255);"}, {2, "rgb(192,192,192);"}, {5, "rgb(205, 34, 34);"},
        {13, "rgb(47,79,79);"}, {16, "rgb(34, 31, 53);"}, {17, "none;"}, {-1, "none;"}};
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
        {CHFPDAttributes::GenderLook(1), sel + "male_sel.svg", "Male"},
        {CHFPDAttributes::GenderLook(2), sel + "female_sel.svg", "Female"},
        {CHFPDAttributes::GlassesLook(0), nor + "glasses_unknow.svg", "Unknown"},
        {CHFPDAttributes::GlassesLook(1), sel + "glasses_sel.svg", "WearGlasses"},
        {CHFPDAttributes::GlassesLook(2), nor + "glasses_nor.svg", "DontWearGlassesmIlCdjmf"},
        {CHFPDAttributes::GlassesLook(3), sel + "darkGlass_sel.svg", "WithSunglasses"},
        {CHFPDAttributes::HatLook("helmet"), "", "WearAHelmetvCkgZAKV"},
        {CHFPDAttributes::HatLook("yes"), "", "WearingHat"},
        {CHFPDAttributes::HatLook("no"), "", "DontWearAHatsatafxnG"},
    };
    for (const auto& r : rows) {
        EXPECT_EQ(r.look.icon, r.icon) << r.key;
        EXPECT_STREQ(r.look.key, r.key);
    }
}
