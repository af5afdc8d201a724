// Silence on the alarm stream is caught only where the device showed it keeps the
// stream alive (keep-alives or a busy stream); a reconnection into silence stays offline.
#include <QSignalSpy>
#include <chrono>
#include <gtest/gtest.h>

#include "commlayer/CAlarmSubscription.h"
#include "commlayer/CDeviceStateNotifier.h"
#include "support/DeviceSim.h"
#include "support/TestSupport.h"

using testsupport::FakeDevice;

namespace {

enum class Script {
    BeatForever,     // keep-alives every 150 ms
    BeatThenSilent,  // the first connection: three keep-alives, then nothing (connection kept open)
    HeadersOnly,     // a device without keep-alives: headers, then nothing
    NoAnswer,        // reads the request and never answers
    BusyThenSilent,  // no keep-alives: the first connection brings an event every 150 ms for 4.5 s, then nothing
    FewThenSilent,   // no keep-alives: the first connection brings three events, then nothing
};

void serve(FakeDevice& self, int fd, Script script, int connection)
{
    if (script == Script::NoAnswer) {
        self.holdSilent(fd);
        return;
    }
    FakeDevice::send(fd, "HTTP/1.1 200 OK\r\nContent-Type: multipart/mixed; boundary=kb\r\n\r\n");
    if (script == Script::HeadersOnly) {
        self.holdSilent(fd);
        return;
    }
    const bool events = script == Script::BusyThenSilent || script == Script::FewThenSilent;
    const std::string doc = events ? R"({"eventCode":100101,"eventID":"e"})" : R"({"heartbeat":{"intervalSec":1}})";
    const std::string part = "--kb\r\nContent-Type: application/json\r\nContent-Length: " + std::to_string(doc.size())
        + "\r\n\r\n" + doc + "\r\n";
    const int parts = script == Script::BeatThenSilent ? 3 : script == Script::BusyThenSilent ? 30 : 3;
    for (int n = 0; !self.stopping(); ++n) {
        // Later connections of the event scripts are answered, then stay silent.
        if ((script != Script::BeatForever && connection == 1 && n == parts) || (events && connection > 1)) {
            self.holdSilent(fd);
            return;
        }
        if (!FakeDevice::send(fd, part))
            return;
        std::this_thread::sleep_for(std::chrono::milliseconds(150));
    }
}

} // namespace

TEST(StreamSilence, SilenceIsCaughtOnlyWhereTheDeviceKeepsTheStreamAlive)
{
    struct Case {
        const char* id;
        Script script;
        int caughtWithinMs;  // 0: never cut for silence
        std::vector<bool> states;  // what the device was reported as, in order (rows that were online)
    };
    // Silence limit 1 s: caught within the limit plus one progress tick after
    // the last byte, not after the 90 s of the low-speed rule.
    const Case cases[] = {
        {"BEATS", Script::BeatForever, 0, {true}},
        {"FROZEN", Script::BeatThenSilent, 3500, {true, false, true}},
        {"NOBEATS", Script::HeadersOnly, 0, {true}},
        {"NOANSWER", Script::NoAnswer, 3500, {}},
        // Reconnected into silence: stays offline with its reason.
        {"BUSY", Script::BusyThenSilent, 8000, {true, false}},
        {"FEW", Script::FewThenSilent, 0, {true}},
    };
    auto* notifier = commlayer::CDeviceStateNotifier::Instance();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.id);
        std::atomic<int> connection{0};
        FakeDevice dev([&](FakeDevice& self, int fd, const std::string&) { serve(self, fd, c.script, ++connection); });
        const QString id = QString::fromLatin1(c.id);
        QSignalSpy spy(notifier, &commlayer::CDeviceStateNotifier::signalDeviceOnline);
        commlayer::CAlarmSubscription sub(testsupport::LoopbackDevice(c.id, dev.port(), std::string()), 0);
        sub.SetSilenceLimitMs(1000);
        const auto start = std::chrono::steady_clock::now();
        sub.Start();
        if (c.caughtWithinMs > 0) {
            ASSERT_TRUE(testsupport::waitUntil([&] { return sub.Stats().silences >= 1; }, c.caughtWithinMs + 2000));
            EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(c.caughtWithinMs));
            // Not cut while the events still came.
            EXPECT_GE(sub.Stats().events.load(), c.script == Script::BusyThenSilent ? 30u : 0u);
            EXPECT_TRUE(testsupport::waitUntil([&] { return !notifier->DeviceProblem(id).isEmpty(); }, 2000));
            EXPECT_TRUE(notifier->DeviceProblem(id).contains(QStringLiteral("silent")))
                << qPrintable(notifier->DeviceProblem(id));
        } else {
            testsupport::pump(c.script == Script::FewThenSilent ? 1500 : 0);
        }
        testsupport::pump(2800);
        EXPECT_EQ(notifier->IsDeviceOnline(id), !c.states.empty() && c.states.back());
        if (c.caughtWithinMs == 0) {
            EXPECT_EQ(sub.Stats().silences.load(), 0u);
            EXPECT_EQ(sub.Stats().connects.load(), 1u);
        } else if (!c.states.empty()) {
            EXPECT_GE(sub.Stats().connects.load(), 2u);
        }
        std::vector<bool> states;
        for (const QList<QVariant>& signal : spy)
            if (signal.at(0).toString() == id)
                states.push_back(signal.at(1).toBool());
        EXPECT_EQ(states, c.states);
    }
}
