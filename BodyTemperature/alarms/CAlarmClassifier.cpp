#include "alarms/CAlarmClassifier.h"

namespace BodyTemperature {

void AlarmDecision::applyTo(AlarmShowInfo& info) const
{
    info.kind = kind;
    info.popType = popType;
    info.maskType = maskType;
    info.temperatureType = temperatureType;
    info.alarmType = alarmType;
}

AlarmDecision CAlarmClassifier::Classify(const publicdatacontroller::IntelAlarmEventInfo& record,
    const AlarmDisplayConfig& config)
{
    AlarmDecision d;
    bool bSwitch = true;
    switch (record.eventType) {
    case 100103: d.kind = EventKind::Comparison; bSwitch = config.bFacePictureComparison; break;
    case 100506: d.kind = EventKind::Stranger; bSwitch = config.bFacePictureComparison; break;
    case 100114: d.kind = EventKind::ComparisonFailed; bSwitch = config.bFacePictureComparison; break;
    case 100101: d.kind = EventKind::Capture; bSwitch = config.bFaceCapture; break;
    case 100119: d.kind = EventKind::TemperatureCapture; bSwitch = config.bFaceTemperatureCapture; break;
    case 100112: d.kind = EventKind::Returning; d.action = AlarmDecision::Action::ShowReturning; return d;
    default: d.action = AlarmDecision::Action::CountOnly; return d;
    }
    if (!bSwitch)
        return d;

    d.action = AlarmDecision::Action::ShowFace;
    // The capture kinds carry their face in the list; an empty list leaves
    // the display codes at their defaults.
    if (!d.isCaptureKind())
        ClassifyFace(record.faceInfo, config, d);
    else if (!record.faceInfoList.empty())
        ClassifyFace(record.faceInfoList.front(), config, d);
    return d;
}

void CAlarmClassifier::ClassifyFace(const protocol::IntelAlarmFaceInfo& face, const AlarmDisplayConfig& config,
    AlarmDecision& d)
{
    const MaskReading mask = MaskReadingOf(face.Mask);
    const bool noMask = mask == MaskReading::Missing;
    const MaskState maskShown = mask == MaskReading::Worn ? MaskState::Worn : MaskState::Unknown;

    if (face.TemperatureEnabled != 1) {
        d.temperatureType = 3;
        if (noMask) {
            if (config.bSoundNoMask)
                d.voicePath = config.strNoMaskVoice;
            if (config.bPopNoMask)
                d.popType = PopUpType::NoMask;
            d.maskType = MaskState::NoMask;
            d.alarmType = 1;
            d.noMaskDelta = 1;
        } else {
            d.maskType = maskShown;
            d.alarmType = 2;
        }
    } else if (face.TemperatureAnomaly == 1) {
        if (config.bSoundAbnormal)
            d.voicePath = config.strAbnormalVoice;
        else if (noMask && config.bSoundNoMask)
            d.voicePath = config.strNoMaskVoice;
        if (config.bPopAbnormal)
            d.popType = PopUpType::AbnormalTemperature;
        else if (noMask && config.bPopNoMask)
            d.popType = PopUpType::NoMask;
        d.maskType = noMask ? MaskState::NoMaskAbnormal : maskShown;
        d.temperatureType = 0;
        d.alarmType = 0;
        d.abnormalDelta = 1;
        d.noMaskDelta = noMask ? 1 : 0;
    } else if (face.TemperatureAnomaly == 0) {
        d.normalDelta = 1;
        if (noMask) {
            if (config.bSoundNoMask)
                d.voicePath = config.strNoMaskVoice;
            else if (config.bSoundNormal)
                d.voicePath = config.strNormalVoice;
            if (config.bPopNoMask)
                d.popType = PopUpType::NoMask;
            d.maskType = MaskState::NoMask;
            d.temperatureType = 1;
            d.alarmType = 1;
            d.noMaskDelta = 1;
        } else {
            if (config.bSoundNormal)
                d.voicePath = config.strNormalVoice;
            d.maskType = maskShown;
            d.temperatureType = 2;
            d.alarmType = 3;
        }
    }
    // A measured temperature with any other anomaly value changes nothing.
}

} // namespace BodyTemperature
