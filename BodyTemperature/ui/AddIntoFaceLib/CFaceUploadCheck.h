#pragma once
// Whether a face upload whose answer never came (cancelled or timed out
// after it reached the device) was stored after all, and the memory of such
// uploads, so that sending the same record again first asks the device
// instead of storing it twice.
//
// Matches() reads a face-library search answer; the ledger is process-wide
// and guarded, used by the upload worker threads. Plain functions otherwise.
#include <string>
#include <vector>

#include "CapabilitySet/FaceDataRecordCfg.h"

namespace BodyTemperature {

class CFaceUploadCheck final {
public:
    enum class Stored { NotAsked, Yes, No, Unknown };

    // The search conditions that find the uploaded record: its library and name.
    static CapabilitySet::FaceDataRecordCfg Conditions(const CapabilitySet::FaceDataRecordCfg& uploaded,
        const std::string& FDID);
    // The identifiers of the records in the answer of that search that have
    // every person field of the uploaded one (name, gender, ID, region, birth
    // date, contact, extended items); one entry per record, "" when it has none.
    static std::vector<std::string> Matches(const std::string& searchAnswer,
        const CapabilitySet::FaceDataRecordCfg& uploaded);
    // Whether the matches after the upload hold one that was not there
    // before it (the same person may have been in the library already).
    static bool Added(const std::vector<std::string>& before, const std::vector<std::string>& after);

    // The ledger of uploads whose outcome the client did not hear, by record,
    // with the matches the library held before the first attempt.
    static std::string Key(const std::string& deviceId, const std::string& FDID, const std::string& personXml,
        const std::vector<char>& picture);
    static void MarkUnheard(const std::string& key, const std::vector<std::string>& before);
    // False when the record is not in the ledger; else its matches before.
    static bool IsUnheard(const std::string& key, std::vector<std::string>& before);
    static void Forget(const std::string& key);
};

} // namespace BodyTemperature
