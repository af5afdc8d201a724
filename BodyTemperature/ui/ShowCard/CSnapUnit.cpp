#include "ui/ShowCard/CSnapUnit.h"

#include <QDateTime>
#include <QLabel>
#include <QPushButton>

namespace BodyTemperature {

namespace {
const QSize kFaceSize(118, 113);
}

CSnapUnit::CSnapUnit(QWidget* parent) : QFrame(parent)
{
    setMinimumSize(130, 146);
    setMaximumSize(130, 146);

    m_pAddToLibBtn = new QPushButton(this);
    m_pAddToLibBtn->setObjectName(QStringLiteral("m_pAddToLibBtn"));
    m_pAddToLibBtn->setToolTip(tr("AddToFacePictureLibrary"));
    m_pAddToLibBtn->setText(QStringLiteral("+"));
    m_pAddToLibBtn->setFixedSize(24, 24);
    m_pAddToLibBtn->move(102, 122);
    m_pAddToLibBtn->setCursor(Qt::PointingHandCursor);
    m_pAddToLibBtn->hide();
    connect(m_pAddToLibBtn, &QPushButton::clicked, this, &CSnapUnit::OnAddToLibBtnClicked);

    m_pFacePicLabel = new QLabel(this);
    m_pFacePicLabel->setObjectName(QStringLiteral("m_pSnapPicLabel"));
    m_pFacePicLabel->setGeometry(6, 6, kFaceSize.width(), kFaceSize.height());

    m_pTimeLabel = new QLabel(this);
    m_pTimeLabel->setObjectName(QStringLiteral("m_pSnapTimeLabel"));
    m_pTimeLabel->setGeometry(10, 128, 52, 12);
    m_pTimeLabel->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    QFont font(QStringLiteral("Microsoft YaHei"));
    font.setPixelSize(12);
    m_pTimeLabel->setFont(font);
    QPalette palette = m_pTimeLabel->palette();
    palette.setColor(QPalette::WindowText, QColor(204, 204, 204));
    m_pTimeLabel->setPalette(palette);
    m_pTimeLabel->raise();
    m_pAddToLibBtn->raise();
}

CSnapUnit::~CSnapUnit()
{
    delete m_pSecondBtn;
    m_pSecondBtn = nullptr;
}

void CSnapUnit::SetAlarmInfo(const AlarmShowInfo& info)
{
    m_info = info;
    m_pTimeLabel->setText(QDateTime::fromSecsSinceEpoch(info.captureTime).toString(QStringLiteral("hh:mm:ss")));

    const protocol::IntelAlarmFaceInfo* block = m_info.faceBlock();
    if (!block)
        return;
    const PictureSource source = CEventPictures::FaceSourceOf(*block);
    const QPixmap face = m_info.Pictures().Scaled(source, kFaceSize);
    if (face.isNull())
        return;
    if (source.cropped)
        m_rectFace = source.crop;
    m_strFacePic = source.bytes;
    m_pFacePicLabel->setPixmap(face);
}

void CSnapUnit::OnAddToLibBtnClicked()
{
    if (!m_pAddToLibBtn || sender() != m_pAddToLibBtn)
        return;
    emit SignalAddToLib(m_strFacePic.toStdString(), m_rectFace);
}

void CSnapUnit::enterEvent(QEvent* event)
{
    if (m_pAddToLibBtn) {
        m_pAddToLibBtn->show();
        m_pAddToLibBtn->raise();
    }
    QWidget::enterEvent(event);
}

void CSnapUnit::leaveEvent(QEvent* event)
{
    if (m_pAddToLibBtn)
        m_pAddToLibBtn->hide();
    QWidget::leaveEvent(event);
}

} // namespace BodyTemperature
