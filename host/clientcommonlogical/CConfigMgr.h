#pragma once
// The host client's configuration: language, region mode, brand values and
// the device list, read from the host configuration file (JSON). Process-wide;
// read from any thread, changed on the GUI thread (or by tests). Passwords are
// kept in memory only and never logged.
#include <QString>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace clientcommonlogical {

struct ChannelConfig {
    int channel = 0;
    std::string cameraId;
    std::string name;
    std::string area;
    std::string streamUrl;  // empty: the device's own live stream of this channel
    // The camera's main (full resolution) and sub (small) stream: an RTSP URL
    // without credentials, or a path on the device's RTSP port ("/ch1/h264/main").
    std::string mainStream{};
    std::string subStream{};
};

struct DeviceConfig {
    std::string id;       // the host's identifier of the device (its serial)
    std::string name;
    std::string address;
    int port = 80;
    int rtspPort = 554;
    bool rtspOverUdp = false;  // RTSP media over UDP ("rtspTransport": "udp"); TCP by default
    std::string scheme = "http";
    std::string user;
    std::string password;
    bool verifyPeer = true;   // https: verify the certificate
    std::string caFile;       // https: trust only this PEM (a private CA, or the device's own certificate pinned) instead of the system store
    std::vector<ChannelConfig> channels;
};

// Where the station also sends its screening record, shared by every entrance
// of a site ("siteRecord"). Empty host: no site record, the station keeps its
// record to itself.
struct SiteRecordConfig {
    std::string host;
    int port = 5432;
    std::string database;
    std::string user;
    std::string password;
    std::string sslmode = "prefer";  // as the server's client library takes it: disable ... verify-full
    std::string caFile;             // the CA that signed the server's certificate (verify-ca, verify-full)
    std::string station;            // this station's name in the shared record; default: the machine's name
    bool IsSet() const { return !host.empty(); }
};

class CConfigMgr {
public:
    static CConfigMgr* Instance();

    // Reads the file; false (and defaults kept) when it cannot be read or parsed.
    bool Load(const QString& path);
    QString FilePath() const;

    int GetLanguage() const;      // 1 Chinese, anything else English
    void SetLanguage(int language);
    int GetRegionMode() const;    // 1: province and city fields are offered
    void SetRegionMode(int mode);
    // Brand values: [0] brand, [1] non-zero suppresses the idle logo, [2] variant.
    std::vector<int> GetBrandValues() const;
    void SetBrandValues(const std::vector<int>& values);

    // Days a module keeps its event records (0: no limit); "recordRetentionDays", default 90.
    int GetRecordRetentionDays() const;
    void SetRecordRetentionDays(int days);
    // Bytes a module's event record may take (0: no limit); "recordMaxMB" in
    // megabytes, default 2048.
    int64_t GetRecordMaxBytes() const;
    void SetRecordMaxBytes(int64_t bytes);
    // "logLevel": "debug" writes debug records to the host log; anything else info.
    bool IsDebugLog() const;

    SiteRecordConfig GetSiteRecord() const;
    void SetSiteRecord(const SiteRecordConfig& site);

    std::vector<DeviceConfig> GetDevices() const;
    bool FindDevice(const std::string& id, DeviceConfig& out) const;
    void SetDevices(const std::vector<DeviceConfig>& devices);

private:
    CConfigMgr() = default;
    mutable std::mutex m_mutex;
    QString m_path;
    int m_language = 2;
    int m_regionMode = 1;
    std::vector<int> m_brand{0, 0, 0};
    int m_recordRetentionDays = 90;
    int64_t m_recordMaxBytes = int64_t(2048) << 20;
    bool m_debugLog = false;
    std::vector<DeviceConfig> m_devices;
    SiteRecordConfig m_siteRecord;
};

} // namespace clientcommonlogical
