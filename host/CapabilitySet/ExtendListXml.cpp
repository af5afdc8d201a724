#include "CapabilitySet/ExtendListXml.h"

#include "CapabilitySet/ParseUtil.h"

namespace CapabilitySet {
namespace detail {

bool readExtendList(xmlNodePtr list, std::vector<PersonInfoExtendCfg>& out)
{
    for (xmlNodePtr n : children(list, "PersonInfoExtend")) {
        PersonInfoExtendCfg item;
        if (!childInt(n, "id", item.id) || !childBool(n, "enable", item.enable))
            return false;
        item.name = childText(n, "name");
        item.value = childText(n, "value");
        out.push_back(std::move(item));
    }
    return true;
}

std::string writeExtendList(const std::vector<PersonInfoExtendCfg>& items, bool escaped)
{
    auto text = [escaped](const std::string& s) { return escaped ? s : xmlEscape(s); };
    if (items.empty())
        return std::string();
    std::string xml = "<PersonInfoExtendList>";
    for (const PersonInfoExtendCfg& i : items)
        xml += "<PersonInfoExtend><id>" + std::to_string(i.id) + "</id><enable>" + (i.enable ? "true" : "false")
            + "</enable><name>" + text(i.name) + "</name><value>" + text(i.value) + "</value></PersonInfoExtend>";
    return xml + "</PersonInfoExtendList>";
}

} // namespace detail
} // namespace CapabilitySet
