#include "EventFactory.h"

#include <QByteArray>
#include <QDateTime>
#include <cmath>

namespace devicesim {

namespace {

const char* kNames[] = {"Alice Martin", "Bruno Keller", "Chen Wei", "Dana Novak", "Emil Strand", "Fatima Rahman",
    "Goran Petrov", "Hana Sato", "Ivo Lind", "Julia Costa", "Karim Haddad", "Lena Fischer"};
const char* kDepartments[] = {"R&D", "Sales", "Logistics", "Front desk", "Security", "Finance"};

double uniform(std::mt19937& rng, double a, double b)
{
    return std::uniform_real_distribution<double>(a, b)(rng);
}
int uniformInt(std::mt19937& rng, int a, int b)
{
    return std::uniform_int_distribution<int>(a, b)(rng);
}
double round1(double v) { return std::round(v * 10.0) / 10.0; }

std::string isoNow()
{
    return QDateTime::currentDateTime().toOffsetFromUtc(QDateTime::currentDateTime().offsetFromUtc())
        .toString(Qt::ISODate).toStdString();
}

Jpeg fromBase64(const std::string& b64)
{
    const QByteArray raw = QByteArray::fromBase64(QByteArray::fromStdString(b64));
    return std::make_shared<const std::string>(raw.constData(), size_t(raw.size()));
}

FaceLook randomLook(std::mt19937& rng)
{
    FaceLook look;
    look.person = uniformInt(rng, 0, 39);
    look.mask = uniform(rng, 0, 1) < 0.6;
    look.glasses = uniformInt(rng, 0, 3) == 0;
    return look;
}

// The attribute codes of one face, without temperature and pictures.
nlohmann::json faceAttributes(std::mt19937& rng, const FaceLook& look, bool compare, unsigned picId)
{
    nlohmann::json f;
    f["facePicID"] = picId;
    f["IsMatchedFace"] = compare ? 1 : 0;
    f["NeedSaveBkImg"] = 1;
    f["age"] = uniformInt(rng, 18, 70);
    f["StayDuration"] = uniformInt(rng, 1, 30);
    f["Sex"] = uniformInt(rng, 1, 2);
    f["Glass"] = look.glasses ? 1 : 2;
    f["AgeGroup"] = uniformInt(rng, 1, 9);
    f["Mask"] = look.mask ? 2 : 1;
    f["Expression"] = uniformInt(rng, 1, 8);
    f["Beard"] = uniformInt(rng, 1, 2);
    f["Hat"] = uniformInt(rng, 1, 2);
    f["Smile"] = uniformInt(rng, 1, 2);
    f["LivenessStatus"] = 1;
    f["Race"] = uniformInt(rng, 1, 3);
    return f;
}

// The library entry a comparison event names: the stranger record for
// 100506, otherwise person `who` of the staff or visitor library.
nlohmann::json libraryPerson(unsigned code, int who)
{
    const bool stranger = code == 100506;
    nlohmann::json person;
    person["name"] = stranger ? std::string("Stranger") : std::string(kNames[who]);
    person["alternativeName"] = stranger ? "stranger" : "";
    person["FDID"] = stranger ? "3" : (who % 2 ? "1" : "2");
    person["libraryName"] = stranger ? "Strangers" : (who % 2 ? "Staff" : "Visitors");
    person["PID"] = std::to_string(100 + who);
    person["contact"] = "+1 555 01" + std::to_string(10 + who);
    person["IDType"] = "ID";
    person["IDNo"] = "ID" + std::to_string(4400000 + who * 37);
    person["birthDate"] = std::to_string(1960 + who * 3) + "-0" + std::to_string(1 + who % 9) + "-15";
    person["listName"] = code == 100114 ? "blockList" : "allowList";
    person["mask"] = 1;
    person["extend"] = nlohmann::json::array({{{"name", "Department"}, {"value", kDepartments[who % 6]}},
        {{"name", "Employee No."}, {"value", "E" + std::to_string(1000 + who)}}});
    return person;
}

} // namespace

EventFactory::EventFactory(const SimOptions& opts, PictureFactory& pictures)
    : abnormalShare(opts.abnormalShare), unit(opts.unit), m_opts(opts), m_pictures(pictures)
{
}

unsigned EventFactory::pickCode(std::mt19937& rng)
{
    const int r = uniformInt(rng, 0, 99);
    if (r < 40) return 100119;
    if (r < 58) return 100101;
    if (r < 68) return 100103;
    if (r < 78) return 100114;
    if (r < 86) return 100506;
    if (r < 94) return 100112;
    static const unsigned others[] = {100102, 100104, 100201};
    return others[r % 3];
}

SimEvent EventFactory::generate(std::mt19937& rng, int channel, unsigned code, int subPic)
{
    if (code == 0)
        code = pickCode(rng);
    const unsigned long long seq = ++m_seq;
    SimEvent ev;
    nlohmann::json& d = ev.doc;
    const std::string chName = "Channel " + std::to_string(channel);
    d["eventCode"] = code;
    d["eventID"] = m_opts.serial + "-" + std::to_string(seq);
    d["channelID"] = channel;
    d["channelName"] = chName;
    d["dateTime"] = isoNow();
    d["eventName"] = code == 100112 ? "frequentPerson" : (code == 100101 || code == 100119) ? "faceCapture" : "faceContrast";
    d["ruleName"] = "Rule " + std::to_string(channel);

    const bool compare = code == 100103 || code == 100114 || code == 100506;
    const int faceCount = (!compare && uniformInt(rng, 0, 9) == 0) ? 2 : 1;
    const bool noSub = subPic == 0 || (subPic < 0 && uniformInt(rng, 0, 5) == 0);
    nlohmann::json faces = nlohmann::json::array();
    FaceLook firstLook;
    for (int i = 0; i < faceCount; ++i) {
        const FaceLook look = randomLook(rng);
        nlohmann::json f = faceAttributes(
            rng, look, compare, static_cast<unsigned>((m_opts.seed * 100003ULL + seq * 10 + unsigned(i)) & 0x7fffffff));
        addTemperature(rng, f);
        double rect[4];
        const std::string bk = "bk" + std::to_string(i);
        ev.pictures.push_back({bk, PictureBlob{m_pictures.scene(channel, QString::fromStdString(chName), look, rect), -1, -1}});
        f["bkPic"] = bk;
        f["faceRects"] = nlohmann::json::array({{{"x", rect[0]}, {"y", rect[1]}, {"width", rect[2]}, {"height", rect[3]}}});
        f["bNoSubPic"] = noSub;
        if (!noSub) {
            const std::string sub = "sub" + std::to_string(i);
            ev.pictures.push_back({sub, PictureBlob{m_pictures.face(look), -1, -1}});
            f["SubPic"] = sub;
        }
        if (i == 0)
            firstLook = look;
        faces.push_back(f);
    }
    d["faces"] = faces;
    const nlohmann::json& f0 = faces[0];
    d["thermometry"] = {{"enabled", f0["TemperatureEnabled"]}, {"anomaly", f0["TemperatureAnomaly"]},
        {"unit", f0["TemperatureUnit"]}, {"temperature", f0["Temperature"]},
        {"highAlarmTemperature", f0["HighAlarmTemperature"]}};
    if (compare)
        addComparison(rng, ev, code, firstLook, f0["Sex"]);
    if (code == 100112)
        d["taskID"] = "hfpd-" + std::to_string(channel) + "-" + std::to_string(seq);
    return ev;
}

void EventFactory::addTemperature(std::mt19937& rng, nlohmann::json& f) const
{
    const bool measured = uniformInt(rng, 0, 24) != 0;
    const bool abnormal = uniform(rng, 0, 1) < abnormalShare;
    double t = abnormal ? uniform(rng, 37.4, 39.5)
                        : std::clamp(std::normal_distribution<double>(36.5, 0.25)(rng), 35.5, 37.2);
    double high = 37.3;
    if (unit == 'F') {
        t = t * 9.0 / 5.0 + 32.0;
        high = 99.1;
    }
    f["TemperatureEnabled"] = measured ? 1 : 0;
    f["TemperatureAnomaly"] = measured && abnormal ? 1 : 0;
    f["TemperatureUnit"] = unit == 'F' ? 1 : 0;
    f["Temperature"] = measured ? round1(t) : 65535.0;
    f["HighAlarmTemperature"] = high;
}

void EventFactory::addComparison(
    std::mt19937& rng, SimEvent& ev, unsigned code, const FaceLook& captured, const nlohmann::json& sex)
{
    const int who = captured.person % int(sizeof(kNames) / sizeof(kNames[0]));
    nlohmann::json person = libraryPerson(code, who);
    person["sex"] = sex;
    FaceLook libLook = captured;
    libLook.mask = false;
    ev.pictures.push_back({"lib", PictureBlob{m_pictures.face(libLook), -1, -1}});
    ev.doc["comparison"] = {{"similarity", round1(uniform(rng, 75.0, 99.0)) / 100.0}, {"libraryPic", "lib"},
        {"person", person}};
}

SimEvent EventFactory::fromDescription(std::mt19937& rng, const nlohmann::json& desc, std::string& error)
{
    if (!desc.is_object()) {
        error = "event description must be an object";
        return {};
    }
    // Wrongly typed values are sent as given (to exercise readers), so the
    // generated defaults only take what is usable.
    auto number = [&desc](const char* key, long long def) {
        auto it = desc.find(key);
        return it != desc.end() && it->is_number_integer() ? it->get<long long>() : def;
    };
    const int channel = int(number("channelID", number("channel", 1)));
    const unsigned code = unsigned(number("eventCode", 100119));
    auto noSub = desc.find("bNoSubPic");
    const int subPic = (noSub != desc.end() && noSub->is_boolean()) ? (noSub->get<bool>() ? 0 : 1) : -1;
    SimEvent ev = generate(rng, channel, code, subPic);
    for (auto it = desc.begin(); it != desc.end(); ++it) {
        if (it.key() == "faces" || it.key() == "pictures" || it.key() == "bNoSubPic" || it.key() == "channel")
            continue;
        if (it.value().is_object() && ev.doc.contains(it.key()) && ev.doc[it.key()].is_object())
            ev.doc[it.key()].merge_patch(it.value());
        else
            ev.doc[it.key()] = it.value();
    }
    if (desc.contains("faces") && desc["faces"].is_array()) {
        nlohmann::json& faces = ev.doc["faces"];
        const auto& given = desc["faces"];
        for (size_t i = 0; i < given.size(); ++i) {
            if (i < faces.size())
                faces[i].merge_patch(given[i]);
            else
                faces.push_back(given[i]);
        }
        if (given.empty())
            faces = nlohmann::json::array();
    }
    // Pictures: {"<id>": {"base64": "...", "truncateTo": n, "declaredLength": n}}.
    if (desc.contains("pictures") && desc["pictures"].is_object()) {
        for (auto it = desc["pictures"].begin(); it != desc["pictures"].end(); ++it) {
            PictureBlob* blob = nullptr;
            for (auto& p : ev.pictures)
                if (p.first == it.key())
                    blob = &p.second;
            if (!blob) {
                ev.pictures.push_back({it.key(), PictureBlob{std::make_shared<const std::string>(), -1, -1}});
                blob = &ev.pictures.back().second;
            }
            const auto& given = it.value();
            if (!given.is_object())
                continue;
            if (given.contains("base64") && given["base64"].is_string())
                blob->data = fromBase64(given["base64"].get<std::string>());
            if (given.contains("truncateTo") && given["truncateTo"].is_number_integer())
                blob->truncateTo = given["truncateTo"].get<long long>();
            if (given.contains("declaredLength") && given["declaredLength"].is_number_integer())
                blob->declaredLength = given["declaredLength"].get<long long>();
        }
    }
    return ev;
}

Chunks EventFactory::serialize(const SimEvent& ev)
{
    Chunks out;
    nlohmann::json doc = ev.doc;
    nlohmann::json list = nlohmann::json::array();
    for (const auto& p : ev.pictures) {
        const long long real = p.second.data ? (long long)p.second.data->size() : 0;
        list.push_back({{"id", p.first}, {"length", p.second.declaredLength >= 0 ? p.second.declaredLength : real}});
    }
    doc["pictures"] = list;
    const std::string body = doc.dump();
    std::string head = std::string("--") + kBoundary + "\r\nContent-Type: application/json\r\nContent-Length: "
        + std::to_string(body.size()) + "\r\n\r\n" + body + "\r\n";
    for (const auto& p : ev.pictures) {
        const long long real = p.second.data ? (long long)p.second.data->size() : 0;
        const long long declared = p.second.declaredLength >= 0 ? p.second.declaredLength : real;
        head += std::string("--") + kBoundary + "\r\nContent-Type: image/jpeg\r\nContent-ID: " + p.first
            + "\r\nContent-Length: " + std::to_string(declared) + "\r\n\r\n";
        const long long send = p.second.truncateTo >= 0 ? std::min(p.second.truncateTo, real) : real;
        if (send == real && p.second.data && real > 0) {
            // Shared picture bytes: not copied per event.
            out.push_back(std::make_shared<const std::string>(std::move(head)));
            out.push_back(p.second.data);
            head.clear();
        } else if (send > 0) {
            head.append(p.second.data->data(), size_t(send));
        }
        head += "\r\n";
    }
    out.push_back(std::make_shared<const std::string>(std::move(head)));
    return out;
}

} // namespace devicesim
