#pragma once
// Digest answers to an RTSP device's challenge, computed here so that the
// password never leaves our own code: MD5 and SHA-256 (and their "-sess"
// forms), with qop=auth (nc, cnonce) when the device offers it and the plain
// form when it offers no qop. Anything else (another algorithm, only
// auth-int) is not answered. Plain functions, any thread; CRtspCredentials
// calls them on the relay thread of CRtspAuthGuard.
#include <QByteArray>

#include "playwindow/CRtspAnswer.h"

namespace playwindow {

class CRtspDigest final {
public:
    // How much an answerable digest challenge is preferred (SHA-256 over
    // MD5); 0 when it cannot be answered.
    static int Strength(const RtspChallenge& challenge);

    // The Authorization value ("Digest username=..."); empty when Strength() is 0.
    // nc counts the requests made with this nonce (1 for the first).
    static QByteArray Authorization(const RtspChallenge& challenge, const QByteArray& user,
        const QByteArray& password, const QByteArray& method, const QByteArray& uri, quint32 nc,
        const QByteArray& cnonce);
};

} // namespace playwindow
