#include "playwindow/CRtspDeviceLink.h"

#include <arpa/inet.h>
#include <cerrno>
#include <netdb.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace playwindow {
namespace {

bool IsAddress(const std::string& host)
{
    unsigned char buf[sizeof(in6_addr)];
    return inet_pton(AF_INET, host.c_str(), buf) == 1 || inet_pton(AF_INET6, host.c_str(), buf) == 1;
}

} // namespace

CRtspDeviceLink::~CRtspDeviceLink()
{
    Close();
}

void CRtspDeviceLink::Close()
{
    SSL_free(m_ssl);
    m_ssl = nullptr;
    SSL_CTX_free(m_ctx);
    m_ctx = nullptr;
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
    m_verified = false;
}

bool CRtspDeviceLink::WaitFor(short events, int wake, int timeoutMs) const
{
    pollfd p[2] = {{m_fd, events, 0}, {wake, POLLIN, 0}};
    int n;
    while ((n = ::poll(p, 2, timeoutMs)) < 0 && errno == EINTR) {
    }
    return n > 0 && (p[1].revents & POLLIN) == 0 && (p[0].revents & (events | POLLHUP | POLLERR)) != 0;
}

CRtspDeviceLink::Result CRtspDeviceLink::Connect(const clientcommonlogical::DeviceConfig& device, int wake,
    int timeoutMs)
{
    Close();
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* list = nullptr;
    if (getaddrinfo(device.address.c_str(), std::to_string(device.port).c_str(), &hints, &list) != 0)
        return Result::Failed;
    for (addrinfo* a = list; a != nullptr && m_fd < 0; a = a->ai_next) {
        m_fd = ::socket(a->ai_family, a->ai_socktype | SOCK_CLOEXEC | SOCK_NONBLOCK, a->ai_protocol);
        if (m_fd < 0)
            continue;
        int err = 0;
        socklen_t len = sizeof err;
        if ((::connect(m_fd, a->ai_addr, a->ai_addrlen) != 0 && errno != EINPROGRESS)
            || !WaitFor(POLLOUT, wake, timeoutMs) || getsockopt(m_fd, SOL_SOCKET, SO_ERROR, &err, &len) != 0
            || err != 0) {
            ::close(m_fd);
            m_fd = -1;
        }
    }
    freeaddrinfo(list);
    if (m_fd < 0)
        return Result::Failed;
    if (device.scheme != "rtsps")
        return Result::Connected;

    m_ctx = SSL_CTX_new(TLS_client_method());
    if (m_ctx == nullptr)
        return Result::Failed;
    SSL_CTX_set_min_proto_version(m_ctx, TLS1_2_VERSION);
    if (device.verifyPeer) {
        SSL_CTX_set_verify(m_ctx, SSL_VERIFY_PEER, nullptr);
        const int loaded = device.caFile.empty() ? SSL_CTX_set_default_verify_paths(m_ctx)
                                                 : SSL_CTX_load_verify_locations(m_ctx, device.caFile.c_str(), nullptr);
        if (loaded != 1)
            return Result::NotTrusted;
    }
    m_ssl = SSL_new(m_ctx);
    if (m_ssl == nullptr || SSL_set_fd(m_ssl, m_fd) != 1)
        return Result::Failed;
    if (IsAddress(device.address)) {
        X509_VERIFY_PARAM_set1_ip_asc(SSL_get0_param(m_ssl), device.address.c_str());
    } else {
        SSL_set_tlsext_host_name(m_ssl, device.address.c_str());
        SSL_set1_host(m_ssl, device.address.c_str());
    }
    for (;;) {
        const int r = SSL_connect(m_ssl);
        if (r == 1)
            break;
        const int err = SSL_get_error(m_ssl, r);
        if (err == SSL_ERROR_WANT_READ || err == SSL_ERROR_WANT_WRITE) {
            if (!WaitFor(err == SSL_ERROR_WANT_READ ? POLLIN : POLLOUT, wake, timeoutMs))
                return Result::Stopped;
            continue;
        }
        return device.verifyPeer && SSL_get_verify_result(m_ssl) != X509_V_OK ? Result::NotTrusted : Result::Failed;
    }
    m_verified = device.verifyPeer && SSL_get_verify_result(m_ssl) == X509_V_OK;
    return Result::Connected;
}

bool CRtspDeviceLink::Pending() const
{
    return m_ssl != nullptr && SSL_pending(m_ssl) > 0;
}

int CRtspDeviceLink::Read(char* buf, int size)
{
    if (m_ssl != nullptr) {
        const int r = SSL_read(m_ssl, buf, size);
        if (r > 0)
            return r;
        const int err = SSL_get_error(m_ssl, r);
        return err == SSL_ERROR_WANT_READ || err == SSL_ERROR_WANT_WRITE ? -1 : 0;
    }
    const ssize_t r = ::recv(m_fd, buf, size_t(size), 0);
    if (r > 0)
        return int(r);
    return r < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR) ? -1 : 0;
}

bool CRtspDeviceLink::Write(const char* data, int size, int wake)
{
    constexpr int kWriteTimeoutMs = 5000;
    while (size > 0) {
        if (m_ssl != nullptr) {
            const int r = SSL_write(m_ssl, data, size);
            if (r > 0) {
                data += r;
                size -= r;
                continue;
            }
            const int err = SSL_get_error(m_ssl, r);
            if ((err != SSL_ERROR_WANT_READ && err != SSL_ERROR_WANT_WRITE)
                || !WaitFor(err == SSL_ERROR_WANT_READ ? POLLIN : POLLOUT, wake, kWriteTimeoutMs))
                return false;
            continue;
        }
        const ssize_t r = ::send(m_fd, data, size_t(size), MSG_NOSIGNAL);
        if (r > 0) {
            data += r;
            size -= int(r);
            continue;
        }
        if ((r < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR) || r == 0
            || !WaitFor(POLLOUT, wake, kWriteTimeoutMs))
            return false;
    }
    return true;
}

} // namespace playwindow
