#pragma once
// Runs bin/devicesim on a free loopback port for a test, talks to its control
// API, and gives the matching host device configuration; killed when destroyed.
#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <csignal>
#include <httplib.h>
#include <memory>
#include <string>
#include <unistd.h>

#include "clientcommonlogical/CConfigMgr.h"
#include "commlayer/CDataStatisticsComm.h"
#include "support/LoopbackStream.h"
#include "support/TestSupport.h"

namespace testsupport {

// One device API request through the transport. The answer starts out
// non-empty, so a failure that leaves text behind shows.
inline bool dvapi(const std::string& device, const std::string& requestLine, std::string& answer,
    const std::string& body = std::string(), int timeoutMs = 30000)
{
    protocol::DvapiPassThroughReq req;
    req.requestLine = requestLine;
    req.body = body;
    req.timeout = timeoutMs;
    protocol::DvapiPassThroughRspData rsp;
    rsp.body = "stale";
    const bool ok = commlayer::CDataStatisticsComm::dvapiRequest(device, rsp, req);
    answer = rsp.body;
    return ok;
}

// A host device entry for a device on a loopback port: four cameras, two per area.
inline clientcommonlogical::DeviceConfig LoopbackDevice(const std::string& id, int port, const std::string& password)
{
    clientcommonlogical::DeviceConfig d;
    d.id = id;
    d.name = "Emulated camera";
    d.address = "127.0.0.1";
    d.port = port;
    d.user = "admin";
    d.password = password;
    for (int ch = 1; ch <= 4; ++ch)
        d.channels.push_back({ch, id + "-CH" + std::to_string(ch), "Camera " + std::to_string(ch),
            ch <= 2 ? "Lobby" : "Back office", std::string()});
    return d;
}

class DeviceSim {
public:
    static constexpr const char* kUser = "admin";
    static constexpr const char* kPassword = "s3cret-pw";

    explicit DeviceSim(const QStringList& extra = QStringList()) : m_extra(extra) {}
    ~DeviceSim() { stop(); }

    // port 0: a free one; otherwise that port (a restart of the same device, same database).
    bool start(int port = 0)
    {
        m_port = port != 0 ? port : FreePort();
        QStringList args = QStringLiteral("--listen 127.0.0.1 --channels 4 --rate 0 --seed 11 --serial TEST0001")
                               .split(QLatin1Char(' '));
        args << QStringLiteral("--port") << QString::number(m_port)
             << QStringLiteral("--user") << QString::fromLatin1(kUser)
             << QStringLiteral("--password") << QString::fromLatin1(kPassword)
             << QStringLiteral("--db") << m_dir.filePath(QStringLiteral("sim.db"))
             << QStringLiteral("--log") << m_dir.filePath(QStringLiteral("sim.log")) << m_extra;
        m_proc.setProgram(binDir() + QStringLiteral("/devicesim"));
        m_proc.setArguments(args);
        m_proc.setStandardOutputFile(m_dir.filePath(QStringLiteral("sim.out")));
        m_proc.setStandardErrorFile(m_dir.filePath(QStringLiteral("sim.err")));
        m_proc.start();
        if (!m_proc.waitForStarted(5000))
            return false;
        const bool tls = m_extra.contains(QStringLiteral("--tls-cert"));
        return waitUntil([&] { return tls ? Accepts(m_port) : control("GET", "/control/stats").contains("clients"); });
    }

    void stop()
    {
        if (m_proc.state() != QProcess::NotRunning) {
            m_proc.terminate();
            if (!m_proc.waitForFinished(5000)) {
                m_proc.kill();
                m_proc.waitForFinished(2000);
            }
        }
    }

    int port() const { return m_port; }
    // Freezes the process (a device that stalls without closing anything) or lets it go on.
    void freeze(bool frozen) { ::kill(pid_t(m_proc.processId()), frozen ? SIGSTOP : SIGCONT); }

    clientcommonlogical::DeviceConfig device(const std::string& id = "TEST0001",
        const std::string& password = kPassword) const
    {
        return LoopbackDevice(id, m_port, password);
    }

    // One request to the control API (no authentication); the answer body, empty on failure.
    QByteArray control(const char* method, const char* path, const QByteArray& body = QByteArray()) const
    {
        httplib::Client client("127.0.0.1", m_port);
        client.set_read_timeout(10);  // a hung emulator fails the test instead of hanging it
        httplib::Request request;
        request.method = method;
        request.path = path;
        request.body = body.toStdString();
        request.set_header("Content-Type", "application/json");
        const httplib::Result answer = client.send(request);
        return answer ? QByteArray::fromStdString(answer->body) : QByteArray();
    }

private:
    QTemporaryDir m_dir;
    QStringList m_extra;
    QProcess m_proc;
    int m_port = 0;
};

// One emulator shared by the tests of a suite, the host's only device; faults a
// test injects are cleared after it. A suite that needs emulator options
// defines its own SetUpTestSuite calling startSim with them.
class SimTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { startSim(); }
    static void TearDownTestSuite() { s_sim.reset(); }
    void TearDown() override { s_sim->control("DELETE", "/control/fault"); }
    static void startSim(const QStringList& extra = QStringList())
    {
        s_sim = std::make_unique<DeviceSim>(extra);
        ASSERT_TRUE(s_sim->start());
        clientcommonlogical::CConfigMgr::Instance()->SetDevices({s_sim->device()});
    }
    static inline std::unique_ptr<DeviceSim> s_sim;
};

} // namespace testsupport
