#include "CapabilitySet/FaceDataRecordCfg.h"

#include "CapabilitySet/ExtendListXml.h"
#include "CapabilitySet/ParseUtil.h"

namespace CapabilitySet {

namespace {
const struct {
    const char* tag;
    std::string FaceDataRecordCfg::*member;
} kFields[] = {
    {"name", &FaceDataRecordCfg::name},
    {"sex", &FaceDataRecordCfg::gender},
    {"certificateType", &FaceDataRecordCfg::idType},
    {"certificateNumber", &FaceDataRecordCfg::idNumber},
    {"province", &FaceDataRecordCfg::province},
    {"city", &FaceDataRecordCfg::city},
    {"bornTime", &FaceDataRecordCfg::birthDate},
    {"phoneNumber", &FaceDataRecordCfg::contact},
    {"FDID", &FaceDataRecordCfg::FDID},
    {"PID", &FaceDataRecordCfg::PID},
    {"picURL", &FaceDataRecordCfg::picURL},
};
} // namespace

bool FaceDataRecordCfg::Parse(const std::string& text)
{
    *this = FaceDataRecordCfg();
    detail::XmlDoc doc(text);
    xmlNodePtr root = doc.root("FaceAppendData");
    if (!root)
        return false;
    FaceDataRecordCfg rec;
    for (const auto& f : kFields)
        rec.*(f.member) = detail::childText(root, f.tag);
    rec.bIDNumberSet = detail::child(root, "certificateNumber") != nullptr;
    rec.bContactSet = detail::child(root, "phoneNumber") != nullptr;
    if (xmlNodePtr ext = detail::child(root, "PersonInfoExtendList"))
        if (!detail::readExtendList(ext, rec.extendList))
            return false;
    rec.bValid = true;
    *this = std::move(rec);
    return true;
}

std::string FaceDataRecordCfg::StructToXML(const FaceDataRecordCfg& record)
{
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<FaceAppendData>";
    for (const auto& f : kFields) {
        const std::string& v = record.*(f.member);
        const bool escaped = record.bTextEscaped && f.member == &FaceDataRecordCfg::name;
        const bool given = (f.member == &FaceDataRecordCfg::idNumber && record.bIDNumberSet)
            || (f.member == &FaceDataRecordCfg::contact && record.bContactSet);
        if (!v.empty() || given)
            xml += std::string("<") + f.tag + ">" + (escaped ? v : detail::xmlEscape(v)) + "</" + f.tag + ">";
    }
    xml += detail::writeExtendList(record.extendList, record.bTextEscaped);
    return xml + "</FaceAppendData>";
}

} // namespace CapabilitySet
