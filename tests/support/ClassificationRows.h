#pragma once
// The classification of one temperature-capture face as rows: the face's fields,
// the sound and pop-up switches, and what must follow.
#include <QString>
#include <ostream>

#include "AlarmDisplayConfig.h"

namespace testsupport {

enum class Voice { None, NoMask, Normal, Abnormal };

struct ClassificationRow {
    const char* name;
    uint32_t enabled, anomaly, mask;
    bool soundNoMask, soundNormal, soundAbnormal, popNoMask, popAbnormal;
    Voice voice;
    uint32_t popType, maskType, temperatureType, alarmType;
    int normal, noMask, abnormal;

    // base with this row's sound and pop-up switches.
    BodyTemperature::AlarmDisplayConfig switches(BodyTemperature::AlarmDisplayConfig base) const
    {
        base.bSoundNoMask = soundNoMask;
        base.bSoundNormal = soundNormal;
        base.bSoundAbnormal = soundAbnormal;
        base.bPopNoMask = popNoMask;
        base.bPopAbnormal = popAbnormal;
        return base;
    }
    // The voice file of config this row plays; empty: none.
    QString voicePath(const BodyTemperature::AlarmDisplayConfig& config) const
    {
        const QString paths[] = {QString(), config.strNoMaskVoice, config.strNormalVoice, config.strAbnormalVoice};
        return paths[int(voice)];
    }
};

inline std::ostream& operator<<(std::ostream& out, const ClassificationRow& row) { return out << row.name; }

constexpr Voice kNone = Voice::None, kNoMask = Voice::NoMask, kNormal = Voice::Normal, kAbnormal = Voice::Abnormal;

const ClassificationRow kClassificationRows[] = {
    // name                         en an mk  sNM   sN    sA    pNM   pA     voice      pop mk tp al  n  nm ab
    {"notMeasuredNoMask",           0, 0, 1, true, true, true, true, true, kNoMask,    2, 1, 3, 1, 0, 1, 0},
    {"notMeasuredNoMaskQuiet",      0, 0, 1, false, true, true, false, true, kNone,    0, 1, 3, 1, 0, 1, 0},
    {"notMeasuredMaskWorn",         0, 0, 2, true, true, true, true, true, kNone,      0, 2, 3, 2, 0, 0, 0},
    {"notMeasuredUnknownMask",      2, 1, 0, true, true, true, true, true, kNone,      0, 3, 3, 2, 0, 0, 0},
    {"abnormalMaskWorn",            1, 1, 2, true, true, true, true, true, kAbnormal,  1, 2, 0, 0, 0, 0, 1},
    {"abnormalMaskWornQuiet",       1, 1, 2, true, true, false, true, false, kNone,    0, 2, 0, 0, 0, 0, 1},
    {"abnormalUnknownMask",         1, 1, 5, true, true, true, true, true, kAbnormal,  1, 3, 0, 0, 0, 0, 1},
    {"abnormalNoMask",              1, 1, 1, true, true, true, true, true, kAbnormal,  1, 0, 0, 0, 0, 1, 1},
    {"abnormalNoMaskFallsBack",     1, 1, 1, true, true, false, true, false, kNoMask,  2, 0, 0, 0, 0, 1, 1},
    {"abnormalNoMaskAllOff",        1, 1, 1, false, true, false, false, false, kNone,  0, 0, 0, 0, 0, 1, 1},
    {"normalMaskWorn",              1, 0, 2, true, true, true, true, true, kNormal,    0, 2, 2, 3, 1, 0, 0},
    {"normalMaskWornQuiet",         1, 0, 2, true, false, true, true, true, kNone,     0, 2, 2, 3, 1, 0, 0},
    {"normalUnknownMask",           1, 0, 0, true, true, true, true, true, kNormal,    0, 3, 2, 3, 1, 0, 0},
    {"normalNoMask",                1, 0, 1, true, true, true, true, true, kNoMask,    2, 1, 1, 1, 1, 1, 0},
    {"normalNoMaskFallsBack",       1, 0, 1, false, true, true, false, true, kNormal,  0, 1, 1, 1, 1, 1, 0},
    {"anomalyNeitherZeroNorOne",    1, 7, 1, true, true, true, true, true, kNone,      0, 3, 3, 0, 0, 0, 0},
};

} // namespace testsupport
