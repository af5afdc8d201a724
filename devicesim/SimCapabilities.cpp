#include "SimCapabilities.h"

namespace devicesim {

std::string SimCapabilities::defaultFaceLibrary()
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<FaceDataLibraryCap><supported>true</supported>"
           "<FDNameRule>^[^\\\\/:*?&quot;&lt;&gt;|]{1,32}$</FDNameRule>"
           "<contact><enabled>true</enabled><maxLen>0</maxLen></contact>"
           "<certificateNumber><enabled>true</enabled><minLen>8</minLen><maxLen>18</maxLen></certificateNumber>"
           "<bornTime><enabled>true</enabled></bornTime>"
           "<region><enabled>true</enabled></region>"
           "<sex><enabled>true</enabled><opt>male</opt><opt>female</opt><opt>unlimited</opt></sex>"
           "<certificateType><enabled>true</enabled><opt>officerID</opt><opt>ID</opt><opt>passportID</opt>"
           "<opt>other</opt></certificateType>"
           "<PersonInfoExtendList>"
           "<PersonInfoExtend><id>1</id><enable>true</enable><name>Department</name><value></value></PersonInfoExtend>"
           "<PersonInfoExtend><id>2</id><enable>true</enable><name>Employee No.</name><value></value></PersonInfoExtend>"
           "<PersonInfoExtend><id>3</id><enable>false</enable><name>Remark</name><value></value></PersonInfoExtend>"
           "</PersonInfoExtendList></FaceDataLibraryCap>";
}

std::string SimCapabilities::faceLibrary() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_faceLibrary.empty() ? defaultFaceLibrary() : m_faceLibrary;
}

void SimCapabilities::setFaceLibrary(const std::string& xml)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_faceLibrary = xml;
}

} // namespace devicesim
