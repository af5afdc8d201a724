#pragma once
// Availability of devices and their channels, as the alarm intake sees it.
// A process-wide QObject living on the GUI thread: Instance() may be called
// from any thread, but the signals are emitted on the GUI thread only.
// Writers (the alarm subscriptions) call SetDeviceOnline/SetChannelOnline from
// their worker threads; the change is marshalled to the GUI thread and a
// signal is emitted only when the state really changes. Getters are
// thread-safe. Unknown devices and channels read as offline.
#include <QObject>
#include <QString>
#include <map>
#include <mutex>
#include <utility>

namespace commlayer {

class CDeviceStateNotifier final : public QObject {
    Q_OBJECT
public:
    static CDeviceStateNotifier* Instance();

    bool IsDeviceOnline(const QString& deviceId) const;
    bool IsChannelOnline(const QString& deviceId, int channel) const;

    // Any thread.
    void SetDeviceOnline(const QString& deviceId, bool online);
    void SetChannelOnline(const QString& deviceId, int channel, bool online);

signals:
    void signalDeviceOnline(QString deviceId, bool online);
    void signalChannelOnline(QString deviceId, int channel, bool online);

private:
    CDeviceStateNotifier();

    mutable std::mutex m_mutex;
    std::map<QString, bool> m_devices;
    std::map<std::pair<QString, int>, bool> m_channels;
};

} // namespace commlayer
