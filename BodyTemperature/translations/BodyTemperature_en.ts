<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
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
