// The face library requests against the emulator over loopback.
#include <gtest/gtest.h>

#include "Base/Base.h"
#include "commlayer/CommErrors.h"
#include "support/DeviceSim.h"
#include "ui/AddIntoFaceLib/FaceLibRequests.h"

using namespace BodyTemperature;

namespace {

using FaceLibRequestsTest = testsupport::SimTest;

TEST_F(FaceLibRequestsTest, AnswersAreParsed)
{
    uint32_t err = 99;
    CapabilitySet::FaceDataLibraryCap cap;
    ASSERT_TRUE(GetFaceDataLibraryCapability(cap, err, "TEST0001"));
    EXPECT_EQ(err, 0u);
    EXPECT_TRUE(cap.bSupport);
    EXPECT_EQ(cap.iContactMaxLen, 32);  // the device says 0
    EXPECT_EQ(std::make_pair(cap.iIDNumberMinLen, cap.iIDNumberMaxLen), std::make_pair(8, 18));

    CapabilitySet::FaceDataLibraryCfg libs;
    ASSERT_TRUE(GetFaceDataLibraryCfg(libs, err, "TEST0001"));
    ASSERT_EQ(libs.libraries.size(), 3u);
    EXPECT_EQ(libs.libraries[2].type, "stranger");

    CapabilitySet::PersonnalInfoExtendListConfig ext;
    ASSERT_TRUE(GetPersonnalInfoExtendListCfg(ext, err, "TEST0001", "1"));
    EXPECT_EQ(ext.items.size(), 3u);
    ASSERT_TRUE(GetPersonnalInfoExtendListCfg(ext, err, "TEST0001"));
    EXPECT_EQ(ext.items.at(1).name, "Employee No.");

    CapabilitySet::CityCodeCapability cities;
    ASSERT_TRUE(GetCityCodeCapability(cities, err, "TEST0001"));
    ASSERT_NE(cities.Find("44"), nullptr);
    EXPECT_EQ(cities.Find("44")->cities.size(), 3u);

    CapabilitySet::FaceDataRecordCfg cond;
    cond.FDID = "1";
    EXPECT_TRUE(SearchFaceDataRecord(cond, err, "TEST0001"));
}

TEST_F(FaceLibRequestsTest, FailuresClearTheOutputAndSetTheCode)
{
    struct Row {
        const char* name;
        const char* device;
        const char* fault;
        std::pair<int, int> pair;
    };
    const Row rows[] = {
        {"unknown device", "NOSUCH", "", {commlayer::kErrNoDevice, 0}},
        {"device error", "TEST0001", R"({"path":"/DVAPI","status":500,"subStatus":870})", {commlayer::kErrDeviceStatus, 870}},
        {"malformed answer", "TEST0001", R"({"path":"/DVAPI","malformed":true})", {commlayer::kErrBadAnswer, 0}},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        if (*r.fault)
            s_sim->control("POST", "/control/fault", r.fault);
        uint32_t err = 0;
        CapabilitySet::FaceDataLibraryCap cap;
        cap.bSupport = true;
        EXPECT_FALSE(GetFaceDataLibraryCapability(cap, err, r.device));
        EXPECT_FALSE(cap.bSupport);
        EXPECT_EQ(err, kFaceLibRequestFailed);
        EXPECT_EQ(Base::Error::GetLastError(), r.pair);

        CapabilitySet::FaceDataLibraryCfg libs;
        libs.libraries.resize(2);
        err = 0;
        EXPECT_FALSE(GetFaceDataLibraryCfg(libs, err, r.device));
        EXPECT_TRUE(libs.libraries.empty());
        EXPECT_EQ(err, kFaceLibRequestFailed);

        CapabilitySet::FaceDataRecordCfg rec;
        rec.name = "stale";
        EXPECT_FALSE(GetFaceDataRecordConfig(rec, err, r.device, "1", "1"));
        EXPECT_EQ(rec.name, "");
        CapabilitySet::CityCodeCapability cities;
        cities.provinces.resize(1);
        EXPECT_FALSE(GetCityCodeCapability(cities, err, r.device));
        EXPECT_TRUE(cities.provinces.empty());
        EXPECT_FALSE(SearchFaceDataRecord(CapabilitySet::FaceDataRecordCfg(), err, r.device));
        s_sim->control("DELETE", "/control/fault");
    }
}

} // namespace
