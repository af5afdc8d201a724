#include "playwindow/CStreamSource.h"

#include <QUrl>

#include "clientcommonlogical/CConfigMgr.h"

namespace playwindow {

QString StreamUrlOf(const vantordesk::ICamera& camera, const publicdatacontroller::StreamSettings&)
{
    if (!camera.GetStreamUrl().empty())
        return QString::fromStdString(camera.GetStreamUrl());
    clientcommonlogical::DeviceConfig dev;
    if (!clientcommonlogical::CConfigMgr::Instance()->FindDevice(camera.GetDeviceID(), dev) || dev.address.empty())
        return {};
    QUrl url;
    url.setScheme(QString::fromStdString(dev.scheme.empty() ? std::string("http") : dev.scheme));
    url.setHost(QString::fromStdString(dev.address));
    url.setPort(dev.port);
    url.setPath(QStringLiteral("/DVAPI/Streaming/channels/%1/mjpeg").arg(camera.GetChannel()));
    if (!dev.user.empty()) {
        url.setUserName(QString::fromStdString(dev.user));
        url.setPassword(QString::fromStdString(dev.password));
    }
    return url.toString(QUrl::FullyEncoded);
}

QString RedactedUrl(const QString& url)
{
    QUrl u(url);
    u.setUserInfo(QString());
    return u.toString();
}

} // namespace playwindow
