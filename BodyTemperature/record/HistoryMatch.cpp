#include "record/HistoryMatch.h"

#include <algorithm>

namespace BodyTemperature {

const HistoryKindTerm kHistoryKindTerms[5] = {
    {HistoryFilter::KindAbnormal, "temperature_type = 0"},
    {HistoryFilter::KindNoMask, "mask_type IN (0, 1)"},
    {HistoryFilter::KindNormal, "temperature_type IN (1, 2)"},
    {HistoryFilter::KindMatched, "kind IN (0, 1, 2) AND person_name <> ''"},
    {HistoryFilter::KindReturning, "kind = 5"},
};

std::string HistoryLikePattern(const std::string& text)
{
    std::string p = "%";
    for (char c : text) {
        if (c == '%' || c == '_' || c == '\\')
            p += '\\';
        p += c;
    }
    return p + "%";
}

bool HistoryTextIn(const std::string& haystack, const std::string& needle)
{
    // The same folding as SQLite's LIKE: ASCII letters only.
    auto fold = [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; };
    return std::search(haystack.begin(), haystack.end(), needle.begin(), needle.end(),
               [&](char x, char y) { return fold(x) == fold(y); })
        != haystack.end();
}

uint32_t HistoryKindsOf(const JournalEvent& e)
{
    uint32_t k = 0;
    if (e.temperatureType == 0)
        k |= HistoryFilter::KindAbnormal;
    const auto mask = static_cast<MaskState>(e.maskType);
    if (mask == MaskState::NoMaskAbnormal || mask == MaskState::NoMask)
        k |= HistoryFilter::KindNoMask;
    if (e.temperatureType == 1 || e.temperatureType == 2)
        k |= HistoryFilter::KindNormal;
    const auto kind = static_cast<EventKind>(e.kind);
    if (kind <= EventKind::ComparisonFailed && !e.personName.empty())
        k |= HistoryFilter::KindMatched;
    if (kind == EventKind::Returning)
        k |= HistoryFilter::KindReturning;
    return k;
}

double HistoryCelsius(const JournalEvent& e)
{
    switch (e.temperatureUnit) {
    case 1: return (e.temperature - 32) / 1.8;
    case 2: return e.temperature - 273.15;
    default: return e.temperature;
    }
}

bool HistoryMatches(const HistoryFilter& f, const JournalEvent& e)
{
    if (e.time < f.from || e.time >= f.to)
        return false;
    if (!f.cameraIds.empty() && std::find(f.cameraIds.begin(), f.cameraIds.end(), e.cameraId) == f.cameraIds.end())
        return false;
    if (!f.everyKind() && (HistoryKindsOf(e) & f.kinds) == 0)
        return false;
    if (f.thresholdOn && (!e.temperatureMeasured || HistoryCelsius(e) < f.thresholdCelsius))
        return false;
    return f.text.empty() || HistoryTextIn(e.personName, f.text) || HistoryTextIn(e.library, f.text);
}

AlarmShowInfo HistoryDetailOf(const JournalEvent& e)
{
    AlarmShowInfo s;
    s.kind = static_cast<EventKind>(e.kind);
    s.popType = static_cast<PopUpType>(e.popType);
    s.maskType = static_cast<MaskState>(e.maskType);
    s.temperatureType = e.temperatureType;
    s.alarmType = e.alarmType;
    s.eventType = e.eventCode;
    s.strID = e.cameraId;
    s.deviceID = e.deviceId;
    s.deviceName = e.deviceName;
    s.cameraName = e.cameraName;
    s.captureTime = e.time;
    protocol::IntelAlarmFaceInfo face;
    face.Mask = e.mask;
    face.TemperatureEnabled = e.temperatureMeasured ? 1 : 0;
    face.TemperatureAnomaly = e.temperatureType == 0 ? 1 : 0;
    face.TemperatureUnit = e.temperatureUnit;
    face.Temperature = e.temperatureMeasured ? e.temperature : 65535.0;
    // The journal keeps the face only: it stands for the face picture.
    face.SubPic = e.faceJpeg;
    if (s.isCaptureKind())
        s.faceInfoList.push_back(face);
    else
        s.faceInfo = face;
    protocol::FaceComparisonInfo& c = s.alarmInfo.comparison;
    c.similarity = e.similarity;
    c.people.name = e.personName;
    c.people.libraryName = e.library;
    return s;
}

} // namespace BodyTemperature
