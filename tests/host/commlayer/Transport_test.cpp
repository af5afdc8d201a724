// Device requests over loopback against the emulator: answers, and the error
// pair left behind by each kind of failure.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Base/Base.h"
#include "CapabilitySet/FaceDataLibraryCfg.h"
#include "CapabilitySet/FaceDataRecordCfg.h"
#include "commlayer/CDeviceDownloadsComm.h"
#include "commlayer/CommErrors.h"
#include "support/DeviceSim.h"

using commlayer::CDataStatisticsComm;
using testsupport::dvapi;
using Pair = std::pair<int, int>;

namespace {

class TransportTest : public testsupport::SimTest {
protected:
    static void SetUpTestSuite()
    {
        startSim();
        auto closed = s_sim->device("CLOSED");
        closed.port = 1;  // nothing listens there
        clientcommonlogical::CConfigMgr::Instance()->SetDevices(
            {s_sim->device(), s_sim->device("WRONGPW", "not-the-password"), closed});
    }
};

TEST_F(TransportTest, FailuresLeaveTheirErrorPair)
{
    struct Case {
        const char* name;
        const char* device;
        const char* line;
        const char* fault;  // the injected fault of the library list, or empty
        int timeout;
        Pair error;
    };
    const char* fdlib = "GET /DVAPI/Intelligent/FDLib\r\n";
    const Case cases[] = {
        {"success", "TEST0001", fdlib, "", 30000, {0, 0}},
        {"wrong password", "WRONGPW", fdlib, "", 30000, {commlayer::kErrPassword, 401}},
        {"time-out honoured", "TEST0001", fdlib, R"("delayMs":3000,"count":1)", 400, {commlayer::kErrTimeout, 0}},
        {"connection dropped mid-answer", "TEST0001", fdlib, R"("drop":true)", 30000, {commlayer::kErrRecv, 18}},
        {"server error without status", "TEST0001", fdlib, R"("status":503)", 30000, {commlayer::kErrHttp, 503}},
        {"device status with sub-status", "TEST0001", fdlib, R"("status":500,"subStatus":843)", 30000,
            {commlayer::kErrDeviceStatus, 843}},
        {"malformed body", "TEST0001", fdlib, R"("malformed":true)", 30000, {commlayer::kErrBadAnswer, 0}},
        {"unknown device", "NOSUCH", fdlib, "", 30000, {commlayer::kErrNoDevice, 0}},
        {"nothing listening", "CLOSED", fdlib, "", 30000, {commlayer::kErrConnect, 0}},
        // Bad request lines are refused before anything is sent.
        {"empty line", "TEST0001", "", "", 30000, {commlayer::kErrParam, 0}},
        {"no path", "TEST0001", "GET", "", 30000, {commlayer::kErrParam, 0}},
        {"relative path", "TEST0001", "GET relative/path\r\n", "", 30000, {commlayer::kErrParam, 0}},
        {"lower-case method", "TEST0001", "get /lower\r\n", "", 30000, {commlayer::kErrParam, 0}},
        {"space in path", "TEST0001", "GET /a b\r\n", "", 30000, {commlayer::kErrParam, 0}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        s_sim->control("DELETE", "/control/fault");
        if (*c.fault) {
            const QByteArray fault = QByteArray(R"({"path":"/DVAPI/Intelligent/FDLib",)") + c.fault + '}';
            ASSERT_TRUE(s_sim->control("POST", "/control/fault", fault).contains("true"));
        }
        Base::Error::SetLastError(-1, -1);
        std::string body;
        EXPECT_EQ(dvapi(c.device, c.line, body, std::string(), c.timeout), c.error.first == 0);
        EXPECT_EQ(Base::Error::GetLastError(), c.error);
        EXPECT_EQ(body.empty(), c.error.first != 0);
        EXPECT_EQ(body.find("<FDLibBaseCfgList>") != std::string::npos, c.error.first == 0);
    }
}

TEST_F(TransportTest, SdkChannelMapping)
{
    const std::pair<const char*, const char*> cases[] = {{"1", "1"}, {"34", "2"}, {"99", nullptr}, {"abc", nullptr}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.first);
        protocol::NetsdkPassThroughReq req;
        req.function = "DEV_SDKChannelToDVAPI";
        req.params = {Base::Encrypt::Base64EncodeEx(std::string(c.first)), Base::Encrypt::Base64EncodeEx(std::string("false"))};
        protocol::NetsdkPassThroughRspData rsp;
        ASSERT_EQ(CDataStatisticsComm::devnetsdkrequest("TEST0001", rsp, req), c.second != nullptr);
        if (c.second == nullptr) {
            EXPECT_EQ(Base::Error::GetLastError().first, commlayer::kErrDeviceStatus);
            continue;
        }
        std::string decoded;
        ASSERT_TRUE(Base::Encrypt::Base64DecodeEx(rsp.data, decoded));
        EXPECT_EQ(decoded, c.second);
    }
}

TEST_F(TransportTest, FaceUploadsAreStoredSurviveARestartAndAreFound)
{
    ASSERT_TRUE(s_sim->control("POST", "/control/library", R"({"FDID":"77","name":"Tiny","capacity":1})").contains("true"));
    const QByteArray jpeg = testsupport::makeJpeg(120, 160);
    struct Case {
        const char* name;
        std::string fdid;
        bool cancelled;
        int state;  // of the one result; 0: no result at all
        Pair error;
    };
    const Case cases[] = {
        {"Never Sent", "77", true, 0, {0, 0}},
        {"Ada Upload", "77", false, 1, {0, 0}},
        {"Bob Overflow", "77", false, 10, {commlayer::kErrDeviceStatus, 843}},
        {"Lost Soul", "no-such-library", false, 3, {commlayer::kErrDeviceStatus, 0}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CapabilitySet::FaceDataRecordCfg person;
        person.name = c.name;
        person.idNumber = "ID-1234 <&>";
        protocol::BatchPassThroughReq req;
        req.command = protocol::kBatchCmdUploadFace;
        req.encoding = "base64";
        req.xml = CapabilitySet::FaceDataRecordCfg::StructToXML(person);
        req.picture = Base::Encrypt::Base64EncodeEx(reinterpret_cast<const unsigned char*>(jpeg.constData()), size_t(jpeg.size()));
        req.condition.assign(protocol::kUploadConditionSize, '\0');
        req.condition[0] = char(protocol::kUploadConditionSize & 0xff);
        req.condition[1] = char(protocol::kUploadConditionSize >> 8);
        req.condition.replace(4, c.fdid.size(), c.fdid);
        req.cancelled = c.cancelled;
        bool finished = false;
        std::vector<protocol::UploadResult> results;
        ASSERT_TRUE(CDataStatisticsComm::uploadToFaceLibSDKRequest(finished, "TEST0001", results, req));
        EXPECT_TRUE(finished);
        ASSERT_EQ(results.size(), c.state != 0 ? 1u : 0u);
        EXPECT_EQ(c.state != 0 ? results[0].state : 0, c.state);
        EXPECT_EQ(Base::Error::GetLastError(), c.error);
    }

    // Only the accepted record is kept, also after the device restarts.
    const int port = s_sim->port();
    s_sim->stop();
    ASSERT_TRUE(s_sim->start(port));
    const auto uploads = nlohmann::json::parse(s_sim->control("GET", "/control/uploads?FDID=77").toStdString());
    ASSERT_EQ(uploads["records"].size(), 1u);
    std::string answer;
    ASSERT_TRUE(dvapi("TEST0001", "GET /DVAPI/Intelligent/FDLib\r\n", answer));
    CapabilitySet::FaceDataLibraryCfg libs(answer);
    ASSERT_EQ(libs.libraries.size(), 4u);
    EXPECT_EQ(libs.libraries[3].FDID, "77");
    EXPECT_EQ(libs.libraries[3].count, 1);

    // The record reads back through the device API, with the escaped text intact.
    const std::string pid = uploads["records"][0]["PID"];
    ASSERT_TRUE(dvapi("TEST0001", "GET /DVAPI/Intelligent/FDLib/77/picture/" + pid + "\r\n", answer));
    CapabilitySet::FaceDataRecordCfg back(answer);
    EXPECT_TRUE(back.bValid);
    EXPECT_EQ(back.name, "Ada Upload");
    EXPECT_EQ(back.idNumber, "ID-1234 <&>");
    QByteArray picture, viaAbsolute, missing;
    ASSERT_TRUE(commlayer::CDeviceDownloadsComm::request(back.picURL, "TEST0001", picture));
    EXPECT_EQ(picture, jpeg);
    // The host part of a reference is never contacted: the configured device is.
    ASSERT_TRUE(commlayer::CDeviceDownloadsComm::request("http://203.0.113.9:9" + back.picURL, "TEST0001", viaAbsolute));
    EXPECT_EQ(viaAbsolute, jpeg);
    EXPECT_FALSE(commlayer::CDeviceDownloadsComm::request("/DVAPI/Intelligent/FDLib/77/picture/999999/image", "TEST0001", missing));
    EXPECT_EQ(Base::Error::GetLastError(), Pair(commlayer::kErrHttp, 404));

    const std::pair<const char*, const char*> searches[] = {{"Ada", "77"}, {"Ada", "1"}, {"Nobody", ""}};
    for (const auto& s : searches) {
        SCOPED_TRACE(std::string(s.first) + "@" + s.second);
        CapabilitySet::FaceDataRecordCfg cond;
        cond.name = s.first;
        cond.FDID = s.second;
        ASSERT_TRUE(dvapi("TEST0001", "POST /DVAPI/Intelligent/FDLib/FDSearch\r\n", answer,
            CapabilitySet::FaceDataRecordCfg::StructToXML(cond)));
        EXPECT_NE(answer.find("<FDSearchResult>"), std::string::npos);
        EXPECT_EQ(answer.find("Ada Upload") != std::string::npos, s.second == std::string("77"));
    }
    // A search body that is not a face record is refused by the device.
    EXPECT_FALSE(dvapi("TEST0001", "POST /DVAPI/Intelligent/FDLib/FDSearch\r\n", answer, "<Other/>"));
    EXPECT_EQ(Base::Error::GetLastError().first, commlayer::kErrHttp);
}

} // namespace
