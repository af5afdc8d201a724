#include "playwindow/CRtspAnswer.h"

#include <cstring>

namespace playwindow {
namespace {

bool IsTokenChar(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')
        || (c != '\0' && std::strchr("!#$%&'*+-.^_`|~", c) != nullptr);
}

bool IsToken68Char(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')
        || (c != '\0' && std::strchr("-._~+/", c) != nullptr);
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// The end of the line starting at pos (the index of its CR or LF), or -1.
int LineEnd(const char* d, int size, int pos)
{
    while (pos < size && d[pos] != '\r' && d[pos] != '\n')
        ++pos;
    return pos < size ? pos : -1;
}

// Where the next line starts after the line end at i: CRLF counts as one end.
int AfterLineEnd(const char* d, int size, int i)
{
    return d[i] == '\r' && i + 1 < size && d[i + 1] == '\n' ? i + 2 : i + 1;
}

// Tabs are allowed in values; no other control character anywhere.
bool CleanLine(const QByteArray& line)
{
    for (char c : line) {
        const auto u = static_cast<unsigned char>(c);
        if ((u < 0x20 && c != '\t') || u == 0x7f)
            return false;
    }
    return true;
}

QByteArray TrimSpace(const QByteArray& s)
{
    int b = 0, e = s.size();
    while (b < e && (s[b] == ' ' || s[b] == '\t'))
        ++b;
    while (e > b && (s[e - 1] == ' ' || s[e - 1] == '\t'))
        --e;
    return s.mid(b, e - b);
}

bool SameName(const QByteArray& a, const char* b)
{
    return qstricmp(a.constData(), b) == 0;
}

} // namespace

QByteArray RtspChallenge::Param(const char* name) const
{
    for (const auto& p : params)
        if (SameName(p.first, name))
            return p.second;
    return QByteArray();
}

QByteArray CRtspAnswer::Header(const char* name) const
{
    for (const auto& h : headers)
        if (SameName(h.first, name))
            return h.second;
    return QByteArray();
}

QList<QByteArray> CRtspAnswer::Headers(const char* name) const
{
    QList<QByteArray> values;
    for (const auto& h : headers)
        if (SameName(h.first, name))
            values.append(h.second);
    return values;
}

int CRtspAnswer::ContentLength() const
{
    const QList<QByteArray> values = Headers("content-length");
    if (values.isEmpty())
        return 0;
    for (const QByteArray& v : values) {
        // Two lengths that differ would let the next answer be read out of this body.
        if (v != values.first() || v.isEmpty() || v.size() > 8)
            return -1;
        for (char c : v)
            if (!IsDigit(c))
                return -1;
    }
    return values.first().toInt();
}

bool CRtspAnswer::Challenges(QList<RtspChallenge>& out) const
{
    out.clear();
    for (const QByteArray& value : Headers("www-authenticate")) {
        QList<RtspChallenge> some;
        if (!ParseChallenges(value, some))
            return false;
        out += some;
    }
    return true;
}

int CRtspAnswer::HeadLength(const char* data, int size)
{
    static const char kStart[] = "RTSP/";
    if (std::memcmp(data, kStart, size_t(std::min(size, 5))) != 0)
        return -1;
    int pos = 0;
    for (;;) {
        const int end = LineEnd(data, size, pos);
        if (end < 0)
            return size > kMaxHead ? -1 : 0;
        // A CR that ends the empty line at the very end of what came: an LF
        // that may follow is skipped as an empty line before the next answer.
        const int next = AfterLineEnd(data, size, end);
        if (end == pos && pos > 0)
            return next > kMaxHead ? -1 : next;
        pos = next;
        if (pos > kMaxHead)
            return -1;
    }
}

bool CRtspAnswer::Parse(const QByteArray& head, CRtspAnswer& out)
{
    out = CRtspAnswer();
    const char* d = head.constData();
    const int size = head.size();
    QList<QByteArray> lines;
    bool closed = false;
    for (int pos = 0; pos < size;) {
        const int end = LineEnd(d, size, pos);
        if (closed || end < 0)
            return false;  // bytes after the empty line, or a line without its end
        const QByteArray line(d + pos, end - pos);
        pos = AfterLineEnd(d, size, end);
        if (line.isEmpty())
            closed = true;
        else if (!CleanLine(line))
            return false;
        else
            lines.append(line);
    }
    if (!closed || lines.isEmpty())
        return false;

    // "RTSP/1.0 200 OK": version, one space, three digits, then the reason.
    const QByteArray& s = lines.first();
    if (s.size() < 12 || !s.startsWith("RTSP/") || !IsDigit(s[5]) || s[6] != '.' || !IsDigit(s[7]) || s[8] != ' '
        || !IsDigit(s[9]) || !IsDigit(s[10]) || !IsDigit(s[11]) || (s.size() > 12 && s[12] != ' '))
        return false;
    out.status = s.mid(9, 3).toInt();
    if (out.status < 100)
        return false;
    out.reason = s.mid(13);

    for (int i = 1; i < lines.size(); ++i) {
        const QByteArray& line = lines[i];
        if (line[0] == ' ' || line[0] == '\t') {
            // A folded line continues the header before it.
            if (out.headers.isEmpty())
                return false;
            const QByteArray more = TrimSpace(line);
            QByteArray& value = out.headers.last().second;
            if (!more.isEmpty())
                value += value.isEmpty() ? more : ' ' + more;
            continue;
        }
        const int colon = line.indexOf(':');
        if (colon <= 0)
            return false;
        const QByteArray name = line.left(colon);
        for (char c : name)
            if (!IsTokenChar(c))
                return false;
        out.headers.append({name, TrimSpace(line.mid(colon + 1))});
    }
    return true;
}

namespace {
// A reader over one header value's challenges, item by item.
struct ChallengeReader {
    const QByteArray& v;
    int i = 0;

