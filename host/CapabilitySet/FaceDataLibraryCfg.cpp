#include "CapabilitySet/FaceDataLibraryCfg.h"

#include "CapabilitySet/ParseUtil.h"

namespace CapabilitySet {

bool FaceDataLibraryCfg::Parse(const std::string& text)
{
    *this = FaceDataLibraryCfg();
    detail::XmlDoc doc(text);
    xmlNodePtr root = doc.root("FDLibBaseCfgList");
    if (!root)
        return false;
    std::vector<FDLibBaseCfg> libs;
    for (xmlNodePtr n : detail::children(root, "FDLibBaseCfg")) {
        FDLibBaseCfg lib;
        lib.id = detail::childText(n, "id");
        lib.FDID = detail::childText(n, "FDID");
        lib.name = detail::childText(n, "name");
        lib.type = detail::childText(n, "faceLibType");
        if (lib.FDID.empty() || !detail::childInt(n, "capacity", lib.capacity) || !detail::childInt(n, "count", lib.count))
            return false;
        libs.push_back(std::move(lib));
    }
    libraries = std::move(libs);
    bValid = true;
    return true;
}

} // namespace CapabilitySet
