#pragma once
// The large pop-up card raised for an abnormal temperature or a missing mask.
// One instance, reused, owned by the information display.
#include "ui/ShowCard/CAlarmUnit.h"

namespace BodyTemperature {

class CPopUpUnit final : public CAlarmUnit {
    Q_OBJECT
public:
    explicit CPopUpUnit(QWidget* parent = nullptr);
    ~CPopUpUnit() override;

    void SetAlarmInfo(const AlarmShowInfo& info, bool bLarge) override;

signals:
    void signalClose();

public slots:
    void onClose();
};

} // namespace BodyTemperature
