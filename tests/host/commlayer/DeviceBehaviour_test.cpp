// Behaviour of the device side as a whole: the emulator's persistence and
// determinism as seen through the communication layer, face searches, and a
// subscription that must stop even when the device never answers.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/socket.h>

#include "Base/Base.h"
#include "CapabilitySet/FaceDataLibraryCfg.h"
#include "CapabilitySet/FaceDataRecordCfg.h"
#include "commlayer/CAlarmSubscription.h"
#include "commlayer/CDataStatisticsComm.h"
#include "commlayer/CommErrors.h"
#include "publicdatacontroller/AlarmTransfer.h"
#include "support/DeviceSim.h"

using commlayer::CDataStatisticsComm;

namespace {

bool upload(const std::string& device, const std::string& fdid, const std::string& name, int& state)
{
    CapabilitySet::FaceDataRecordCfg person;
    person.name = name;
    const QByteArray jpeg = testsupport::makeJpeg(80, 100);
    protocol::BatchPassThroughReq req;
    req.command = protocol::kBatchCmdUploadFace;
    req.encoding = "base64";
    req.xml = CapabilitySet::FaceDataRecordCfg::StructToXML(person);
    req.picture = Base::Encrypt::Base64EncodeEx(jpeg.toStdString());
    req.condition.assign(protocol::kUploadConditionSize, '\0');
    req.condition[0] = char(protocol::kUploadConditionSize & 0xff);
    req.condition[1] = char(protocol::kUploadConditionSize >> 8);
    req.condition.replace(4, fdid.size(), fdid);
    bool finished = false;
    std::vector<protocol::UploadResult> results;
    const bool ok = CDataStatisticsComm::uploadToFaceLibSDKRequest(finished, device, results, req);
    state = results.empty() ? -99 : results[0].state;
    return ok;
}

std::string fetch(const std::string& device, const std::string& line, const std::string& body = std::string())
{
    protocol::DvapiPassThroughReq req;
    req.requestLine = line;
    req.body = body;
    protocol::DvapiPassThroughRspData rsp;
    return CDataStatisticsComm::dvapiRequest(device, rsp, req) ? rsp.body : std::string("<failed/>");
}

TEST(DeviceBehaviour, UploadsSurviveARestartAndAreFoundBySearch)
{
    QTemporaryDir dir;
    const QString db = dir.filePath(QStringLiteral("device.db"));
    int port = 0;
    {
        testsupport::DeviceSim sim({}, db);
        ASSERT_TRUE(sim.start());
        port = sim.port();
        clientcommonlogical::CConfigMgr::Instance()->SetDevices({sim.device()});
        int state = 0;
        ASSERT_TRUE(upload("TEST0001", "2", "Grace Persistent", state));
        EXPECT_EQ(state, 1);
        ASSERT_TRUE(upload("TEST0001", "no-such-library", "Lost Soul", state));
        EXPECT_EQ(state, 3);
    }
    testsupport::DeviceSim again({}, db);
    ASSERT_TRUE(again.start(port));
    CapabilitySet::FaceDataLibraryCfg libs(fetch("TEST0001", "GET /DVAPI/Intelligent/FDLib\r\n"));
    ASSERT_TRUE(libs.bValid);
    ASSERT_EQ(libs.libraries.size(), 3u);
    EXPECT_EQ(libs.libraries[1].count, 1);

    struct Case {
        const char* name;
        const char* fdid;
        bool found;
    };
    for (const Case& c : {Case{"Grace", "2", true}, Case{"Grace", "1", false}, Case{"Nobody", "", false}}) {
        SCOPED_TRACE(std::string(c.name) + "@" + c.fdid);
        CapabilitySet::FaceDataRecordCfg cond;
        cond.name = c.name;
        cond.FDID = c.fdid;
        const std::string answer = fetch("TEST0001", "POST /DVAPI/Intelligent/FDLib/FDSearch\r\n",
            CapabilitySet::FaceDataRecordCfg::StructToXML(cond));
        EXPECT_NE(answer.find("<FDSearchResult>"), std::string::npos);
        EXPECT_EQ(answer.find("Grace Persistent") != std::string::npos, c.found);
    }
    // A search body that is not a face record is refused by the device.
    EXPECT_EQ(fetch("TEST0001", "POST /DVAPI/Intelligent/FDLib/FDSearch\r\n", "<Other/>"), "<failed/>");
    EXPECT_EQ(Base::Error::GetLastError().first, commlayer::kErrHttp);
}

// The first events a device generates, as (code, channel, facePicID, temperature).
std::vector<std::string> firstEvents(unsigned seed, size_t count)
{
    testsupport::DeviceSim sim({QStringLiteral("--seed"), QString::number(seed), QStringLiteral("--rate"),
        QStringLiteral("40"), QStringLiteral("--scene"), QStringLiteral("320x180")});
    EXPECT_TRUE(sim.start());
    std::vector<std::string> out;
    QObject context;
    QObject::connect(Base::CSingleton<publicdatacontroller::AlarmTransfer>::Instance(),
        &publicdatacontroller::AlarmTransfer::signalAlarmEventInfo, &context, [&out](void* p) {
            const auto& e = static_cast<publicdatacontroller::CIntelAlarmObject*>(p)->info();
            const auto& f = e.faceInfoList.at(0);
            EXPECT_TRUE(f.Temperature == 65535.0 || (f.Temperature > 35.0 && f.Temperature < 40.0)) << f.Temperature;
            EXPECT_TRUE(f.Mask == 1 || f.Mask == 2);
            out.push_back(std::to_string(e.eventType) + "/" + std::to_string(e.channel) + "/"
                + std::to_string(f.facePicID) + "/" + std::to_string(f.Temperature));
        });
    commlayer::CAlarmSubscription sub(sim.device(), 0);
    sub.Start();
    EXPECT_TRUE(testsupport::waitUntil([&] { return out.size() >= count; }, 15000));
    sub.Stop();
    out.resize(std::min(out.size(), count));
    return out;
}

TEST(DeviceBehaviour, GeneratedEventsFollowTheSeed)
{
    const auto first = firstEvents(7, 12);
    ASSERT_EQ(first.size(), 12u);
    EXPECT_EQ(firstEvents(7, 12), first);
    EXPECT_NE(firstEvents(8, 12), first);
}

TEST(DeviceBehaviour, SubscriptionStopsWhileADeviceNeverAnswers)
{
    // A port that accepts connections (the kernel does) but never answers.
    const int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t len = sizeof addr;
    ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr), 0);
    ASSERT_EQ(listen(fd, 8), 0);
    ASSERT_EQ(getsockname(fd, reinterpret_cast<sockaddr*>(&addr), &len), 0);
    clientcommonlogical::DeviceConfig dev;
    dev.id = "SILENT";
    dev.address = "127.0.0.1";
    dev.port = ntohs(addr.sin_port);
    {
        commlayer::CAlarmSubscription sub(dev, 100);
        sub.Start();
        testsupport::pump(300);
    }  // must return: the open transfer is cut, not waited out
    close(fd);
    SUCCEED();
}

} // namespace
