#pragma once
// Holds FFmpeg's RTSP client to digest authentication. FFmpeg answers
// whatever challenge a server sends, Basic included, which would put the
// password on the wire in clear. The guard is a loopback relay for one RTSP
// connection: FFmpeg connects to it, it connects to the camera, passes the
// client's bytes on unchanged and removes every Basic challenge from the
// camera's answers, so FFmpeg only ever sees digest. A 401 that offered
// nothing but Basic is noted (BasicRefused). Interleaved media frames pass
// through untouched. Owned by one decode session; its thread is joined by
// Stop() or the destructor.
#include <QByteArray>
#include <QString>
#include <atomic>
#include <string>
#include <thread>

namespace playwindow {

class CRtspAuthGuard final {
public:
    CRtspAuthGuard(std::string host, int port);
    ~CRtspAuthGuard();
    CRtspAuthGuard(const CRtspAuthGuard&) = delete;
    CRtspAuthGuard& operator=(const CRtspAuthGuard&) = delete;

    // Listens on 127.0.0.1; false when no port could be had.
    bool Start();
    void Stop();
    int Port() const { return m_port; }
    bool BasicRefused() const { return m_basicRefused.load(); }

    // Removes Basic challenges from one RTSP answer head (status line and
    // headers, "\r\n\r\n" included); sets refused when a 401 is left without
    // any challenge. Plain function, tested by tables.
    static QByteArray FilterAnswerHead(const QByteArray& head, bool& refused);

private:
    void Run();
    bool Relay(int client, int camera);

    std::string m_host;
    int m_cameraPort;
    int m_listen = -1;
    int m_port = 0;
    int m_wake[2] = {-1, -1};
    std::atomic<bool> m_basicRefused{false};
    std::thread m_thread;
};

} // namespace playwindow
