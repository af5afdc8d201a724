// The face upload thread and the face library requests against the emulator,
// the upload's condition record and the choice of the message the operator sees.
#include <QSignalSpy>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Base/Base.h"
#include "commlayer/CommErrors.h"
#include "support/DeviceSim.h"
#include "ui/AddIntoFaceLib/CFaceUploadCheck.h"
#include "ui/AddIntoFaceLib/CFaceUploadOutcome.h"
#include "ui/AddIntoFaceLib/FaceLibRequests.h"
#include "ui/AddIntoFaceLib/InpotFaceDataRecordThread.h"

using namespace BodyTemperature;

namespace {

TEST(FaceImportCondition, RecordBytes)
{
    const std::string c = CInportFaceDataRecordThread::BuildCondition("12", false);
    ASSERT_EQ(c.size(), 388u);
    EXPECT_EQ(c.substr(0, 6), std::string("\x84\x01\x00\x00" "12", 6));
    EXPECT_EQ(c.find_first_not_of('\0', 6), std::string::npos);
    const std::string over = CInportFaceDataRecordThread::BuildCondition(std::string(300, 'x'), true);
    ASSERT_EQ(over.size(), 388u);
    EXPECT_EQ(over.substr(4, 256), std::string(256, 'x'));
    EXPECT_EQ(over[260], '\0');
    EXPECT_EQ(over[261], '\1');
    EXPECT_EQ(over.find_first_not_of('\0', 262), std::string::npos);
}

TEST(FaceImportOutcome, MessageChoice)
{
    // A few entries of each table (the uploads below, and the dialog's, reach
    // more), and every rule of which table speaks.
    const struct { const char* name; bool success, cancelled; uint32_t state; std::pair<int, int> pair; const char* key; } rows[] = {
        {"success", true, false, 0, {0, 0}, "AddSuccess"},
        {"success but cancelled", true, true, 0, {0, 0}, "FailedToAddPicture"},
        {"843 wins over the state", false, false, 11, {12, 843}, "NoMoreFacePicturesCanBeAdded"},
        {"870", false, false, 0, {12, 870}, "AnalysisEngineIsImportingPicturesToLibrary"},
        {"host text for a password error", false, false, 0, {1, 401}, "UserNameOrPasswordIsIncorrect"},
        {"no second code: the state", false, false, 10, {12, 0}, "NoMoreFacePicturesCanBeAdded"},
        {"state 11", false, false, 11, {0, 0}, "ThePictureIsOversize"},
        {"state without text", false, false, 5, {0, 0}, "FailedToAddPicture"},
        {"state -1", false, false, uint32_t(-1), {12, 0}, "FailedToAddPicture"},
        {"time-out", false, false, 0, {10, 0}, "FailedToAddPicture"},
        {"unknown pair", false, false, 0, {99, 5}, "FailedToAddPicture"},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.name);
        const auto res = CFaceUploadOutcome::Evaluate(r.success, r.cancelled, r.state, r.pair);
        EXPECT_EQ(res.text, QString::fromLatin1(r.key));
        EXPECT_EQ(res.success, std::string(r.key) == "AddSuccess");
    }
    // An upload whose answer was not heard: the device's answer to the question decides.
    using Stored = CFaceUploadCheck::Stored;
    const struct { bool cancelled; Stored stored; const char* key; bool success; } unheard[] = {
        {true, Stored::Yes, "FaceStoredBeforeTheCancelTookEffect", true},
        {false, Stored::Yes, "AddSuccess", true},  // after a time-out
        {true, Stored::Unknown, "FaceUploadOutcomeUnknown", false},
        {true, Stored::No, "FailedToAddPicture", false},
    };
    for (const auto& r : unheard) {
        const auto res = CFaceUploadOutcome::Evaluate(false, r.cancelled, 0, {commlayer::kErrCancelled, 0}, r.stored);
        EXPECT_EQ(res.text, QString::fromLatin1(r.key));
        EXPECT_EQ(res.success, r.success) << r.key;
    }
}

TEST(FaceImportCheck, SearchAnswerListsTheUploadedRecord)
{
    CapabilitySet::FaceDataRecordCfg up;
    up.name = "A &amp; B";  // as the form escapes it
    up.bTextEscaped = true;
    up.gender = "male";
    up.FDID = "1";
    const std::string same = "<name>A &amp; B</name><sex>male</sex><FDID>1</FDID><PID>7</PID><picURL>/p/7</picURL>";
    const struct { const char* name; std::string answer; bool stored; } rows[] = {
        {"listed with the device's identifiers", "<FDSearchResult><MatchList><MatchElement>" + same
                + "</MatchElement></MatchList></FDSearchResult>", true},
        {"listed as a document of its own", "<MatchList><MatchElement><FaceAppendData>" + same
                + "</FaceAppendData></MatchElement></MatchList>", true},
        {"same name, other gender", "<MatchList><MatchElement><name>A &amp; B</name><sex>female</sex>"
                                    "</MatchElement></MatchList>", false},
        {"nothing listed", "<FDSearchResult><numOfMatches>0</numOfMatches></FDSearchResult>", false},
    };
    for (const auto& r : rows)
        EXPECT_EQ(!CFaceUploadCheck::Matches(r.answer, up).empty(), r.stored) << r.name;
    // The same person may have been in the library before the upload.
    EXPECT_FALSE(CFaceUploadCheck::Added({"7"}, {"7"}));
    EXPECT_TRUE(CFaceUploadCheck::Added({"7"}, {"7", "9"}));
    EXPECT_TRUE(CFaceUploadCheck::Added({}, {""}));
}

// The upload as the add-to-library dialog runs it (which also checks what
// reaches the device and cancelling from the waiting dialog).
class FaceImportTest : public testsupport::SimTest {
protected:
    static void SetUpTestSuite()
    {
        startSim();
        s_face = testsupport::makeJpeg(120, 150);
    }

