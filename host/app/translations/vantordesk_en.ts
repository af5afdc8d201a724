<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>QObject</name>
    <message>
        <source>EpidemicPreventionAnHjjMjujt</source>
        <translation>Epidemic prevention</translation>
    </message>
</context>
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
</context>
</TS>
