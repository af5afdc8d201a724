#include "CapabilitySet/PersonnalInfoExtendListConfig.h"

#include "CapabilitySet/ExtendListXml.h"
#include "CapabilitySet/ParseUtil.h"

namespace CapabilitySet {

bool PersonnalInfoExtendListConfig::Parse(const std::string& text)
{
    *this = PersonnalInfoExtendListConfig();
    detail::XmlDoc doc(text);
    xmlNodePtr root = doc.root("PersonInfoExtendList");
    std::vector<PersonInfoExtendCfg> parsed;
    if (!root || !detail::readExtendList(root, parsed))
        return false;
    items = std::move(parsed);
    bValid = true;
    return true;
}

} // namespace CapabilitySet
