#pragma once
// Common base of the event cards of the right-hand list (alarm card, pop-up,
// returning-person card): face picture, time, camera and a "ViewDetails"
// button. Cards are created, filled once and owned by the information display
// (GUI thread); each keeps its own copy of the record it shows.
#include <QFrame>

#include "AlarmShowInfo.h"

class QLabel;
class QPushButton;

namespace BodyTemperature {

class CRightUnitBase : public QFrame {
    Q_OBJECT
public:
    explicit CRightUnitBase(QWidget* parent = nullptr);
    ~CRightUnitBase() override;

public slots:
    // Fills an alarm-type card; bLarge selects the big pictures of the pop-up.
    virtual void SetAlarmInfo(const AlarmShowInfo& info, bool bLarge) = 0;
    // Fills a returning-person card.
    virtual void SetFrequenterInfo(const AlarmShowInfo& info) = 0;
    // Opens the detail view of the card's event.
    virtual void ShowDetails() = 0;

    void onDetailesBtnClicked();

protected:
    QLabel* m_pFacePicLabel = nullptr;
    QLabel* m_pTimeLabel = nullptr;
    QLabel* m_pCameraLabel = nullptr;
    QPushButton* m_pDetailBtn = nullptr;
};

} // namespace BodyTemperature
