#pragma once
// The face libraries of a device ("<FDLibBaseCfgList>" answer of
// GET /DVAPI/Intelligent/FDLib).
#include <string>
#include <vector>

namespace CapabilitySet {

struct FDLibBaseCfg {
    std::string id;
    std::string FDID;
    std::string name;
    std::string type;  // "normal"; "stranger" marks a library of unknown faces
    int capacity = 0;
    int count = 0;
};

class FaceDataLibraryCfg {
public:
    FaceDataLibraryCfg() = default;
    explicit FaceDataLibraryCfg(const std::string& text) { Parse(text); }
    bool Parse(const std::string& text);

    bool bValid = false;
    std::vector<FDLibBaseCfg> libraries;
};

} // namespace CapabilitySet
