#include "ui/AddIntoFaceLib/CFaceUploadCheck.h"

#include <QCryptographicHash>
#include <algorithm>
#include <map>
#include <mutex>

namespace BodyTemperature {

namespace {

std::mutex s_ledgerMutex;
std::map<std::string, std::vector<std::string>> s_unheard;  // guarded by s_ledgerMutex

// The person document without what the device assigns, for comparison.
std::string personFields(CapabilitySet::FaceDataRecordCfg r)
{
    r.FDID.clear();
    r.PID.clear();
    r.picURL.clear();
    return CapabilitySet::FaceDataRecordCfg::StructToXML(r);
}

} // namespace

CapabilitySet::FaceDataRecordCfg CFaceUploadCheck::Conditions(const CapabilitySet::FaceDataRecordCfg& uploaded,
    const std::string& FDID)
{
    CapabilitySet::FaceDataRecordCfg cond;
    cond.name = uploaded.name;
    cond.bTextEscaped = uploaded.bTextEscaped;
    cond.FDID = FDID;
    return cond;
}

std::vector<std::string> CFaceUploadCheck::Matches(const std::string& searchAnswer,
    const CapabilitySet::FaceDataRecordCfg& uploaded)
{
    std::vector<std::string> found;
    const std::string wanted = personFields(uploaded);
    static const std::string open = "<MatchElement>";
    static const std::string close = "</MatchElement>";
    for (size_t at = searchAnswer.find(open); at != std::string::npos; at = searchAnswer.find(open, at)) {
        at += open.size();
        const size_t end = searchAnswer.find(close, at);
        if (end == std::string::npos)
            break;
        std::string element = searchAnswer.substr(at, end - at);
        // Devices list the record's fields directly or inside its own document.
        if (element.find("<FaceAppendData") == std::string::npos)
            element = "<FaceAppendData>" + element + "</FaceAppendData>";
        CapabilitySet::FaceDataRecordCfg record;
        if (record.Parse(element) && personFields(record) == wanted)
            found.push_back(record.PID);
        at = end;
    }
    return found;
}

bool CFaceUploadCheck::Added(const std::vector<std::string>& before, const std::vector<std::string>& after)
{
    if (after.size() > before.size())
        return true;
    return std::any_of(after.begin(), after.end(), [&before](const std::string& pid) {
        return !pid.empty() && std::find(before.begin(), before.end(), pid) == before.end();
    });
}

std::string CFaceUploadCheck::Key(const std::string& deviceId, const std::string& FDID, const std::string& personXml,
    const std::vector<char>& picture)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const std::string* part : {&deviceId, &FDID, &personXml}) {
        hash.addData(part->data(), int(part->size()));
        hash.addData("\0", 1);
    }
    hash.addData(picture.data(), int(picture.size()));
    return hash.result().toHex().toStdString();
}

void CFaceUploadCheck::MarkUnheard(const std::string& key, const std::vector<std::string>& before)
{
    std::lock_guard<std::mutex> lock(s_ledgerMutex);
    s_unheard.emplace(key, before);  // an earlier attempt's picture of the library stays
}

bool CFaceUploadCheck::IsUnheard(const std::string& key, std::vector<std::string>& before)
{
    std::lock_guard<std::mutex> lock(s_ledgerMutex);
    const auto it = s_unheard.find(key);
    if (it == s_unheard.end())
        return false;
    before = it->second;
    return true;
}

void CFaceUploadCheck::Forget(const std::string& key)
{
    std::lock_guard<std::mutex> lock(s_ledgerMutex);
    s_unheard.erase(key);
}

} // namespace BodyTemperature
