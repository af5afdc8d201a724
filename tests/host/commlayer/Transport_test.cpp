// Device requests over loopback against the emulator: answers, and the error
// pair left behind by each kind of failure.
#include <QByteArray>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Base/Base.h"
#include "CapabilitySet/FaceDataRecordCfg.h"
#include "commlayer/CDataStatisticsComm.h"
#include "commlayer/CDeviceDownloadsComm.h"
#include "commlayer/CommErrors.h"
#include "support/DeviceSim.h"

using commlayer::CDataStatisticsComm;

namespace {

class TransportTest : public ::testing::Test {
protected:
    static void SetUpTestSuite()
    {
        s_sim = new testsupport::DeviceSim();
        ASSERT_TRUE(s_sim->start());
        auto wrong = s_sim->device("WRONGPW", "not-the-password");
        auto closed = s_sim->device("CLOSED");
        closed.port = 1;  // nothing listens there
        clientcommonlogical::CConfigMgr::Instance()->SetDevices({s_sim->device(), wrong, closed});
    }
    static void TearDownTestSuite()
    {
        delete s_sim;
        s_sim = nullptr;
    }
    void TearDown() override { s_sim->control("DELETE", "/control/fault"); }

    static testsupport::DeviceSim* s_sim;
};
testsupport::DeviceSim* TransportTest::s_sim = nullptr;

protocol::DvapiPassThroughReq get(const std::string& path, int timeout = 30000)
{
    protocol::DvapiPassThroughReq req;
    req.requestLine = "GET " + path + "\r\n";
    req.timeout = timeout;
    return req;
}

TEST_F(TransportTest, FailuresLeaveTheirErrorPair)
{
    struct Case {
        const char* name;
        const char* device;
        const char* fault;  // JSON for /control/fault, or empty
        int timeout;
        bool ok;
        int first;
        int second;
    };
    const Case cases[] = {
        {"success", "TEST0001", "", 30000, true, 0, 0},
        {"wrong password", "WRONGPW", "", 30000, false, commlayer::kErrPassword, 401},
        {"time-out honoured", "TEST0001", R"({"path":"/DVAPI/Intelligent/FDLib","delayMs":3000,"count":1})", 400,
            false, commlayer::kErrTimeout, 0},
        {"connection dropped mid-answer", "TEST0001", R"({"path":"/DVAPI/Intelligent/FDLib","drop":true})", 30000,
            false, commlayer::kErrRecv, 18},
        {"server error without status", "TEST0001", R"({"path":"/DVAPI/Intelligent/FDLib","status":503})", 30000,
            false, commlayer::kErrHttp, 503},
        {"device status with sub-status", "TEST0001",
            R"({"path":"/DVAPI/Intelligent/FDLib","status":500,"subStatus":843})", 30000, false,
            commlayer::kErrDeviceStatus, 843},
        {"malformed body", "TEST0001", R"({"path":"/DVAPI/Intelligent/FDLib","malformed":true})", 30000, false,
            commlayer::kErrBadAnswer, 0},
        {"unknown device", "NOSUCH", "", 30000, false, commlayer::kErrNoDevice, 0},
        {"nothing listening", "CLOSED", "", 30000, false, commlayer::kErrConnect, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        s_sim->control("DELETE", "/control/fault");
        if (*c.fault) {
            ASSERT_TRUE(s_sim->control("POST", "/control/fault", c.fault).contains("true"));
        }
        Base::Error::SetLastError(-1, -1);
        protocol::DvapiPassThroughRspData rsp;
        rsp.body = "stale";
        const bool ok = CDataStatisticsComm::dvapiRequest(c.device, rsp, get("/DVAPI/Intelligent/FDLib", c.timeout));
        EXPECT_EQ(ok, c.ok);
        EXPECT_EQ(Base::Error::GetLastError(), std::make_pair(c.first, c.second));
        if (ok)
            EXPECT_NE(rsp.body.find("<FDLibBaseCfgList>"), std::string::npos);
        else
            EXPECT_TRUE(rsp.body.empty());
    }
}

TEST_F(TransportTest, MalformedRequestLineIsRefusedLocally)
{
    for (const char* line : {"", "GET", "GET relative/path\r\n", "get /lower\r\n", "GET /a b\r\n"}) {
        SCOPED_TRACE(line);
        protocol::DvapiPassThroughReq req;
        req.requestLine = line;
        protocol::DvapiPassThroughRspData rsp;
        EXPECT_FALSE(CDataStatisticsComm::dvapiRequest("TEST0001", rsp, req));
        EXPECT_EQ(Base::Error::GetLastError().first, commlayer::kErrParam);
    }
}

TEST_F(TransportTest, SdkChannelMapping)
{
    struct Case {
        const char* channel;
        bool ok;
        const char* mapped;
    };
    for (const Case& c : {Case{"1", true, "1"}, Case{"34", true, "2"}, Case{"99", false, ""}, Case{"abc", false, ""}}) {
        SCOPED_TRACE(c.channel);
        protocol::NetsdkPassThroughReq req;
        req.function = "DEV_SDKChannelToDVAPI";
        req.params = {Base::Encrypt::Base64EncodeEx(std::string(c.channel)), Base::Encrypt::Base64EncodeEx(std::string("false"))};
        protocol::NetsdkPassThroughRspData rsp;
        ASSERT_EQ(CDataStatisticsComm::devnetsdkrequest("TEST0001", rsp, req), c.ok);
        if (c.ok) {
            std::string decoded;
            ASSERT_TRUE(Base::Encrypt::Base64DecodeEx(rsp.data, decoded));
            EXPECT_EQ(decoded, c.mapped);
        } else {
            EXPECT_EQ(Base::Error::GetLastError().first, commlayer::kErrDeviceStatus);
        }
    }
}

protocol::BatchPassThroughReq uploadRequest(const std::string& fdid, const std::string& name, const QByteArray& jpeg)
{
    CapabilitySet::FaceDataRecordCfg person;
    person.name = name;
    person.gender = "female";
    person.idType = "ID";
    person.idNumber = "ID-1234 <&>";
    protocol::BatchPassThroughReq req;
    req.command = protocol::kBatchCmdUploadFace;
    req.encoding = "base64";
    req.xml = CapabilitySet::FaceDataRecordCfg::StructToXML(person);
    req.picture = Base::Encrypt::Base64EncodeEx(reinterpret_cast<const unsigned char*>(jpeg.constData()), size_t(jpeg.size()));
    std::string cond(protocol::kUploadConditionSize, '\0');
    cond[0] = char(protocol::kUploadConditionSize & 0xff);
    cond[1] = char(protocol::kUploadConditionSize >> 8);
    cond.replace(4, fdid.size(), fdid);
    req.condition = cond;
    req.sendData.push_back({"TEST0001", std::string()});
    return req;
}

TEST_F(TransportTest, FaceUploadIsStoredAndAFullLibraryAnswersState10)
{
    ASSERT_TRUE(s_sim->control("POST", "/control/library", R"({"FDID":"77","name":"Tiny","capacity":1})").contains("true"));
    const QByteArray jpeg = testsupport::makeJpeg(120, 160);
    struct Case {
        const char* name;
        int state;
        std::pair<int, int> error;
    };
    const Case cases[] = {{"Ada Upload", 1, {0, 0}}, {"Bob Overflow", 10, {commlayer::kErrDeviceStatus, 843}}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        auto req = uploadRequest("77", c.name, jpeg);
        bool finished = false;
        std::vector<protocol::UploadResult> results;
        ASSERT_TRUE(CDataStatisticsComm::uploadToFaceLibSDKRequest(finished, "TEST0001", results, req));
        EXPECT_TRUE(finished);
        ASSERT_EQ(results.size(), 1u);
        EXPECT_EQ(results[0].state, c.state);
        EXPECT_EQ(Base::Error::GetLastError(), c.error);
    }
    const auto uploads = nlohmann::json::parse(s_sim->control("GET", "/control/uploads?FDID=77").toStdString());
    ASSERT_EQ(uploads["records"].size(), 1u);
    EXPECT_EQ(uploads["records"][0]["name"], "Ada Upload");
    EXPECT_EQ(uploads["records"][0]["pictureSize"], jpeg.size());

    // The record reads back through the device API, with the escaped text intact.
    const std::string pid = uploads["records"][0]["PID"];
    protocol::DvapiPassThroughRspData rsp;
    ASSERT_TRUE(CDataStatisticsComm::dvapiRequest("TEST0001", rsp, get("/DVAPI/Intelligent/FDLib/77/picture/" + pid)));
    CapabilitySet::FaceDataRecordCfg back(rsp.body);
    EXPECT_TRUE(back.bValid);
    EXPECT_EQ(back.name, "Ada Upload");
    EXPECT_EQ(back.idNumber, "ID-1234 <&>");
    QByteArray picture;
    ASSERT_TRUE(commlayer::CDeviceDownloadsComm::request(back.picURL, "TEST0001", picture));
    EXPECT_EQ(picture, jpeg);
}

TEST_F(TransportTest, CancelledUploadSendsNothing)
{
    auto req = uploadRequest("1", "Never Sent", testsupport::makeJpeg(64, 64));
    req.cancelled = true;
    bool finished = false;
    std::vector<protocol::UploadResult> results;
    ASSERT_TRUE(CDataStatisticsComm::uploadToFaceLibSDKRequest(finished, "TEST0001", results, req));
    EXPECT_TRUE(finished);
    EXPECT_TRUE(results.empty());
    EXPECT_EQ(s_sim->control("GET", "/control/uploads?FDID=1").count("Never Sent"), 0);
}

TEST_F(TransportTest, DownloadUsesOnlyThePathOfAnAbsoluteReference)
{
    // The host part of a reference is never contacted: the configured device is.
    QByteArray a, b;
    ASSERT_TRUE(commlayer::CDeviceDownloadsComm::request("/DVAPI/pictures/hfpd/t9/2.jpg", "TEST0001", a));
    ASSERT_TRUE(commlayer::CDeviceDownloadsComm::request("http://203.0.113.9:9/DVAPI/pictures/hfpd/t9/2.jpg", "TEST0001", b));
    EXPECT_TRUE(a.startsWith("\xFF\xD8"));
    EXPECT_EQ(a, b);
    QByteArray missing;
    EXPECT_FALSE(commlayer::CDeviceDownloadsComm::request("/DVAPI/Intelligent/FDLib/1/picture/999999/image", "TEST0001", missing));
    EXPECT_EQ(Base::Error::GetLastError(), std::make_pair(int(commlayer::kErrHttp), 404));
}

// A device served over HTTPS with a certificate made for the test.
TEST(TlsTransport, CertificateIsVerifiedAgainstTheConfiguredAuthority)
{
    QTemporaryDir dir;
    const QString cert = dir.filePath(QStringLiteral("cert.pem"));
    const QString key = dir.filePath(QStringLiteral("key.pem"));
    QProcess openssl;
    openssl.start(QStringLiteral("openssl"), {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
        QStringLiteral("rsa:2048"), QStringLiteral("-nodes"), QStringLiteral("-keyout"), key, QStringLiteral("-out"), cert,
        QStringLiteral("-days"), QStringLiteral("1"), QStringLiteral("-subj"), QStringLiteral("/CN=127.0.0.1"),
        QStringLiteral("-addext"), QStringLiteral("subjectAltName=IP:127.0.0.1")});
    ASSERT_TRUE(openssl.waitForFinished(30000));
    ASSERT_EQ(openssl.exitCode(), 0) << openssl.readAllStandardError().constData();

    testsupport::DeviceSim sim({QStringLiteral("--tls-cert"), cert, QStringLiteral("--tls-key"), key});
    ASSERT_TRUE(sim.start());
    struct Case {
        const char* id;
        const char* scheme;
        bool verify;
        bool withCa;
        bool ok;
        int first;
    };
    const Case cases[] = {
        {"TRUSTED", "https", true, true, true, 0},
        {"UNTRUSTED", "https", true, false, false, commlayer::kErrTls},
        {"NOVERIFY", "https", false, false, true, 0},
    };
    std::vector<clientcommonlogical::DeviceConfig> devices;
    for (const Case& c : cases) {
        auto d = sim.device(c.id);
        d.scheme = c.scheme;
        d.verifyPeer = c.verify;
        d.caFile = c.withCa ? cert.toStdString() : std::string();
        devices.push_back(d);
    }
    clientcommonlogical::CConfigMgr::Instance()->SetDevices(devices);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.id);
        protocol::DvapiPassThroughRspData rsp;
        EXPECT_EQ(CDataStatisticsComm::dvapiRequest(c.id, rsp, get("/DVAPI/Intelligent/FDLib")), c.ok);
        EXPECT_EQ(Base::Error::GetLastError().first, c.first);
    }
}

} // namespace
