// A device password reaches nobody but the device: impostors on loopback,
// TLS with each kind of trust, RTSP challenges of every shape, a whole host run.
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Base/Base.h"
#include "Base/Log.h"
#include "commlayer/CommErrors.h"
#include "playwindow/CStreamDecoder.h"
#include "playwindow/CStreamPlayWindowWithTask.h"
#include "playwindow/CStreamSource.h"
#include "support/DeviceSim.h"
#include "support/HostRuns.h"
#include "support/PasswordTraps.h"

namespace {

const QByteArray kUser = "admin";
const QByteArray kPassword = "Zebra-7f!Quartz";

using testsupport::readFile;

TEST(PasswordExposure, VideoAndRequestsNeverHandThePasswordToAnImpostor)
{
    QTemporaryDir dir;
    const QString impostorCert = dir.filePath(QStringLiteral("impostor.pem"));
    const QString deviceCert = dir.filePath(QStringLiteral("device.pem"));
    ASSERT_TRUE(testsupport::MakeCertificate(impostorCert, dir.filePath(QStringLiteral("impostor.key"))));
    ASSERT_TRUE(testsupport::MakeCertificate(deviceCert, dir.filePath(QStringLiteral("device.key"))));
    testsupport::BasicAskingDevice basicAsker;
    testsupport::FakeRtspDevice impostor([](const QByteArray&, const QByteArray&) {
        return QByteArray("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n");
    }, impostorCert, dir.filePath(QStringLiteral("impostor.key")));
    testsupport::DeviceSim sim({QStringLiteral("--tls-cert"), deviceCert, QStringLiteral("--tls-key"),
        dir.filePath(QStringLiteral("device.key"))});
    ASSERT_TRUE(sim.start());

    struct Row {
        const char* id;
        const char* scheme;
        int port;
        QString caFile;
        bool verify;
        QByteArray password;
        const char* shown;  // the window's message; empty: it plays
        int requestError;
    };
    const Row rows[] = {
        {"PLAINBASIC", "http", basicAsker.port(), QString(), true, kPassword, "Password not sent",
            commlayer::kErrInsecureAuth},
        {"IMPOSTOR", "https", impostor.port(), QString(), true, kPassword, "Certificate not trusted",
            commlayer::kErrTls},
        {"PINNED", "https", impostor.port(), deviceCert, true, kPassword, "Certificate not trusted",
            commlayer::kErrTls},
        {"EMULATOR", "https", sim.port(), deviceCert, true, testsupport::DeviceSim::kPassword, "", 0},
        {"NOVERIFY", "https", sim.port(), QString(), false, testsupport::DeviceSim::kPassword, "", 0},
    };
    std::vector<clientcommonlogical::DeviceConfig> devices;
    for (const Row& r : rows) {
        devices.push_back(sim.device(r.id, r.password.toStdString()));
        devices.back().port = r.port;
        devices.back().scheme = r.scheme;
        devices.back().caFile = r.caFile.toStdString();
        devices.back().verifyPeer = r.verify;
    }
    clientcommonlogical::CConfigMgr::Instance()->SetDevices(devices);
    testsupport::LogicModelPlugin plugin;

    for (const Row& r : rows) {
        SCOPED_TRACE(r.id);
        const qint64 logStart = testsupport::logText().size();
        {
            testsupport::ShownWindow w({480, 270});
            w.SetLiveViewControllerPlugin(&plugin);
            ASSERT_TRUE(w.StartPreview(std::string(r.id) + "-CH1", 100, 0, 0));
            if (*r.shown == '\0') {
                EXPECT_TRUE(testsupport::waitUntil([&w] { return testsupport::NonBlack(w.CurrentFrame()); }, 5000));
            } else {
                EXPECT_TRUE(testsupport::waitUntil([&] { return w.MessageText().startsWith(QLatin1String(r.shown)); }, 8000))
                    << w.MessageText().toStdString();
                testsupport::pump(1500);  // final: no retry replaces the message
                EXPECT_TRUE(w.MessageText().startsWith(QLatin1String(r.shown))) << w.MessageText().toStdString();
                EXPECT_FALSE(w.HasFrame());
            }
        }
        std::string answer;
        EXPECT_EQ(testsupport::dvapi(r.id, "GET /DVAPI/System/deviceInfo\r\n", answer), r.requestError == 0);
        EXPECT_EQ(Base::Error::GetLastError().first, r.requestError);

        const QByteArray log = testsupport::logText(logStart);
        EXPECT_EQ(log.count("refused:"), *r.shown == '\0' ? 0 : 1) << log.constData();
        EXPECT_EQ(log.count(QByteArray("[") + QByteArray::number(r.requestError) + "-"), r.requestError == 0 ? 0 : 1);
        EXPECT_FALSE(testsupport::ContainsPassword(log, kUser, r.password)) << log.constData();
        if (r.port == basicAsker.port()) {
            const QByteArray got = basicAsker.received();
            EXPECT_TRUE(got.contains("GET /DVAPI/Streaming/channels/1/mjpeg")) << got.constData();
            EXPECT_TRUE(got.contains("GET /DVAPI/System/deviceInfo"));
            EXPECT_FALSE(got.contains("Authorization")) << got.constData();
            EXPECT_FALSE(testsupport::ContainsPassword(got, kUser, kPassword));
        } else if (r.port == impostor.port()) {
            // The log names the transfer error instead of giving a bare number.
            EXPECT_TRUE(log.contains("failed [29-0]: transfer error 60 (SSL peer certificate")) << log.constData();
            const QByteArray got = impostor.received();
            EXPECT_FALSE(got.contains("GET ")) << got.constData();  // nothing got past the handshake
            EXPECT_FALSE(testsupport::ContainsPassword(got, kUser, kPassword));
        }
    }
    EXPECT_EQ(playwindow::CStreamDecoder::LiveDecoders(), 0);
}

// RTSP challenges of every shape, against a scripted device over TCP and over
// TLS with each kind of trust. The password reaches it only hashed, or in
// Basic inside TLS whose certificate was verified; FFmpeg never holds it.
TEST(PasswordExposure, RtspChallengesAreAnsweredByOurCodeOnly)
{
    using State = playwindow::CStreamDecoder::State;
    QTemporaryDir dir;
    const QString selfCert = dir.filePath(QStringLiteral("self.pem")), selfKey = dir.filePath(QStringLiteral("self.key"));
    const QString ca = dir.filePath(QStringLiteral("ca.pem")), signedCert = dir.filePath(QStringLiteral("signed.pem")),
                  signedKey = dir.filePath(QStringLiteral("signed.key"));
    ASSERT_TRUE(testsupport::MakeCertificate(selfCert, selfKey));
    ASSERT_TRUE(testsupport::MakeSignedCertificate(ca, signedCert, signedKey));
    testsupport::BasicAskingDevice elsewhere(true);

    const QByteArray basic = "RTSP/1.0 401 Unauthorized\r\nCSeq: %1\r\nWWW-Authenticate: Basic realm=\"cam\"\r\n\r\n";
    const QByteArray digest = "RTSP/1.0 401 Unauthorized\r\nCSeq: %1\r\nWWW-Authenticate: Digest realm=\"cam\", "
                              "nonce=\"4e6f6e6365\"\r\n\r\n";
    enum Tls { Plain, SelfSigned, Pinned, PrivateCa, Unverified };
    const struct Row {
        const char* name;
        QByteArray challenge;  // the whole 401 ("%1": the CSeq)
        Tls tls;
        const char* location;  // a redirect of the authorised DESCRIBE ("%1": this device's port, "%2": another's)
        State shown;           // Retrying: the device's 404 came after the answer
        const char* sent;      // in the authorised request; empty: no Authorization at all
    } rows[] = {
        {"Basic alone", basic, Plain, nullptr, State::PasswordRefused, ""},
        {"digest", digest, Plain, nullptr, State::Retrying, "Authorization: Digest username=\"admin\""},
        {"Digest then Basic, two lines", "RTSP/1.0 401 Unauthorized\r\nCSeq: %1\r\nWWW-Authenticate: Digest "
                                         "realm=\"c\", nonce=\"n5\"\r\nWWW-Authenticate: Basic realm=\"c\"\r\n\r\n",
            Plain, nullptr, State::Retrying, "nonce=\"n5\""},
        {"SHA-256 preferred", "RTSP/1.0 401 Unauthorized\r\nCSeq: %1\r\nWWW-Authenticate: Digest realm=\"c\", "
                              "nonce=\"n6\", algorithm=MD5, Digest realm=\"c\", nonce=\"n6\", algorithm=SHA-256\r\n\r\n",
            Plain, nullptr, State::Retrying, "algorithm=SHA-256"},
        {"a stale nonce is answered anew", "RTSP/1.0 401 Unauthorized\r\nCSeq: %1\r\nWWW-Authenticate: Digest "
                                           "realm=\"c\", nonce=\"stale\"\r\n\r\n", Plain, nullptr, State::Retrying,
            "nonce=\"fresh\""},
        {"redirect to another port", digest, Plain, "rtsp://127.0.0.1:%2/moved", State::Retrying, "Digest"},
        {"redirect to another host name", digest, Plain, "rtsp://localhost:%1/moved", State::Retrying, "Digest"},
        {"redirect to the same device", digest, Plain, "rtsp://127.0.0.1:%1/moved", State::Retrying,
            "DESCRIBE rtsp://127.0.0.1:%1/moved RTSP/1.0"},
        {"TLS, self-signed", basic, SelfSigned, nullptr, State::CertificateNotTrusted, ""},
        {"TLS not verified, Basic", basic, Unverified, nullptr, State::PasswordRefused, ""},
        {"TLS, pinned certificate, Basic", basic, Pinned, nullptr, State::Retrying, "Authorization: Basic"},
        {"TLS, private CA, Basic", basic, PrivateCa, nullptr, State::Retrying, "Authorization: Basic"},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        std::atomic<int> port{0};  // read by the device's thread, which only a socket orders after this one
        const auto fill = [&](QByteArray text) {
            return text.replace("%1", QByteArray::number(port.load())).replace("%2", QByteArray::number(elsewhere.port()));
        };
        const auto script = [&](const QByteArray& request, const QByteArray& cseq) -> QByteArray {
            const QByteArray seq = "CSeq: " + cseq + "\r\n";
            if (!request.contains("Authorization:"))
                return QByteArray(r.challenge).replace("%1", cseq);
            if (request.contains("nonce=\"stale\""))
                return "RTSP/1.0 401 Unauthorized\r\n" + seq
                    + "WWW-Authenticate: Digest realm=\"c\", nonce=\"fresh\", stale=TRUE\r\n\r\n";
            if (request.startsWith("OPTIONS"))
                return "RTSP/1.0 200 OK\r\n" + seq + "Public: OPTIONS, DESCRIBE, SETUP, PLAY, TEARDOWN\r\n\r\n";
            if (r.location != nullptr && !request.contains("/moved"))
                return "RTSP/1.0 302 Moved\r\n" + seq + "Location: " + fill(r.location) + "\r\n\r\n";
            return "RTSP/1.0 404 Not Found\r\n" + seq + "\r\n";
        };
        const bool tls = r.tls != Plain;
        testsupport::FakeRtspDevice device(script, !tls ? QString() : r.tls == PrivateCa ? signedCert : selfCert,
            r.tls == PrivateCa ? signedKey : selfKey);
        port = device.port();
        clientcommonlogical::DeviceConfig trust;
        trust.verifyPeer = r.tls != Unverified;
        trust.caFile = (r.tls == Pinned ? selfCert : r.tls == PrivateCa ? ca : QString()).toStdString();
        const playwindow::CStreamSource source = playwindow::CStreamSource::OfUrl(
            QStringLiteral("%1://%2:%3@127.0.0.1:%4/cam")
                .arg(QLatin1String(tls ? "rtsps" : "rtsp"), QLatin1String(kUser), QLatin1String(kPassword))
                .arg(port.load()),
            trust);
        const qint64 logStart = testsupport::logText().size();
        std::mutex mutex;
        std::vector<State> states;
        playwindow::CStreamDecoder::Callbacks callbacks;
        callbacks.status = [&](State state, const QString&) {
            std::lock_guard<std::mutex> lock(mutex);
            states.push_back(state);
        };
        {
            playwindow::CStreamDecoder decoder(source, callbacks);
            decoder.Start();
            EXPECT_TRUE(testsupport::waitUntil([&] {
                std::lock_guard<std::mutex> lock(mutex);
                return std::find(states.begin(), states.end(), r.shown) != states.end();
            }, 10000));
        }
        const QByteArray got = device.received();
        if (*r.sent == '\0') {
            EXPECT_FALSE(got.contains("Authorization")) << got.constData();
        } else {
            EXPECT_TRUE(got.contains(fill(r.sent))) << got.constData();
        }
        EXPECT_EQ(testsupport::ContainsPassword(got, kUser, kPassword), QByteArray(r.sent).contains("Basic"))
            << got.constData();
        EXPECT_EQ(got.contains("/moved"), r.location != nullptr && QByteArray(r.location).startsWith("rtsp://127.0.0.1:%1"));
        EXPECT_TRUE(elsewhere.received().isEmpty()) << elsewhere.received().constData();
        const QByteArray log = testsupport::logText(logStart);
        EXPECT_EQ(log.count("refused:"), r.shown == State::Retrying ? 0 : 1) << log.constData();
        EXPECT_FALSE(testsupport::ContainsPassword(log, kUser, kPassword)) << log.constData();
    }
    EXPECT_EQ(playwindow::CStreamDecoder::LiveDecoders(), 0);
}

TEST(PasswordExposure, HostRunKeepsThePasswordOutOfLogSnapshotAndState)
{
    testsupport::DeviceSim sim;
    ASSERT_TRUE(sim.start());
    QTemporaryDir dir;
    nlohmann::json channels, playing;
    for (int ch = 1; ch <= 4; ++ch) {
        const std::string id = "TEST0001-CH" + std::to_string(ch);
        channels.push_back({{"channel", ch}, {"cameraId", id}, {"name", id}, {"area", "Lobby"}});
        playing.push_back({{"name", QByteArray::fromStdString(id).toBase64().toStdString()}, {"values", nlohmann::json::array()}});
    }
    const nlohmann::json device = {{"id", "TEST0001"}, {"address", "127.0.0.1"}, {"port", sim.port()}, {"scheme", "http"},
        {"user", kUser.toStdString()}, {"password", testsupport::DeviceSim::kPassword}, {"channels", channels}};
    const QString config = dir.filePath(QStringLiteral("host.json")), state = dir.filePath(QStringLiteral("state.json"));
    ASSERT_TRUE(testsupport::writeFile(config, QByteArray::fromStdString(nlohmann::json{{"language", 2}, {"devices", {device}}}.dump())));
    ASSERT_TRUE(testsupport::writeFile(state, QByteArray::fromStdString(nlohmann::json{{"m_BodyTemperatureBtn", playing}}.dump())));

    const testsupport::HostRun host = testsupport::runHost(dir.filePath(QStringLiteral("data")),
        {QStringLiteral("--config"), config, QStringLiteral("--open"), QStringLiteral("m_BodyTemperatureBtn"),
            QStringLiteral("--quit-after"), QStringLiteral("4"), QStringLiteral("--snapshot"),
            dir.filePath(QStringLiteral("snap")), QStringLiteral("--state"), state, QStringLiteral("--data-dir"),
            dir.filePath(QStringLiteral("component"))});
    ASSERT_TRUE(host.finished) << host.standardError.constData();
    ASSERT_EQ(host.exitCode, 0) << host.standardError.constData();

    const QByteArray log = readFile(dir.filePath(QStringLiteral("data/VantorDesk/vantordesk/logs/vantordesk.log")));
    EXPECT_TRUE(log.contains("preview of TEST0001-CH4 started"));
    const QByteArray widgets = readFile(dir.filePath(QStringLiteral("snap/widgets.json")));
    EXPECT_TRUE(widgets.contains("m_pStreamPlayWnd"));
    const QByteArray saved = readFile(state);
    EXPECT_TRUE(saved.contains(QByteArray("TEST0001-CH4").toBase64()));  // the playing cameras were saved
    for (const QByteArray* text : {&log, &widgets, &saved, &host.standardError})
        EXPECT_FALSE(testsupport::ContainsPassword(*text, kUser, testsupport::DeviceSim::kPassword));
}

} // namespace
