#pragma once
// One face record of a library ("<FaceAppendData>"): read from
// GET /DVAPI/Intelligent/FDLib/<FDID>/picture/<PID>, and written by
// StructToXML as the person document of an upload or the conditions of a
// search (empty fields are left out).
#include <string>
#include <vector>

#include "CapabilitySet/PersonnalInfoExtendListConfig.h"

namespace CapabilitySet {

class FaceDataRecordCfg {
public:
    FaceDataRecordCfg() = default;
    explicit FaceDataRecordCfg(const std::string& text) { Parse(text); }
    bool Parse(const std::string& text);
    static std::string StructToXML(const FaceDataRecordCfg& record);

    bool bValid = false;
    std::string name;
    std::string gender;     // "male", "female", "unlimited"
    std::string idType;     // "officerID", "ID", "passportID", "other"
    std::string idNumber;
    std::string province;   // two-digit province code
    std::string city;       // city code within the province
    std::string birthDate;  // yyyy-MM-dd
    std::string contact;
    std::string FDID;
    std::string PID;
    std::string picURL;
    std::vector<PersonInfoExtendCfg> extendList;
    // The ID number and the contact were given: StructToXML writes them even
    // when empty (a form that offers the contact stores what was typed, also
    // nothing). Parse sets them when the document carries the element.
    bool bIDNumberSet = false;
    bool bContactSet = false;
    // Set by forms that escape what the user typed themselves: name and the
    // extension names and values then already hold XML text and StructToXML
    // writes them unchanged (every other field is always escaped).
    bool bTextEscaped = false;
};

} // namespace CapabilitySet
