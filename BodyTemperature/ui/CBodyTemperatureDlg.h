#pragma once
// The dashboard page: camera tree on the left, information display on the
// right, statistics title over it. Creates the alarm listener and routes its
// records to the information display. GUI thread.
#include <QByteArray>
#include <QList>
#include <QStringList>
#include <QWidget>

#include "publicdatacontroller/IntelAlarmEventInfo.h"

namespace BodyTemperature {

class AlarmListener;

class CBodyTemperatureDlg : public QWidget {
    Q_OBJECT
public:
    explicit CBodyTemperatureDlg(QWidget* parent = nullptr);
    ~CBodyTemperatureDlg() override;

    // Saved-state forwards of the page widget.
    QList<QByteArray> GetPlayingCameraIds() const;
    void StopAllLiveView();
    void RestorePlayingCameras(const QStringList& cameraIds);
    void SetAlarmListening(bool on);

    AlarmListener* alarmListener() const { return m_pAlarmListener; }

public slots:
    void onNewAlarmComing(publicdatacontroller::IntelAlarmEventInfo struAlarmInfo);

private:
    AlarmListener* m_pAlarmListener = nullptr;
};

} // namespace BodyTemperature
