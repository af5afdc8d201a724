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
<context>
    <name>CStreamPlayWindowWithTask</name>
    <message>
        <source>No signal</source>
        <translation>无信号</translation>
    </message>
    <message>
        <source>Reconnecting...</source>
        <translation>正在重新连接...</translation>
    </message>
    <message>
        <source>Sound</source>
        <translation>声音</translation>
    </message>
    <message>
        <source>The camera is not available.</source>
        <translation>摄像机不可用。</translation>
    </message>
    <message>
        <source>Connecting...</source>
        <translation>正在连接...</translation>
    </message>
    <message>
        <source>Stream problem: %1</source>
        <translation>码流异常：%1</translation>
    </message>
    <message>
        <source>No video (%1). Retrying...</source>
        <translation>无视频（%1），正在重试...</translation>
    </message>
    <message>
        <source>Certificate not trusted. The video was stopped; the password was not sent.</source>
        <translation>证书不受信任。视频已停止，密码未发送。</translation>
    </message>
    <message>
        <source>Password not sent: the device asked for it without encryption.</source>
        <translation>密码未发送：设备要求以不加密的方式发送密码。</translation>
    </message>
</context>
</TS>
