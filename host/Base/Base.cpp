#include "Base/Base.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

namespace Base {

std::string LocalToUTF8(const std::string& local)
{
    return QString::fromLocal8Bit(local.data(), static_cast<int>(local.size())).toUtf8().toStdString();
}

std::string UTF8ToLocal(const std::string& utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size())).toLocal8Bit().toStdString();
}

namespace Error {
namespace {
thread_local std::pair<int, int> t_lastError{0, 0};
}
std::pair<int, int> GetLastError() { return t_lastError; }
void SetLastError(int first, int second) { t_lastError = {first, second}; }
} // namespace Error

namespace Encrypt {
std::string Base64EncodeEx(const unsigned char* data, size_t length)
{
    if (data == nullptr || length == 0)
        return std::string();
    return QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<int>(length))
        .toBase64()
        .toStdString();
}

std::string Base64EncodeEx(const std::string& data)
{
    return Base64EncodeEx(reinterpret_cast<const unsigned char*>(data.data()), data.size());
}

bool Base64DecodeEx(const std::string& text, std::string& out)
{
    out.clear();
    auto result = QByteArray::fromBase64Encoding(QByteArray::fromStdString(text),
        QByteArray::AbortOnBase64DecodingErrors);
    if (!result)
        return false;
    out = result.decoded.toStdString();
    return true;
}
} // namespace Encrypt

namespace TimeUtil {
std::time_t StrDatetime2TimeT(const std::string& text)
{
    const QDateTime dt = QDateTime::fromString(QString::fromStdString(text).trimmed(),
        QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    if (!dt.isValid())
        return -1;
    return static_cast<std::time_t>(dt.toSecsSinceEpoch());
}
} // namespace TimeUtil

} // namespace Base
