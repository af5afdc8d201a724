#include "commlayer/CDeviceStateNotifier.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QMetaObject>
#include <QThread>

namespace commlayer {

CDeviceStateNotifier* CDeviceStateNotifier::Instance()
{
    // Deliberately never destroyed: worker threads of other libraries may
    // still report during process exit.
    static CDeviceStateNotifier* s_instance = new CDeviceStateNotifier();
    return s_instance;
}

CDeviceStateNotifier::CDeviceStateNotifier()
{
    if (QCoreApplication::instance() && thread() != QCoreApplication::instance()->thread())
        moveToThread(QCoreApplication::instance()->thread());
}

bool CDeviceStateNotifier::IsDeviceOnline(const QString& deviceId) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    auto it = m_devices.find(deviceId);
    return it != m_devices.end() && it->second.online;
}

QString CDeviceStateNotifier::DeviceProblem(const QString& deviceId) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    auto it = m_devices.find(deviceId);
    return it != m_devices.end() ? it->second.problem : QString();
}

qint64 CDeviceStateNotifier::DeviceOfflineSinceMs(const QString& deviceId) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    auto it = m_devices.find(deviceId);
    return it != m_devices.end() ? it->second.offlineSinceMs : 0;
}

bool CDeviceStateNotifier::IsChannelOnline(const QString& deviceId, int channel) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    auto it = m_channels.find({deviceId, channel});
    return it != m_channels.end() && it->second;
}

void CDeviceStateNotifier::SetDeviceOnline(const QString& deviceId, bool online, const QString& reason)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        DeviceState& state = m_devices[deviceId];
        if (state.online == online) {
            // Still offline, perhaps for another reason now: no signal, but the reason is kept.
            if (!online && !reason.isEmpty())
                state.problem = reason;
            if (!online && state.offlineSinceMs == 0)
                state.offlineSinceMs = QDateTime::currentMSecsSinceEpoch();
            return;
        }
        state.online = online;
        state.problem = online ? QString() : reason;
        state.offlineSinceMs = online ? 0 : QDateTime::currentMSecsSinceEpoch();
    }
    QMetaObject::invokeMethod(this, [this, deviceId, online]() {
        emit signalDeviceOnline(deviceId, online);
    }, QThread::currentThread() == thread() ? Qt::DirectConnection : Qt::QueuedConnection);
}

void CDeviceStateNotifier::SetChannelOnline(const QString& deviceId, int channel, bool online)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        auto key = std::make_pair(deviceId, channel);
        auto it = m_channels.find(key);
        if (it != m_channels.end() && it->second == online)
            return;
        if (it == m_channels.end() && !online) {
            m_channels[key] = false;
            return;
        }
        m_channels[key] = online;
    }
    QMetaObject::invokeMethod(this, [this, deviceId, channel, online]() {
        emit signalChannelOnline(deviceId, channel, online);
    }, QThread::currentThread() == thread() ? Qt::DirectConnection : Qt::QueuedConnection);
}

} // namespace commlayer
