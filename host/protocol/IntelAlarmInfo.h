#pragma once
// The face-event records a device delivers, as the host hands them to modules.
// Plain values; copying one is cheap because picture bytes are implicitly
// shared QByteArrays (a copy of a record never copies a picture).
#include <QByteArray>
#include <QMetaType>
#include <cstdint>
#include <string>
#include <vector>

namespace protocol {

// A face position inside a picture: fractions 0..1 of its width and height.
// (0, 0, 1, 1) is the whole picture; all zero means no rectangle.
struct PictureRect {
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;

    bool isNull() const { return x == 0.0 && y == 0.0 && width == 0.0 && height == 0.0; }
    bool isWhole() const { return x == 0.0 && y == 0.0 && width == 1.0 && height == 1.0; }
};

// One face of an event with the device's attribute codes and its pictures.
struct IntelAlarmFaceInfo {
    uint32_t IsMatchedFace = 0;
    uint32_t NeedSaveBkImg = 0;
    uint32_t facePicID = 0;
    uint32_t age = 0;
    uint32_t StayDuration = 0;
    uint32_t Sex = 0;          // 1 male, 2 female
    uint32_t Glass = 0;        // 1 glasses, 2 no glasses, 3 sunglasses
    uint32_t AgeGroup = 0;     // 1..9
    uint32_t Mask = 0;         // 1 no mask, 2 mask worn, other unknown
    uint32_t Expression = 0;   // 1..8
    uint32_t Beard = 0;        // 1 no, 2 yes
    uint32_t Hat = 0;          // 1 no, 2 yes
    uint32_t Smile = 0;
    uint32_t LivenessStatus = 0;
    uint32_t Race = 0;
    uint32_t TemperatureEnabled = 0;  // 1: a temperature was measured
    uint32_t TemperatureAnomaly = 0;  // 1 abnormal, 0 normal
    uint32_t TemperatureUnit = 0;     // 0 Celsius, 1 Fahrenheit, 2 Kelvin
    double Temperature = 0.0;         // 65535 when not measured
    double HighAlarmTemperature = 0.0;

    QByteArray bkPic;        // scene picture (encoded, usually JPEG)
    QByteArray SubPic;       // separate face picture (encoded)
    bool bNoSubPic = false;  // the device sent no separate face picture: cut the face out of bkPic
    QByteArray ThermalPic;   // thermal picture, when the device sends one
    std::vector<PictureRect> faceRects;  // faces inside bkPic, in device order
};

// One entry of a matched person's extension list.
struct PersonExtendInfo {
    std::string name;
    std::string value;
};

// The library person a face was matched with.
struct PeopleInfo {
    std::string name;
    std::string alternativeName;  // e.g. the stranger label of a stranger library
    std::string FDID;             // library identifier
    std::string libraryName;
    std::string PID;              // record identifier in the library
    std::string contact;
    std::string IDType;
    std::string IDNo;
    std::string birthDate;
    std::string listName;
    uint32_t Sex = 0;   // 1 male, 2 female
    uint32_t Mask = 0;  // 1 no mask, 2 mask worn
    std::vector<PersonExtendInfo> extendList;
};

// Temperature measured for the event as a whole.
struct ThermometryInfo {
    uint32_t TemperatureEnabled = 0;  // 1: measured
    uint32_t TemperatureAnomaly = 0;  // 1 abnormal, 0 normal
    uint32_t TemperatureUnit = 0;     // 0 Celsius, 1 Fahrenheit, 2 Kelvin
    double Temperature = 0.0;
    double HighAlarmTemperature = 0.0;
};

struct FaceComparisonInfo {
    double similarity = 0.0;  // 0..1; 0 when there was no comparison
    QByteArray libraryPic;    // the matched library face (encoded)
    PeopleInfo people;
};

// The event block of an alarm.
struct IntelAlarmInfoStruct {
    ThermometryInfo thermometry;
    FaceComparisonInfo comparison;
};

} // namespace protocol

Q_DECLARE_METATYPE(protocol::PictureRect)
