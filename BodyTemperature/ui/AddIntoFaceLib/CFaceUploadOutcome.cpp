#include "ui/AddIntoFaceLib/CFaceUploadOutcome.h"

#include <QCoreApplication>

#include "UiDataController/CErrorInfoMgr.h"

namespace BodyTemperature {

namespace {

#define OUTCOME_KEY(k) QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", k)
const char* const kContext = "BodyTemperature::CFaceUploadOutcome";
const char* const kAddSuccess = OUTCOME_KEY("AddSuccess");
const char* const kFailed = OUTCOME_KEY("FailedToAddPicture");
const char* const kNoMore = OUTCOME_KEY("NoMoreFacePicturesCanBeAdded");
const char* const kRecognitionFailed = OUTCOME_KEY("PictureRecognitionFailed");

const struct {
    int code;
    const char* key;
} kSecondCodes[] = {
    {843, kNoMore},
    {873, kNoMore},
    {870, OUTCOME_KEY("AnalysisEngineIsImportingPicturesToLibrary")},
    {13, OUTCOME_KEY("NotPermissionTheRegisteredUserHasNoPermissionForTheOperation")},
    {872, OUTCOME_KEY("TheDeviceIsModelingImageAndDoesNotSupportConcurrentOperation")},
    {2123, OUTCOME_KEY("InvalidPhoneNumber")},
    {2124, OUTCOME_KEY("InvalidIDNo")},
};

const struct {
    uint32_t state;
    const char* key;
} kStates[] = {
    {3, OUTCOME_KEY("UploadingFailed")},
    {4, OUTCOME_KEY("NetworkOffline")},
    {6, OUTCOME_KEY("HDDError")},
    {8, OUTCOME_KEY("TheCapacityOfDiskIsNotEnough")},
    {9, OUTCOME_KEY("InadequateResources")},
    {10, kNoMore},
    {22, kNoMore},
    {11, OUTCOME_KEY("ThePictureIsOversize")},
    {15, OUTCOME_KEY("InvalidPictureFormat")},
    {19, OUTCOME_KEY("InvalidFileFormat")},
    {26, OUTCOME_KEY("InvalidName")},
    {27, OUTCOME_KEY("TheImportedPictureResolutionIsInvalid")},
    {28, OUTCOME_KEY("AnalysisTargetNumberExceedsTheUpperLimit")},
    {29, OUTCOME_KEY("NoTargetIsRecognized")},
    {30, kRecognitionFailed},
    {32, kRecognitionFailed},
    {31, OUTCOME_KEY("AnalysisEngineIsAbnormal")},
    {33, OUTCOME_KEY("FaceClose-upModelingFailed")},
};
#undef OUTCOME_KEY

} // namespace

QString CFaceUploadOutcome::Translate(const char* key)
{
    return QCoreApplication::translate(kContext, key);
}

const char* CFaceUploadOutcome::SecondCodeKey(int secondCode)
{
    for (const auto& c : kSecondCodes)
        if (c.code == secondCode)
            return c.key;
    return nullptr;
}

const char* CFaceUploadOutcome::StateKey(uint32_t state)
{
    for (const auto& s : kStates)
        if (s.state == state)
            return s.key;
    return nullptr;
}

CFaceUploadOutcome::Result CFaceUploadOutcome::Evaluate(bool success, bool cancelled, uint32_t uploadState,
    std::pair<int, int> errorPair)
{
    if (success && !cancelled)
        return {true, Translate(kAddSuccess)};
    QString text;
    if (const char* key = SecondCodeKey(errorPair.second))
        text = Translate(key);
    else if (errorPair.second != 0)
        text = UiDataController::CErrorInfoMgr::GetErrorInfoByCode(errorPair.first, errorPair.second);
    if (text.isEmpty())
        if (const char* key = StateKey(uploadState))
            text = Translate(key);
    if (text.isEmpty())
        text = Translate(kFailed);
    return {false, text};
}

} // namespace BodyTemperature
