#pragma once
// The device's user name and password for one RTSP connection, and the only
// code that writes them into a request: it chooses which of a device's
// challenges to answer (the strongest digest; Basic only inside TLS whose
// certificate was verified; nothing else) and writes the Authorization value
// of each request. Owned by CRtspAuthGuard and used on its relay thread only.
#include <QByteArray>
#include <QList>

#include "playwindow/CRtspAnswer.h"

namespace playwindow {

class CRtspCredentials final {
public:
    CRtspCredentials(QByteArray user, QByteArray password, bool verifiedTls);

    bool Empty() const { return m_user.isEmpty(); }
    // Takes the challenges of a 401. False when none of them may be
    // answered: then nothing is sent (and the previous choice is dropped).
    bool Choose(const QList<RtspChallenge>& challenges);
    // A challenge has been chosen: every request carries an answer to it.
    bool Ready() const { return m_kind != Kind::None; }
    // The nonce of the chosen digest challenge (empty for Basic).
    QByteArray Nonce() const { return m_challenge.Param("nonce"); }
    // The Authorization value for one request; empty when none was chosen.
    QByteArray Authorization(const QByteArray& method, const QByteArray& uri);

private:
    enum class Kind { None, Digest, Basic };
    QByteArray m_user;
    QByteArray m_password;
    bool m_verifiedTls;
    Kind m_kind = Kind::None;
    RtspChallenge m_challenge;
    quint32 m_nc = 0;
};

} // namespace playwindow
