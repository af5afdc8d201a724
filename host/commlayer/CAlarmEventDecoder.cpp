#include "commlayer/CAlarmEventDecoder.h"

#include <QDateTime>
#include <QString>
#include <algorithm>
#include <nlohmann/json.hpp>

#include "Base/DeviceText.h"

namespace commlayer {

namespace {

using nlohmann::json;

// Typed readers that leave the default in place for missing or mistyped values.
uint32_t u32(const json& o, const char* key)
{
    auto it = o.find(key);
    if (it == o.end() || !it->is_number())
        return 0;
    const double v = it->get<double>();
    return (v >= 0 && v <= 4294967295.0) ? uint32_t(v) : 0;
}
double dbl(const json& o, const char* key)
{
    auto it = o.find(key);
    return (it != o.end() && it->is_number()) ? it->get<double>() : 0.0;
}
std::string str(const json& o, const char* key)
{
    auto it = o.find(key);
    if (it == o.end())
        return std::string();
    if (it->is_string())
        return Base::DeviceText(it->get<std::string>());
    if (it->is_number_integer())
        return std::to_string(it->get<long long>());
    return std::string();
}

protocol::IntelAlarmFaceInfo readFace(const json& f)
{
    protocol::IntelAlarmFaceInfo face;
    face.IsMatchedFace = u32(f, "IsMatchedFace");
    face.NeedSaveBkImg = u32(f, "NeedSaveBkImg");
    face.facePicID = u32(f, "facePicID");
    face.age = u32(f, "age");
    face.StayDuration = u32(f, "StayDuration");
    face.Sex = u32(f, "Sex");
    face.Glass = u32(f, "Glass");
    face.AgeGroup = u32(f, "AgeGroup");
    face.Mask = u32(f, "Mask");
    face.Expression = u32(f, "Expression");
    face.Beard = u32(f, "Beard");
    face.Hat = u32(f, "Hat");
    face.Smile = u32(f, "Smile");
    face.LivenessStatus = u32(f, "LivenessStatus");
    face.Race = u32(f, "Race");
    face.TemperatureEnabled = u32(f, "TemperatureEnabled");
    face.TemperatureAnomaly = u32(f, "TemperatureAnomaly");
    face.TemperatureUnit = u32(f, "TemperatureUnit");
    face.Temperature = dbl(f, "Temperature");
    face.HighAlarmTemperature = dbl(f, "HighAlarmTemperature");
    auto nb = f.find("bNoSubPic");
    face.bNoSubPic = nb != f.end() && nb->is_boolean() && nb->get<bool>();
    auto rects = f.find("faceRects");
    if (rects != f.end() && rects->is_array()) {
        for (const auto& r : *rects) {
            if (!r.is_object())
                continue;
            protocol::PictureRect pr;
            pr.x = dbl(r, "x");
            pr.y = dbl(r, "y");
            pr.width = dbl(r, "width");
            pr.height = dbl(r, "height");
            face.faceRects.push_back(pr);
        }
    }
    return face;
}

void readPerson(const json& person, protocol::PeopleInfo& p)
{
    p.name = str(person, "name");
    p.alternativeName = str(person, "alternativeName");
    p.FDID = str(person, "FDID");
    p.libraryName = str(person, "libraryName");
    p.PID = str(person, "PID");
    p.contact = str(person, "contact");
    p.IDType = str(person, "IDType");
    p.IDNo = str(person, "IDNo");
    p.birthDate = str(person, "birthDate");
    p.listName = str(person, "listName");
    p.Sex = u32(person, "sex");
    p.Mask = u32(person, "mask");
    auto ext = person.find("extend");
    if (ext != person.end() && ext->is_array())
        for (const auto& e : *ext)
            if (e.is_object())
                p.extendList.push_back({str(e, "name"), str(e, "value")});
}

// The event's identity: code, device, channel and camera, ids, names, time.
void readIdentity(const json& doc, const clientcommonlogical::DeviceConfig& device,
    publicdatacontroller::IntelAlarmEventInfo& info)
{
    info.eventType = u32(doc, "eventCode");
    info.deviceID = device.id;
    info.deviceName = device.name;
    info.channel = int32_t(u32(doc, "channelID"));
    info.cameraName = str(doc, "channelName");
    for (const auto& ch : device.channels) {
        if (ch.channel == info.channel) {
            info.cameraID = ch.cameraId;
            if (!ch.name.empty())
                info.cameraName = ch.name;
            break;
        }
    }
    info.eventID = str(doc, "eventID");
    info.secondID = str(doc, "taskID");
    info.eventName = str(doc, "eventName");
    info.ruleName = str(doc, "ruleName");
    const QDateTime when = QDateTime::fromString(QString::fromStdString(str(doc, "dateTime")), Qt::ISODate);
    info.captureTime = when.isValid() ? when.toSecsSinceEpoch() : QDateTime::currentSecsSinceEpoch();
}

// False when "faces" is present but not an array of objects.
bool readFaces(const json& doc, publicdatacontroller::IntelAlarmEventInfo& info, CAlarmEventDecoder::PictureRefs& refs)
{
    auto faces = doc.find("faces");
    if (faces != doc.end()) {
        if (!faces->is_array())
            return false;
        for (const auto& f : *faces) {
            if (!f.is_object())
                return false;
            info.faceInfoList.push_back(readFace(f));
            refs.faces.push_back({str(f, "bkPic"), str(f, "SubPic"), str(f, "ThermalPic")});
        }
    }
    return true;
}

void readThermometry(const json& doc, publicdatacontroller::IntelAlarmEventInfo& info)
{
    // Face-list events measure per face: the first face speaks for the event.
    const bool single = info.eventType == 100103 || info.eventType == 100114 || info.eventType == 100506;
    auto therm = doc.find("thermometry");
    if (therm != doc.end() && therm->is_object() && (single || info.faceInfoList.empty())) {
        auto& t = info.alarmInfo.thermometry;
        t.TemperatureEnabled = u32(*therm, "enabled");
        t.TemperatureAnomaly = u32(*therm, "anomaly");
        t.TemperatureUnit = u32(*therm, "unit");
        t.Temperature = dbl(*therm, "temperature");
        t.HighAlarmTemperature = dbl(*therm, "highAlarmTemperature");
    } else if (!info.faceInfoList.empty()) {
        const auto& f = info.faceInfoList.front();
        auto& t = info.alarmInfo.thermometry;
        t.TemperatureEnabled = f.TemperatureEnabled;
        t.TemperatureAnomaly = f.TemperatureAnomaly;
        t.TemperatureUnit = f.TemperatureUnit;
        t.Temperature = f.Temperature;
        t.HighAlarmTemperature = f.HighAlarmTemperature;
    }
}

void readComparison(const json& doc, publicdatacontroller::IntelAlarmEventInfo& info, CAlarmEventDecoder::PictureRefs& refs)
{
    auto cmp = doc.find("comparison");
    if (cmp != doc.end() && cmp->is_object()) {
        auto& c = info.alarmInfo.comparison;
        c.similarity = dbl(*cmp, "similarity");
        refs.library = str(*cmp, "libraryPic");
        auto person = cmp->find("person");
        if (person != cmp->end() && person->is_object())
            readPerson(*person, c.people);
    }
}

// False when "pictures" is present but not an array of objects with an id.
bool readPictureOrder(const json& doc, CAlarmEventDecoder::PictureRefs& refs)
{
    auto pics = doc.find("pictures");
    if (pics != doc.end()) {
        if (!pics->is_array())
            return false;
        for (const auto& p : *pics) {
            const std::string id = p.is_object() ? str(p, "id") : std::string();
            if (id.empty())
                return false;
            refs.order.push_back(id);
        }
    }
    return true;
}

} // namespace

CAlarmEventDecoder::CAlarmEventDecoder(clientcommonlogical::DeviceConfig device) : m_device(std::move(device)) {}

void CAlarmEventDecoder::reset()
{
    m_pending = false;
    m_info = publicdatacontroller::IntelAlarmEventInfo();
    m_refs = PictureRefs();
    m_pictures.clear();
    m_next = 0;
}

bool CAlarmEventDecoder::ParseDocument(const std::string& text, const clientcommonlogical::DeviceConfig& device,
    publicdatacontroller::IntelAlarmEventInfo& info, PictureRefs& refs)
{
    const json doc = json::parse(text, nullptr, false);
    if (!doc.is_object())
        return false;
    auto code = doc.find("eventCode");
    if (code == doc.end() || !code->is_number_unsigned())
        return false;
    info = publicdatacontroller::IntelAlarmEventInfo();
    readIdentity(doc, device, info);
    if (!readFaces(doc, info, refs))
        return false;
    readThermometry(doc, info);
    readComparison(doc, info, refs);
    return readPictureOrder(doc, refs);
}

bool CAlarmEventDecoder::IsKeepAlive(const std::string& text, int& intervalSec)
{
    intervalSec = 0;
    if (text.find("\"heartbeat\"") == std::string::npos)
        return false;
    const json doc = json::parse(text, nullptr, false);
    if (!doc.is_object() || !doc.contains("heartbeat") || doc.contains("eventCode"))
        return false;
    const json& beat = doc["heartbeat"];
    if (beat.is_object())
        intervalSec = int(std::min<uint32_t>(u32(beat, "intervalSec"), 3600));
    return true;
}

void CAlarmEventDecoder::onPart(CMultipartReader::Part& part)
{
    if (part.contentType.compare(0, 16, "application/json") == 0) {
        int interval = 0;
        if (part.body.size() < 4096 && IsKeepAlive(std::string(part.body.constData(), size_t(part.body.size())), interval)) {
            if (onKeepAlive)
                onKeepAlive(interval);
            return;
        }
        if (m_pending && onError)
            onError("event " + m_info.eventID + " incomplete: dropped");
        reset();
        const std::string text(part.body.constData(), size_t(part.body.size()));
        if (!ParseDocument(text, m_device, m_info, m_refs)) {
            if (onError)
                onError("unreadable event document of " + std::to_string(text.size()) + " bytes skipped");
            reset();
            return;
        }
        m_pending = true;
        if (m_refs.order.empty())
            complete();
        return;
    }
    if (!m_pending || m_next >= m_refs.order.size() || part.contentId != m_refs.order[m_next]) {
        if (onError)
            onError("unexpected picture part '" + part.contentId + "' skipped");
        return;
    }
    m_pictures[part.contentId] = std::move(part.body);
    if (++m_next == m_refs.order.size())
        complete();
}

void CAlarmEventDecoder::onPartLost(const std::string& why)
{
    if (onError)
        onError(why);
    if (m_pending) {
        if (onError)
            onError("event " + m_info.eventID + " lost a picture: dropped");
        reset();
    }
}

void CAlarmEventDecoder::complete()
{
    // Pictures are attached by reference to the shared QByteArray buffers.
    auto picture = [this](const std::string& id) -> QByteArray {
        auto it = m_pictures.find(id);
        return it == m_pictures.end() ? QByteArray() : it->second;
    };
    m_pending = false;
    for (size_t i = 0; i < m_info.faceInfoList.size() && i < m_refs.faces.size(); ++i) {
        auto& f = m_info.faceInfoList[i];
        f.bkPic = picture(m_refs.faces[i].bk);
        f.SubPic = picture(m_refs.faces[i].sub);
        f.ThermalPic = picture(m_refs.faces[i].thermal);
    }
    m_info.alarmInfo.comparison.libraryPic = picture(m_refs.library);
    const uint32_t code = m_info.eventType;
    const bool single = code == 100103 || code == 100114 || code == 100506;
    if (single && !m_info.faceInfoList.empty())
        m_info.faceInfo = m_info.faceInfoList.front();
    publicdatacontroller::IntelAlarmEventInfo out = std::move(m_info);
    reset();
    if (onEvent)
        onEvent(std::move(out));
}

} // namespace commlayer
