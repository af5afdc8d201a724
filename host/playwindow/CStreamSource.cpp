#include "playwindow/CStreamSource.h"

#include <QUrl>

namespace playwindow {

namespace {
const clientcommonlogical::ChannelConfig* ChannelOf(const clientcommonlogical::DeviceConfig& dev, int channel)
{
    for (const auto& ch : dev.channels)
        if (ch.channel == channel)
            return &ch;
    return nullptr;
}
} // namespace

bool CStreamSource::HasProfiles(const vantordesk::ICamera& camera)
{
    clientcommonlogical::DeviceConfig dev;
    if (!clientcommonlogical::CConfigMgr::Instance()->FindDevice(camera.GetDeviceID(), dev))
        return false;
    const auto* ch = ChannelOf(dev, camera.GetChannel());
    return ch != nullptr && (!ch->mainStream.empty() || !ch->subStream.empty());
}

CStreamSource CStreamSource::OfCamera(const vantordesk::ICamera& camera, const publicdatacontroller::StreamSettings&,
    bool mainStream)
{
    clientcommonlogical::DeviceConfig dev;
    const bool known = clientcommonlogical::CConfigMgr::Instance()->FindDevice(camera.GetDeviceID(), dev);
    const auto* ch = known ? ChannelOf(dev, camera.GetChannel()) : nullptr;
    if (ch != nullptr && (!ch->mainStream.empty() || !ch->subStream.empty())) {
        std::string named = mainStream ? ch->mainStream : ch->subStream;
        if (named.empty())
            named = mainStream ? ch->subStream : ch->mainStream;
        QString url = QString::fromStdString(named);
        if (url.startsWith(QLatin1Char('/')))
            url = QStringLiteral("rtsp://%1:%2%3").arg(QString::fromStdString(dev.address)).arg(dev.rtspPort).arg(url);
        // The device's credentials go only to the device's own address.
        if (QUrl(url).host() != QString::fromStdString(dev.address)) {
            dev.user.clear();
            dev.password.clear();
        }
        CStreamSource s = OfUrl(url, dev);
        if (QUrl(url).userName().isEmpty() && !s.IsEmpty()) {
            s.device.user = dev.user;
            s.device.password = dev.password;
        }
        return s;
    }
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
    const bool http = scheme == QLatin1String("http") || scheme == QLatin1String("https");
    s.viaTransport = http;
    s.device = trust;
    s.device.user.clear();
    s.device.password.clear();
    s.device.scheme = scheme.toStdString();
    s.device.address = url.host().toStdString();
    s.device.port = url.port(scheme == QLatin1String("https") ? 443
            : scheme == QLatin1String("rtsp")                   ? 554
            : scheme == QLatin1String("rtsps")                  ? 322
                                                                : 80);
    s.rtspOverUdp = trust.rtspOverUdp;
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
