#include "ui/ShowCard/ReCustomer/CHFPDPicLabel.h"

#include <QMouseEvent>
#include <QPainter>
#include <QVariant>

namespace BodyTemperature {

namespace {
constexpr int kBand = 26;  // time band under the picture
}

CHFPDPicLabel::CHFPDPicLabel(unsigned int uPicLsh, const QString& strTime, QWidget* parent)
    : QWidget(parent), m_uPicLsh(uPicLsh), m_strTime(strTime)
{
    setObjectName(QStringLiteral("CHFPDPicLabel"));
    // Kept exactly as the style was given, misspelled property and all: it
    // has no effect, the thumbnail paints its own background.
    setStyleSheet(QStringLiteral(
        "CHFPDPicLabel{boder-image:url(:/detailBk/Images/MixedTargetDetectionAlarm/detailBk/HFPD_Small.png);}"));
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    Reset(uPicLsh, strTime);
}

void CHFPDPicLabel::Reset(unsigned int uPicLsh, const QString& strTime)
{
    m_uPicLsh = uPicLsh;
    m_strTime = strTime;
    m_picture = QPixmap();
    m_strMessage = tr("Loading");
    m_bChecked = false;
    setProperty("thumbState", QStringLiteral("loading"));
    update();
}

void CHFPDPicLabel::SetPicture(const QPixmap& picture)
{
    m_picture = picture;
    m_strMessage.clear();
    setProperty("thumbState", QStringLiteral("loaded"));
    update();
}

void CHFPDPicLabel::SetFailed(const QString& message)
{
    m_picture = QPixmap();
    m_strMessage = message;
    setProperty("thumbState", QStringLiteral("failed"));
    update();
}

void CHFPDPicLabel::SetChecked(bool checked)
{
    if (m_bChecked == checked)
        return;
    m_bChecked = checked;
    update();
    emit SignalPicCheckStateChanged();
}

void CHFPDPicLabel::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    const QRect area = rect();
    const QRect pic = area.adjusted(0, 0, 0, -kBand);
    p.fillRect(area, QColor(22, 33, 48));
    if (!m_picture.isNull()) {
        // Fill the tile, cropping the picture's longer side around its centre.
        const QSize scaled = m_picture.size().scaled(pic.size(), Qt::KeepAspectRatioByExpanding);
        const QRect source(QPoint((scaled.width() - pic.width()) / 2, (scaled.height() - pic.height()) / 2) * m_picture.width()
                / qMax(1, scaled.width()),
            pic.size() * m_picture.width() / qMax(1, scaled.width()));
        p.setRenderHint(QPainter::SmoothPixmapTransform);
        p.drawPixmap(pic, m_picture, source);
    } else {
        p.fillRect(pic, QColor(30, 44, 62));
        p.setPen(m_strMessage == tr("Loading") ? QColor(140, 150, 165) : QColor(230, 120, 110));
        p.drawText(pic.adjusted(6, 6, -6, -6), Qt::AlignCenter | Qt::TextWordWrap, m_strMessage);
    }
    p.fillRect(QRect(0, area.height() - kBand, area.width(), kBand), QColor(10, 17, 27));
    p.setPen(QColor(204, 204, 204));
    QFont f = font();
    f.setPixelSize(13);
    p.setFont(f);
    p.drawText(QRect(0, area.height() - kBand, area.width(), kBand), Qt::AlignCenter, m_strTime);
    const QColor edge = m_bChecked ? QColor(6, 231, 255) : m_bHover ? QColor(90, 140, 180) : QColor(40, 58, 80);
    p.setPen(QPen(edge, m_bChecked ? 3 : 1));
    p.setBrush(Qt::NoBrush);
    const int inset = m_bChecked ? 1 : 0;
    p.drawRect(area.adjusted(inset, inset, -1 - inset, -1 - inset));
}

void CHFPDPicLabel::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        emit SignalClicked(m_uPicLsh);
    QWidget::mousePressEvent(event);
}

void CHFPDPicLabel::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        emit SignalDoubleClicked(m_uPicLsh);
    QWidget::mouseDoubleClickEvent(event);
}

void CHFPDPicLabel::enterEvent(QEvent* event)
{
    m_bHover = true;
    update();
    emit SignalEnterEvent();
    QWidget::enterEvent(event);
}

void CHFPDPicLabel::leaveEvent(QEvent* event)
{
    m_bHover = false;
    update();
    QWidget::leaveEvent(event);
}

} // namespace BodyTemperature
