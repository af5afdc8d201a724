#include "CapabilitySet/CityCodeCapability.h"

#include "CapabilitySet/ParseUtil.h"

namespace CapabilitySet {

bool CityCodeCapability::Parse(const std::string& text)
{
    *this = CityCodeCapability();
    const nlohmann::json j = detail::parseJson(text);
    if (!j.is_object() || !j.contains("CityCode") || !j["CityCode"].is_array())
        return false;
    std::vector<ProvinceCode> list;
    for (const auto& p : j["CityCode"]) {
        if (!p.is_object())
            return false;
        ProvinceCode prov;
        if (!detail::jsonString(p, "provinceCode", prov.code) || !detail::jsonString(p, "provinceName", prov.name)
            || prov.code.empty())
            return false;
        if (p.contains("cities")) {
            if (!p["cities"].is_array())
                return false;
            for (const auto& c : p["cities"]) {
                CityCode city;
                if (!c.is_object() || !detail::jsonString(c, "cityCode", city.code)
                    || !detail::jsonString(c, "cityName", city.name))
                    return false;
                prov.cities.push_back(std::move(city));
            }
        }
        list.push_back(std::move(prov));
    }
    provinces = std::move(list);
    bValid = true;
    return true;
}

const ProvinceCode* CityCodeCapability::Find(const std::string& provinceCode) const
{
    for (const ProvinceCode& p : provinces)
        if (p.code == provinceCode)
            return &p;
    return nullptr;
}

} // namespace CapabilitySet
