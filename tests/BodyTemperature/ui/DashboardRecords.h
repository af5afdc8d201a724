#pragma once
// Alarm records and settings shared by the dashboard tests.
#include <QStringList>
#include <QTest>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <mutex>
#include <string>

#include "AlarmDisplayConfig.h"
#include "CBTConfigDB.h"
#include "pictures/CPicturePreparer.h"
#include "alarms/CVoicePlayer.h"
#include "CommonMethodLib/CUserDataPath.h"
#include "publicdatacontroller/IntelAlarmEventInfo.h"
#include "ui/CBTShowWidget.h"
#include "support/TestSupport.h"

namespace dashtest {

constexpr uint32_t kComparison = 100103, kCapture = 100101, kTemperatureCapture = 100119, kReturning = 100112;

inline protocol::IntelAlarmFaceInfo face(uint32_t enabled, uint32_t anomaly, uint32_t mask, bool withPicture = true)
{
    static const QByteArray s_picture = testsupport::makeJpeg(320, 240);
    protocol::IntelAlarmFaceInfo f;
    f.TemperatureEnabled = enabled;
    f.TemperatureAnomaly = anomaly;
    f.Mask = mask;
    f.Temperature = enabled == 1 ? 37.9 : 65535.0;
    if (withPicture)
        f.bkPic = s_picture;
    return f;
}

// Capture events carry the face in their list, the others in the single face block.
inline publicdatacontroller::IntelAlarmEventInfo record(uint32_t eventType, const protocol::IntelAlarmFaceInfo& f,
    const std::string& eventId = "E1", const std::string& cameraId = "CAM1")
{
    publicdatacontroller::IntelAlarmEventInfo r;
    r.eventType = eventType;
    r.cameraID = cameraId;
    r.eventID = eventId;
    r.secondID = "TASK7";
    if (eventType == kCapture || eventType == kTemperatureCapture)
        r.faceInfoList.push_back(f);
    else
        r.faceInfo = f;
    return r;
}

// The settings connection is process-wide and keeps the file it opened first,
// so one temporary component folder serves every test of an executable.
inline void storeSettings(const BodyTemperature::AlarmDisplayConfig& config)
{
    static QTemporaryDir s_dir;
    CUserDataPath::Instance()->setComponentPath(s_dir.filePath(QStringLiteral("component")).toStdString());
    ASSERT_TRUE(BodyTemperature::CBTConfigDB::Instance()->SaveAlarmDisplayConfig(config));
}

// Voice paths set, so the display does not write its defaults back.
inline BodyTemperature::AlarmDisplayConfig voiceConfig()
{
    BodyTemperature::AlarmDisplayConfig c;
    c.strNoMaskVoice = QStringLiteral("/voice/no_mask.wav");
    c.strNormalVoice = QStringLiteral("/voice/normal.wav");
    c.strAbnormalVoice = QStringLiteral("/voice/abnormal.wav");
    return c;
}

// While it lives, the voice player plays on a sound device that records the
// files it is given instead of playing them.
class VoiceLog {
public:
    VoiceLog()
    {
        BodyTemperature::CVoicePlayer::SetSink([this](const std::string& localPath) {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_played.append(QString::fromLocal8Bit(localPath.c_str()));
            return true;
        });
    }
    ~VoiceLog()
    {
        waitIdle();
        BodyTemperature::CVoicePlayer::SetSink({});
    }
    VoiceLog(const VoiceLog&) = delete;
    VoiceLog& operator=(const VoiceLog&) = delete;

    static bool waitIdle()
    {
        return testsupport::waitUntil([] { return BodyTemperature::CVoicePlayer::IsIdle(); });
    }
    // Every file played so far, once the player is idle again.
    QStringList played()
    {
        EXPECT_TRUE(waitIdle());
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_played;
    }

private:
    std::mutex m_mutex;
    QStringList m_played;
};

// Cards follow a record once its pictures are decoded off the GUI thread:
// deals it and waits until every record dealt so far has reached the lists.
inline bool cardsBuilt(BodyTemperature::CBTShowWidget& display)
{
    auto* preparer = display.findChild<BodyTemperature::CPicturePreparer*>();
    return preparer == nullptr || QTest::qWaitFor([preparer] { return preparer->Pending() == 0; }, 5000);
}

inline void deal(BodyTemperature::CBTShowWidget& display, const publicdatacontroller::IntelAlarmEventInfo& r)
{
    display.DealAlarmInfo(r);
    EXPECT_TRUE(cardsBuilt(display));
}

} // namespace dashtest
