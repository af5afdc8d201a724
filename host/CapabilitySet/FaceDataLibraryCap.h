#pragma once
// What a device's face libraries support ("<FaceDataLibraryCap>" answer of
// GET /DVAPI/Intelligent/FDLib/capabilities). The leading flag bSupport is
// clear when the device has no face library or the answer was bad.
#include <string>
#include <vector>

#include "CapabilitySet/PersonnalInfoExtendListConfig.h"

namespace CapabilitySet {

class FaceDataLibraryCap {
public:
    FaceDataLibraryCap() = default;
    explicit FaceDataLibraryCap(const std::string& text) { Parse(text); }
    bool Parse(const std::string& text);

    bool bSupport = false;
    bool bNameRule = false;
    std::string strNameRule;          // regular expression for library/person names
    bool bContact = false;
    int iContactMaxLen = 32;          // 32 when the device gives 0
    bool bIDNumber = false;
    int iIDNumberMinLen = 0;
    int iIDNumberMaxLen = 0;
    bool bBirthDate = false;
    bool bRegion = false;             // province and city
    bool bSex = false;
    std::vector<std::string> sexList;     // "male", "female", "unlimited"
    bool bIDType = false;
    std::vector<std::string> idTypeList;  // "officerID", "ID", "passportID", "other", "unlimited"
    std::vector<PersonInfoExtendCfg> extendList;
};

} // namespace CapabilitySet
