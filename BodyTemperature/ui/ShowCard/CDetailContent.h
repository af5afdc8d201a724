#pragma once
// What the comparison detail dialog shows for one display record, decided
// without any widget: title, similarity, camera and time, attribute texts from
// the device codes, the matched person's texts, which frames and page show,
// where the first picture frame stands and whether the big temperature badge
// is drawn. CComparisonDetail builds one and only puts it on its widgets.
// Texts are translated in the dialog's context. Plain values, any thread that
// has a QCoreApplication (translation lookups).
#include <QString>
#include <array>
#include <cstdint>

#include "AlarmShowInfo.h"

namespace BodyTemperature {

class CDetailContent final {
public:
    // The device's attribute codes the dialog turns into texts.
    // In the order the dialog lists them.
    enum class Attribute { Gender, Mask, AgeGroup, Glasses, Expression, Beard, Hat, TemperatureState };

    // Translation key of a device code; nullptr for a code the table does not list.
    static const char* AttributeKey(Attribute attribute, uint32_t code);
    // The translated text, or "/" for an unlisted code.
    static QString AttributeText(Attribute attribute, uint32_t code);
    static const char* TitleKey(EventKind kind);
    static QString UnitText(uint32_t unitCode);

    static CDetailContent From(const AlarmShowInfo& info);

    // Layout by event type: the capture kinds show one captured face (centred)
    // and the scene; every other kind compares the captured and the library face.
    bool capture = false;
    int firstFrameX = 1;
    int page = 0;  // 0 face attributes, 1 the matched person's data
    bool showTemperatureState = false;
    QString mainFrameStyle;

    QString title;
    QString similarity;  // empty: the similarity label is hidden
    QString camera;
    QString time;

    // Face attributes (page 0), in the order of Attribute.
    std::array<QString, 8> attributes;
    int temperatureStateCode = -1;  // the face block's code when it is 0 or 1, else -1
    // Matched person (page 1).
    QString personName, contact, idType, idNo, birthDate, listName, personGender, personMask;
    std::array<QString, 4> extendNames, extendValues;

    // Big temperature badge, drawn by the card badge rule when `badge` is set.
    bool badge = false;
    uint32_t temperatureState = 3;
    QString temperatureText;
    QString unitText;
    MaskState maskState = MaskState::Unknown;
};

} // namespace BodyTemperature
