<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>BodyTemperature::BTShowLiveView</name>
    <message>
        <source>Close</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>FullScreen</source>
        <translation>Full screen</translation>
    </message>
    <message>
        <source>OpeningSoundFailed</source>
        <translation>Failed to open the sound.</translation>
    </message>
    <message>
        <source>StopAllLiveView</source>
        <translation>Stop all live view</translation>
    </message>
    <message>
        <source>WindowDivision</source>
        <translation>Window division</translation>
    </message>
</context>
<context>
    <name>BodyTemperature::BTShowTitle</name>
    <message>
        <source>NoGauzeMask</source>
        <translation>No Mask</translation>
    </message>
    <message>
        <source>TemperatureAnomaliesWaPooFNo</source>
        <translation>Abnormal</translation>
    </message>
    <message>
        <source>TemperatureIsNormalLvoFXpTP</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>TheTotalNumberOfyDridGtt</source>
        <translation>Total</translation>
    </message>
</context>
<context>
    <name>BodyTemperature::CAlarmUnit</name>
    <message>
        <source>AStranger</source>
        <translation>Stranger</translation>
    </message>
    <message>
        <source>DegreeC</source>
        <translation>°C</translation>
    </message>
    <message>
        <source>DegreeF</source>
        <translation>°F</translation>
    </message>
    <message>
        <source>FaceCaptured</source>
        <translation>Face Captured</translation>
    </message>
    <message>
        <source>FaceFail</source>
        <translation>Comparison Failed</translation>
    </message>
    <message>
        <source>FacePictureComparison</source>
        <translation>Face Comparison</translation>
    </message>
    <message>
        <source>FaceTemperatureCaptureJLMWvg</source>
        <translation>Temperature Capture</translation>
    </message>
    <message>
        <source>NoGauzeMask</source>
        <translation>No Mask</translation>
    </message>
    <message>
        <source>WearingAMask</source>
        <translation>Masked</translation>
    </message>
    <message>
        <source>xYyCxaTr</source>
        <translation>K</translation>
    </message>
</context>
<context>
    <name>BodyTemperature::CBTShowWidget</name>
    <message>
        <source>AlarmPopoverConfigurrXBbmhnE</source>
        <translation>Alarm Pop-up Settings</translation>
    </message>
    <message>
        <source>AlarmType</source>
        <translation>Alarm Type</translation>
    </message>
    <message>
        <source>InformationDisplayrMJyZHOJ</source>
        <translation>Information Display</translation>
    </message>
    <message>
        <source>SaveFailed</source>
        <translation>Save failed</translation>
    </message>
    <message>
        <source>TurnOnoffAlarmDisplaHyBGelcI</source>
        <translation>Turn Alarm Display On/Off</translation>
    </message>
    <message>
        <source>VoiceConfiguration</source>
        <translation>Voice Settings</translation>
    </message>
</context>
<context>
    <name>BodyTemperature::CFrequenterUnit</name>
    <message>
        <source>NoDetails</source>
        <translation>No details available.</translation>
    </message>
    <message>
        <source>ObtainingDetailsFailed</source>
        <translation>Failed to obtain the details.</translation>
    </message>
    <message>
        <source>RegularCustomer</source>
        <translation>Frequent Visitor</translation>
    </message>
</context>
<context>
    <name>BodyTemperature::CPopUpUnit</name>
    <message>
        <source>AbnormalTemperatureAbnPnaZOG</source>
        <translation>Abnormal Temperature</translation>
    </message>
    <message>
        <source>AlarmWithoutMaskxBDZWfBH</source>
        <translation>No Mask Alarm</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Close</translation>
    </message>
</context>
<context>
    <name>BodyTemperature::CRightUnitBase</name>
    <message>
        <source>ViewDetails</source>
        <translation>View Details</translation>
    </message>
</context>
<context>
    <name>BodyTemperature::CSnapUnit</name>
    <message>
        <source>AddToFacePictureLibrary</source>
        <translation>Add to Face Picture Library</translation>
    </message>
</context>
<context>
    <name>BodyTemperature::CameraModel</name>
    <message>
        <source>All</source>
        <translation>All</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Preview</translation>
    </message>
    <message>
        <source>ViewAllCamerasInGroup</source>
        <translation>View all cameras in the group</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>EpidemicPreventionAnHjjMjujt</source>
        <translation>Body Temperature Screening</translation>
    </message>
</context>
<context>
    <name>RightNoData</name>
    <message>
        <source>NoData</source>
        <translation>No data</translation>
    </message>
</context>
<context>
    <name>WaitShowWid</name>
    <message>
        <source>Processing</source>
        <translation>Processing...</translation>
    </message>
</context>
<context>
    <name>CTypeConfigPage</name>
    <message>
        <source>FacePictureComparisonAlarm</source>
        <translation>Face comparison alarm</translation>
    </message>
    <message>
        <source>FaceTemperatureCaptureJLMWvg</source>
        <translation>Face temperature capture</translation>
    </message>
    <message>
        <source>FaceCaptureAlarm</source>
        <translation>Face capture alarm</translation>
    </message>
</context>
<context>
    <name>CPopConfigPage</name>
    <message>
        <source>AlarmPopoverConfigurrXBbmhnE</source>
        <translation>Alarm pop-up settings</translation>
    </message>
    <message>
        <source>DoNotWearAMaskPopoveDNxNGyNy</source>
        <translation>Pop up when no mask is worn</translation>
    </message>
    <message>
        <source>TemperatureAnomalyPosryPbLRo</source>
        <translation>Pop up on abnormal temperature</translation>
    </message>
    <message>
        <source>ThePopoverDisappearszDvdEEjV</source>
        <translation>Pop-up closes by itself</translation>
    </message>
    <message>
        <source>DurationOfTheFramesaaaxzZiX</source>
        <translation>Shown for (s)</translation>
    </message>
    <message>
        <source>PleaseEnterAPositiveInteger</source>
        <translation>Please enter a whole number</translation>
    </message>
    <message>
        <source>From%1To%2</source>
        <translation>from %1 to %2</translation>
    </message>
    <message>
        <source>TimeCannotBeEmpty</source>
        <translation>The duration cannot be empty</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>UndoMerge</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>close</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>SaveFailed</source>
        <translation>Saving failed</translation>
    </message>
    <message>
        <source>SaveSuccessfulYCFI2BGO</source>
        <translation>Saved</translation>
    </message>
</context>
<context>
    <name>CSoundConfigPage</name>
    <message>
        <source>VoiceConfiguration</source>
        <translation>Voice settings</translation>
    </message>
    <message>
        <source>NormalBodyTemperaturOwfVDUEE</source>
        <translation>Normal temperature</translation>
    </message>
    <message>
        <source>DysthermicSpeechazTNCbEQ</source>
        <translation>Abnormal temperature</translation>
    </message>
    <message>
        <source>VoiceWithoutMaskNVbxLdpS</source>
        <translation>No mask</translation>
    </message>
    <message>
        <source>OpenAudioFile</source>
        <translation>Open audio file</translation>
    </message>
    <message>
        <source>AudioFiles</source>
        <translation>Audio files</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>UndoMerge</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>close</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>SaveFailed</source>
        <translation>Saving failed</translation>
    </message>
    <message>
        <source>SaveSuccessfulYCFI2BGO</source>
        <translation>Saved</translation>
    </message>
</context>
</TS>
