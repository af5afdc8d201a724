#include "ui/CBottomWidget.h"

#include <QBuffer>
#include <QHBoxLayout>
#include <QLabel>
#include <QLayoutItem>
#include <QPixmap>
#include <QResizeEvent>
#include <QSpacerItem>
#include <QStyle>

#include "pictures/FaceRectClamp.h"
#include "ui/AddIntoFaceLib/CBTAddFaceWnd.h"
#include "ui/CRightNoData.h"
#include "ui/ShowCard/CCardHold.h"
#include "ui/ShowCard/CSnapUnit.h"
#include "ui/ShowCard/CardShift.h"

namespace BodyTemperature {

namespace {
const char* const kCornerStyle =
    "QLabel\n{\n\tborder-image:url(:/rightBottom/Images/BodyTemperature/rightBottom/NoDataCorner.png);\n}";
const char* const kNoDataStyle =
    "QWidget#frame\n{\n\tbackground-color:rgba(255,255,255, 0.1);\n}QLabel#label\n{\nborder-image:url(:/rightBottom/"
    "Images/BodyTemperature/rightBottom/NoData.png);}QLabel#m_pNoDataText\n{\nfont-family: Microsoft YaHei;font-size: "
    "12px;color: rgba(255, 255, 255, 0.32);letter-spacing: 0;text-align: center;}";

void repolish(QWidget* w)
{
    w->style()->unpolish(w);
    w->style()->polish(w);
}
} // namespace

CBottomWidget::CBottomWidget(QWidget* parent) : QFrame(parent)
{
    setObjectName(QStringLiteral("m_pBottomWidgetNoData"));
    m_pLayout = new QHBoxLayout(this);
    m_pLayout->setDirection(QBoxLayout::RightToLeft);
    m_pLayout->setContentsMargins(4, 4, 0, 0);
    m_pLayout->setSpacing(8);
    m_pLayout->setSizeConstraint(QLayout::SetMaximumSize);
    // Cards always follow the spacer, so they line up from the left edge.
    m_pLayout->addItem(new QSpacerItem(1, 1, QSizePolicy::Expanding, QSizePolicy::Minimum));

    m_pCornerLabel = new QLabel(this);
    m_pCornerLabel->setObjectName(QStringLiteral("cornerLabel"));
    m_pCornerLabel->setFixedSize(16, 16);
    m_pCornerLabel->setStyleSheet(QString::fromLatin1(kCornerStyle));

    m_pNoData = new CRightNoData(this);
    m_pNoData->setStyleSheet(QString::fromLatin1(kNoDataStyle));
    RefreshAppearance();
}

CBottomWidget::~CBottomWidget() = default;

void CBottomWidget::AddSnapInfo(const AlarmShowInfo& info)
{
    const protocol::IntelAlarmFaceInfo* face = info.faceBlock();
    if (face == nullptr)
        return;
    if (face->bkPic.isEmpty() && face->SubPic.isEmpty())
        return;

    auto* card = new CSnapUnit(this);
    connect(card, &CSnapUnit::SignalAddToLib, this, &CBottomWidget::OnAddToLib);
    connect(card, &CSnapUnit::SignalSnapPicClicked, this, &CBottomWidget::SignalSnapPicClicked);
    card->SetAlarmInfo(info);

    if (m_bEmpty) {
        m_bEmpty = false;
        RefreshAppearance();
    }
    CardShift::InsertNewest(m_pLayout, card);
    if (m_pLayout->count() > kMaxCards + 1) {
        QLayoutItem* oldest = m_pLayout->takeAt(1);
        RetireCard(oldest->widget());
        delete oldest;
    }
    UpdateNoData();
}

void CBottomWidget::Clear()
{
    while (m_pLayout->count() > 1) {
        QLayoutItem* item = m_pLayout->takeAt(1);
        delete item->widget();
        delete item;
    }
    UpdateNoData();
}

void CBottomWidget::UpdateNoData()
{
    m_pNoData->setVisible(m_pLayout->count() <= 1);
}

void CBottomWidget::RefreshAppearance()
{
    const QString name = m_bEmpty ? QStringLiteral("m_pBottomWidgetNoData") : QStringLiteral("m_pBottomWidget");
    if (objectName() != name) {
        setObjectName(name);
        repolish(this);
        // The placeholder's backdrop is translucent; a strip of cards paints its own.
        CardShift::SetSolidBackdrop(this, !m_bEmpty);
    }
    if (m_bEmpty) {
        m_pNoData->resize(width() - 1, height() - 1);
        m_pNoData->move(0, 0);
        m_pNoData->show();
        m_pCornerLabel->move(width() - m_pCornerLabel->width() - 1, height() - m_pCornerLabel->height() - 1);
        m_pCornerLabel->raise();
        m_pCornerLabel->show();
    } else {
        m_pNoData->hide();
        m_pCornerLabel->hide();
    }
}

void CBottomWidget::resizeEvent(QResizeEvent* event)
{
    QFrame::resizeEvent(event);
    RefreshAppearance();
}

QByteArray CBottomWidget::CutFace(const std::string& strFace, const protocol::PictureRect& rect)
{
    const QByteArray bytes = QByteArray::fromStdString(strFace);
    if (rect.isNull())
        return bytes;
    QPixmap picture;
    if (!picture.loadFromData(bytes))
        return {};
    const QRect inside = FaceRectInPixels(picture.size(), rect);
    const QPixmap cut = inside.isEmpty() ? picture : picture.copy(inside);
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    if (cut.isNull() || !cut.save(&buffer, "JPEG", 50))
        return {};
    return jpeg;
}

void CBottomWidget::OnAddToLib(std::string strFace, protocol::PictureRect rect)
{
    // One add-face dialog at a time; a running one is never replaced under its exec().
    if (m_pAddFaceWnd && m_pAddFaceWnd->isVisible())
        return;
    auto* card = qobject_cast<CSnapUnit*>(sender());
    const CCardHold hold(card);
    std::string deviceId;
    if (card)
        deviceId = card->info().deviceID.empty() ? card->info().strID : card->info().deviceID;
    if (m_pAddFaceWnd)
        m_pAddFaceWnd->deleteLater();
    m_pAddFaceWnd = new CBTAddFaceWnd(this);

    if (strFace.empty())
        return;
    const QByteArray cut = CutFace(strFace, rect);
    // An undecodable picture gives an empty cut, which the dialog refuses.
    if (cut.isEmpty())
        return;
    emit SignalFaceReady(cut);
    QPointer<CBTAddFaceWnd> dlg = m_pAddFaceWnd;
    if (dlg->SetFacePicture(cut) && dlg->SetDevice(deviceId) && dlg)
        dlg->exec();
}

} // namespace BodyTemperature
