#pragma once
// The large pop-up card raised for an abnormal temperature or a face without
// a mask. One instance, created on the first such event and refilled for each
// later one, owned by the information display (GUI thread), which places it,
// shows it and closes it after the configured duration; the card itself closes
// only through its close button (after signalClose()).
#include "ui/ShowCard/CAlarmUnit.h"

class QHBoxLayout;

namespace BodyTemperature {

class CPopUpUnit final : public CAlarmUnit {
    Q_OBJECT
public:
    explicit CPopUpUnit(QWidget* parent = nullptr);
    ~CPopUpUnit() override;

    QLabel* titleLabel() const { return m_pTitleLabel; }

public slots:
    void SetAlarmInfo(const AlarmShowInfo& info, bool bLarge) override;
    void onClose();

signals:
    void signalClose();

private:
    void applyAlarmColour();
    void placeWidgets(bool capture);
    void showCaptureFigures();
    void showComparisonFigures();
    void repolish();

    QLabel* m_pTitleLabel = nullptr;
    QPushButton* m_pCloseBtn = nullptr;
    QLabel* m_pBigTemperatureLabel = nullptr;
    QLabel* m_pBigMaskIconLabel = nullptr;
    QHBoxLayout* m_pMaskRowLayout = nullptr;
};

} // namespace BodyTemperature
