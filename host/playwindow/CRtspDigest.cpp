#include "playwindow/CRtspDigest.h"

#include <QCryptographicHash>

namespace playwindow {
namespace {

struct Algorithm {
    QCryptographicHash::Algorithm hash;
    bool session;
    int strength;
};

bool Known(const RtspChallenge& c, Algorithm& out)
{
    const QByteArray name = c.Param("algorithm").toUpper();
    if (name.isEmpty() || name == "MD5")
        out = {QCryptographicHash::Md5, false, 1};
    else if (name == "MD5-SESS")
        out = {QCryptographicHash::Md5, true, 1};
    else if (name == "SHA-256")
        out = {QCryptographicHash::Sha256, false, 2};
    else if (name == "SHA-256-SESS")
        out = {QCryptographicHash::Sha256, true, 2};
    else
        return false;
    return true;
}

// qop: none offered (the old form), or auth among those offered. Only
// auth-int on offer cannot be answered (it would need the request body).
bool QopAuth(const RtspChallenge& c, bool& offered)
{
    const QByteArray qop = c.Param("qop");
    offered = !qop.isNull();
    if (!offered)
        return true;
    for (const QByteArray& q : qop.split(','))
        if (q.trimmed().toLower() == "auth")
            return true;
    return false;
}

QByteArray Quoted(const QByteArray& s)
{
    QByteArray out = "\"";
    for (char c : s) {
        if (c == '"' || c == '\\')
            out += '\\';
        out += c;
    }
    return out + '"';
}

} // namespace

int CRtspDigest::Strength(const RtspChallenge& c)
{
    Algorithm a{};
    bool qopOffered = false;
    if (c.scheme != "digest" || c.Param("realm").isNull() || c.Param("nonce").isEmpty() || !Known(c, a)
        || !QopAuth(c, qopOffered) || (a.session && !qopOffered))
        return 0;
    // A nonce or realm with a line break would break the header we send.
    for (const char* p : {"realm", "nonce", "opaque"})
        if (c.Param(p).contains('\r') || c.Param(p).contains('\n'))
            return 0;
    return a.strength;
}

QByteArray CRtspDigest::Authorization(const RtspChallenge& c, const QByteArray& user, const QByteArray& password,
    const QByteArray& method, const QByteArray& uri, quint32 nc, const QByteArray& cnonce)
{
    Algorithm a{};
    bool qop = false;
    if (Strength(c) == 0 || !Known(c, a) || !QopAuth(c, qop))
        return QByteArray();
    const auto h = [&a](const QByteArray& s) { return QCryptographicHash::hash(s, a.hash).toHex(); };
    const QByteArray realm = c.Param("realm");
    const QByteArray nonce = c.Param("nonce");
    const QByteArray ncText = QByteArray::number(nc, 16).rightJustified(8, '0');
    QByteArray ha1 = h(user + ':' + realm + ':' + password);
    if (a.session)
        ha1 = h(ha1 + ':' + nonce + ':' + cnonce);
    const QByteArray ha2 = h(method + ':' + uri);
    const QByteArray response = qop ? h(ha1 + ':' + nonce + ':' + ncText + ':' + cnonce + ":auth:" + ha2)
                                    : h(ha1 + ':' + nonce + ':' + ha2);
    QByteArray out = "Digest username=" + Quoted(user) + ", realm=" + Quoted(realm) + ", nonce=" + Quoted(nonce)
        + ", uri=" + Quoted(uri) + ", response=\"" + response + '"';
    if (!c.Param("algorithm").isNull())
        out += ", algorithm=" + c.Param("algorithm");
    if (!c.Param("opaque").isNull())
        out += ", opaque=" + Quoted(c.Param("opaque"));
    if (qop)
        out += ", qop=auth, nc=" + ncText + ", cnonce=" + Quoted(cnonce);
    return out;
}

} // namespace playwindow
