// Silence on the alarm stream: a device that sends keep-alives is watched for
// silence and reconnected quickly, with its state reported; an idle device
// that keeps sending them is left alone.
#include <QSignalSpy>
#include <chrono>
#include <gtest/gtest.h>

#include "commlayer/CAlarmSubscription.h"
#include "commlayer/CDeviceStateNotifier.h"
#include "support/FakeDevice.h"
#include "support/TestSupport.h"

using testsupport::FakeDevice;

namespace {

enum class Script {
    BeatForever,     // keep-alives every 150 ms
    BeatThenSilent,  // the first connection: three keep-alives, then nothing (connection kept open)
    HeadersOnly,     // a device without keep-alives: headers, then nothing
    NoAnswer,        // reads the request and never answers
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
    const std::string beat = R"({"heartbeat":{"intervalSec":1}})";
    const std::string part = "--kb\r\nContent-Type: application/json\r\nContent-Length: " + std::to_string(beat.size())
        + "\r\n\r\n" + beat + "\r\n";
    for (int n = 0; !self.stopping(); ++n) {
        if (script == Script::BeatThenSilent && connection == 1 && n == 3) {
            self.holdSilent(fd);
            return;
        }
        if (!FakeDevice::send(fd, part))
            return;
        std::this_thread::sleep_for(std::chrono::milliseconds(150));
    }
}

clientcommonlogical::DeviceConfig config(const std::string& id, int port)
{
    clientcommonlogical::DeviceConfig d;
    d.id = id;
    d.address = "127.0.0.1";
    d.port = port;
    return d;
}

} // namespace

TEST(StreamSilence, SilenceIsCaughtOnlyWhereTheDeviceKeepsTheStreamAlive)
{
    struct Case {
        const char* id;
        Script script;
        bool silenceCaught;
        bool onlineAtEnd;
    };
    const Case cases[] = {
        {"BEATS", Script::BeatForever, false, true},
        {"FROZEN", Script::BeatThenSilent, true, true},
        {"NOBEATS", Script::HeadersOnly, false, true},
        {"NOANSWER", Script::NoAnswer, true, false},
    };
    auto* notifier = commlayer::CDeviceStateNotifier::Instance();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.id);
        std::atomic<int> connection{0};
        FakeDevice dev([&](FakeDevice& self, int fd, const std::string&) { serve(self, fd, c.script, ++connection); });
        const QString id = QString::fromLatin1(c.id);
        QSignalSpy spy(notifier, &commlayer::CDeviceStateNotifier::signalDeviceOnline);
        commlayer::CAlarmSubscription sub(config(c.id, dev.port()), 0);
        sub.SetSilenceLimitMs(1000);
        const auto start = std::chrono::steady_clock::now();
        sub.Start();
        if (c.silenceCaught) {
            // Within the limit plus one progress tick, not the 90 s of the low-speed rule.
            ASSERT_TRUE(testsupport::waitUntil([&] { return sub.Stats().silences >= 1; }, 5000));
            EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(3500));
            EXPECT_TRUE(testsupport::waitUntil([&] { return !notifier->DeviceProblem(id).isEmpty(); }, 2000));
            EXPECT_TRUE(notifier->DeviceProblem(id).contains(QStringLiteral("silent")))
                << qPrintable(notifier->DeviceProblem(id));
        }
        testsupport::pump(2800);
        EXPECT_EQ(notifier->IsDeviceOnline(id), c.onlineAtEnd);
        if (!c.silenceCaught) {
            EXPECT_EQ(sub.Stats().silences.load(), 0u);
            EXPECT_EQ(sub.Stats().connects.load(), 1u);
        } else if (c.onlineAtEnd) {
            // Reported offline, then online again after the reconnection.
            EXPECT_GE(sub.Stats().connects.load(), 2u);
            std::vector<bool> states;
            for (const QList<QVariant>& signal : spy)
                if (signal.at(0).toString() == id)
                    states.push_back(signal.at(1).toBool());
            EXPECT_EQ(states, (std::vector<bool>{true, false, true}));
        }
    }
}
