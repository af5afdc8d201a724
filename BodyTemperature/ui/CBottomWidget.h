#pragma once
// The strip of small face-capture cards under the live view. Newest card on
// the left (the layout runs right to left behind an expanding spacer); the 21
// newest captures are kept. Filled by the information display; a card's add
// button brings the face, cut out of its picture, to the add-to-library step.
// GUI thread; the strip owns its cards.
#include <QByteArray>
#include <QFrame>
#include <QPointer>
#include <string>

#include "AlarmShowInfo.h"
#include "protocol/IntelAlarmInfo.h"

class QHBoxLayout;
class QLabel;

namespace BodyTemperature {

class CBTAddFaceWnd;
class CRightNoData;

class CBottomWidget final : public QFrame {
    Q_OBJECT
public:
    static constexpr int kMaxCards = 21;

    explicit CBottomWidget(QWidget* parent = nullptr);
    ~CBottomWidget() override;

    // Adds one capture card for the record; records without a face picture add nothing.
    void AddSnapInfo(const AlarmShowInfo& info);
    // Deletes every card.
    void Clear();
    // Placeholder hidden while the layout holds a card.
    void UpdateNoData();
    // Object name, corner label and placeholder for the empty / filled state.
    void RefreshAppearance();

    // The bytes handed to the add-face dialog: the picture unchanged for a
    // zero rectangle, else the rectangle cut out and encoded as JPEG quality 50
    // (empty when the picture does not decode).
    static QByteArray CutFace(const std::string& strFace, const protocol::PictureRect& rect);

signals:
    void SignalSnapPicClicked(const char* pPic, uint uPicLen);
    // A face is ready for the add-to-library dialog.
    void SignalFaceReady(const QByteArray& face);

public slots:
    // From a card's add button: opens the add-to-library dialog (modal) with
    // the face cut out and the device of the card's event preselected; the
    // card is held until the dialog has closed.
    void OnAddToLib(std::string strFace, protocol::PictureRect rect);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QHBoxLayout* m_pLayout = nullptr;
    bool m_bEmpty = true;
    QLabel* m_pCornerLabel = nullptr;
    CRightNoData* m_pNoData = nullptr;
    QPointer<CBTAddFaceWnd> m_pAddFaceWnd;
};

} // namespace BodyTemperature
