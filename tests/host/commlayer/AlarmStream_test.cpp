// The live alarm intake against the emulator: events in order and intact, bad
// parts skipped, the stream back after a drop, availability reported.
#include <QSignalSpy>
#include <algorithm>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "commlayer/CAlarmSubscription.h"
#include "commlayer/CDeviceStateNotifier.h"
#include "commlayer/CMultipartReader.h"
#include "publicdatacontroller/AlarmTransfer.h"
#include "support/DeviceSim.h"

using publicdatacontroller::IntelAlarmEventInfo;
using testsupport::waitUntil;

namespace {

class AlarmStreamTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_sim.start());
        auto* transfer = Base::CSingleton<publicdatacontroller::AlarmTransfer>::Instance();
        QObject::connect(transfer, &publicdatacontroller::AlarmTransfer::signalAlarmEventInfo, &m_context,
            [this](void* p) {
                m_events.push_back(static_cast<publicdatacontroller::CIntelAlarmObject*>(p)->GetAlarmEventInfo());
            });
        m_sub = std::make_unique<commlayer::CAlarmSubscription>(m_sim.device(), 150);
        m_sub->Start();
        ASSERT_TRUE(waitUntil([this] { return m_sub->Stats().connects >= 1; }));
        ASSERT_TRUE(waitUntil([this] { return streaming(); }));
    }
    bool streaming() const { return m_sim.control("GET", "/control/stats").contains("\"clients\":1"); }
    std::string inject(const nlohmann::json& desc)
    {
        const auto answer = nlohmann::json::parse(m_sim.control("POST", "/control/event", QByteArray::fromStdString(desc.dump())).toStdString(), nullptr, false);
        EXPECT_TRUE(answer.is_object() && answer.value("ok", false)) << desc.dump();
        return answer.is_object() ? answer.value("eventID", std::string()) : std::string();
    }
    const IntelAlarmEventInfo* find(const std::string& eventID) const
    {
        const auto it = std::find_if(m_events.begin(), m_events.end(), [&](const auto& e) { return e.eventID == eventID; });
        return it == m_events.end() ? nullptr : &*it;
    }

    testsupport::DeviceSim m_sim;
    QObject m_context;
    std::vector<IntelAlarmEventInfo> m_events;
    std::unique_ptr<commlayer::CAlarmSubscription> m_sub;
};

