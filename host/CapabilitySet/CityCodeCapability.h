#pragma once
// A device's province and city code table (JSON answer of
// GET /DVAPI/System/cityCode?format=json). Codes are kept as the device's text.
#include <string>
#include <vector>

namespace CapabilitySet {

struct CityCode {
    std::string code;
    std::string name;
};

struct ProvinceCode {
    std::string code;
    std::string name;
    std::vector<CityCode> cities;
};

class CityCodeCapability {
public:
    CityCodeCapability() = default;
    explicit CityCodeCapability(const std::string& text) { Parse(text); }
    bool Parse(const std::string& text);
    // The province with this code, or null.
    const ProvinceCode* Find(const std::string& provinceCode) const;

    bool bValid = false;
    std::vector<ProvinceCode> provinces;
};

} // namespace CapabilitySet
