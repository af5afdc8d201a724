#include "ui/AddIntoFaceLib/CBTFaceDataPublic.h"

#include <QComboBox>
#include <QCoreApplication>

namespace BodyTemperature {

namespace {

const char* const kContext = "BodyTemperature::CBTFaceDataPublic";

const char* const kUnknown = QT_TRANSLATE_NOOP("BodyTemperature::CBTFaceDataPublic", "Unknown");
const char* const kMale = QT_TRANSLATE_NOOP("BodyTemperature::CBTFaceDataPublic", "Male");
const char* const kFemale = QT_TRANSLATE_NOOP("BodyTemperature::CBTFaceDataPublic", "Female");

const struct {
    const char* word;
    const char* key;
} kIDTypes[] = {
    {"officerID", QT_TRANSLATE_NOOP("BodyTemperature::CBTFaceDataPublic", "Vantor-Desk_Client.d481f26a251048d1a6dde197a75a0713.name")},
    {"ID", QT_TRANSLATE_NOOP("BodyTemperature::CBTFaceDataPublic", "IDCard")},
    {"passportID", QT_TRANSLATE_NOOP("BodyTemperature::CBTFaceDataPublic", "Passport")},
    {"other", QT_TRANSLATE_NOOP("BodyTemperature::CBTFaceDataPublic", "Others")},
    {"unlimited", QT_TRANSLATE_NOOP("BodyTemperature::CBTFaceDataPublic", "Unknown")},
};

QString twoDigits(int code)
{
    return QStringLiteral("%1").arg(code, 2, 10, QLatin1Char('0'));
}

} // namespace

QString CBTFaceDataPublic::Translate(const char* key)
{
    return QCoreApplication::translate(kContext, key);
}

void CBTFaceDataPublic::SetGenderToCombo(QComboBox* combo, const std::string& gender)
{
    if (!combo)
        return;
    const int data = gender == "male" ? 1 : gender == "female" ? 2 : 0;
    combo->setCurrentIndex(combo->findData(data));
}

std::string CBTFaceDataPublic::GetGenderFromCombo(const QComboBox* combo)
{
    if (!combo)
        return std::string();
    switch (combo->currentData().toInt()) {
    case 0: return "unlimited";
    case 1: return "male";
    case 2: return "female";
    default: return std::string();
    }
}

QString CBTFaceDataPublic::GenderToText(const std::string& gender)
{
    return Translate(gender == "male" ? kMale : gender == "female" ? kFemale : kUnknown);
}

void CBTFaceDataPublic::FillGenderCombo(QComboBox* combo, const std::vector<std::string>& sexList)
{
    if (!combo)
        return;
    combo->clear();
    combo->addItem(Translate(kMale), 1);
    combo->addItem(Translate(kFemale), 2);
    for (const std::string& word : sexList)
        if (word == "unlimited") {
            combo->addItem(Translate(kUnknown), 0);
            break;
        }
}

QString CBTFaceDataPublic::IDTypeToText(const std::string& idType)
{
    for (const auto& t : kIDTypes)
        if (idType == t.word)
            return Translate(t.key);
    return QString();
}

void CBTFaceDataPublic::FillIDTypeCombo(QComboBox* combo, const std::vector<std::string>& idTypes)
{
    if (!combo)
        return;
    combo->clear();
    for (const std::string& word : idTypes) {
        const QString text = IDTypeToText(word);
        if (!text.isEmpty())
            combo->addItem(text, QString::fromStdString(word));
    }
}

std::string CBTFaceDataPublic::GetIDTypeFromCombo(const QComboBox* combo)
{
    return combo ? combo->currentData().toString().toStdString() : std::string();
}

void CBTFaceDataPublic::FillProvinceCombo(QComboBox* combo)
{
    if (!combo)
        return;
    combo->clear();
    for (const Province& p : Provinces())
        combo->addItem(Translate(p.key), p.code);
    combo->addItem(Translate(kUnknown), kUnknownRegion);
}

void CBTFaceDataPublic::FillProvinceCombo(QComboBox* combo, const CapabilitySet::CityCodeCapability& cities)
{
    if (!combo)
        return;
    combo->clear();
    for (const CapabilitySet::ProvinceCode& p : cities.provinces)
        combo->addItem(QString::fromStdString(p.name), std::stoi(p.code));
    combo->addItem(Translate(kUnknown), kUnknownRegion);
}

void CBTFaceDataPublic::FillCityCombo(QComboBox* combo, int provinceCode)
{
    if (!combo)
        return;
    combo->clear();
    combo->addItem(Translate(kUnknown), kUnknownRegion);
    for (const City& c : CitiesOf(provinceCode))
        combo->addItem(Translate(c.key), c.code);
}

void CBTFaceDataPublic::FillCityCombo(QComboBox* combo, const CapabilitySet::CityCodeCapability& cities,
    int provinceCode)
{
    if (!combo)
        return;
    combo->clear();
    combo->addItem(Translate(kUnknown), kUnknownRegion);
    for (const CapabilitySet::ProvinceCode& p : cities.provinces) {
        if (std::stoi(p.code) != provinceCode)
            continue;
        for (const CapabilitySet::CityCode& c : p.cities)
            combo->addItem(QString::fromStdString(c.name), std::stoi(c.code));
    }
}

std::string CBTFaceDataPublic::GetRegionCode(const QComboBox* combo)
{
    if (!combo || combo->currentIndex() < 0)
        return std::string();
    const int code = combo->currentData().toInt();
    return code == kUnknownRegion ? std::string() : twoDigits(code).toStdString();
}

} // namespace BodyTemperature
