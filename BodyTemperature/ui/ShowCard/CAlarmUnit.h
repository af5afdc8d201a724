#pragma once
// The alarm card of the right-hand list: captured face beside the matched
// library face (or a default), title, similarity, mask text and icon,
// temperature badge, time, camera and "ViewDetails", coloured by the record's
// colour level. Also the base of the pop-up card. Created and filled once by
// the information display, owned by its list (GUI thread).
#include <QList>
#include <QPixmap>

#include "ui/ShowCard/CRightUnitBase.h"

class QFrame;

namespace BodyTemperature {

class CAlarmUnit : public CRightUnitBase {
    Q_OBJECT
public:
    explicit CAlarmUnit(QWidget* parent = nullptr);
    ~CAlarmUnit() override;

    // Marks the card as a plain capture (the capture kinds) before it is filled.
    void SetIsSnap(bool bSnap) { m_bIsSnap = bSnap; }
    const AlarmShowInfo& info() const { return m_info; }

public slots:
    void SetAlarmInfo(const AlarmShowInfo& info, bool bLarge) override;
    void SetFrequenterInfo(const AlarmShowInfo& info) override;
    void ShowDetails() override;

protected:
    static QString UnitText(uint32_t unitCode);
    // Geometry and colours of the small card (the pop-up has its own).
    void ApplySmallLayout();
    void ShowName(const protocol::PeopleInfo& people, bool bLarge);
    // The captured face and, for a comparison, the library face; false when
    // one does not decode (the picture labels are then left untouched).
    bool ShowPictures(const protocol::IntelAlarmFaceInfo& block, bool bLarge);

    AlarmShowInfo m_info;
    QList<QPixmap> m_listPic;  // shown pictures: 0 captured face, 1 library face
    QLabel* m_pSecondPicLabel = nullptr;
    QLabel* m_pNameLabel = nullptr;
    QLabel* m_pSimilarityLabel = nullptr;
    QLabel* m_pMaskTextLabel = nullptr;
    QLabel* m_pTemperatureLabel = nullptr;
    QLabel* m_pMaskIconLabel = nullptr;
    QFrame* m_pMaskRow = nullptr;
    bool m_bIsSnap = false;
};

} // namespace BodyTemperature
