#pragma once
// Extended person-information fields a device supports (globally or for one
// library). Read from "<PersonInfoExtendList>" answers. Plain value; Parse
// may be called from any thread.
#include <string>
#include <vector>

namespace CapabilitySet {

struct PersonInfoExtendCfg {
    int id = 0;
    bool enable = false;
    std::string name;
    std::string value;
};

class PersonnalInfoExtendListConfig {
public:
    PersonnalInfoExtendListConfig() = default;
    explicit PersonnalInfoExtendListConfig(const std::string& text) { Parse(text); }

    // False (and the record left empty) when the text is not a valid list.
    bool Parse(const std::string& text);

    bool bValid = false;
    std::vector<PersonInfoExtendCfg> items;
};

} // namespace CapabilitySet
