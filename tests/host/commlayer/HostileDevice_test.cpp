// Devices that misbehave on purpose, on loopback: endless bodies of every
// kind, a digest challenge followed by silence, unreadable channel-status
// answers. No crash, no unbounded buffering, clear error pairs and log lines.
#include <QFile>
#include <gtest/gtest.h>

#include "Base/Base.h"
#include "Base/Log.h"
#include "commlayer/CAlarmSubscription.h"
#include "commlayer/CDataStatisticsComm.h"
#include "commlayer/CDeviceDownloadsComm.h"
#include "commlayer/CDeviceStateNotifier.h"
#include "commlayer/CommErrors.h"
#include "support/DeviceSim.h"
#include "support/FakeDevice.h"

using testsupport::FakeDevice;
using Pair = std::pair<int, int>;

namespace {

QByteArray logText()
{
    QFile f(QString::fromStdString(Base::Log::CurrentFile()));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// Log lines written since `before` (the log's size then).
QByteArray logSince(int before) { return logText().mid(before); }

clientcommonlogical::DeviceConfig fakeConfig(const std::string& id, int port)
{
    clientcommonlogical::DeviceConfig d;
    d.id = id;
    d.address = "127.0.0.1";
    d.port = port;
    d.user = "admin";
    d.password = "pw";
    d.channels = {{1, id + "-CH1", "Camera 1", "Lobby", std::string()}, {2, id + "-CH2", "Camera 2", "Lobby", std::string()}};
    return d;
}

std::string head(int status, const char* type, long long length = -1)
{
    std::string h = "HTTP/1.1 " + std::to_string(status) + " X\r\nContent-Type: " + type + "\r\n";
    if (length >= 0)
        h += "Content-Length: " + std::to_string(length) + "\r\n";
    return h + "Connection: close\r\n\r\n";
}

long vmHwmKb()
{
    QFile f(QStringLiteral("/proc/self/status"));
    f.open(QIODevice::ReadOnly);
    for (const QByteArray& line : f.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    return 0;
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
    clientcommonlogical::CConfigMgr::Instance()->SetDevices({fakeConfig("FAKE", dev.port())});
    const long hwmBefore = vmHwmKb();

    struct Case {
        const char* name;
        bool download;
        const char* path;
        Pair error;
    };
    const Case cases[] = {
        {"endless document", false, "/endless200", {commlayer::kErrTooLarge, 200}},
        {"endless error page", false, "/endless500", {commlayer::kErrTooLarge, 500}},
        {"document over its limit", false, "/nine", {commlayer::kErrTooLarge, 200}},
        {"endless picture", true, "/endless200", {commlayer::kErrTooLarge, 200}},
        {"endless error page for a picture", true, "/endless500", {commlayer::kErrTooLarge, 500}},
        {"picture of the same size is fine", true, "/nine", {0, 0}},
        {"document of the same size", false, "/json", {commlayer::kErrTooLarge, 200}},
        // A returning-person task's records come in one answer with a limit of its own.
        {"record list of the same size is fine", false, "/DVAPI/SDT/HFPD/searchTask/result/recordData/json", {0, 0}},
        {"endless record list", false, "/DVAPI/SDT/HFPD/searchTask/result/recordData/endless200",
            {commlayer::kErrTooLarge, 200}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const int logBefore = logText().size();
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
        if (!ok) {
            const QByteArray lines = logSince(logBefore);
            EXPECT_TRUE(lines.contains("cut: body over")) << lines.constData();
            EXPECT_FALSE(lines.contains("transfer error 23")) << lines.constData();
        }
    }
    // Endless bodies were cut, not buffered: far under the 2 GB they would reach
    // (the bound leaves room for a sanitizer's quarantine).
    EXPECT_LT(vmHwmKb() - hwmBefore, 512 * 1024);
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
    clientcommonlogical::CConfigMgr::Instance()->SetDevices({fakeConfig("CHALLENGE", dev.port())});
    const int logBefore = logText().size();
    std::string answer;
    EXPECT_FALSE(testsupport::dvapi("CHALLENGE", "GET /DVAPI/System/deviceInfo\r\n", answer, std::string(), 1000));
    EXPECT_EQ(Base::Error::GetLastError(), Pair(commlayer::kErrTimeout, 0));
    const QByteArray lines = logSince(logBefore);
    EXPECT_TRUE(lines.contains("time-out after the digest challenge")) << lines.constData();
    EXPECT_FALSE(lines.contains("401")) << lines.constData();
}

// The alarm stream and the status poll of one fake device. The status answer
// is chosen by the test while the subscription runs.
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
    const int logBefore = logText().size();
    const long hwmBefore = vmHwmKb();
    {
        commlayer::CAlarmSubscription sub(fakeConfig("BROKEN", dev.port()), 100);
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
    EXPECT_LT(vmHwmKb() - hwmBefore, 512 * 1024);
    const QByteArray lines = logSince(logBefore);
    EXPECT_TRUE(lines.contains("/DVAPI/Event/notification/alertStream cut: body over 65536 bytes (http 500)"));
    // Logged once per change, not at every poll.
    EXPECT_EQ(lines.count("keeping the last known channel states"), 3) << lines.constData();
}

} // namespace
