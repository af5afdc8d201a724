#pragma once
// Conversions between a device's enumeration words (gender, ID type,
// province and city codes) and the combo boxes of the add-to-library form.
// No device state: static operations on combos owned by the caller (GUI
// thread); a null combo makes an operation do nothing. Item data is an
// integer (gender, province, city) or the device's word (ID type).
#include <QString>
#include <string>
#include <vector>

#include "CapabilitySet/CityCodeCapability.h"

class QComboBox;

namespace BodyTemperature {

class CBTFaceDataPublic final {
public:
    // Item data of the "Unknown" province and city.
    static constexpr int kUnknownRegion = 100;

    struct Province {
        int code;         // two-digit administrative division code
        const char* key;  // translation key of the name
    };
    struct City {
        int province;
        int code;         // code within the province
        const char* key;
    };

    static void SetGenderToCombo(QComboBox* combo, const std::string& gender);
    static std::string GetGenderFromCombo(const QComboBox* combo);
    static QString GenderToText(const std::string& gender);
    // "Male" and "Female", and "Unknown" when the device accepts "unlimited".
    static void FillGenderCombo(QComboBox* combo, const std::vector<std::string>& sexList);

    static QString IDTypeToText(const std::string& idType);
    // The words in the device's order, each with its display text.
    static void FillIDTypeCombo(QComboBox* combo, const std::vector<std::string>& idTypes);
    static std::string GetIDTypeFromCombo(const QComboBox* combo);

    // The built-in provinces, then "Unknown".
    static void FillProvinceCombo(QComboBox* combo);
    // The device's provinces (name as text, code as data), then "Unknown".
    static void FillProvinceCombo(QComboBox* combo, const CapabilitySet::CityCodeCapability& cities);
    // "Unknown", then the built-in cities of the province.
    static void FillCityCombo(QComboBox* combo, int provinceCode);
    // "Unknown", then the device's cities of the province. Throws
    // std::invalid_argument / std::out_of_range for a code that is not a number.
    static void FillCityCombo(QComboBox* combo, const CapabilitySet::CityCodeCapability& cities, int provinceCode);
    // Two-digit codes of the chosen items; empty for "Unknown" or no choice.
    static std::string GetRegionCode(const QComboBox* combo);

    static const std::vector<Province>& Provinces();
    static std::vector<City> CitiesOf(int provinceCode);
    static QString Translate(const char* key);
};

} // namespace BodyTemperature
