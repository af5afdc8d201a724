#include "ui/ShowCard/ReCustomer/CPictureWidget.h"

#include <QPainter>

#include "Base/Log.h"
#include "pictures/PictureDecoder.h"

namespace BodyTemperature {

CPictureWidget::CPictureWidget(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("CPictureWidget"));
    setAttribute(Qt::WA_OpaquePaintEvent);
}

bool CPictureWidget::ShowPictureByBuffer(const QByteArray& bytes)
{
    // Decoded at the widget's size: the GUI thread never holds or scales a
    // whole scene, and painting does not scale it again.
    const QImage image = PictureDecoder::DecodeScaled(bytes, size());
    if (image.isNull()) {
        BASE_LOG_DEBUG("CPictureWidget::ShowPictureByBuffer: Load Image data failed.dwLength: %d", int(bytes.size()));
        Clear();
        return false;
    }
    m_image = image;
    m_strMessage.clear();
    update();
    return true;
}

void CPictureWidget::SetFaceRect(const QRectF& rect)
{
    m_faceRect = rect;
    update();
}

void CPictureWidget::SetMessage(const QString& text)
{
    m_strMessage = text;
    update();
}

void CPictureWidget::Clear()
{
    m_image = QImage();
    m_faceRect = QRectF();
    m_strMessage.clear();
    update();
}

void CPictureWidget::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.fillRect(rect(), QColor(14, 22, 34));
    if (!m_image.isNull()) {
        p.setRenderHint(QPainter::SmoothPixmapTransform);
        p.drawImage(rect(), m_image);
        if (!m_faceRect.isNull()) {
            const QRectF face(m_faceRect.x() * width(), m_faceRect.y() * height(), m_faceRect.width() * width(),
                m_faceRect.height() * height());
            p.setPen(QPen(QColor(6, 231, 255), 2));
            p.setBrush(Qt::NoBrush);
            p.drawRect(face);
        }
    }
    if (!m_strMessage.isEmpty()) {
        p.setPen(QColor(204, 204, 204));
        p.drawText(rect().adjusted(8, 8, -8, -8), Qt::AlignCenter | Qt::TextWordWrap, m_strMessage);
    }
}

} // namespace BodyTemperature
