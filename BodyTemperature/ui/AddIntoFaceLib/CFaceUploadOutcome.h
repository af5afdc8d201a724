#pragma once
// Turns the results of a face upload into the one message the operator sees:
// "AddSuccess", or the text chosen from the error pair's second code, then
// from the device's upload state, then "FailedToAddPicture". When the
// answer of the upload was not heard and the device was asked afterwards,
// its answer decides: stored before the cancel took effect, stored (after a
// time-out: "AddSuccess"), or unknown. Plain function of its inputs (GUI
// thread: it translates).
#include <QString>
#include <cstdint>
#include <utility>

#include "ui/AddIntoFaceLib/CFaceUploadCheck.h"

namespace BodyTemperature {

class CFaceUploadOutcome final {
public:
    struct Result {
        bool success = false;
        QString text;
    };
    static Result Evaluate(bool success, bool cancelled, uint32_t uploadState, std::pair<int, int> errorPair);
    static Result Evaluate(bool success, bool cancelled, uint32_t uploadState, std::pair<int, int> errorPair,
        CFaceUploadCheck::Stored stored);
    // The key for a second code of the error pair (null when the code has none of its own).
    static const char* SecondCodeKey(int secondCode);
    // The key for an upload state (null when the state selects no text).
    static const char* StateKey(uint32_t state);
    static QString Translate(const char* key);
};

} // namespace BodyTemperature
