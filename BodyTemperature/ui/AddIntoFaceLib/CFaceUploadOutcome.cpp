#include "ui/AddIntoFaceLib/CFaceUploadOutcome.h"

#include <QCoreApplication>

#include "UiDataController/CErrorInfoMgr.h"

namespace BodyTemperature {

namespace {

const char* const kContext = "BodyTemperature::CFaceUploadOutcome";
const char* const kAddSuccess = QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "AddSuccess");
const char* const kFailed = QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "FailedToAddPicture");
const char* const kNoMore = QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "NoMoreFacePicturesCanBeAdded");
const char* const kStoredBeforeCancel
    = QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "FaceStoredBeforeTheCancelTookEffect");
const char* const kOutcomeUnknown
    = QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "FaceUploadOutcomeUnknown");
const char* const kRecognitionFailed = QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "PictureRecognitionFailed");

const struct {
    int code;
    const char* key;
} kSecondCodes[] = {
    {843, kNoMore},
    {873, kNoMore},
    {870, QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "AnalysisEngineIsImportingPicturesToLibrary")},
    {13, QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "NotPermissionTheRegisteredUserHasNoPermissionForTheOperation")},
    {872, QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "TheDeviceIsModelingImageAndDoesNotSupportConcurrentOperation")},
    {2123, QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "InvalidPhoneNumber")},
    {2124, QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "InvalidIDNo")},
};

const struct {
    uint32_t state;
    const char* key;
} kStates[] = {
    {3, QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "UploadingFailed")},
    {4, QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "NetworkOffline")},
    {6, QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "HDDError")},
    {8, QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "TheCapacityOfDiskIsNotEnough")},
    {9, QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "InadequateResources")},
    {10, kNoMore},
    {22, kNoMore},
    {11, QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "ThePictureIsOversize")},
    {15, QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "InvalidPictureFormat")},
    {19, QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "InvalidFileFormat")},
    {26, QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "InvalidName")},
    {27, QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "TheImportedPictureResolutionIsInvalid")},
    {28, QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "AnalysisTargetNumberExceedsTheUpperLimit")},
    {29, QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "NoTargetIsRecognized")},
    {30, kRecognitionFailed},
    {32, kRecognitionFailed},
    {31, QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "AnalysisEngineIsAbnormal")},
    {33, QT_TRANSLATE_NOOP("BodyTemperature::CFaceUploadOutcome", "FaceClose-upModelingFailed")},
};

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

CFaceUploadOutcome::Result CFaceUploadOutcome::Evaluate(bool success, bool cancelled, uint32_t uploadState,
    std::pair<int, int> errorPair, CFaceUploadCheck::Stored stored)
{
    switch (stored) {
    case CFaceUploadCheck::Stored::Yes: return {true, Translate(cancelled ? kStoredBeforeCancel : kAddSuccess)};
    case CFaceUploadCheck::Stored::Unknown: return {false, Translate(kOutcomeUnknown)};
    case CFaceUploadCheck::Stored::No:
    case CFaceUploadCheck::Stored::NotAsked: break;
    }
    return Evaluate(success, cancelled, uploadState, errorPair);
}

} // namespace BodyTemperature
