#pragma once
// The connection from CRtspAuthGuard to the device: TCP, or TLS for rtsps
// whose certificate is checked by the rules of every device request
// (verifyPeer; caFile, a private CA or the device's own certificate pinned,
// instead of the system store; the name or address the device was
// configured with). Non-blocking; every wait also ends when the guard's wake
// descriptor becomes readable. Owned and used by the guard's relay thread.
#include <string>

#include "clientcommonlogical/CConfigMgr.h"

typedef struct ssl_st SSL;
typedef struct ssl_ctx_st SSL_CTX;

namespace playwindow {

class CRtspDeviceLink final {
public:
    enum class Result { Connected, Failed, NotTrusted, Stopped };

    CRtspDeviceLink() = default;
    ~CRtspDeviceLink();
    CRtspDeviceLink(const CRtspDeviceLink&) = delete;
    CRtspDeviceLink& operator=(const CRtspDeviceLink&) = delete;

    // Connects to the device (TLS when device.scheme is rtsps), giving up
    // after timeoutMs or when wake becomes readable. Closes any earlier connection.
    Result Connect(const clientcommonlogical::DeviceConfig& device, int wake, int timeoutMs);
    void Close();
    // TLS whose certificate was verified: the only place Basic may be answered.
    bool Verified() const { return m_verified; }
    int Fd() const { return m_fd; }
    // Decrypted bytes wait to be read (the descriptor will not say so).
    bool Pending() const;
    // Bytes read (> 0); 0 when the connection ended or failed; -1 when none wait.
    int Read(char* buf, int size);
    bool Write(const char* data, int size, int wake);

private:
    bool WaitFor(short events, int wake, int timeoutMs) const;

    int m_fd = -1;
    SSL_CTX* m_ctx = nullptr;
    SSL* m_ssl = nullptr;
    bool m_verified = false;
};

} // namespace playwindow
