#include "ui/ShowCard/CPopUpUnit.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpacerItem>

#include "ui/ShowCard/CardStyle.h"

namespace BodyTemperature {

CPopUpUnit::CPopUpUnit(QWidget* parent) : CAlarmUnit(parent)
{
    setFixedSize(630, 468);

    m_pCloseBtn = new QPushButton(this);
    m_pCloseBtn->setObjectName(QStringLiteral("m_pCloseBtn"));
    m_pCloseBtn->setToolTip(tr("Close"));
    m_pCloseBtn->setCursor(Qt::PointingHandCursor);
    connect(m_pCloseBtn, &QPushButton::clicked, this, &CPopUpUnit::onClose);

    m_pBigTemperatureLabel = new QLabel(this);
    m_pBigTemperatureLabel->setAlignment(Qt::AlignCenter);
    m_pBigTemperatureLabel->hide();

    m_pBigMaskIconLabel = new QLabel(m_pMaskRow);
    m_pBigMaskIconLabel->setFixedSize(32, 32);
    m_pBigMaskIconLabel->hide();

    m_pMaskRowLayout = new QHBoxLayout(m_pMaskRow);
    m_pMaskRowLayout->setContentsMargins(0, 0, 4, 0);
    m_pMaskRowLayout->setSpacing(4);
    m_pMaskRowLayout->addWidget(m_pMaskTextLabel);
    m_pMaskRowLayout->addWidget(m_pBigMaskIconLabel);
    m_pMaskRowLayout->addItem(new QSpacerItem(1, 1, QSizePolicy::Expanding, QSizePolicy::Minimum));
}

CPopUpUnit::~CPopUpUnit() = default;

void CPopUpUnit::SetAlarmInfo(const AlarmShowInfo& info, bool bLarge)
{
    CAlarmUnit::SetAlarmInfo(info, bLarge);

    if (m_info.popType == PopUpType::AbnormalTemperature || m_info.popType == PopUpType::NoMask)
        applyAlarmColour();

    const bool capture = m_info.isCaptureKind();
    placeWidgets(capture);
    if (capture)
        showCaptureFigures();
    else
        showComparisonFigures();

    CardStyle::ApplyBigMaskIcon(m_pBigMaskIconLabel, m_info.maskType);

    repolish();
}

// Red for an abnormal temperature, yellow for a missing mask, with the title
// that names the alarm.
void CPopUpUnit::applyAlarmColour()
{
    const bool red = m_info.popType == PopUpType::AbnormalTemperature;
    const QString colour = red ? QStringLiteral("Red") : QStringLiteral("Yellow");
    const QString title = QLatin1Char('[')
        + (red ? tr("AbnormalTemperatureAbnPnaZOG") : tr("AlarmWithoutMaskxBDZWfBH")) + QLatin1Char(']');
    // A pop-up that stays open takes the next record: a renamed widget
    // takes its rules again when its colour changes.
    CardStyle::Rename(this, QStringLiteral("Cmp_PopUp_") + colour);
    CardStyle::Rename(m_pDetailBtn, QStringLiteral("DetailBtn_Cmp_PopUp_") + colour);
    CardStyle::Rename(m_pNameLabel, QStringLiteral("m_pName%1Big").arg(colour));
    CardStyle::Rename(m_pSimilarityLabel, QStringLiteral("m_pSimilarity%1Big").arg(colour));
    CardStyle::Rename(m_pMaskTextLabel, QStringLiteral("m_pFacelibName%1Big").arg(colour));
    CardStyle::Rename(m_pCameraLabel, QStringLiteral("m_pCamera%1Big").arg(colour));
    CardStyle::Rename(m_pTimeLabel, QStringLiteral("m_pTime%1Big").arg(colour));
    setFixedSize(630, 468);
    // The card is refilled for every pop-up: one title label at a time.
    delete m_pTitleLabel;
    m_pTitleLabel = new QLabel(this);
    m_pTitleLabel->setTextFormat(Qt::PlainText);
    m_pTitleLabel->setText(title);
    m_pTitleLabel->setObjectName(red ? QStringLiteral("m_pStaPopUpName") : QStringLiteral("m_pStaPopUpNameYellow"));
    m_pTitleLabel->setAlignment(Qt::AlignCenter);
}

void CPopUpUnit::placeWidgets(bool capture)
{
    m_pFacePicLabel->setGeometry(34, 124, 182, 242);
    m_pFacePicLabel->show();
    m_pSecondPicLabel->setGeometry(230, 124, 182, 242);
    m_pSecondPicLabel->setVisible(!capture);
    if (m_pTitleLabel)
        m_pTitleLabel->setGeometry(188, 27, 254, 40);
    m_pBigTemperatureLabel->setGeometry(102, 124, 256, 50);
    m_pBigTemperatureLabel->hide();
    m_pBigMaskIconLabel->hide();
    const int textX = capture ? 352 : 452;
    const int textW = capture ? 242 : 142;
    const Qt::Alignment leftCentre = Qt::AlignLeft | Qt::AlignVCenter;
    m_pNameLabel->setGeometry(textX, 146, textW, 40);
    m_pNameLabel->setAlignment(leftCentre);
    m_pSimilarityLabel->setGeometry(172, 220, 100, 52);
    m_pSimilarityLabel->setAlignment(Qt::AlignCenter);
    m_pMaskRow->setGeometry(textX, 202, capture ? 242 : 140, 40);
    m_pMaskRow->show();
    m_pMaskTextLabel->setFixedHeight(40);
    m_pMaskTextLabel->setMaximumWidth(capture ? 202 : 100);
    m_pMaskTextLabel->setAlignment(leftCentre);
    m_pCameraLabel->setGeometry(textX, 260, textW, 40);
    m_pCameraLabel->setAlignment(leftCentre);
    m_pTimeLabel->setGeometry(textX, 322, textW, 40);
    m_pTimeLabel->setAlignment(leftCentre);
    m_pDetailBtn->setGeometry(34, 390, 564, 48);
    m_pDetailBtn->show();
    m_pCloseBtn->setGeometry(594, 30, 24, 24);
    m_pCloseBtn->show();
}

void CPopUpUnit::showCaptureFigures()
{
    m_pSimilarityLabel->hide();
    if (!m_info.faceInfoList.empty() && m_info.faceInfoList.front().TemperatureEnabled == 1) {
        const protocol::IntelAlarmFaceInfo& face = m_info.faceInfoList.front();
        CardStyle::ApplyTemperatureBadge(m_pBigTemperatureLabel, m_info.temperatureType,
                                         CardStyle::TemperatureText(face.Temperature),
                                         UnitText(face.TemperatureUnit), true);
    }
    if (m_info.popType == PopUpType::None || m_info.popType == PopUpType::AbnormalTemperature)
        setObjectName(QStringLiteral("Snap_PopUp_Red"));
    else if (m_info.popType == PopUpType::NoMask)
        setObjectName(QStringLiteral("Snap_PopUp_Yellow"));
}

void CPopUpUnit::showComparisonFigures()
{
    CardStyle::Repolish(m_pSimilarityLabel);
    const double similarity = m_info.alarmInfo.comparison.similarity;
    if (similarity != 0.0) {
        m_pSimilarityLabel->setText(CardStyle::SimilarityText(similarity));
        m_pSimilarityLabel->show();
    } else {
        m_pSimilarityLabel->hide();
    }
    const protocol::ThermometryInfo& thermometry = m_info.alarmInfo.thermometry;
    if (thermometry.TemperatureEnabled == 1)
        CardStyle::ApplyTemperatureBadge(m_pBigTemperatureLabel, m_info.temperatureType,
                                         CardStyle::TemperatureText(thermometry.Temperature),
                                         UnitText(thermometry.TemperatureUnit), true);
}

void CPopUpUnit::repolish()
{
    CardStyle::Repolish(m_pNameLabel);
    CardStyle::Repolish(m_pMaskTextLabel);
    CardStyle::Repolish(m_pTimeLabel);
    CardStyle::Repolish(m_pCameraLabel);
    CardStyle::Repolish(this);
    m_pBigTemperatureLabel->raise();
    m_pSimilarityLabel->raise();
    update();

    CardStyle::SetBold(m_pNameLabel);
    CardStyle::SetBold(m_pSimilarityLabel);
    CardStyle::SetBold(m_pDetailBtn);
    if (m_pTitleLabel) {
        CardStyle::SetBold(m_pTitleLabel);
        m_pTitleLabel->show();
    }
}

void CPopUpUnit::onClose()
{
    emit signalClose();
    close();
}

} // namespace BodyTemperature
