#include "playwindow/CStreamSource.h"

#include <QUrl>

namespace playwindow {

CStreamSource CStreamSource::OfCamera(const vantordesk::ICamera& camera, const publicdatacontroller::StreamSettings&)
{
    clientcommonlogical::DeviceConfig dev;
    const bool known = clientcommonlogical::CConfigMgr::Instance()->FindDevice(camera.GetDeviceID(), dev);
    if (!camera.GetStreamUrl().empty()) {
        // The device's credentials are not handed to whatever host the URL names.
        dev.user.clear();
        dev.password.clear();
        return OfUrl(QString::fromStdString(camera.GetStreamUrl()), dev);
    }
    if (!known || dev.address.empty())
        return {};
    CStreamSource s;
    s.viaTransport = true;
    s.path = "/DVAPI/Streaming/channels/" + std::to_string(camera.GetChannel()) + "/mjpeg";
    s.url = QString::fromStdString(dev.scheme.empty() ? std::string("http") : dev.scheme) + QStringLiteral("://")
        + QString::fromStdString(dev.address) + QLatin1Char(':') + QString::number(dev.port)
        + QString::fromStdString(s.path);
    s.device = std::move(dev);
    return s;
}

CStreamSource CStreamSource::OfUrl(const QString& text, const clientcommonlogical::DeviceConfig& trust)
{
    const QUrl url(text);
    CStreamSource s;
    if (!url.isValid() || url.scheme().isEmpty())
        return s;
    s.url = RedactedUrl(text);
    const QString scheme = url.scheme().toLower();
    if (scheme != QLatin1String("http") && scheme != QLatin1String("https"))
        return s;
    s.viaTransport = true;
    s.device = trust;
    s.device.scheme = scheme.toStdString();
    s.device.address = url.host().toStdString();
    s.device.port = url.port(scheme == QLatin1String("https") ? 443 : 80);
    if (!url.userName().isEmpty()) {
        s.device.user = url.userName().toStdString();
        s.device.password = url.password().toStdString();
    }
    s.path = url.path(QUrl::FullyEncoded).toStdString();
    if (s.path.empty())
        s.path = "/";
    if (url.hasQuery())
        s.path += "?" + url.query(QUrl::FullyEncoded).toStdString();
    return s;
}

QString RedactedUrl(const QString& url)
{
    QUrl u(url);
    u.setUserInfo(QString());
    return u.toString();
}

} // namespace playwindow
