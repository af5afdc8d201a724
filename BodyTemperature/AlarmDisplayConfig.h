#pragma once
// The alarm-display settings of the dashboard: which alarm kinds are shown,
// which raise the pop-up and for how long, which voice files play.
// Loaded and saved by CBTConfigDB; owned by the information display; the
// settings pages edit copies.
#include <QString>
#include <cstdint>

namespace BodyTemperature {

// The three alarm-type switches.
struct TemperatureAlarm {
    bool bFaceTemperatureCapture = true;  // event 100119
    bool bFacePictureComparison = true;   // events 100103, 100114, 100506
    bool bFaceCapture = true;             // event 100101

    bool operator==(const TemperatureAlarm& o) const
    {
        return bFaceTemperatureCapture == o.bFaceTemperatureCapture
            && bFacePictureComparison == o.bFacePictureComparison && bFaceCapture == o.bFaceCapture;
    }
};

struct AlarmDisplayConfig : TemperatureAlarm {
    bool bPopNoMask = true;
    bool bPopAbnormal = true;
    bool bPopAutoClose = true;
    int32_t iPopDuration = 5;  // seconds; -1: the pop-up never closes by itself
    QString strNoMaskVoice;
    QString strNormalVoice;
    QString strAbnormalVoice;
    bool bSoundNoMask = true;
    bool bSoundNormal = true;
    bool bSoundAbnormal = true;

    bool operator==(const AlarmDisplayConfig& o) const
    {
        return TemperatureAlarm::operator==(o) && bPopNoMask == o.bPopNoMask && bPopAbnormal == o.bPopAbnormal
            && bPopAutoClose == o.bPopAutoClose && iPopDuration == o.iPopDuration
            && strNoMaskVoice == o.strNoMaskVoice && strNormalVoice == o.strNormalVoice
            && strAbnormalVoice == o.strAbnormalVoice && bSoundNoMask == o.bSoundNoMask
            && bSoundNormal == o.bSoundNormal && bSoundAbnormal == o.bSoundAbnormal;
    }
    bool operator!=(const AlarmDisplayConfig& o) const { return !(*this == o); }
};

// First use: when all three voice paths are empty, fills them with the shipped
// voice files of the client's language (1: Chinese, anything else English).
// Returns true when it changed config; the caller saves it. Called by the
// settings loader and the voice page on the GUI thread.
bool FillDefaultVoicePaths(AlarmDisplayConfig& config, int language);

} // namespace BodyTemperature