    // Runs one upload to completion the way the dialog does (wait for the end).
    static void runUpload(CInportFaceDataRecordThread& t, const std::string& FDID, const QByteArray& picture)
    {
        CapabilitySet::FaceDataRecordCfg rec;
        rec.name = "Zhang San";
        rec.gender = "male";
        t.SetTarget("TEST0001", FDID, false);
        t.SetPicture(picture.constData(), uint32_t(picture.size()));
        t.SetPersonRecord(rec);
        QSignalSpy stop(&t, &CInportFaceDataRecordThread::SignalStop);
        t.start();
        ASSERT_TRUE(t.wait(20000));
        ASSERT_TRUE(stop.count() == 1 || stop.wait(2000));
        EXPECT_EQ(stop.last().at(0).toBool(), false);
    }

    static nlohmann::json uploads(const char* fdid)
    {
        return nlohmann::json::parse(s_sim->control("GET", (std::string("/control/uploads?FDID=") + fdid).c_str())
                                         .toStdString())["records"];
    }

    static inline QByteArray s_face;
};

TEST_F(FaceImportTest, NoPictureSendsNothing)
{
    CInportFaceDataRecordThread t;
    t.SetPicture(nullptr, 10);
    t.SetPicture(s_face.constData(), 0);
    const size_t before = uploads("1").size();
    runUpload(t, "1", QByteArray());
    EXPECT_FALSE(t.IsSuccess());
    EXPECT_EQ(uploads("1").size(), before);
    EXPECT_EQ(CFaceUploadOutcome::Evaluate(t.IsSuccess(), t.IsCancelled(), t.UploadState(), t.ErrorPair()).text,
        QStringLiteral("FailedToAddPicture"));
}

TEST_F(FaceImportTest, FullLibraryAndDeviceFailures)
{
    s_sim->control("POST", "/control/library", R"({"FDID":"9","name":"Tiny","capacity":1})");
    // fault: on the upload batch
    const struct { const char* name; const char* fault; const char* FDID; uint32_t state; std::pair<int, int> pair; const char* key; } rows[] = {
        {"fills the library", "", "9", 0, {0, 0}, "AddSuccess"},
        // A failed state leaves the error pair alone (the device's sub-status
        // 843 rides along here): the state table picks the message.
        {"library full", "", "9", 10, {0, 0}, "NoMoreFacePicturesCanBeAdded"},
        {"unknown library", "", "404", 3, {0, 0}, "UploadingFailed"},
        {"sub-status 870", R"("status":500,"subStatus":870)", "1", 0, {12, 870}, "AnalysisEngineIsImportingPicturesToLibrary"},
        {"sub-status 2124", R"("status":400,"subStatus":2124)", "1", 0, {12, 2124}, "InvalidIDNo"},
        {"server error", R"("status":503)", "1", 0, {13, 503}, "TheDeviceHadAnInternalError"},
        {"malformed answer", R"("malformed":true)", "1", 0, {11, 0}, "FailedToAddPicture"},
        {"connection dropped", R"("drop":true)", "1", 0, {9, 18}, "TheConnectionToTheDeviceWasLost"},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.name);
        s_sim->control("DELETE", "/control/fault");
        if (*r.fault)
            s_sim->control("POST", "/control/fault", QByteArray(R"({"path":"/DVAPI/SDK/batch",)") + r.fault + "}");
        CInportFaceDataRecordThread t;
        runUpload(t, r.FDID, s_face);
        EXPECT_EQ(t.UploadState(), r.state);
        EXPECT_EQ(t.ErrorPair(), r.pair);
        EXPECT_EQ(t.IsLibraryFull(), r.state == 10);
        EXPECT_EQ(CFaceUploadOutcome::Evaluate(t.IsSuccess(), t.IsCancelled(), t.UploadState(), t.ErrorPair()).text,
            QString::fromLatin1(r.key));
    }
}

// The face library requests (the dialog's: CBTAddFaceWnd_test; what the answers
// hold: the readers' own tests).
using FaceLibRequestsTest = testsupport::SimTest;

// Those whose failure the dialog hides (it falls back to its own city table) or never makes.
TEST_F(FaceLibRequestsTest, RequestsTheDialogDoesNotShowGetTheirAnswers)
{
    uint32_t err = 99;
    CapabilitySet::CityCodeCapability cities;
    ASSERT_TRUE(GetCityCodeCapability(cities, err, "TEST0001"));
    EXPECT_NE(cities.Find("44"), nullptr);
    CapabilitySet::PersonnalInfoExtendListConfig ofDevice;
    ASSERT_TRUE(GetPersonnalInfoExtendListCfg(ofDevice, err, "TEST0001"));
    EXPECT_EQ(ofDevice.items.size(), size_t(3));
    CapabilitySet::FaceDataRecordCfg cond;
    cond.FDID = "1";
    EXPECT_TRUE(SearchFaceDataRecord(cond, err, "TEST0001"));
    EXPECT_EQ(err, 0u);
}

TEST_F(FaceLibRequestsTest, FailuresClearTheOutputAndSetTheCode)
{
    const struct { const char *name, *device, *fault; std::pair<int, int> pair; } rows[] = {
        {"unknown device", "NOSUCH", "", {commlayer::kErrNoDevice, 0}},
        {"device error", "TEST0001", R"({"path":"/DVAPI","status":500,"subStatus":870})", {commlayer::kErrDeviceStatus, 870}},
        {"malformed answer", "TEST0001", R"({"path":"/DVAPI","malformed":true})", {commlayer::kErrBadAnswer, 0}},
    };
    for (const auto& r : rows) {
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
