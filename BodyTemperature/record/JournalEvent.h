#pragma once
// One row of the screening journal: an alarm the information display accepted,
// with its classification and a small face picture. Plain value; built on the
// GUI thread, written by the journal's worker, read back by reports.
#include <QByteArray>
#include <QImage>
#include <cstdint>
#include <memory>
#include <string>

#include "pictures/CEventPictures.h"

namespace BodyTemperature {

struct JournalEvent {
    int64_t id = 0;           // row identifier (read back only)
    int64_t time = 0;         // capture time, seconds since 1970 (UTC)
    std::string deviceId;
    std::string deviceName;
    std::string cameraId;
    std::string cameraName;
    uint32_t eventCode = 0;
    uint32_t kind = 0;        // 0..2 comparison, 3 capture, 4 temperature capture, 5 returning person
    uint32_t popType = 0;
    uint32_t maskType = 3;
    uint32_t temperatureType = 3;
    uint32_t alarmType = 0;
    int shown = 1;            // how much the page's total rose for this event (kind 5: one per open view)
    bool temperatureMeasured = false;
    double temperature = 0.0;
    uint32_t temperatureUnit = 0;  // 0 Celsius, 1 Fahrenheit, 2 Kelvin
    uint32_t mask = 0;             // device code: 1 no mask, 2 mask worn
    std::string personName;
    std::string library;
    double similarity = 0.0;
    QByteArray faceJpeg;           // at most kMaxFaceBytes

    // Set on the GUI thread when the face is still to be encoded by the worker:
    // the already decoded picture, or the shared pictures to decode it from.
    QImage faceImage;
    std::shared_ptr<CEventPictures> pictures;
    PictureSource faceSource;

    static constexpr int kMaxFaceBytes = 10 * 1024;

    // The page's class counters, derived from the display codes exactly as
    // the page counts them.
    bool countsAbnormal() const { return temperatureType == 0; }
    bool countsNormal() const { return temperatureType == 1 || temperatureType == 2; }
    bool countsNoMask() const { return maskType == 0 || maskType == 1; }
};

} // namespace BodyTemperature
