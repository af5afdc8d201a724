#pragma once
// The card of a returning-person (frequent visitor) event: captured face,
// "RegularCustomer", library name, time and camera. Created and filled once by
// the information display, owned by its list (GUI thread).
#include "ui/ShowCard/CRightUnitBase.h"

namespace BodyTemperature {

class CFrequenterUnit final : public CRightUnitBase {
    Q_OBJECT
public:
    explicit CFrequenterUnit(QWidget* parent = nullptr);
    ~CFrequenterUnit() override;

    const AlarmShowInfo& info() const { return m_info; }

public slots:
    void SetAlarmInfo(const AlarmShowInfo& info, bool bLarge) override;
    void SetFrequenterInfo(const AlarmShowInfo& info) override;
    void ShowDetails() override;

private:
    AlarmShowInfo m_info;
    QLabel* m_pReCustomer = nullptr;
    QLabel* m_pFacelibName = nullptr;
};

} // namespace BodyTemperature
