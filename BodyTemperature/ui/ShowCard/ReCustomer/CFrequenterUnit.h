#pragma once
// The card of a returning-person (frequent visitor) event.
#include "ui/ShowCard/CRightUnitBase.h"

namespace BodyTemperature {

class CFrequenterUnit final : public CRightUnitBase {
    Q_OBJECT
public:
    explicit CFrequenterUnit(QWidget* parent = nullptr);
    ~CFrequenterUnit() override;

    void SetAlarmInfo(const AlarmShowInfo& info, bool bLarge) override;
    void SetFrequenterInfo(const AlarmShowInfo& info) override;
    void ShowDetails() override;
    const AlarmShowInfo& info() const { return m_info; }

private:
    AlarmShowInfo m_info;
};

} // namespace BodyTemperature
