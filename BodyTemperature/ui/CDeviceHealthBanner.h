#pragma once
// The banner over the live view that names each device whose alarm stream is
// lost and how long it has been silent; it goes away by itself when the
// streams come back. Follows the host's device-state notifications
// (commlayer::CDeviceStateNotifier). Created by the information display,
// child of the live-view frame; GUI thread.
#include <QFrame>

#include "CDeviceSilence.h"

class QLabel;
class QTimer;

namespace BodyTemperature {

class CDeviceHealthBanner final : public QFrame {
    Q_OBJECT
public:
    explicit CDeviceHealthBanner(QWidget* parent);

    void OnDeviceOnline(const QString& deviceId, bool online);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void refresh();
    void place();

    CDeviceSilence m_silence;
    QLabel* m_pText = nullptr;
    QTimer* m_pTick = nullptr;
};

} // namespace BodyTemperature
