#pragma once
// The alarm card of the right-hand list (and the base of the pop-up card).
#include "ui/ShowCard/CRightUnitBase.h"

namespace BodyTemperature {

class CAlarmUnit : public CRightUnitBase {
    Q_OBJECT
public:
    explicit CAlarmUnit(QWidget* parent = nullptr);
    ~CAlarmUnit() override;

    // Marks the card as a plain capture (kinds 3 and 4) before it is filled.
    void SetIsSnap(bool bSnap) { m_bIsSnap = bSnap; }
    const AlarmShowInfo& info() const { return m_info; }

    void SetAlarmInfo(const AlarmShowInfo& info, bool bLarge) override;
    void SetFrequenterInfo(const AlarmShowInfo& info) override;
    void ShowDetails() override;

protected:
    AlarmShowInfo m_info;
    bool m_bIsSnap = false;
};

} // namespace BodyTemperature
