#include "playwindow/CRtspCredentials.h"

#include <QRandomGenerator>

#include "playwindow/CRtspDigest.h"

namespace playwindow {

CRtspCredentials::CRtspCredentials(QByteArray user, QByteArray password, bool verifiedTls)
    : m_user(std::move(user)), m_password(std::move(password)), m_verifiedTls(verifiedTls)
{
}

bool CRtspCredentials::Choose(const QList<RtspChallenge>& challenges)
{
    const QByteArray oldNonce = Nonce();
    const RtspChallenge* best = nullptr;
    int bestStrength = 0;
    bool basic = false;
    for (const RtspChallenge& c : challenges) {
        const int strength = CRtspDigest::Strength(c);
        if (strength > bestStrength) {
            bestStrength = strength;
            best = &c;
        }
        basic = basic || c.scheme == "basic";
    }
    m_challenge = best != nullptr ? *best : RtspChallenge();
    m_kind = best != nullptr ? Kind::Digest : basic && m_verifiedTls ? Kind::Basic : Kind::None;
    if (Nonce() != oldNonce)
        m_nc = 0;
    return Ready();
}

QByteArray CRtspCredentials::Authorization(const QByteArray& method, const QByteArray& uri)
{
    switch (m_kind) {
    case Kind::None:
        break;
    case Kind::Basic:
        return "Basic " + (m_user + ':' + m_password).toBase64();
    case Kind::Digest: {
        quint32 random[4];
        QRandomGenerator::system()->fillRange(random);
        const QByteArray cnonce = QByteArray(reinterpret_cast<const char*>(random), sizeof random).toHex();
        return CRtspDigest::Authorization(m_challenge, m_user, m_password, method, uri, ++m_nc, cnonce);
    }
    }
    return QByteArray();
}

} // namespace playwindow
