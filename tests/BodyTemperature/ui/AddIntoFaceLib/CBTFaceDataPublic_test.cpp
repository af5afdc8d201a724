// The combo conversions of the add-to-library form and the built-in province
// and city table.
#include <QComboBox>
#include <gtest/gtest.h>

#include "ui/AddIntoFaceLib/CBTFaceDataPublic.h"

using BodyTemperature::CBTFaceDataPublic;

namespace {

std::vector<std::pair<QString, int>> items(const QComboBox& c)
{
    std::vector<std::pair<QString, int>> out;
    for (int i = 0; i < c.count(); ++i)
        out.emplace_back(c.itemText(i), c.itemData(i).toInt());
    return out;
}

// The province combo ends with "Unknown"; every province's city combo starts
// with it, then its cities in code order; a few rows where the table's order or
// codes are easy to get wrong.
TEST(CBTFaceDataPublic, BuiltInProvincesAndTheirCitiesInCodeOrder)
{
    const auto& provinces = CBTFaceDataPublic::Provinces();
    ASSERT_EQ(provinces.size(), 34u);
    size_t total = 0;
    QComboBox combo;
    for (size_t i = 0; i < provinces.size(); ++i) {
        SCOPED_TRACE(provinces[i].code);
        EXPECT_TRUE(i == 0 || provinces[i - 1].code < provinces[i].code);
        CBTFaceDataPublic::FillCityCombo(&combo, provinces[i].code);
        EXPECT_EQ(items(combo).front(), std::make_pair(QStringLiteral("Unknown"), 100));
        total += size_t(combo.count() - 1);
        for (int k = 2; k < combo.count(); ++k)
            EXPECT_LT(combo.itemData(k - 1).toInt(), combo.itemData(k).toInt());
    }
    EXPECT_EQ(total, 340u);
    const struct { int province; size_t cities; const char* lastKey; int lastCode; } rows[] = {
        {15, 12, "Balashanmen", 29}, {71, 0, "Unknown", 100}};
    for (const auto& r : rows) {
        CBTFaceDataPublic::FillCityCombo(&combo, r.province);
        EXPECT_EQ(size_t(combo.count() - 1), r.cities) << r.province;
        EXPECT_EQ(items(combo).back(), std::make_pair(QString::fromLatin1(r.lastKey), r.lastCode)) << r.province;
    }
    const auto inner = CBTFaceDataPublic::CitiesOf(15);
    EXPECT_STREQ(inner[inner.size() - 3].key, "Xinganmen");
    EXPECT_STREQ(inner[inner.size() - 2].key, "Xilinguolemen");

    CBTFaceDataPublic::FillProvinceCombo(&combo);
    ASSERT_EQ(combo.count(), 35);
    EXPECT_EQ(items(combo)[0], std::make_pair(QStringLiteral("Beijingshi"), 11));
    EXPECT_EQ(items(combo)[26], std::make_pair(QStringLiteral("Shanxi3"), 61));
    EXPECT_EQ(items(combo)[34], std::make_pair(QStringLiteral("Unknown"), 100));
    combo.setCurrentIndex(2);
    EXPECT_EQ(CBTFaceDataPublic::GetRegionCode(&combo), "13");
    combo.setCurrentIndex(34);
    EXPECT_EQ(CBTFaceDataPublic::GetRegionCode(&combo), "");
    CBTFaceDataPublic::FillCityCombo(&combo, 99);  // not a province
    EXPECT_EQ(combo.count(), 1);
    CBTFaceDataPublic::FillCityCombo(&combo, 13);
    combo.setCurrentIndex(3);
    EXPECT_EQ(CBTFaceDataPublic::GetRegionCode(&combo), "03");
}

TEST(CBTFaceDataPublic, DeviceCityTableFillsTheCombos)
{
    CapabilitySet::CityCodeCapability cities;
    cities.provinces = {{"44", "Guangdong", {{"01", "Guangzhou"}, {"03", "Shenzhen"}}}, {"46", "Hainan", {}}};
    QComboBox province;
    CBTFaceDataPublic::FillProvinceCombo(&province, cities);
    EXPECT_EQ(items(province), (std::vector<std::pair<QString, int>>{{QStringLiteral("Guangdong"), 44}, {QStringLiteral("Hainan"), 46}, {QStringLiteral("Unknown"), 100}}));
    QComboBox city;
    CBTFaceDataPublic::FillCityCombo(&city, cities, 44);
    EXPECT_EQ(items(city), (std::vector<std::pair<QString, int>>{{QStringLiteral("Unknown"), 100}, {QStringLiteral("Guangzhou"), 1}, {QStringLiteral("Shenzhen"), 3}}));
    cities.provinces[0].cities[1].code = "x3";
    EXPECT_THROW(CBTFaceDataPublic::FillCityCombo(&city, cities, 44), std::invalid_argument);
}

TEST(CBTFaceDataPublic, GenderConversions)
{
    const struct { const char* word; int data; const char* text; } rows[] = {{"male", 1, "Male"}, {"female", 2, "Female"}, {"unlimited", 0, "Unknown"}, {"other", 0, "Unknown"},
        {"", 0, "Unknown"}};
    QComboBox combo;
    CBTFaceDataPublic::FillGenderCombo(&combo, {"male", "female", "unlimited"});
    EXPECT_EQ(items(combo), (std::vector<std::pair<QString, int>>{{QStringLiteral("Male"), 1}, {QStringLiteral("Female"), 2}, {QStringLiteral("Unknown"), 0}}));
    for (const auto& r : rows) {
        SCOPED_TRACE(r.word);
        combo.setCurrentIndex(-1);
        CBTFaceDataPublic::SetGenderToCombo(&combo, r.word);
        EXPECT_EQ(combo.currentData().toInt(), r.data);
        EXPECT_EQ(CBTFaceDataPublic::GenderToText(r.word), QString::fromLatin1(r.text));
    }
    CBTFaceDataPublic::FillGenderCombo(&combo, {"male", "female"});
    EXPECT_EQ(combo.count(), 2);
    combo.setCurrentIndex(1);
    EXPECT_EQ(CBTFaceDataPublic::GetGenderFromCombo(&combo), "female");
    combo.addItem(QStringLiteral("odd"), 7);
    combo.setCurrentIndex(2);
    EXPECT_EQ(CBTFaceDataPublic::GetGenderFromCombo(&combo), "");
    CBTFaceDataPublic::SetGenderToCombo(nullptr, "male");  // no combo: nothing happens
    EXPECT_EQ(CBTFaceDataPublic::GetGenderFromCombo(nullptr), "");
}

TEST(CBTFaceDataPublic, IDTypesKeepTheDeviceOrder)
{
    QComboBox combo;
    CBTFaceDataPublic::FillIDTypeCombo(&combo, {"passportID", "ID", "officerID", "other", "unlimited", "bogus"});
    ASSERT_EQ(combo.count(), 5);
    const char* const shown[][2] = {{"passportID", "Passport"}, {"ID", "IDCard"},
        {"officerID", "Vantor-Desk_Client.d481f26a251048d1a6dde197a75a0713.name"}, {"other", "Others"}, {"unlimited", "Unknown"}};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(combo.itemText(i), QString::fromLatin1(shown[i][1]));
        combo.setCurrentIndex(i);
        EXPECT_EQ(CBTFaceDataPublic::GetIDTypeFromCombo(&combo), shown[i][0]);
    }
}

} // namespace
