#pragma once
// Internal: reading and writing the <PersonInfoExtend> items shared by several documents.
#include <libxml/tree.h>
#include <string>
#include <vector>

#include "CapabilitySet/PersonnalInfoExtendListConfig.h"

namespace CapabilitySet {
namespace detail {

bool readExtendList(xmlNodePtr list, std::vector<PersonInfoExtendCfg>& out);
// escaped: names and values already hold XML text.
std::string writeExtendList(const std::vector<PersonInfoExtendCfg>& items, bool escaped = false);

} // namespace detail
} // namespace CapabilitySet
