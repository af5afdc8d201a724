#pragma once
// Alarm records and settings shared by the dashboard tests.
#include <QTemporaryDir>
#include <string>

#include "AlarmDisplayConfig.h"
#include "CBTConfigDB.h"
#include "CommonMethodLib/CUserDataPath.h"
#include "publicdatacontroller/IntelAlarmEventInfo.h"
#include "support/TestSupport.h"

namespace dashtest {

constexpr uint32_t kComparison = 100103;
constexpr uint32_t kCapture = 100101;
constexpr uint32_t kTemperatureCapture = 100119;
constexpr uint32_t kReturning = 100112;

inline protocol::IntelAlarmFaceInfo face(uint32_t enabled, uint32_t anomaly, uint32_t mask, bool withPicture = true)
{
    protocol::IntelAlarmFaceInfo f;
    f.TemperatureEnabled = enabled;
    f.TemperatureAnomaly = anomaly;
    f.Mask = mask;
    f.Temperature = enabled == 1 ? 37.9 : 65535.0;
    if (withPicture) {
        static const QByteArray s_picture = testsupport::makeJpeg(320, 240);
        f.bkPic = s_picture;
    }
    return f;
}

// A capture-with-temperature record: its face is the first of the list.
inline publicdatacontroller::IntelAlarmEventInfo record(uint32_t eventType, const protocol::IntelAlarmFaceInfo& f,
    const std::string& eventId = "E1", const std::string& cameraId = "CAM1")
{
    publicdatacontroller::IntelAlarmEventInfo r;
    r.eventType = eventType;
    r.cameraID = cameraId;
    r.cameraName = "Lobby";
    r.deviceID = "DEMO0001";
    r.eventID = eventId;
    r.secondID = "TASK7";
    r.captureTime = 1700000000;
    if (eventType == kCapture || eventType == kTemperatureCapture)
        r.faceInfoList.push_back(f);
    else
        r.faceInfo = f;
    return r;
}

// The settings connection is process-wide and keeps the file it opened first,
// so one temporary component folder serves every test of an executable; each
// test writes the settings it needs into it.
inline void useSharedSettingsFolder()
{
    static QTemporaryDir s_dir;
    CUserDataPath::Instance()->setComponentPath(s_dir.filePath(QStringLiteral("component")).toStdString());
    BodyTemperature::CBTConfigDB::Instance();
}

inline void storeSettings(const BodyTemperature::AlarmDisplayConfig& config)
{
    useSharedSettingsFolder();
    ASSERT_TRUE(BodyTemperature::CBTConfigDB::Instance()->SaveAlarmDisplayConfig(config));
}

// Settings with voice paths set, so the defaults are not written back.
inline BodyTemperature::AlarmDisplayConfig voiceConfig()
{
    BodyTemperature::AlarmDisplayConfig c;
    c.strNoMaskVoice = QStringLiteral("/voice/no_mask.wav");
    c.strNormalVoice = QStringLiteral("/voice/normal.wav");
    c.strAbnormalVoice = QStringLiteral("/voice/abnormal.wav");
    return c;
}

} // namespace dashtest
