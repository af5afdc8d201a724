// devicesim: an emulated thermal face camera for tests and demos.
#include <QGuiApplication>
#include <QTimer>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

#include "RtspControl.h"
#include "RtspServer.h"
#include "SimServer.h"

namespace {

std::atomic<bool> g_quit{false};
void onSignal(int) { g_quit = true; }

void usage()
{
    fprintf(stderr,
        "usage: devicesim [--listen ADDR] [--port N] [--channels N] [--rate EVENTS_PER_S] [--seed N]\n"
        "                 [--user NAME] [--password TEXT] [--db FILE] [--serial ID] [--log FILE]\n"
        "                 [--abnormal SHARE] [--unit C|F] [--scene WxH] [--hfpd-polls N] [--keepalive-ms N]\n"
        "                 [--keepalive-mode fixed|idle]\n"
        "                 [--tls-cert PEM --tls-key PEM] [--rtsp-port N]\n");
}

bool parse(int argc, char** argv, devicesim::SimOptions& o)
{
    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        if (a == "--help" || a == "-h")
            return false;
        if (i + 1 >= argc) {
            fprintf(stderr, "missing value for %s\n", a.c_str());
            return false;
        }
        const std::string v = argv[++i];
        if (a == "--listen") o.listen = v;
        else if (a == "--port") o.port = std::atoi(v.c_str());
        else if (a == "--channels") o.channels = std::max(1, std::atoi(v.c_str()));
        else if (a == "--rate") o.rate = std::atof(v.c_str());
        else if (a == "--seed") o.seed = unsigned(std::strtoul(v.c_str(), nullptr, 10));
        else if (a == "--user") o.user = v;
        else if (a == "--password") o.password = v;
        else if (a == "--db") o.db = v;
        else if (a == "--serial") o.serial = v;
        else if (a == "--log") o.log = v;
        else if (a == "--tls-cert") o.tlsCert = v;
        else if (a == "--tls-key") o.tlsKey = v;
        else if (a == "--abnormal") o.abnormalShare = std::atof(v.c_str());
        else if (a == "--unit") o.unit = (v == "F" || v == "f") ? 'F' : 'C';
        else if (a == "--hfpd-polls") o.hfpdPolls = std::atoi(v.c_str());
        else if (a == "--rtsp-port") o.rtspPort = std::atoi(v.c_str());
        else if (a == "--keepalive-ms") o.keepAliveMs = std::max(0, std::atoi(v.c_str()));
        else if (a == "--keepalive-mode" && (v == "fixed" || v == "idle")) o.keepAliveIdleOnly = v == "idle";
        else if (a == "--scene") {
            if (std::sscanf(v.c_str(), "%dx%d", &o.sceneWidth, &o.sceneHeight) != 2 || o.sceneWidth < 64
                || o.sceneHeight < 64) {
                fprintf(stderr, "bad --scene %s\n", v.c_str());
                return false;
            }
        } else {
            fprintf(stderr, "unknown option %s\n", a.c_str());
            return false;
        }
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    devicesim::SimOptions opts;
    if (!parse(argc, argv, opts)) {
        usage();
        return 2;
    }
    // Pictures are drawn with QPainter (fonts need a GUI application); no screen is used.
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QGuiApplication app(argc, argv);

    std::string error;
    devicesim::RtspControl rtspControl;
    devicesim::RtspServer rtsp(opts, rtspControl);
    if (opts.rtspPort >= 0) {
        if (!rtsp.start(error)) {
            fprintf(stderr, "devicesim: %s\n", error.c_str());
            return 1;
        }
        opts.rtspPort = rtsp.port();
        fprintf(stderr, "devicesim: RTSP on port %d\n", opts.rtspPort);
    }
    devicesim::SimServer server(opts, rtspControl);
    if (!server.start(error)) {
        fprintf(stderr, "devicesim: %s\n", error.c_str());
        return 1;
    }
    std::signal(SIGINT, onSignal);
    std::signal(SIGTERM, onSignal);
    std::signal(SIGPIPE, SIG_IGN);
    std::thread http([&server] { server.run(); });
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &app, [&app] {
        if (g_quit)
            app.quit();
    });
    poll.start(100);
    app.exec();
    server.stop();
    http.join();
    rtsp.stop();
    return 0;
}
