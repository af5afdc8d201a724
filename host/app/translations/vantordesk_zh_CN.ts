<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name>QObject</name>
    <message>
        <source>EpidemicPreventionAnHjjMjujt</source>
        <translation>防疫测温</translation>
    </message>
</context>
<context>
    <name>CHostMainWindow</name>
    <message>
        <source>No module loaded</source>
        <translation>未加载模块</translation>
    </message>
</context>
</TS>