TEST_F(AlarmStreamTest, EventsArriveInOrderWithFieldsAndPictures)
{
    const QByteArray scene = testsupport::makeJpeg(1920, 1080);
    const QByteArray face = testsupport::makeJpeg(120, 160);
    const std::string capture = inject({{"eventCode", 100119}, {"channelID", 2}, {"bNoSubPic", false},
        {"faces", {{{"Temperature", 38.2}, {"TemperatureAnomaly", 1}, {"Mask", 1}, {"facePicID", 4242}}}},
        {"pictures", {{"bk0", {{"base64", scene.toBase64().toStdString()}}}, {"sub0", {{"base64", face.toBase64().toStdString()}}}}}});
    const std::string compare = inject({{"eventCode", 100103}, {"channelID", 3},
        {"comparison", {{"similarity", 0.91}, {"person", {{"name", "Zo\u00eb \u00dcnicode\u202e"}, {"FDID", "2"}}}}}});
    const std::string returning = inject({{"eventCode", 100112}, {"channelID", 1}, {"taskID", "hfpd-xyz"}});
    const std::string sceneOnly = inject({{"eventCode", 100101}, {"channelID", 4}, {"bNoSubPic", true}});
    ASSERT_TRUE(waitUntil([this] { return m_events.size() >= 4; }));
    std::vector<std::string> order;
    for (const auto& e : m_events)
        order.push_back(e.eventID);
    ASSERT_EQ(order, (std::vector<std::string>{capture, compare, returning, sceneOnly}));

    const IntelAlarmEventInfo& a = m_events[0];
    EXPECT_EQ(a.eventType, 100119u);
    EXPECT_EQ(a.deviceID, "TEST0001");
    EXPECT_EQ(a.cameraID, "TEST0001-CH2");
    EXPECT_EQ(a.cameraName, "Camera 2");
    EXPECT_GT(a.captureTime, 1600000000);
    ASSERT_EQ(a.faceInfoList.size(), 1u);
    EXPECT_EQ(a.faceInfoList[0].facePicID, 4242u);
    EXPECT_EQ(a.faceInfoList[0].Mask, 1u);
    EXPECT_DOUBLE_EQ(a.faceInfoList[0].Temperature, 38.2);
    EXPECT_EQ(a.faceInfoList[0].bkPic, scene);
    EXPECT_EQ(a.faceInfoList[0].SubPic, face);
    // A face-list event's temperature is its first face's.
    EXPECT_DOUBLE_EQ(a.alarmInfo.thermometry.Temperature, 38.2);
    EXPECT_EQ(a.alarmInfo.thermometry.TemperatureAnomaly, 1u);

    const IntelAlarmEventInfo& b = m_events[1];
    EXPECT_EQ(b.cameraID, "TEST0001-CH3");
    EXPECT_EQ(b.alarmInfo.comparison.people.name, "Zo\u00eb \u00dcnicode");  // without its bidirectional override
    EXPECT_DOUBLE_EQ(b.alarmInfo.comparison.similarity, 0.91);
    EXPECT_FALSE(b.alarmInfo.comparison.people.extendList.empty());
    EXPECT_TRUE(b.alarmInfo.comparison.libraryPic.startsWith("\xFF\xD8"));
    EXPECT_EQ(b.faceInfo.facePicID, b.faceInfoList.at(0).facePicID);
    EXPECT_TRUE(b.faceInfo.bkPic.startsWith("\xFF\xD8"));

    EXPECT_EQ(m_events[2].secondID, "hfpd-xyz");

    const auto& d = m_events[3].faceInfoList.at(0);
    EXPECT_TRUE(d.bNoSubPic);
    EXPECT_TRUE(d.SubPic.isEmpty());
    EXPECT_TRUE(d.bkPic.startsWith("\xFF\xD8"));
    ASSERT_FALSE(d.faceRects.empty());
    EXPECT_GT(d.faceRects[0].width, 0.0);
}

