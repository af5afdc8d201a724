#include "clientcommonlogical/CConfigMgr.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSysInfo>

#include <algorithm>

#include "Base/Log.h"

namespace clientcommonlogical {

namespace {

ChannelConfig readChannel(const QJsonObject& c, const std::string& deviceId)
{
    ChannelConfig ch;
    ch.channel = c.value(QStringLiteral("channel")).toInt();
    ch.cameraId = c.value(QStringLiteral("cameraId")).toString().toStdString();
    ch.name = c.value(QStringLiteral("name")).toString().toStdString();
    ch.area = c.value(QStringLiteral("area")).toString().toStdString();
    ch.streamUrl = c.value(QStringLiteral("streamUrl")).toString().toStdString();
    ch.mainStream = c.value(QStringLiteral("mainStream")).toString().toStdString();
    ch.subStream = c.value(QStringLiteral("subStream")).toString().toStdString();
    if (ch.cameraId.empty())
        ch.cameraId = deviceId + "-CH" + std::to_string(ch.channel);
    return ch;
}

DeviceConfig readDevice(const QJsonObject& d)
{
    DeviceConfig dev;
    dev.id = d.value(QStringLiteral("id")).toString().toStdString();
    dev.name = d.value(QStringLiteral("name")).toString().toStdString();
    dev.address = d.value(QStringLiteral("address")).toString(QStringLiteral("127.0.0.1")).toStdString();
    dev.port = d.value(QStringLiteral("port")).toInt(80);
    dev.rtspPort = d.value(QStringLiteral("rtspPort")).toInt(554);
    dev.rtspOverUdp = d.value(QStringLiteral("rtspTransport")).toString() == QLatin1String("udp");
    dev.scheme = d.value(QStringLiteral("scheme")).toString(QStringLiteral("http")).toStdString();
    dev.user = d.value(QStringLiteral("user")).toString().toStdString();
    dev.password = d.value(QStringLiteral("password")).toString().toStdString();
    dev.verifyPeer = d.value(QStringLiteral("verifyPeer")).toBool(true);
    dev.caFile = d.value(QStringLiteral("caFile")).toString().toStdString();
    for (const QJsonValue& cv : d.value(QStringLiteral("channels")).toArray())
        dev.channels.push_back(readChannel(cv.toObject(), dev.id));
    return dev;
}

SiteRecordConfig readSiteRecord(const QJsonObject& s)
{
    SiteRecordConfig site;
    if (!s.isEmpty()) {
        site.host = s.value(QStringLiteral("host")).toString().toStdString();
        site.port = s.value(QStringLiteral("port")).toInt(5432);
        site.database = s.value(QStringLiteral("database")).toString().toStdString();
        site.user = s.value(QStringLiteral("user")).toString().toStdString();
        site.password = s.value(QStringLiteral("password")).toString().toStdString();
        site.sslmode = s.value(QStringLiteral("sslmode")).toString(QStringLiteral("prefer")).toStdString();
        site.caFile = s.value(QStringLiteral("caFile")).toString().toStdString();
        site.station = s.value(QStringLiteral("station")).toString(QSysInfo::machineHostName()).toStdString();
        if (site.host.empty())
            BASE_LOG_WARN("host configuration: \"siteRecord\" without \"host\" is ignored");
        else
            BASE_LOG_INFO("site record at %s:%d, database %s, user %s, sslmode %s, station %s", site.host.c_str(),
                site.port, site.database.c_str(), site.user.c_str(), site.sslmode.c_str(), site.station.c_str());
    }
    return site;
}

} // namespace

CConfigMgr* CConfigMgr::Instance()
{
    static CConfigMgr s_instance;
    return &s_instance;
}

bool CConfigMgr::Load(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        BASE_LOG_WARN("cannot read host configuration %s", qUtf8Printable(path));
        return false;
    }
    QJsonParseError error{};
    const QJsonDocument doc = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError || !doc.isObject()) {
        BASE_LOG_WARN("host configuration %s is not valid JSON: %s", qUtf8Printable(path),
            qUtf8Printable(error.errorString()));
        return false;
    }
    const QJsonObject root = doc.object();
    std::vector<DeviceConfig> devices;
    for (const QJsonValue& dv : root.value(QStringLiteral("devices")).toArray()) {
        DeviceConfig dev = readDevice(dv.toObject());
        if (dev.id.empty()) {
            BASE_LOG_WARN("host configuration: a device without \"id\" is skipped");
            continue;
        }
        BASE_LOG_INFO("device %s at %s://%s:%d, %zu channel(s), user %s", dev.id.c_str(), dev.scheme.c_str(),
            dev.address.c_str(), dev.port, dev.channels.size(), dev.user.c_str());
        devices.push_back(std::move(dev));
    }
    SiteRecordConfig site = readSiteRecord(root.value(QStringLiteral("siteRecord")).toObject());
    std::vector<int> brand;
    for (const QJsonValue& v : root.value(QStringLiteral("brand")).toArray())
        brand.push_back(v.toInt());
    while (brand.size() < 3)
        brand.push_back(0);

    std::lock_guard<std::mutex> lock(m_mutex);
    m_path = path;
    m_language = root.value(QStringLiteral("language")).toInt(2);
    m_regionMode = root.value(QStringLiteral("regionMode")).toInt(1);
    m_brand = brand;
    m_recordRetentionDays = std::max(0, root.value(QStringLiteral("recordRetentionDays")).toInt(90));
    m_recordMaxBytes = int64_t(std::max(0.0, root.value(QStringLiteral("recordMaxMB")).toDouble(2048)) * (1 << 20));
    m_debugLog = root.value(QStringLiteral("logLevel")).toString() == QStringLiteral("debug");
    m_devices = std::move(devices);
    m_siteRecord = std::move(site);
    return true;
}

