// The alarm listener: event-code and repeat filters, one connection however often
// it is switched on, delivery on the GUI thread when the host emits from elsewhere.
#include <QSignalSpy>
#include <QThread>
#include <functional>
#include <gtest/gtest.h>

#include "AlarmListener.h"
#include "Base/CSingleton.h"
#include "publicdatacontroller/AlarmTransfer.h"
#include "support/TestSupport.h"

using BodyTemperature::AlarmListener;
using publicdatacontroller::AlarmTransfer;
using publicdatacontroller::CIntelAlarmObject;
using publicdatacontroller::IntelAlarmEventInfo;

namespace {

IntelAlarmEventInfo record(uint32_t code, std::vector<uint32_t> facePicIds = {})
{
    IntelAlarmEventInfo info;
    info.eventType = code;
    info.cameraID = "CAM-1";
    for (uint32_t id : facePicIds) {
        protocol::IntelAlarmFaceInfo face;
        face.facePicID = id;
        info.faceInfoList.push_back(face);
    }
    return info;
}

AlarmTransfer* transfer() { return Base::CSingleton<AlarmTransfer>::Instance(); }

void emitAlarm(const IntelAlarmEventInfo& info)
{
    CIntelAlarmObject alarm(info);
    emit transfer()->signalAlarmEventInfo(&alarm);
}

} // namespace

TEST(AlarmListener, KeepsOnlyTheSixFaceEventCodes)
{
    struct Row { uint32_t code; bool passed; };
    const Row rows[] = {{100101, true}, {100103, true}, {100112, true}, {100114, true}, {100119, true},
        {100506, true}, {100102, false}, {100100, false}, {0, false}, {4294967295u, false}};
    AlarmListener listener;
    listener.setAlarmListening(true);
    QSignalSpy spy(&listener, &AlarmListener::signalNewAlarmComing);
    uint32_t id = 1;
    for (const Row& r : rows) {
        spy.clear();
        emitAlarm(record(r.code, {id++}));
        EXPECT_EQ(spy.count(), r.passed ? 1 : 0) << "event code " << r.code;
    }
    spy.clear();
    emit transfer()->signalAlarmEventInfo(nullptr);
    EXPECT_EQ(spy.count(), 0);
}

TEST(AlarmListener, DropsARepeatOfTheLastTwentyEventsOnly)
{
    AlarmListener listener;
    listener.setAlarmListening(true);
    QSignalSpy spy(&listener, &AlarmListener::signalNewAlarmComing);

    emitAlarm(record(100101, {1}));
    emitAlarm(record(100101, {1}));  // the same capture delivered twice
    EXPECT_EQ(spy.count(), 1);

    for (uint32_t id = 2; id <= 20; ++id)
        emitAlarm(record(100119, {id}));
    EXPECT_EQ(spy.count(), 20);
    emitAlarm(record(100101, {1}));  // still among the last 20
    EXPECT_EQ(spy.count(), 20);

    emitAlarm(record(100101, {21}));  // pushes id 1 out
    EXPECT_EQ(listener.recentEventIds().size(), 20);
    EXPECT_FALSE(listener.recentEventIds().contains(1));
    emitAlarm(record(100101, {1}));
    EXPECT_EQ(spy.count(), 22);

    // An event without faces has no id to repeat.
    emitAlarm(record(100103));
    emitAlarm(record(100103));
    EXPECT_EQ(spy.count(), 24);
    EXPECT_FALSE(listener.recentEventIds().contains(0));
}

TEST(AlarmListener, SwitchingOnTwiceConnectsOnceAndOffIsHarmless)
{
    AlarmListener listener;
    QSignalSpy spy(&listener, &AlarmListener::signalNewAlarmComing);
    listener.setAlarmListening(false);  // not connected yet
    emitAlarm(record(100101, {500}));
    EXPECT_EQ(spy.count(), 0);

    listener.setAlarmListening(true);
    listener.setAlarmListening(true);
    emitAlarm(record(100101, {501}));
    EXPECT_EQ(spy.count(), 1);

    listener.setAlarmListening(false);
    emitAlarm(record(100101, {502}));
    EXPECT_EQ(spy.count(), 1);
    listener.setAlarmListening(false);

    // The recent list survives a pause: 501 is still a repeat afterwards.
    listener.setAlarmListening(true);
    emitAlarm(record(100101, {501}));
    EXPECT_EQ(spy.count(), 1);
}

TEST(AlarmListener, AFullCopyOfAnAlarmFromAnotherThreadArrivesOnceOnTheGuiThread)
{
    AlarmListener listener;
    listener.setAlarmListening(true);
    QThread* deliveredOn = nullptr;
    int deliveries = 0;
    IntelAlarmEventInfo delivered;
    QObject::connect(&listener, &AlarmListener::signalNewAlarmComing, &listener,
        [&](const IntelAlarmEventInfo& info) {
            deliveredOn = QThread::currentThread();
            ++deliveries;
            delivered = info;
        });

    // The host emits the raw signal on its own thread and keeps the object
    // alive; publishAlarm owns its object until delivery.
    IntelAlarmEventInfo sent = record(100119, {900, 902});
    sent.faceInfoList[0].Temperature = 37.9;
    sent.faceInfoList[0].bkPic = QByteArray("scene-bytes");
    sent.cameraName = "Gate";
    CIntelAlarmObject alarm(sent);
    const std::function<void()> emitters[] = {
        [&alarm] { emit transfer()->signalAlarmEventInfo(&alarm); },
        [] { transfer()->publishAlarm(std::make_shared<CIntelAlarmObject>(record(100101, {901}))); },
    };
    for (int n = 1; n <= 2; ++n) {
        std::unique_ptr<QThread> host(QThread::create(emitters[n - 1]));
        host->start();
        host->wait();
        ASSERT_TRUE(testsupport::waitUntil([&] { return deliveries >= n; }));
        testsupport::pump(50);
        EXPECT_EQ(deliveries, n);
        EXPECT_EQ(deliveredOn, QThread::currentThread());
        if (n == 1) {
            ASSERT_EQ(delivered.faceInfoList.size(), 2u);
            EXPECT_EQ(delivered.cameraName, "Gate");
            EXPECT_DOUBLE_EQ(delivered.faceInfoList[0].Temperature, 37.9);
            EXPECT_EQ(delivered.faceInfoList[0].bkPic, QByteArray("scene-bytes"));
        }
    }
}
