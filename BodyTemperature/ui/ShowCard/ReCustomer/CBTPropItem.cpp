#include "ui/ShowCard/ReCustomer/CBTPropItem.h"

#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QVBoxLayout>

#include "ui/ShowCard/ReCustomer/CHFPDAttributes.h"

namespace BodyTemperature {

namespace {
const QString kFrameNor =
    QStringLiteral("QWidget#m_PicLabel{border-image: url(:/publicIcon/Images/public/PublicIcon/prop_nor.png);}");
const QString kFrameSel =
    QStringLiteral("QWidget#m_PicLabel{border-image: url(:/publicIcon/Images/public/PublicIcon/prop_sel.png);}");
constexpr int kIcon = 28;
} // namespace

CBTPropItem::CBTPropItem(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("CBTPropItem"));
    auto* outer = new QHBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    m_PicLabel = new QWidget(this);
    m_PicLabel->setObjectName(QStringLiteral("m_PicLabel"));
    m_PicLabel->setAttribute(Qt::WA_StyledBackground);
    m_PicLabel->setStyleSheet(kFrameNor);
    outer->addWidget(m_PicLabel);

    auto* row = new QHBoxLayout(m_PicLabel);
    row->setContentsMargins(10, 6, 10, 6);
    row->setSpacing(10);
    m_pIcon = new QLabel(m_PicLabel);
    m_pIcon->setObjectName(QStringLiteral("m_pIcon"));
    m_pIcon->setFixedSize(kIcon, kIcon);
    m_pIcon->setAlignment(Qt::AlignCenter);
    m_pIcon->hide();
    row->addWidget(m_pIcon);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(2);
    m_pLabelTitle = new QLabel(m_PicLabel);
    m_pLabelTitle->setObjectName(QStringLiteral("m_pLabelTitle"));
    m_pLabelTitle->setStyleSheet(QStringLiteral("font-size:12px;color:#999999;"));
    m_pLabelTitleSel = new QLabel(m_PicLabel);
    m_pLabelTitleSel->setObjectName(QStringLiteral("m_pLabelTitleSel"));
    texts->addWidget(m_pLabelTitle);
    texts->addWidget(m_pLabelTitleSel);
    row->addLayout(texts, 1);
}

void CBTPropItem::SetTitle(const QString& title)
{
    m_pLabelTitle->setText(title);
}

void CBTPropItem::SetValue(const QString& text, const QString& iconPath)
{
    m_pLabelTitleSel->setText(text);
    // Restyling and SVG rendering cost milliseconds: only on a change.
    if (!m_pIcon->styleSheet().isEmpty())
        m_pIcon->setStyleSheet(QString());
    if (iconPath == m_strIcon)
        return;
    m_strIcon = iconPath;
    m_pIcon->setPixmap(iconPath.isEmpty() ? QPixmap() : QIcon(iconPath).pixmap(kIcon, kIcon));
    m_pIcon->setVisible(!iconPath.isEmpty());
}

void CBTPropItem::SetColorCode(int code)
{
    m_strIcon.clear();
    m_pIcon->setPixmap(QPixmap());
    m_pIcon->setStyleSheet(QStringLiteral("border-radius:4px;background-color:")
        + QString::fromStdString(CHFPDAttributes::ColourValue(code)));
    m_pIcon->setVisible(true);
}

void CBTPropItem::SetSelected(bool selected)
{
    m_bSelected = selected;
    // A frame style changed before the item is first shown is not drawn
    // (the first one is): the frame is applied from showEvent then.
    if (isVisible())
        applyFrame();
}

void CBTPropItem::showEvent(QShowEvent* event)
{
    applyFrame();
    QWidget::showEvent(event);
}

void CBTPropItem::applyFrame()
{
    // Restyling costs milliseconds: only on a change.
    const QString& frame = m_bSelected ? kFrameSel : kFrameNor;
    if (m_PicLabel->styleSheet() != frame)
        m_PicLabel->setStyleSheet(frame);
}

void CBTPropItem::SetValueColor(const QColor& color)
{
    m_pLabelTitleSel->setStyleSheet(QStringLiteral("color:rgba(%1, %2, %3);")
                                        .arg(color.red())
                                        .arg(color.green())
                                        .arg(color.blue()));
}

} // namespace BodyTemperature