QString CConfigMgr::FilePath() const { std::lock_guard<std::mutex> l(m_mutex); return m_path; }
int CConfigMgr::GetLanguage() const { std::lock_guard<std::mutex> l(m_mutex); return m_language; }
void CConfigMgr::SetLanguage(int language) { std::lock_guard<std::mutex> l(m_mutex); m_language = language; }
int CConfigMgr::GetRegionMode() const { std::lock_guard<std::mutex> l(m_mutex); return m_regionMode; }
void CConfigMgr::SetRegionMode(int mode) { std::lock_guard<std::mutex> l(m_mutex); m_regionMode = mode; }
std::vector<int> CConfigMgr::GetBrandValues() const { std::lock_guard<std::mutex> l(m_mutex); return m_brand; }
void CConfigMgr::SetBrandValues(const std::vector<int>& values) { std::lock_guard<std::mutex> l(m_mutex); m_brand = values; }
int CConfigMgr::GetRecordRetentionDays() const { std::lock_guard<std::mutex> l(m_mutex); return m_recordRetentionDays; }
void CConfigMgr::SetRecordRetentionDays(int days) { std::lock_guard<std::mutex> l(m_mutex); m_recordRetentionDays = days; }
int64_t CConfigMgr::GetRecordMaxBytes() const { std::lock_guard<std::mutex> l(m_mutex); return m_recordMaxBytes; }
void CConfigMgr::SetRecordMaxBytes(int64_t bytes) { std::lock_guard<std::mutex> l(m_mutex); m_recordMaxBytes = bytes; }
bool CConfigMgr::IsDebugLog() const { std::lock_guard<std::mutex> l(m_mutex); return m_debugLog; }
SiteRecordConfig CConfigMgr::GetSiteRecord() const { std::lock_guard<std::mutex> l(m_mutex); return m_siteRecord; }
void CConfigMgr::SetSiteRecord(const SiteRecordConfig& site) { std::lock_guard<std::mutex> l(m_mutex); m_siteRecord = site; }
std::vector<DeviceConfig> CConfigMgr::GetDevices() const { std::lock_guard<std::mutex> l(m_mutex); return m_devices; }
void CConfigMgr::SetDevices(const std::vector<DeviceConfig>& devices) { std::lock_guard<std::mutex> l(m_mutex); m_devices = devices; }

bool CConfigMgr::FindDevice(const std::string& id, DeviceConfig& out) const
{
    std::lock_guard<std::mutex> l(m_mutex);
    for (const DeviceConfig& d : m_devices) {
        if (d.id == id) {
            out = d;
            return true;
        }
    }
    return false;
}

} // namespace clientcommonlogical
