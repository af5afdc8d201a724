#include "ui/ShowCard/ReCustomer/CHFPDAttributes.h"

#include <QtGlobal>


namespace BodyTemperature {

namespace {

struct WordCode {
    const char* word;
    int code;
};

template <size_t N>
int lookup(const WordCode (&table)[N], const std::string& word, int otherwise)
{
    for (const WordCode& w : table)
        if (word == w.word)
            return w.code;
    return otherwise;
}

const char* const kNor = ":/MixedTargetPropNor/Images/MixedTargetDetectionAlarm/PropertyNormal/";
const char* const kSel = ":/MixedTargetPropSel/Images/MixedTargetDetectionAlarm/PropertySelect/";

} // namespace

// Title keys are translated by the detail view, in its context.

int CHFPDAttributes::AgeGroupCode(const std::string& word)
{
    static const WordCode table[] = {{"unknown", 0}, {"child", 1}, {"young", 2}, {"middle", 3}, {"old", 4},
        {"infant", 5}, {"kid", 6}, {"teenager", 7}, {"prime", 8}, {"middleAged", 9}};
    return lookup(table, word, 10);
}

int CHFPDAttributes::ExpressionCode(const std::string& word)
{
    static const WordCode table[] = {{"poker-faced", 1}, {"happy", 2}, {"surprised", 3}, {"disgusted", 4},
        {"sad", 5}, {"angry", 6}, {"contemptuous", 7}, {"panic", 8}};
    return lookup(table, word, 0);
}

int CHFPDAttributes::GenderCode(const std::string& word)
{
    static const WordCode table[] = {{"unknown", 0}, {"male", 1}, {"female", 2}};
    return lookup(table, word, 0);
}

int CHFPDAttributes::GlassesCode(const std::string& word)
{
    static const WordCode table[] = {{"unknown", 0}, {"yes", 1}, {"no", 2}, {"sunglasses", 3}};
    return lookup(table, word, 0);
}

std::vector<CHFPDAttributes::Item> CHFPDAttributes::ShownItems(uint32_t mask)
{
    static const struct {
        uint32_t bit;
        Item item;
    } order[] = {{kGenderBit, Item::Gender}, {kAgeGroupBit, Item::AgeGroup}, {kGlassesBit, Item::Glasses},
        {kMaskBit, Item::Mask}, {kHatBit, Item::Hat}};
    std::vector<Item> shown;
    for (const auto& o : order)
        if ((mask & o.bit) != 0)
            shown.push_back(o.item);
    return shown;
}

std::string CHFPDAttributes::ColourValue(int code)
{
    static const char* const colours[] = {"rgb(255, 255, 255);", "rgb(192,192,192);", "rgb(128, 128, 128);",
        "rgb(0, 0, 0);", "rgb(205, 34, 34);", "rgb(0, 0, 139);", "rgb(34, 93, 243);", "rgb(234, 196, 26);",
        "rgb(34, 172, 56);", "rgb(126, 67, 8);", "rgb(230, 168, 179);", "rgb(171, 51, 173);", "rgb(47,79,79);",
        "rgb(0, 255, 255);", "rgb(255, 165, 0);", "rgb(34, 31, 53);"};
    if (code < 1 || code > 16)
        return "none;";
    return colours[code - 1];
}

CHFPDAttributes::Look CHFPDAttributes::GenderLook(int code)
{
    static const std::string unknown = std::string(kNor) + "gender_unknow.svg";
    static const std::string female = std::string(kSel) + "female_sel.svg";
    static const std::string male = std::string(kSel) + "male_sel.svg";
    switch (code) {
    case 1: return {male.c_str(), QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "Male")};
    case 2: return {female.c_str(), QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "Female")};
    default: return {unknown.c_str(), QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "Unknown")};
    }
}

CHFPDAttributes::Look CHFPDAttributes::GlassesLook(int code)
{
    static const std::string unknown = std::string(kNor) + "glasses_unknow.svg";
    static const std::string sunglasses = std::string(kSel) + "darkGlass_sel.svg";
    static const std::string none = std::string(kNor) + "glasses_nor.svg";
    static const std::string glasses = std::string(kSel) + "glasses_sel.svg";
    switch (code) {
    case 1: return {glasses.c_str(), QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "WearGlasses")};
    case 2: return {none.c_str(), QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "DontWearGlassesmIlCdjmf")};
    case 3: return {sunglasses.c_str(), QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "WithSunglasses")};
    default: return {unknown.c_str(), QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "Unknown")};
    }
}

CHFPDAttributes::Look CHFPDAttributes::AgeGroupLook(int code)
{
    static const char* const keys[] = {
        QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "Unknown"),
        QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "AgeChild"),
        QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "AgeYoung"),
        QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "AgeMiddle"),
        QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "AgeOld"),
        QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "AgeInfant"),
        QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "AgeKid"),
        QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "AgeTeenager"),
        QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "AgePrime"),
        QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "AgeMiddleAged"),
    };
    return {"", code >= 0 && code < 10 ? keys[code] : QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "Unknown")};
}

CHFPDAttributes::Look CHFPDAttributes::HatLook(const std::string& word)
{
    if (word == "helmet")
        return {"", QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "WearAHelmetvCkgZAKV")};
    if (word == "yes")
        return {"", QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "WearingHat")};
    if (word == "no")
        return {"", QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "DontWearAHatsatafxnG")};
    return {"", QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "Unknown")};
}

CHFPDAttributes::Look CHFPDAttributes::MaskLook(const std::string& word)
{
    if (word == "yes")
        return {"", QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "WearingAMask")};
    if (word == "no")
        return {"", QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "NoGauzeMask")};
    return {"", QT_TRANSLATE_NOOP("BodyTemperature::CHFPDShowDetailWid", "Unknown")};
}

} // namespace BodyTemperature