TEST_F(AlarmStreamTest, BadPartsAreSkippedAndTheNextEventArrives)
{
    struct Case {
        const char* name;
        nlohmann::json bad;
    };
    const Case cases[] = {
        {"truncated picture", {{"eventCode", 100119}, {"pictures", {{"bk0", {{"truncateTo", 1000}}}}}}},
        {"oversized declared length", {{"eventCode", 100119}, {"pictures", {{"bk0", {{"declaredLength", 2000000000LL}}}}}}},
        {"unreadable document", {{"eventCode", "not-a-number"}}},
        {"faces of the wrong type", {{"eventCode", 100101}, {"faces", nlohmann::json::array({42})}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const uint64_t errorsBefore = m_sub->Stats().errors;
        const std::string bad = inject(c.bad);
        const std::string good = inject({{"eventCode", 100101}});
        ASSERT_TRUE(waitUntil([&] { return find(good) != nullptr; }, 8000));
        EXPECT_EQ(find(bad), nullptr);
        EXPECT_GT(m_sub->Stats().errors, errorsBefore);
        EXPECT_TRUE(find(good)->faceInfoList.at(0).bkPic.startsWith("\xFF\xD8"));
    }
}

TEST_F(AlarmStreamTest, ReconnectsAfterADropOrRestartAndReportsAvailability)
{
    auto* notifier = commlayer::CDeviceStateNotifier::Instance();
    const QString id = QStringLiteral("TEST0001");
    ASSERT_TRUE(waitUntil([&] { return notifier->IsDeviceOnline(id); }));
    testsupport::pump(100);  // deliver the queued signals of the connection
    QSignalSpy deviceSpy(notifier, &commlayer::CDeviceStateNotifier::signalDeviceOnline);

    const std::string first = inject({{"eventCode", 100101}});
    ASSERT_TRUE(waitUntil([&] { return find(first) != nullptr; }));
    m_sim.control("POST", "/control/alertStream/drop");
    ASSERT_TRUE(waitUntil([this] { return m_sub->Stats().connects >= 2; }));
    ASSERT_TRUE(waitUntil([this] { return streaming(); }));
    const std::string second = inject({{"eventCode", 100101}});
    ASSERT_TRUE(waitUntil([&] { return find(second) != nullptr; }));

    // The device goes away entirely, then comes back on the same port.
    const int port = m_sim.port();
    m_sim.stop();
    ASSERT_TRUE(waitUntil([&] { return !notifier->IsDeviceOnline(id); }, 8000));
    ASSERT_TRUE(m_sim.start(port));
    ASSERT_TRUE(waitUntil([&] { return notifier->IsDeviceOnline(id); }, 15000));
    ASSERT_TRUE(waitUntil([this] { return streaming(); }));
    const std::string third = inject({{"eventCode", 100119}});
    ASSERT_TRUE(waitUntil([&] { return find(third) != nullptr; }));
    ASSERT_TRUE(waitUntil([&] { return deviceSpy.count() >= 2 && deviceSpy.last().at(1).toBool(); }));
    EXPECT_EQ(deviceSpy.at(0).at(1).toBool(), false);

    // A channel the device reports offline is reported so, alone.
    ASSERT_TRUE(waitUntil([&] { return notifier->IsChannelOnline(id, 2); }));
    testsupport::pump(100);
    QSignalSpy channelSpy(notifier, &commlayer::CDeviceStateNotifier::signalChannelOnline);
    m_sim.control("POST", "/control/channel", R"({"channel":2,"online":false})");
    ASSERT_TRUE(waitUntil([&] { return !notifier->IsChannelOnline(id, 2) && channelSpy.count() >= 1; }));
    EXPECT_TRUE(notifier->IsChannelOnline(id, 1));
    EXPECT_FALSE(notifier->IsChannelOnline(id, 9));
    ASSERT_EQ(channelSpy.count(), 1);
    EXPECT_EQ(channelSpy.at(0).at(1).toInt(), 2);
    EXPECT_FALSE(channelSpy.at(0).at(2).toBool());
}

// The reader on hand-made streams, fed in pieces of every size.
TEST(MultipartReader, SplitsPartsWhateverTheChunkSizes)
{
    const std::string b = "bnd";
    auto part = [&](const std::string& type, const std::string& body, long long declared = -1) {
        return "--" + b + "\r\nContent-Type: " + type + "\r\nContent-Length: "
            + std::to_string(declared >= 0 ? declared : (long long)body.size()) + "\r\n\r\n" + body + "\r\n";
    };
    std::string binary;
    for (int i = 0; i < 3000; ++i)
        binary += char(i * 7);
    binary += "\r\n--bn\r\n--";  // almost a boundary inside the data
    const std::string stream = "preamble junk\r\n" + part("application/json", "{\"a\":1}") + part("image/jpeg", binary)
        + part("image/jpeg", "short", 60) + part("application/json", "{\"b\":2}")
        + part("image/jpeg", "huge", 1LL << 40) + part("application/json", "{\"c\":3}")
        + part("application/json", "") + "--" + b + "--\r\n";

    for (size_t chunk : {size_t(1), size_t(2), size_t(3), size_t(7), size_t(64), size_t(4096), stream.size()}) {
        SCOPED_TRACE(chunk);
        commlayer::CMultipartReader reader(b, 1 << 20);
        std::vector<std::string> bodies;
        int errors = 0;
        reader.onPart = [&](commlayer::CMultipartReader::Part& p) { bodies.emplace_back(p.body.constData(), size_t(p.body.size())); };
        reader.onError = [&](const std::string&) { ++errors; };
        for (size_t at = 0; at < stream.size(); at += chunk)
            reader.feed(stream.data() + at, std::min(chunk, stream.size() - at));
        EXPECT_EQ(bodies, (std::vector<std::string>{"{\"a\":1}", binary, "{\"b\":2}", "{\"c\":3}", ""}));
        EXPECT_EQ(errors, 2);
    }
}

} // namespace
