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
        <source>TurnOnoffAlarmDisplaHyBGelcI</source>
        <translation>Turn Alarm Display On/Off</translation>
    </message>
    <message>
        <source>VoiceConfiguration</source>
        <translation>Voice Settings</translation>
    </message>
</context>
<context>
    <name>BodyTemperature::CComparisonDetail</name>
    <message>
        <source>Adult</source>
        <translation>Adult</translation>
    </message>
    <message>
        <source>AgeGroup</source>
        <translation>Age group</translation>
    </message>
    <message>
        <source>Angry</source>
        <translation>Angry</translation>
    </message>
    <message>
        <source>Beard</source>
        <translation>Beard</translation>
    </message>
    <message>
        <source>Child</source>
        <translation>Child</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>Contact</source>
        <translation>Contact</translation>
    </message>
    <message>
        <source>DateOfBirth</source>
        <translation>Date of birth</translation>
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
        <source>Disgusted</source>
        <translation>Disgusted</translation>
    </message>
    <message>
        <source>Elderly</source>
        <translation>Elderly</translation>
    </message>
    <message>
        <source>FacePictureComparisonInformation</source>
        <translation>Face Comparison Details</translation>
    </message>
    <message>
        <source>FaceSnapDetail</source>
        <translation>Face Capture Details</translation>
    </message>
    <message>
        <source>FaceTemperatureCaptuTpwUkAkA</source>
        <translation>Temperature Capture Details</translation>
    </message>
    <message>
        <source>FacialExpression</source>
        <translation>Expression</translation>
    </message>
    <message>
        <source>Female</source>
        <translation>Female</translation>
    </message>
    <message>
        <source>GauzeMask</source>
        <translation>Mask</translation>
    </message>
    <message>
        <source>Gender</source>
        <translation>Gender</translation>
    </message>
    <message>
        <source>Happy</source>
        <translation>Happy</translation>
    </message>
    <message>
        <source>IDNo</source>
        <translation>ID number</translation>
    </message>
    <message>
        <source>IDType</source>
        <translation>ID type</translation>
    </message>
    <message>
        <source>Infant</source>
        <translation>Infant</translation>
    </message>
    <message>
        <source>ListName</source>
        <translation>List</translation>
    </message>
    <message>
        <source>Male</source>
        <translation>Male</translation>
    </message>
    <message>
        <source>Middle-aged</source>
        <translation>Middle-aged</translation>
    </message>
    <message>
        <source>MiddleAndOldAge</source>
        <translation>Middle-aged or older</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>NoGauzeMask</source>
        <translation>No Mask</translation>
    </message>
    <message>
        <source>NotWearGlasses</source>
        <translation>No glasses</translation>
    </message>
    <message>
        <source>Panic</source>
        <translation>Panic</translation>
    </message>
    <message>
        <source>PersonName</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Poker-faced</source>
        <translation>Neutral</translation>
    </message>
    <message>
        <source>Sorry</source>
        <translation>Sad</translation>
    </message>
    <message>
        <source>Suprised</source>
        <translation>Surprised</translation>
    </message>
    <message>
        <source>Teenage</source>
        <translation>Teenager</translation>
    </message>
    <message>
        <source>Teenagers</source>
        <translation>Adolescent</translation>
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
        <source>TemperatureState</source>
        <translation>Temperature</translation>
    </message>
    <message>
        <source>WearAHat</source>
        <translation>Hat</translation>
    </message>
    <message>
        <source>WearGlasses</source>
        <translation>Glasses</translation>
    </message>
    <message>
        <source>WearingAMask</source>
        <translation>Masked</translation>
    </message>
    <message>
        <source>WithSunglasses</source>
        <translation>Sunglasses</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>Youth</source>
        <translation>Youth</translation>
    </message>
    <message>
        <source>xYyCxaTr</source>
        <translation>K</translation>
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
<context>
    <name>BodyTemperature::CHFPDShowDetailWid</name>
    <message>
        <source>AddToFacePictureLibrary</source>
        <translation>Add to face picture library</translation>
    </message>
    <message>
        <source>AgeChild</source>
        <translation>Child</translation>
    </message>
    <message>
        <source>AgeGroup</source>
        <translation>Age group</translation>
    </message>
    <message>
        <source>AgeInfant</source>
        <translation>Infant</translation>
    </message>
    <message>
        <source>AgeKid</source>
        <translation>Kid</translation>
    </message>
    <message>
        <source>AgeMiddle</source>
        <translation>Middle-aged</translation>
    </message>
    <message>
        <source>AgeMiddleAged</source>
        <translation>Middle-aged</translation>
    </message>
    <message>
        <source>AgeOld</source>
        <translation>Elderly</translation>
    </message>
    <message>
        <source>AgePrime</source>
        <translation>Prime of life</translation>
    </message>
    <message>
        <source>AgeTeenager</source>
        <translation>Teenager</translation>
    </message>
    <message>
        <source>AgeYoung</source>
        <translation>Young</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Close</translation>
    </message>
    <message>
        <source>Contact</source>
        <translation>Contact</translation>
    </message>
    <message>
        <source>DontWearAHatsatafxnG</source>
        <translation>No hat</translation>
    </message>
    <message>
        <source>DontWearGlassesmIlCdjmf</source>
        <translation>No glasses</translation>
    </message>
    <message>
        <source>Female</source>
        <translation>Female</translation>
    </message>
    <message>
        <source>Gender</source>
        <translation>Gender</translation>
    </message>
    <message>
        <source>Glasses</source>
        <translation>Glasses</translation>
    </message>
    <message>
        <source>Hat</source>
        <translation>Hat</translation>
    </message>
    <message>
        <source>IncorrectPortNoPleaseChangeNATInRemoteConfiguration</source>
        <translation>Picture download failed: the port may be wrong; please check the NAT settings in the remote configuration</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Loading...</translation>
    </message>
    <message>
        <source>Male</source>
        <translation>Male</translation>
    </message>
    <message>
        <source>Mask</source>
        <translation>Mask</translation>
    </message>
    <message>
        <source>NoDetails</source>
        <translation>No details</translation>
    </message>
    <message>
        <source>NoGauzeMask</source>
        <translation>No mask</translation>
    </message>
    <message>
        <source>PersonInLibrary</source>
        <translation>Person in library</translation>
    </message>
    <message>
        <source>PictureDamaged</source>
        <translation>Picture cannot be shown</translation>
    </message>
    <message>
        <source>PictureDownloadFailed</source>
        <translation>Picture download failed</translation>
    </message>
    <message>
        <source>RegularCustomerDetails</source>
        <translation>Regular customer details</translation>
    </message>
    <message>
        <source>TargetAttributes</source>
        <translation>Target attributes</translation>
    </message>
    <message>
        <source>TheName</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unknown</translation>
    </message>
    <message>
        <source>WearAHelmetvCkgZAKV</source>
        <translation>Wears a helmet</translation>
    </message>
    <message>
        <source>WearGlasses</source>
        <translation>Wears glasses</translation>
    </message>
    <message>
        <source>WearingAMask</source>
        <translation>Wears a mask</translation>
    </message>
    <message>
        <source>WearingHat</source>
        <translation>Wears a hat</translation>
    </message>
    <message>
        <source>WithSunglasses</source>
        <translation>Sunglasses</translation>
    </message>
</context>
<context>
    <name>BodyTemperature::CTargetPageController</name>
    <message>
        <source>/%1</source>
        <translation>/ %1</translation>
    </message>
    <message>
        <source>AllIn</source>
        <translation>Total</translation>
    </message>
    <message>
        <source>FirstPage</source>
        <translation>First page</translation>
    </message>
    <message>
        <source>GoTo</source>
        <translation>Go to</translation>
    </message>
    <message>
        <source>LastPage</source>
        <translation>Last page</translation>
    </message>
    <message>
        <source>NextPage</source>
        <translation>Next page</translation>
    </message>
    <message>
        <source>Page</source>
        <translation> pages</translation>
    </message>
    <message>
        <source>PrevPage</source>
        <translation>Previous page</translation>
    </message>
    <message>
        <source>Records</source>
        <translation>records</translation>
    </message>
</context>
<context>
    <name>BodyTemperature::CHFPDPicLabel</name>
    <message>
        <source>Loading</source>
        <translation>Loading...</translation>
    </message>
</context>
</TS>
