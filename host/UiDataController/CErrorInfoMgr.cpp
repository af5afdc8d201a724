#include "UiDataController/CErrorInfoMgr.h"

#include <QCoreApplication>

#include "commlayer/CommErrors.h"

namespace UiDataController {

namespace {

const char* const kContext = "UiDataController::CErrorInfoMgr";

const char* const kPassword = QT_TRANSLATE_NOOP("UiDataController::CErrorInfoMgr", "UserNameOrPasswordIsIncorrect");
const char* const kConnect = QT_TRANSLATE_NOOP("UiDataController::CErrorInfoMgr", "FailedToConnectToTheDevice");
const char* const kSend = QT_TRANSLATE_NOOP("UiDataController::CErrorInfoMgr", "FailedToSendTheRequestToTheDevice");
const char* const kRecv = QT_TRANSLATE_NOOP("UiDataController::CErrorInfoMgr", "TheConnectionToTheDeviceWasLost");
const char* const kTimeout = QT_TRANSLATE_NOOP("UiDataController::CErrorInfoMgr", "TheDeviceDidNotAnswerInTime");
const char* const kBadAnswer = QT_TRANSLATE_NOOP("UiDataController::CErrorInfoMgr", "TheDeviceAnswerCannotBeRead");
const char* const kRefused = QT_TRANSLATE_NOOP("UiDataController::CErrorInfoMgr", "TheDeviceRefusedTheRequest");
const char* const kNoPermission = QT_TRANSLATE_NOOP("UiDataController::CErrorInfoMgr", "TheUserHasNoPermissionOnTheDevice");
const char* const kBusy = QT_TRANSLATE_NOOP("UiDataController::CErrorInfoMgr", "TheDeviceIsBusy");
const char* const kLibraryFull = QT_TRANSLATE_NOOP("UiDataController::CErrorInfoMgr", "TheFacePictureLibraryIsFull");
const char* const kServerError = QT_TRANSLATE_NOOP("UiDataController::CErrorInfoMgr", "TheDeviceHadAnInternalError");
const char* const kForbidden = QT_TRANSLATE_NOOP("UiDataController::CErrorInfoMgr", "AccessToTheDeviceIsForbidden");
const char* const kNotSupported = QT_TRANSLATE_NOOP("UiDataController::CErrorInfoMgr", "TheDeviceDoesNotSupportThisFunction");
const char* const kHttp = QT_TRANSLATE_NOOP("UiDataController::CErrorInfoMgr", "TheDeviceAnsweredWithAnError");
const char* const kParam = QT_TRANSLATE_NOOP("UiDataController::CErrorInfoMgr", "TheRequestIsInvalid");
const char* const kTls = QT_TRANSLATE_NOOP("UiDataController::CErrorInfoMgr", "TheSecureConnectionToTheDeviceFailed");
const char* const kNoDevice = QT_TRANSLATE_NOOP("UiDataController::CErrorInfoMgr", "TheDeviceIsNotConfigured");

const char* deviceStatusKey(int subStatus)
{
    switch (subStatus) {
    case 13: return kNoPermission;
    case 843:
    case 873: return kLibraryFull;
    case 870:
    case 872: return kBusy;
    default: return kRefused;
    }
}

const char* httpKey(int status)
{
    if (status == 403)
        return kForbidden;
    if (status == 404 || status == 501)
        return kNotSupported;
    if (status >= 500 && status < 600)
        return kServerError;
    return kHttp;
}

} // namespace

const char* CErrorInfoMgr::GetErrorKeyByCode(int first, int second)
{
    switch (first) {
    case commlayer::kErrPassword: return kPassword;
    case commlayer::kErrConnect: return kConnect;
    case commlayer::kErrSend: return kSend;
    case commlayer::kErrRecv: return kRecv;
    case commlayer::kErrTimeout: return kTimeout;
    case commlayer::kErrBadAnswer: return kBadAnswer;
    case commlayer::kErrDeviceStatus: return deviceStatusKey(second);
    case commlayer::kErrHttp: return httpKey(second);
    case commlayer::kErrParam: return kParam;
    case commlayer::kErrTls: return kTls;
    case commlayer::kErrNoDevice: return kNoDevice;
    default: return nullptr;
    }
}

QString CErrorInfoMgr::GetErrorInfoByCode(int first, int second)
{
    const char* key = GetErrorKeyByCode(first, second);
    return key ? QCoreApplication::translate(kContext, key) : QString();
}

QStringList CErrorInfoMgr::AllKeys()
{
    return {kPassword, kConnect, kSend, kRecv, kTimeout, kBadAnswer, kRefused, kNoPermission, kBusy, kLibraryFull,
        kServerError, kForbidden, kNotSupported, kHttp, kParam, kTls, kNoDevice};
}

} // namespace UiDataController
