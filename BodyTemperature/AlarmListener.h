#pragma once
// Subscribes to the host's AlarmTransfer while the page is active, keeps the
// six face/temperature event codes the dashboard shows, drops a repeat of one
// of the last 20 events passed on (by the first face's facePicID) and
// re-emits each kept event as a full copy. GUI thread only.
#include <QList>
#include <QObject>

#include "publicdatacontroller/IntelAlarmEventInfo.h"

namespace BodyTemperature {

class AlarmListener final : public QObject {
    Q_OBJECT
public:
    explicit AlarmListener(QObject* parent = nullptr);
    ~AlarmListener() override;

    void setAlarmListening(bool on);
    bool isListening() const { return m_bConnected; }
    const QList<int>& recentEventIds() const { return m_recentEventIds; }

    static bool isAcceptedEventType(uint32_t eventType);

signals:
    void signalNewAlarmComing(publicdatacontroller::IntelAlarmEventInfo struAlarmInfo);

public slots:
    void OnClientAlarmEvent(void* pAlarm);

private:
    bool m_bConnected = false;
    QList<int> m_recentEventIds;
};

} // namespace BodyTemperature
