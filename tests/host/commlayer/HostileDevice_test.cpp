// Devices that misbehave on purpose (endless bodies, silence after a challenge,
// unreadable status): no crash, no unbounded buffering, clear errors and logs.
#include <cstdio>
#include <gtest/gtest.h>

#include "Base/Base.h"
#include "commlayer/CAlarmSubscription.h"
#include "commlayer/CBodyLimit.h"
#include "commlayer/CDataStatisticsComm.h"
#include "commlayer/CDeviceDownloadsComm.h"
#include "commlayer/CDeviceStateNotifier.h"
#include "commlayer/CommErrors.h"
#include "support/DeviceSim.h"
#include "support/FakeDevice.h"

#if defined(__SANITIZE_ADDRESS__)
// Freed buffers stay resident in the sanitizer's quarantine (256 MB by
// default); a small one keeps the peaks below about what the transport holds.
extern "C" const char* __asan_default_options() { return "quarantine_size_mb=32"; }
#endif

using testsupport::FakeDevice;
using Pair = std::pair<int, int>;

namespace {

std::string head(int status, const char* type, long long length = -1)
{
    std::string h = "HTTP/1.1 " + std::to_string(status) + " X\r\nContent-Type: " + type + "\r\n";
    if (length >= 0)
        h += "Content-Length: " + std::to_string(length) + "\r\n";
    return h + "Connection: close\r\n\r\n";
}

// The peak resident size (kB) since the last resetPeak().
long peakKb()
{
    for (const QByteArray& line : testsupport::readFile(QStringLiteral("/proc/self/status")).split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    return 0;
}

// Starts a new peak at the present resident size; returns it (kB).
long resetPeak()
{
    EXPECT_TRUE(testsupport::writeFile(QStringLiteral("/proc/self/clear_refs"), "5"));
    return peakKb();
}

TEST(HostileDevice, EndlessAndOversizedBodiesAreCutByKind)
{
    const std::string chunk(64 * 1024, 'x');
    const std::string nineMb(9 * 1024 * 1024, '<');
    FakeDevice dev([&](FakeDevice& self, int fd, const std::string& req) {
        if (req.find("/endless200") != std::string::npos) {
            FakeDevice::send(fd, head(200, "application/xml"));
            self.sendForever(fd, chunk);
        } else if (req.find("/endless500") != std::string::npos) {
            FakeDevice::send(fd, head(500, "text/html"));
            self.sendForever(fd, chunk);
        } else if (req.find("/nine") != std::string::npos) {
            FakeDevice::send(fd, head(200, "image/jpeg", (long long)nineMb.size()) + nineMb);
        } else if (req.find("/json") != std::string::npos) {
            const std::string doc = "{\"a\":\"" + std::string(nineMb.size(), 'x') + "\"}";
            FakeDevice::send(fd, head(200, "application/json", (long long)doc.size()) + doc);
        }
    });
    clientcommonlogical::CConfigMgr::Instance()->SetDevices({testsupport::LoopbackDevice("FAKE", dev.port(), "pw")});

    struct Case {
        const char* name;
        bool download;
        const char* path;
        Pair error;
        size_t limit;  // of this kind of answer
    };
    using Limit = commlayer::detail::CBodyLimit;
    const Case cases[] = {
        {"endless document", false, "/endless200", {commlayer::kErrTooLarge, 200}, Limit::kDocument},
        {"endless error page", false, "/endless500", {commlayer::kErrTooLarge, 500}, Limit::kErrorBody},
        {"document over its limit", false, "/nine", {commlayer::kErrTooLarge, 200}, Limit::kDocument},
        {"endless picture", true, "/endless200", {commlayer::kErrTooLarge, 200}, Limit::kPicture},
        {"endless error page for a picture", true, "/endless500", {commlayer::kErrTooLarge, 500}, Limit::kErrorBody},
        {"picture of the same size is fine", true, "/nine", {0, 0}, Limit::kPicture},
        {"document of the same size", false, "/json", {commlayer::kErrTooLarge, 200}, Limit::kDocument},
        // A returning-person task's records come in one answer with a limit of its own.
        {"record list of the same size is fine", false, "/DVAPI/SDT/HFPD/searchTask/result/recordData/json", {0, 0},
            Limit::kRecordList},
        {"endless record list", false, "/DVAPI/SDT/HFPD/searchTask/result/recordData/endless200",
            {commlayer::kErrTooLarge, 200}, Limit::kRecordList},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const qint64 logBefore = testsupport::logText().size();
        const long residentBefore = resetPeak();
        const long long sentBefore = dev.sentForever();
        bool ok = false;
        if (c.download) {
            QByteArray data;
            ok = commlayer::CDeviceDownloadsComm::request(c.path, "FAKE", data, 20000);
            EXPECT_EQ(data.size(), ok ? int(nineMb.size()) : 0);
        } else {
            std::string answer;
            ok = testsupport::dvapi("FAKE", std::string("GET ") + c.path + "\r\n", answer, std::string(), 20000);
        }
        EXPECT_EQ(ok, c.error.first == 0);
        EXPECT_EQ(Base::Error::GetLastError(), c.error);
        // Cut when the limit is reached, not read on until the time-out (the
        // slack: what the socket buffers hold).
        EXPECT_LT(dev.sentForever() - sentBefore, (long long)c.limit + (16 << 20));
        if (!ok) {
            const QByteArray lines = testsupport::logText(logBefore);
            EXPECT_TRUE(lines.contains("cut: body over")) << lines.constData();
            EXPECT_FALSE(lines.contains("transfer error 23")) << lines.constData();
        }
        // Cut at its kind's limit, not buffered on: an endless body would reach
        // gigabytes in the time allowed. A growing buffer holds its old and new
        // copy at once (twice the limit at the end), a sanitizer a little more.
        const long grewKb = peakKb() - residentBefore;
        EXPECT_LT(grewKb, long(3 * c.limit / 1024) + 64 * 1024);
        std::printf("[ peak     ] %s: +%ld MB (limit %zu MB)\n", c.name, grewKb / 1024, c.limit >> 20);
    }
}

TEST(HostileDevice, TimeOutAfterTheDigestChallengeIsNotAWrongPassword)
{
    FakeDevice dev([](FakeDevice& self, int fd, const std::string& req) {
        if (req.find("Authorization: Digest") != std::string::npos) {
            self.holdSilent(fd);
            return;
        }
        const std::string body = "<ResponseStatus/>";
        FakeDevice::send(fd, "HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Digest realm=\"DVAPI\", qop=\"auth\", "
                             "nonce=\"abc\", algorithm=MD5\r\nContent-Type: application/xml\r\nContent-Length: "
                + std::to_string(body.size()) + "\r\n\r\n" + body);
        // Keep-alive: the authenticated retry may come on this connection.
        const std::string again = FakeDevice::readRequest(fd);
        if (!again.empty())
            self.holdSilent(fd);
    });
    clientcommonlogical::CConfigMgr::Instance()->SetDevices({testsupport::LoopbackDevice("CHALLENGE", dev.port(), "pw")});
    const qint64 logBefore = testsupport::logText().size();
    std::string answer;
    EXPECT_FALSE(testsupport::dvapi("CHALLENGE", "GET /DVAPI/System/deviceInfo\r\n", answer, std::string(), 1000));
    EXPECT_EQ(Base::Error::GetLastError(), Pair(commlayer::kErrTimeout, 0));
    const QByteArray lines = testsupport::logText(logBefore);
    EXPECT_TRUE(lines.contains("time-out after the digest challenge")) << lines.constData();
    EXPECT_FALSE(lines.contains("401")) << lines.constData();
}

// The status answer is switched while the subscription runs.
TEST(HostileDevice, AlarmStreamAndStatusPollSurviveBrokenAnswers)
{
    std::atomic<int> statusMode{0};
    const std::string chunk(64 * 1024, 'e');
    FakeDevice dev([&](FakeDevice& self, int fd, const std::string& req) {
        if (req.find("alertStream") != std::string::npos) {
            FakeDevice::send(fd, head(500, "text/html"));
            self.sendForever(fd, chunk);
            return;
        }
        std::string body;
        switch (statusMode.load()) {
        case 0: body = R"({"channels":[{"id":1,"online":true},{"id":2,"online":false}]})"; break;
        case 1: body = R"({"channels":"none"})"; break;
        case 2: body = R"({"channels":[{"id":1,"online":"yes"},{"id":2}]})"; break;
        case 3: body = "<<garbage"; break;
        default:
            FakeDevice::send(fd, head(200, "application/json"));
            self.sendForever(fd, chunk);
            return;
        }
        FakeDevice::send(fd, head(200, "application/json", (long long)body.size()) + body);
    });
    const QString id = QStringLiteral("BROKEN");
    auto* notifier = commlayer::CDeviceStateNotifier::Instance();
    const qint64 logBefore = testsupport::logText().size();
    const long residentBefore = resetPeak();
    {
        commlayer::CAlarmSubscription sub(testsupport::LoopbackDevice("BROKEN", dev.port(), "pw"), 100);
        sub.Start();
        ASSERT_TRUE(testsupport::waitUntil([&] { return notifier->IsChannelOnline(id, 1); }));
        for (int mode = 1; mode <= 4; ++mode) {
            SCOPED_TRACE(mode);
            const int before = dev.connections();
            statusMode = mode;
            // Several polls of this kind (and stream retries) go by.
            ASSERT_TRUE(testsupport::waitUntil([&] { return dev.connections() >= before + 4; }, 10000));
            EXPECT_TRUE(notifier->IsChannelOnline(id, 1));
            EXPECT_FALSE(notifier->IsChannelOnline(id, 2));
        }
        EXPECT_EQ(sub.Stats().connects.load(), 0u);
        EXPECT_FALSE(notifier->IsDeviceOnline(id));
        EXPECT_TRUE(notifier->DeviceProblem(id).contains(QStringLiteral("http 500"))) << qPrintable(notifier->DeviceProblem(id));
    }
    // Error pages and status answers are cut at their own small limits.
    EXPECT_LT(peakKb() - residentBefore, 64 * 1024);
    const QByteArray lines = testsupport::logText(logBefore);
    EXPECT_TRUE(lines.contains("/DVAPI/Event/notification/alertStream cut: body over 65536 bytes (http 500)"));
    // Logged once per change, not at every poll.
    EXPECT_EQ(lines.count("keeping the last known channel states"), 3) << lines.constData();
}

} // namespace
