#include "UiDataController/CErrorInfoMgr.h"

#include <QCoreApplication>

#include "commlayer/CommErrors.h"

namespace UiDataController {

namespace {

#define ERR_KEY(k) QT_TRANSLATE_NOOP("UiDataController::CErrorInfoMgr", k)
const char* const kContext = "UiDataController::CErrorInfoMgr";

const char* const kPassword = ERR_KEY("UserNameOrPasswordIsIncorrect");
const char* const kConnect = ERR_KEY("FailedToConnectToTheDevice");
const char* const kSend = ERR_KEY("FailedToSendTheRequestToTheDevice");
const char* const kRecv = ERR_KEY("TheConnectionToTheDeviceWasLost");
const char* const kTimeout = ERR_KEY("TheDeviceDidNotAnswerInTime");
const char* const kBadAnswer = ERR_KEY("TheDeviceAnswerCannotBeRead");
const char* const kRefused = ERR_KEY("TheDeviceRefusedTheRequest");
const char* const kNoPermission = ERR_KEY("TheUserHasNoPermissionOnTheDevice");
const char* const kBusy = ERR_KEY("TheDeviceIsBusy");
const char* const kLibraryFull = ERR_KEY("TheFacePictureLibraryIsFull");
const char* const kServerError = ERR_KEY("TheDeviceHadAnInternalError");
const char* const kForbidden = ERR_KEY("AccessToTheDeviceIsForbidden");
const char* const kNotSupported = ERR_KEY("TheDeviceDoesNotSupportThisFunction");
const char* const kHttp = ERR_KEY("TheDeviceAnsweredWithAnError");
const char* const kParam = ERR_KEY("TheRequestIsInvalid");
const char* const kTls = ERR_KEY("TheSecureConnectionToTheDeviceFailed");
const char* const kNoDevice = ERR_KEY("TheDeviceIsNotConfigured");
#undef ERR_KEY

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
