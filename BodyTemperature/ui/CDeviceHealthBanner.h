#pragma once
// The banner over the live view that names each device whose alarm stream is
// lost and how long it has been silent; it goes away by itself when the
// streams come back. Follows the host's device-state notifications
// (commlayer::CDeviceStateNotifier), and the site record's state (since when
// it cannot take this station's events, and why). Created by the information display,
// child of the live-view frame; GUI thread.
#include <QFrame>

#include "alarms/CDeviceSilence.h"

class QLabel;
class QTimer;

namespace BodyTemperature {

class CDeviceHealthBanner final : public QFrame {
    Q_OBJECT
public:
    explicit CDeviceHealthBanner(QWidget* parent);

    void OnDeviceOnline(const QString& deviceId, bool online);
    // state: CSiteReplicator::State (0 reachable); sinceMs: ms since 1970.
    void OnSiteRecord(int state, qint64 sinceMs);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void refresh();
    void place();

    CDeviceSilence m_silence;
    int m_siteState = 0;
    qint64 m_siteSinceMs = 0;
    QLabel* m_pText = nullptr;
    QTimer* m_pTick = nullptr;
};

} // namespace BodyTemperature
