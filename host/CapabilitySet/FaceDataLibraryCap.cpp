#include "CapabilitySet/FaceDataLibraryCap.h"

#include "CapabilitySet/ExtendListXml.h"
#include "CapabilitySet/ParseUtil.h"

namespace CapabilitySet {

namespace {
bool enabled(xmlNodePtr parent, const char* name, bool& out)
{
    xmlNodePtr n = detail::child(parent, name);
    out = false;
    return !n || detail::childBool(n, "enabled", out);
}
std::vector<std::string> options(xmlNodePtr parent, const char* name)
{
    std::vector<std::string> out;
    for (xmlNodePtr o : detail::children(detail::child(parent, name), "opt"))
        out.push_back(detail::text(o));
    return out;
}
} // namespace

bool FaceDataLibraryCap::Parse(const std::string& text)
{
    *this = FaceDataLibraryCap();
    detail::XmlDoc doc(text);
    xmlNodePtr root = doc.root("FaceDataLibraryCap");
    if (!root)
        return false;
    FaceDataLibraryCap cap;
    bool ok = detail::childBool(root, "supported", cap.bSupport);
    if (xmlNodePtr rule = detail::child(root, "FDNameRule")) {
        cap.bNameRule = true;
        cap.strNameRule = detail::text(rule);
    }
    ok = ok && enabled(root, "contact", cap.bContact);
    int contactLen = 0;
    ok = ok && detail::childInt(detail::child(root, "contact"), "maxLen", contactLen) && contactLen >= 0;
    cap.iContactMaxLen = contactLen == 0 ? 32 : contactLen;
    ok = ok && enabled(root, "certificateNumber", cap.bIDNumber);
    ok = ok && detail::childInt(detail::child(root, "certificateNumber"), "minLen", cap.iIDNumberMinLen);
    ok = ok && detail::childInt(detail::child(root, "certificateNumber"), "maxLen", cap.iIDNumberMaxLen);
    ok = ok && enabled(root, "bornTime", cap.bBirthDate);
    ok = ok && enabled(root, "region", cap.bRegion);
    ok = ok && enabled(root, "sex", cap.bSex);
    cap.sexList = options(root, "sex");
    ok = ok && enabled(root, "certificateType", cap.bIDType);
    cap.idTypeList = options(root, "certificateType");
    if (xmlNodePtr ext = detail::child(root, "PersonInfoExtendList"))
        ok = ok && detail::readExtendList(ext, cap.extendList);
    if (!ok)
        return false;
    *this = std::move(cap);
    return true;
}

} // namespace CapabilitySet
