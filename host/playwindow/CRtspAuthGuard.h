#pragma once
// The one place that talks RTSP to a device. FFmpeg opens a loopback URL
// without user information (LocalUrl) and the guard relays its requests to
// the device over TCP, or TLS for rtsps: it numbers them, points them at the
// device, and answers the device's challenges itself with the configured
// credentials (CRtspCredentials: digest, Basic only inside verified TLS).
// The device's answers are read by CRtspAnswer and handed on rebuilt from
// that form, without challenges or redirects: FFmpeg never sees a
// credential, a challenge or another address. Redirects to the same device
// address are followed here; to any other address they are refused.
// Interleaved media passes through untouched; media over UDP goes straight
// between device and FFmpeg and carries no credentials.
// Owned by one decode session (CStreamDecoder, decode thread): Start() on
// that thread; the relay runs on a thread of its own, joined by Stop() or the
// destructor within a poll round.
#include <QByteArray>
#include <QString>
#include <atomic>
#include <string>
#include <thread>

#include "clientcommonlogical/CConfigMgr.h"

namespace playwindow {

class CRtspAuthGuard final {
public:
    // Why the guard ended a connection on its own; read once FFmpeg failed.
    enum class Refusal { None, PasswordNotSent, CertificateNotTrusted, RedirectedElsewhere };

    // The device: address, port, scheme ("rtsp" or "rtsps"), credentials and trust.
    explicit CRtspAuthGuard(clientcommonlogical::DeviceConfig device);
    ~CRtspAuthGuard();
    CRtspAuthGuard(const CRtspAuthGuard&) = delete;
    CRtspAuthGuard& operator=(const CRtspAuthGuard&) = delete;

    // Listens on 127.0.0.1; false when no port could be had.
    bool Start();
    void Stop();
    int Port() const { return m_port; }
    // The URL FFmpeg opens for the device's resource (path and query).
    QString LocalUrl(const std::string& pathAndQuery) const;
    Refusal Refused() const { return m_refusal.load(); }

private:
    void Run();

    clientcommonlogical::DeviceConfig m_device;
    int m_listen = -1;
    int m_port = 0;
    int m_wake[2] = {-1, -1};
    std::atomic<Refusal> m_refusal{Refusal::None};
    std::thread m_thread;
};

} // namespace playwindow
