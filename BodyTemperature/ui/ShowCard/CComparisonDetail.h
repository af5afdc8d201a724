#pragma once
// The modal detail dialog of one event, opened by "ViewDetails" of an alarm
// card or the pop-up: captured face and library face (or the scene of a
// capture) at large size, similarity, camera, time, the face attributes and,
// for a comparison, the matched person's library data.
//
// The card's show-details operation creates it with the card's parent widget
// as parent, fills it from the card's copy of the record and runs exec(); the
// dialog never changes the record and keeps no reference to the card. The
// pictures come from the record's shared CEventPictures, so a face the cards
// already decoded is not decoded again. GUI thread only.
#include <QDialog>
#include <memory>

#include "AlarmShowInfo.h"

class QLabel;

namespace BodyTemperature {

struct CComparisonDetailForm;

class CComparisonDetail final : public QDialog {
    Q_OBJECT
public:
    explicit CComparisonDetail(QWidget* parent = nullptr);
    ~CComparisonDetail() override;

    void SetAlarmInfo(const AlarmShowInfo& info);

    // Rejects every detail dialog under `root` (the page is being left or
    // torn down); their exec() calls return once control is back in their loops.
    static void CloseAllUnder(QObject* root);

private:
    void ShowPictures(const AlarmShowInfo& info, bool capture);
    void ShowBigBadge(uint32_t state, const QString& temperature, const QString& unit);

    std::unique_ptr<CComparisonDetailForm> m_ui;
    QLabel* m_pBigTemperatureLbl = nullptr;
};

} // namespace BodyTemperature
