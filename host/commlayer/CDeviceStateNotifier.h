#pragma once
// Availability of devices and their channels, as the alarm intake sees it.
// A process-wide QObject living on the GUI thread: Instance() may be called
// from any thread, but the signals are emitted on the GUI thread only.
// Writers (the alarm subscriptions) call SetDeviceOnline/SetChannelOnline from
// their worker threads; the change is marshalled to the GUI thread and a
// signal is emitted only when the state really changes. Getters are
// thread-safe. Unknown devices and channels read as offline.
//
// A device going offline may carry a reason for the operator ("alarm stream
// silent for 12 s", "transfer error 60 (...)"): DeviceProblem() returns the
// one given with the last change to offline (empty while online), and
// DeviceOfflineSinceMs() when that happened (ms since the epoch; 0 while online).
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
    QString DeviceProblem(const QString& deviceId) const;
    qint64 DeviceOfflineSinceMs(const QString& deviceId) const;

    // Any thread.
    void SetDeviceOnline(const QString& deviceId, bool online, const QString& reason = QString());
    void SetChannelOnline(const QString& deviceId, int channel, bool online);

signals:
    void signalDeviceOnline(QString deviceId, bool online);
    void signalChannelOnline(QString deviceId, int channel, bool online);

private:
    CDeviceStateNotifier();

    mutable std::mutex m_mutex;
    struct DeviceState {
        bool online = false;
        QString problem;
        qint64 offlineSinceMs = 0;
    };
    std::map<QString, DeviceState> m_devices;
    std::map<std::pair<QString, int>, bool> m_channels;
};

} // namespace commlayer
