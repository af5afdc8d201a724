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
</TS>
