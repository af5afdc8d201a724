#pragma once
// One answer of an RTSP device, read strictly: the status line, the headers
// (names compared without case, folded lines joined, lines ended by CRLF, by
// a CR alone or by an LF alone) and the authentication challenges they carry.
// Every decision about what a device said (authentication, redirects,
// framing) is taken on this form, never on the raw bytes. Plain values and
// functions, any thread: CRtspAuthGuard calls them on its relay thread; the
// tests and the fuzz target call them directly.
#include <QByteArray>
#include <QList>
#include <QPair>

namespace playwindow {

struct RtspChallenge {
    QByteArray scheme;                              // lower case: "digest", "basic", ...
    QList<QPair<QByteArray, QByteArray>> params;    // names lower case, values unquoted

    // The value of a parameter, or a null array when absent.
    QByteArray Param(const char* name) const;
};

class CRtspAnswer final {
public:
    static constexpr int kMaxHead = 64 * 1024;

    int status = 0;
    QByteArray reason;
    QList<QPair<QByteArray, QByteArray>> headers;  // in order; folds joined by one space, values trimmed

    // The first value of a header (null when absent) and all its values.
    QByteArray Header(const char* name) const;
    QList<QByteArray> Headers(const char* name) const;
    // Content-Length; 0 when absent, -1 when not a plain number.
    int ContentLength() const;
    // Every challenge of every WWW-Authenticate header, in order. False when
    // one of them is malformed (nothing is then to be answered).
    bool Challenges(QList<RtspChallenge>& out) const;

    // The size of the head at the start of data, its closing empty line
    // included; 0 while more is needed; -1 when the bytes cannot begin an
    // answer head ("RTSP/") or it grows past kMaxHead.
    static int HeadLength(const char* data, int size);
    // Reads a head as HeadLength delimits it. False when anything in it breaks
    // the rules (status line, header names, control characters, a fold
    // without a header, bytes after the closing empty line).
    static bool Parse(const QByteArray& head, CRtspAnswer& out);
    // The challenges of one WWW-Authenticate value ("Digest a=1, b=\"2\", Basic realm=x").
    static bool ParseChallenges(const QByteArray& value, QList<RtspChallenge>& out);
};

} // namespace playwindow
