#include "ui/ShowCard/CDetailContent.h"

#include <QCoreApplication>
#include <QDateTime>

#include "ui/ShowCard/CardStyle.h"

namespace BodyTemperature {

namespace {

// The dialog's own translation context: its captions use tr() there too.
const char* const kContext = "BodyTemperature::CComparisonDetail";

QString Translate(const char* key)
{
    return QCoreApplication::translate(kContext, key);
}

QString OrSlash(const std::string& text)
{
    return text.empty() ? QStringLiteral("/") : QString::fromStdString(text);
}

template <size_t N>
const char* Lookup(const char* const (&keys)[N], uint32_t code)
{
    return code >= 1 && code <= N ? keys[code - 1] : nullptr;
}

// Tables indexed by device code - 1; a null entry has no text.
const char* const kGender[] = {QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Male"),
                               QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Female")};
const char* const kMask[] = {QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "NoGauzeMask"),
                             QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "WearingAMask")};
const char* const kGlasses[] = {QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "WearGlasses"),
                                QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "NotWearGlasses"),
                                QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "WithSunglasses")};
const char* const kAgeGroup[] = {QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Teenage"),
                                 QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Youth"),
                                 QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Middle-aged"),
                                 QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Elderly"),
                                 QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Infant"),
                                 QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Child"),
                                 QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Teenagers"),
                                 QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Adult"),
                                 QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "MiddleAndOldAge")};
// The devices send 7 for an expression they cannot name.
const char* const kExpression[] = {QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Poker-faced"),
                                   QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Happy"),
                                   QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Suprised"),
                                   QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Disgusted"),
                                   QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Sorry"),
                                   QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Angry"),
                                   nullptr,
                                   QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Panic")};
const char* const kNoYes[] = {QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "No"),
                              QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Yes")};

const char* const kCaptureBackground =
    " QFrame#frame{\n   background-image: url(:/background/Images/BodyTemperature/background/zhuapaibg.png);\n}";

} // namespace

const char* CDetailContent::AttributeKey(Attribute attribute, uint32_t code)
{
    switch (attribute) {
    case Attribute::Gender: return Lookup(kGender, code);
    case Attribute::Mask: return Lookup(kMask, code);
    case Attribute::Glasses: return Lookup(kGlasses, code);
    case Attribute::AgeGroup: return Lookup(kAgeGroup, code);
    case Attribute::Expression: return Lookup(kExpression, code);
    case Attribute::Beard:
    case Attribute::Hat: return Lookup(kNoYes, code);
    case Attribute::TemperatureState:
        if (code == 0)
            return QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "TemperatureIsNormalLvoFXpTP");
        if (code == 1)
            return QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "TemperatureAnomaliesWaPooFNo");
        return nullptr;
    }
    return nullptr;
}

QString CDetailContent::AttributeText(Attribute attribute, uint32_t code)
{
    const char* key = AttributeKey(attribute, code);
    return key != nullptr ? Translate(key) : QStringLiteral("/");
}

const char* CDetailContent::TitleKey(EventKind kind)
{
    switch (kind) {
    case EventKind::Capture: return QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "FaceSnapDetail");
    case EventKind::TemperatureCapture:
        return QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "FaceTemperatureCaptuTpwUkAkA");
    default: return QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "FacePictureComparisonInformation");
    }
}

QString CDetailContent::UnitText(uint32_t unitCode)
{
    switch (unitCode) {
    case 0: return Translate(QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "DegreeC"));
    case 1: return Translate(QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "DegreeF"));
    case 2: return Translate(QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "xYyCxaTr"));
    default: return QString();
    }
}

CDetailContent CDetailContent::From(const AlarmShowInfo& info)
{
    CDetailContent c;
    c.capture = info.isCaptureKind();
    c.firstFrameX = c.capture ? 210 : 1;
    // Strangers and failed matches have no person to show: their face attributes stay.
    c.page = c.capture || info.kind == EventKind::Stranger || info.kind == EventKind::ComparisonFailed ? 0 : 1;
    c.showTemperatureState = info.kind == EventKind::TemperatureCapture;
    if (c.capture)
        c.mainFrameStyle = QString::fromLatin1(kCaptureBackground);
    c.title = Translate(TitleKey(info.kind));

    const protocol::FaceComparisonInfo& comparison = info.alarmInfo.comparison;
    if (comparison.similarity != 0.0)
        c.similarity = CardStyle::SimilarityText(comparison.similarity);
    c.camera = OrSlash(info.cameraName);
    c.time = QDateTime::fromSecsSinceEpoch(info.captureTime).toString(QStringLiteral("MM/dd hh:mm:ss"));

    c.attributes.fill(QStringLiteral("/"));
    if (const protocol::IntelAlarmFaceInfo* face = info.faceBlock()) {
        c.attributes[0] = AttributeText(Attribute::Gender, face->Sex);
        c.attributes[1] = AttributeText(Attribute::Mask, face->Mask);
        c.attributes[2] = AttributeText(Attribute::AgeGroup, face->AgeGroup);
        c.attributes[3] = AttributeText(Attribute::Glasses, face->Glass);
        c.attributes[4] = AttributeText(Attribute::Expression, face->Expression);
        c.attributes[5] = AttributeText(Attribute::Beard, face->Beard);
        c.attributes[6] = AttributeText(Attribute::Hat, face->Hat);
        c.attributes[7] = AttributeText(Attribute::TemperatureState, face->TemperatureAnomaly);
        if (face->TemperatureAnomaly <= 1)
            c.temperatureStateCode = static_cast<int>(face->TemperatureAnomaly);
    }

    const protocol::PeopleInfo& people = comparison.people;
    c.personName = OrSlash(people.name);
    c.contact = OrSlash(people.contact);
    c.idType = OrSlash(people.IDType);
    c.idNo = OrSlash(people.IDNo);
    c.birthDate = OrSlash(people.birthDate);
    c.listName = OrSlash(people.listName);
    c.personGender = AttributeText(Attribute::Gender, people.Sex);
    c.personMask = AttributeText(Attribute::Mask, people.Mask);
    for (size_t i = 0; i < c.extendNames.size(); ++i) {
        const bool present = i < people.extendList.size();
        c.extendNames[i] = present ? OrSlash(people.extendList[i].name) : QStringLiteral("/");
        c.extendValues[i] = present ? OrSlash(people.extendList[i].value) : QStringLiteral("/");
    }

    const protocol::ThermometryInfo& thermometry = info.alarmInfo.thermometry;
    c.badge = thermometry.TemperatureEnabled == 1;
    c.temperatureState = info.temperatureType;
    c.temperatureText = CardStyle::TemperatureText(thermometry.Temperature);
    c.unitText = UnitText(thermometry.TemperatureUnit);
    c.maskState = info.maskType;
    return c;
}

} // namespace BodyTemperature
