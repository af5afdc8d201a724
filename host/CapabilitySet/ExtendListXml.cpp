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

std::string writeExtendList(const std::vector<PersonInfoExtendCfg>& items)
{
    if (items.empty())
        return std::string();
    std::string xml = "<PersonInfoExtendList>";
    for (const PersonInfoExtendCfg& i : items)
        xml += "<PersonInfoExtend><id>" + std::to_string(i.id) + "</id><enable>" + (i.enable ? "true" : "false")
            + "</enable><name>" + xmlEscape(i.name) + "</name><value>" + xmlEscape(i.value) + "</value></PersonInfoExtend>";
    return xml + "</PersonInfoExtendList>";
}

} // namespace detail
} // namespace CapabilitySet
