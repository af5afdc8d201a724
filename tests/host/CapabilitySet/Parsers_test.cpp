// The device document readers against the emulator's own answers, and
// against broken, hostile and oversized text.
#include <functional>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Base/DeviceText.h"
#include "CapabilitySet/CityCodeCapability.h"
#include "CapabilitySet/FaceDataLibraryCap.h"
#include "CapabilitySet/FaceDataLibraryCfg.h"
#include "CapabilitySet/FaceDataRecordCfg.h"
#include "CapabilitySet/HFPDSearchFaceResult.h"
#include "CapabilitySet/PersonnalInfoExtendListConfig.h"
#include "support/DeviceSim.h"

using namespace CapabilitySet;

namespace {

class ParsersTest : public testsupport::SimTest {
protected:
    static std::string fetch(const std::string& requestLine)
    {
        std::string answer;
        EXPECT_TRUE(testsupport::dvapi("TEST0001", requestLine, answer)) << requestLine;
        return answer;
    }
};

TEST_F(ParsersTest, CapabilityFromTheDevice)
{
    FaceDataLibraryCap cap(fetch("GET /DVAPI/Intelligent/FDLib/capabilities\r\n"));
    EXPECT_TRUE(cap.bSupport && cap.bNameRule && cap.bContact && cap.bIDNumber && cap.bBirthDate && cap.bRegion);
    EXPECT_EQ(cap.strNameRule.front(), '^');
    EXPECT_EQ(cap.iContactMaxLen, 32);  // the device says 0
    EXPECT_EQ(std::make_pair(cap.iIDNumberMinLen, cap.iIDNumberMaxLen), std::make_pair(8, 18));
    EXPECT_EQ(cap.sexList, (std::vector<std::string>{"male", "female", "unlimited"}));
    EXPECT_EQ(cap.idTypeList, (std::vector<std::string>{"officerID", "ID", "passportID", "other"}));
    ASSERT_EQ(cap.extendList.size(), 3u);
    EXPECT_EQ(cap.extendList[1].name, "Employee No.");
    EXPECT_FALSE(cap.extendList[2].enable);
}

TEST_F(ParsersTest, LibrariesAndCityCodesFromTheDevice)
{
    FaceDataLibraryCfg libs(fetch("GET /DVAPI/Intelligent/FDLib\r\n"));
    ASSERT_TRUE(libs.bValid);
    ASSERT_EQ(libs.libraries.size(), 3u);
    EXPECT_EQ(libs.libraries[0].name, "Staff");
    EXPECT_EQ(libs.libraries[2].type, "stranger");

    CityCodeCapability cities(fetch("GET /DVAPI/System/cityCode?format=json\r\n"));
    ASSERT_TRUE(cities.bValid);
    const ProvinceCode* hainan = cities.Find("46");
    ASSERT_NE(hainan, nullptr);
    EXPECT_EQ(hainan->cities.back().code, "90");
    EXPECT_EQ(cities.Find("99"), nullptr);
}

TEST(FaceDataRecordCfg, StructToXmlReadsBackWithEscapedText)
{
    FaceDataRecordCfg rec;
    rec.name = "O'Brien & <Sons> \"Ltd\" \xe5\xbc\xa0\xe4\xb8\x89";
    rec.gender = "male";
    rec.idType = "passportID";
    rec.idNumber = "P<1234>";
    rec.province = "44";
    rec.city = "03";
    rec.birthDate = "1990-02-03";
    rec.contact = "+1 555 0100";
    rec.FDID = "2";
    rec.extendList = {{1, true, "Department", "R&D"}};
    const std::string xml = FaceDataRecordCfg::StructToXML(rec);
    FaceDataRecordCfg back(xml);
    ASSERT_TRUE(back.bValid);
    EXPECT_EQ(back.name, rec.name);
    EXPECT_EQ(std::tie(back.idNumber, back.city, back.contact), std::tie(rec.idNumber, rec.city, rec.contact));
    EXPECT_EQ(back.extendList.at(0).value, "R&D");
    EXPECT_EQ(FaceDataRecordCfg::StructToXML(back), xml);  // and every other field
    // Text a form escaped itself is written as it stands, other fields still escaped.
    FaceDataRecordCfg typed;
    typed.name = "R&amp;D &lt;1&gt;";
    typed.contact = "a&b";
    typed.extendList = {{1, true, "Dept &quot;A&quot;", "&apos;x&apos;"}};
    typed.bTextEscaped = true;
    FaceDataRecordCfg read(FaceDataRecordCfg::StructToXML(typed));
    ASSERT_TRUE(read.bValid);
    EXPECT_EQ(std::tie(read.name, read.contact), std::make_tuple(std::string("R&D <1>"), std::string("a&b")));
    EXPECT_EQ(std::tie(read.extendList.at(0).name, read.extendList.at(0).value),
        std::make_tuple(std::string("Dept \"A\""), std::string("'x'")));
    // Empty fields are left out of a search condition.
    EXPECT_EQ(FaceDataRecordCfg::StructToXML(FaceDataRecordCfg()).find("<name>"), std::string::npos);
}

// Every reader, as "parse this text; did it fail and leave an empty record?".
struct Reader {
    const char* name;
    std::string valid;
    std::function<bool(const std::string&, bool& emptyAfter)> parse;
};

template <typename T, typename Empty>
std::function<bool(const std::string&, bool&)> reader(Empty isEmpty)
{
    return [isEmpty](const std::string& text, bool& emptyAfter) {
        T rec;
        const bool ok = rec.Parse(text);
        emptyAfter = isEmpty(rec);
        return ok;
    };
}

std::vector<Reader> readers()
{
    return {
        {"capability",
            "<FaceDataLibraryCap><supported>true</supported><contact><enabled>true</enabled><maxLen>5</maxLen></contact>"
            "<certificateNumber><enabled>true</enabled><minLen>8</minLen><maxLen>18</maxLen></certificateNumber>"
            "</FaceDataLibraryCap>",
            reader<FaceDataLibraryCap>([](const FaceDataLibraryCap& c) { return !c.bSupport && c.extendList.empty(); })},
        {"libraries",
            "<FDLibBaseCfgList><FDLibBaseCfg><FDID>1</FDID><name>A</name><capacity>10</capacity></FDLibBaseCfg>"
            "</FDLibBaseCfgList>",
            reader<FaceDataLibraryCfg>([](const FaceDataLibraryCfg& c) { return !c.bValid && c.libraries.empty(); })},
        {"record", "<FaceAppendData><name>A</name><PersonInfoExtendList><PersonInfoExtend><id>1</id></PersonInfoExtend>"
                   "</PersonInfoExtendList></FaceAppendData>",
            reader<FaceDataRecordCfg>([](const FaceDataRecordCfg& c) { return !c.bValid && c.name.empty(); })},
        {"extensions", "<PersonInfoExtendList><PersonInfoExtend><id>7</id><enable>true</enable></PersonInfoExtend>"
                       "</PersonInfoExtendList>",
            reader<PersonnalInfoExtendListConfig>(
                [](const PersonnalInfoExtendListConfig& c) { return !c.bValid && c.items.empty(); })},
        {"city codes", R"({"CityCode":[{"provinceCode":"44","provinceName":"G","cities":[{"cityCode":"01","cityName":"X"}]}]})",
            reader<CityCodeCapability>([](const CityCodeCapability& c) { return !c.bValid && c.provinces.empty(); })},
        {"hfpd", R"({"progress":100,"targets":[{"index":1,"captureTime":"2020-05-01T10:20:30Z","channelID":"1",)"
                 R"("rect":{"x":0.1,"y":0.2,"width":0.3,"height":0.4}}]})",
            reader<HFPDSearchFaceResult>([](const HFPDSearchFaceResult& c) { return !c.bValid && c.results.empty(); })},
    };
}

// Bidirectional controls in a device's text would reorder what the operator
// reads: every text read from an answer comes without them, the rest intact.
TEST(Parsers, DeviceTextsComeWithoutBidirectionalControls)
{
    struct Row {
        const char* name;
        std::string device;
        std::string shown;
    };
    const Row rows[] = {
        {"plain", "Zo\u00eb Chen", "Zo\u00eb Chen"},
        {"right-to-left override", "\u202egpj.exe", "gpj.exe"},
        {"every embedding and override", "a\u202ab\u202bc\u202cd\u202de\u202ef", "abcdef"},
        {"isolates", "\u2066x\u2067y\u2068z\u2069", "xyz"},
        {"neighbours kept", "\u2029\u202f\u2065\u206a\u200f", "\u2029\u202f\u2065\u206a\u200f"},
        {"empty", "", ""},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        EXPECT_EQ(Base::DeviceText(r.device), r.shown);
        EXPECT_EQ(Base::DeviceText(r.device + "\xE2\x80"), r.shown + "\xE2\x80");  // cut short: kept
        const FaceDataLibraryCfg libs("<FDLibBaseCfgList><FDLibBaseCfg><FDID>1</FDID><name>" + r.device
            + "</name></FDLibBaseCfg></FDLibBaseCfgList>");
        ASSERT_EQ(libs.libraries.size(), 1u);
        EXPECT_EQ(libs.libraries[0].name, r.shown);
        nlohmann::json hfpd = {{"progress", 100}, {"targets", {{{"index", 1}, {"cameraName", r.device}}}}};
        const HFPDSearchFaceResult found(hfpd.dump());
        ASSERT_EQ(found.results.size(), 1u);
        EXPECT_EQ(found.results[0].cameraName, r.shown);
    }
}

TEST(Parsers, ValidTextIsReadBadTextFailsAndLeavesTheRecordEmpty)
{
    std::string nestedXml, nestedJson;
    for (int i = 0; i < 5000; ++i)
        nestedXml += "<a>";
    nestedJson = std::string(100000, '[');
    const std::string laughs =
        "<?xml version=\"1.0\"?><!DOCTYPE FDLibBaseCfgList [<!ENTITY a \"aaaaaaaaaa\">"
        "<!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;\"><!ENTITY c \"&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;\">]>";
    const std::string external = "<?xml version=\"1.0\"?><!DOCTYPE x [<!ENTITY e SYSTEM \"file:///etc/passwd\">]>";
    for (const Reader& r : readers()) {
        bool empty = true;
        EXPECT_TRUE(r.parse(r.valid, empty)) << r.name;
        EXPECT_FALSE(empty) << r.name;
        const bool json = r.valid.front() == '{';
        std::vector<std::pair<std::string, std::string>> bad = {
            {"empty", ""},
            {"garbage", "\x01\x02 not a document \xff"},
            {"embedded NUL", std::string("<a>\0</a>", 8)},
            {"wrong root", json ? "[1,2,3]" : "<Other><supported>true</supported></Other>"},
            {"deep nesting", json ? nestedJson : nestedXml},
        };
        // Every strict prefix of a valid document is a truncated one.
        for (size_t n = 1; n < r.valid.size(); n += 5)
            bad.push_back({"truncated at " + std::to_string(n), r.valid.substr(0, n)});
        if (json) {
            bad.push_back({"wrong type", R"({"progress":"lots","CityCode":{"a":1}})"});
            bad.push_back({"huge number", R"({"progress":123456789012345678901234,"CityCode":[{"provinceCode":1e999}]})"});
            bad.push_back({"huge index", R"({"progress":100,"CityCode":[{"cities":7}],"targets":[{"index":99999999999}]})"});
            bad.push_back({"wrong element type", R"({"progress":100,"CityCode":[3],"targets":[3]})"});
        } else {
            const std::string root = r.valid.substr(1, r.valid.find('>') - 1);
            bad.push_back({"entity expansion", laughs + "<" + root + ">&c;&c;&c;</" + root + ">"});
            bad.push_back({"external entity", external + "<" + root + ">&e;</" + root + ">"});
            bad.push_back({"wrong types", "<" + root + "><supported>maybe</supported><FDLibBaseCfg><FDID>1</FDID>"
                    "<capacity>ten</capacity></FDLibBaseCfg><PersonInfoExtendList><PersonInfoExtend><id>x</id>"
                    "</PersonInfoExtend></PersonInfoExtendList><PersonInfoExtend><id>x</id></PersonInfoExtend></" + root + ">"});
            bad.push_back({"huge numbers", "<" + root + "><supported>true</supported><contact><maxLen>99999999999999999999"
                    "</maxLen></contact><FDLibBaseCfg><FDID>1</FDID><capacity>99999999999999999999</capacity></FDLibBaseCfg>"
                    "<PersonInfoExtendList><PersonInfoExtend><id>99999999999</id></PersonInfoExtend></PersonInfoExtendList>"
                    "<PersonInfoExtend><id>99999999999</id></PersonInfoExtend></" + root + ">"});
        }
        for (const auto& b : bad) {
            empty = false;
            const bool ok = r.parse(b.second, empty);
            // A record has only optional fields: those inputs only have to be read safely.
            if (std::string(r.name) == "record" && (b.first == "wrong types" || b.first == "huge numbers"))
                continue;
            EXPECT_FALSE(ok) << r.name << ": " << b.first;
            EXPECT_TRUE(empty) << r.name << ": " << b.first;
        }
    }
}

} // namespace