    bool AtEnd() const { return i >= v.size(); }
    char At() const { return v[i]; }
    void SkipSpace()
    {
        while (!AtEnd() && (At() == ' ' || At() == '\t'))
            ++i;
    }
    void SkipEmptyItems()
    {
        SkipSpace();
        while (!AtEnd() && At() == ',') {
            ++i;
            SkipSpace();
        }
    }
    QByteArray Token()
    {
        const int start = i;
        while (!AtEnd() && IsTokenChar(At()))
            ++i;
        return v.mid(start, i - start);
    }
    // A token68 ("Negotiate abc=="): the whole item, up to the end or a
    // comma. Null (and nothing read) when the item is not one.
    QByteArray Token68()
    {
        const int start = i;
        while (!AtEnd() && IsToken68Char(At()))
            ++i;
        const int stop = i;
        while (!AtEnd() && At() == '=')
            ++i;
        const int withPad = i;
        SkipSpace();
        if (stop > start && (AtEnd() || At() == ','))
            return v.mid(start, withPad - start);
        i = start;
        return QByteArray();
    }
    // A parameter's value, quoted or a token; false when malformed.
    bool Value(QByteArray& value)
    {
        if (AtEnd() || At() != '"') {
            value = Token();
            return !value.isEmpty();
        }
        ++i;
        while (!AtEnd()) {
            const char ch = v[i++];
            if (ch == '"')
                return true;
            if (ch == '\\') {
                if (AtEnd())
                    return false;
                value += v[i++];
            } else {
                value += ch;
            }
        }
        return false;
    }
    // After a comma: "name=" goes on with this challenge; a lone token begins the next one.
    bool ParamFollows()
    {
        const int save = i;
        Token();
        SkipSpace();
        const bool param = !AtEnd() && At() == '=';
        i = save;
        return param;
    }
    // The challenge's name=value parameters; false when malformed.
    bool Params(RtspChallenge& c)
    {
        for (;;) {
            const QByteArray name = Token().toLower();
            SkipSpace();
            if (name.isEmpty() || AtEnd() || At() != '=')
                return false;
            ++i;
            SkipSpace();
            QByteArray value;
            if (!Value(value))
                return false;
            if (value.isNull())
                value = QByteArray("", 0);  // present though empty
            if (!c.Param(name.constData()).isNull())
                return false;  // a parameter named twice: which one would count?
            c.params.append({name, value});
            SkipSpace();
            if (AtEnd())
                return true;
            if (At() != ',')
                return false;
            SkipEmptyItems();
            if (AtEnd() || !ParamFollows())
                return true;
        }
    }
};
} // namespace

bool CRtspAnswer::ParseChallenges(const QByteArray& v, QList<RtspChallenge>& out)
{
    out.clear();
    ChallengeReader r{v};
    for (;;) {
        r.SkipEmptyItems();
        if (r.AtEnd())
            return true;
        RtspChallenge c;
        c.scheme = r.Token().toLower();
        if (c.scheme.isEmpty() || (!r.AtEnd() && r.At() != ' ' && r.At() != '\t' && r.At() != ','))
            return false;
        r.SkipSpace();
        if (!r.AtEnd() && r.At() != ',') {
            const QByteArray token68 = r.Token68();
            if (!token68.isNull())
                c.params.append({QByteArray(), token68});
            else if (!r.Params(c))
                return false;
        }
        out.append(c);
    }
}

} // namespace playwindow
