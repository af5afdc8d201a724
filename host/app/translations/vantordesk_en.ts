<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>CHostMainWindow</name>
    <message>
        <source>No module loaded</source>
        <translation>No module loaded</translation>
    </message>
</context>
<context>
    <name>CStreamPlayWindowWithTask</name>
    <message>
        <source>No signal</source>
        <translation>No signal</translation>
    </message>
    <message>
        <source>Reconnecting...</source>
        <translation>Reconnecting...</translation>
    </message>
    <message>
        <source>Sound</source>
        <translation>Sound</translation>
    </message>
    <message>
        <source>The camera is not available.</source>
        <translation>The camera is not available.</translation>
    </message>
    <message>
        <source>Connecting...</source>
        <translation>Connecting...</translation>
    </message>
    <message>
        <source>Stream problem: %1</source>
        <translation>Stream problem: %1</translation>
    </message>
    <message>
        <source>No video (%1). Retrying...</source>
        <translation>No video (%1). Retrying...</translation>
    </message>
    <message>
        <source>Certificate not trusted. The video was stopped; the password was not sent.</source>
        <translation>Certificate not trusted. The video was stopped; the password was not sent.</translation>
    </message>
    <message>
        <source>Password not sent: the device asked for it without encryption.</source>
        <translation>Password not sent: the device asked for it without encryption.</translation>
    </message>
    <message>
        <source>This stream has no video.</source>
        <translation>This stream has no video.</translation>
    </message>
    <message>
        <source>Waiting for a key frame...</source>
        <translation>Waiting for a key frame...</translation>
    </message>
    <message>
        <source>Poor signal</source>
        <translation>Poor signal</translation>
    </message>
</context>
<context>
    <name>UiDataController::CErrorInfoMgr</name>
    <message>
        <source>UserNameOrPasswordIsIncorrect</source>
        <translation>The user name or password is incorrect.</translation>
    </message>
    <message>
        <source>FailedToConnectToTheDevice</source>
        <translation>Cannot connect to the device.</translation>
    </message>
    <message>
        <source>FailedToSendTheRequestToTheDevice</source>
        <translation>The request could not be sent to the device.</translation>
    </message>
    <message>
        <source>TheConnectionToTheDeviceWasLost</source>
        <translation>The connection to the device was lost.</translation>
    </message>
    <message>
        <source>TheDeviceDidNotAnswerInTime</source>
        <translation>The device did not answer in time.</translation>
    </message>
    <message>
        <source>TheDeviceAnswerCannotBeRead</source>
        <translation>The device's answer cannot be read.</translation>
    </message>
    <message>
        <source>TheDeviceRefusedTheRequest</source>
        <translation>The device refused the request.</translation>
    </message>
    <message>
        <source>TheUserHasNoPermissionOnTheDevice</source>
        <translation>The user has no permission for this operation on the device.</translation>
    </message>
    <message>
        <source>TheDeviceIsBusy</source>
        <translation>The device is busy. Try again later.</translation>
    </message>
    <message>
        <source>TheFacePictureLibraryIsFull</source>
        <translation>The face picture library is full.</translation>
    </message>
    <message>
        <source>TheDeviceHadAnInternalError</source>
        <translation>The device reported an internal error.</translation>
    </message>
    <message>
        <source>AccessToTheDeviceIsForbidden</source>
        <translation>Access to the device is forbidden.</translation>
    </message>
    <message>
        <source>TheDeviceDoesNotSupportThisFunction</source>
        <translation>The device does not support this function.</translation>
    </message>
    <message>
        <source>TheDeviceAnsweredWithAnError</source>
        <translation>The device answered with an error.</translation>
    </message>
    <message>
        <source>TheRequestIsInvalid</source>
        <translation>The request is invalid.</translation>
    </message>
    <message>
        <source>TheSecureConnectionToTheDeviceFailed</source>
        <translation>The secure connection to the device failed.</translation>
    </message>
    <message>
        <source>TheDeviceAskedForThePasswordWithoutEncryption</source>
        <translation>The device asked for the password without encryption; it was not sent.</translation>
    </message>
    <message>
        <source>TheDeviceIsNotConfigured</source>
        <translation>The device is not configured.</translation>
    </message>
</context>
<context>
    <name>VantorGUIToolkit::CChaseDialog</name>
    <message>
        <source>Processing</source>
        <translation>Processing...</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
</context>
<context>
    <name>aiguitoolkit::CAIExpandTreeView</name>
    <message>
        <source>ExpandAll</source>
        <translation>Expand all</translation>
    </message>
    <message>
        <source>CollapseAll</source>
        <translation>Collapse all</translation>
    </message>
</context>
<context>
    <name>aiguitoolkit::CCutNumFrame</name>
    <message>
        <source>%1Windows</source>
        <translation>%1 windows</translation>
    </message>
</context>
</TS>
