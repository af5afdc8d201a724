#pragma once
// Command-line settings of the emulator; some can be changed at run time
// through the control API (rate, abnormal share, unit).
#include <atomic>
#include <string>

namespace devicesim {

struct SimOptions {
    std::string listen = "127.0.0.1";
    int port = 18080;
    int channels = 4;
    double rate = 2.0;            // events per second across channels
    unsigned seed = 1;
    std::string user = "admin";
    std::string password = "admin123";
    std::string db = "devicesim.db";
    std::string serial = "SIM00001";
    std::string log;              // request log file; empty: stderr
    std::string tlsCert;          // PEM certificate and key: serve HTTPS
    std::string tlsKey;
    double abnormalShare = 0.1;   // share of abnormal temperatures
    char unit = 'C';              // 'C' or 'F'
    int sceneWidth = 1920;
    int sceneHeight = 1080;
    int videoWidth = 640;
    int videoHeight = 360;
    int videoFps = 25;
    int rtspPort = -1;            // RTSP streams: -1 off, 0 any free port
    int hfpdPolls = 3;            // result polls until progress reaches 100
    int keepAliveMs = 5000;       // alert-stream keep-alive period; 0: none
    bool keepAliveIdleOnly = false;  // keep-alives only while no event flows (else on the fixed period)
};

} // namespace devicesim
