#include "ui/ShowCard/ReCustomer/CFrequenterUnit.h"

#include <QDateTime>
#include <QFile>
#include <QLabel>
#include <QPushButton>

#include "Base/Log.h"
#include "VantorGUIToolkit/CInformationDlg.h"

namespace BodyTemperature {

namespace {

const QSize kPicture(120, 160);

const QString& ModuleStyleSheet()
{
    static const QString sheet = [] {
        QFile file(QStringLiteral(":/BodyTemperature/Qss/BodyTemperature/BodyTemperature.qss"));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }();
    return sheet;
}

} // namespace

CFrequenterUnit::CFrequenterUnit(QWidget* parent) : CRightUnitBase(parent)
{
    setFixedSize(380, 222);
    setObjectName(QStringLiteral("Comparison_ReturningCustomer"));
    m_pDetailBtn->setObjectName(QStringLiteral("DetailBtn_ReturningCustomer"));

    m_pReCustomer = new QLabel(tr("RegularCustomer"), this);
    m_pReCustomer->setObjectName(QStringLiteral("m_pReCustomer"));
    m_pFacelibName = new QLabel(this);
    m_pFacelibName->setTextFormat(Qt::PlainText);  // a library name from the device
    m_pFacelibName->setObjectName(QStringLiteral("m_pFacelibNameFre"));
    m_pTimeLabel->setObjectName(QStringLiteral("m_pTimeFre"));
    m_pCameraLabel->setObjectName(QStringLiteral("m_pCameraFre"));

    const Qt::Alignment leftCentre = Qt::AlignLeft | Qt::AlignVCenter;
    m_pFacePicLabel->setGeometry(10, 10, kPicture.width(), kPicture.height());
    m_pReCustomer->setGeometry(140, 23, 200, 20);
    m_pReCustomer->setAlignment(leftCentre);
    m_pReCustomer->adjustSize();
    m_pFacelibName->setGeometry(154, 64, 200, 20);
    m_pFacelibName->setAlignment(leftCentre);
    // Time above camera on this card, the other way round from the alarm card.
    m_pTimeLabel->setGeometry(154, 104, 200, 20);
    m_pTimeLabel->setAlignment(leftCentre);
    m_pCameraLabel->setGeometry(154, 144, 200, 20);
    m_pCameraLabel->setAlignment(leftCentre);
    m_pDetailBtn->setGeometry(10, 180, 361, 32);
    QFont bold = m_pDetailBtn->font();
    bold.setBold(true);
    m_pDetailBtn->setFont(bold);
    m_pReCustomer->setFont(bold);

    setStyleSheet(ModuleStyleSheet());
}

CFrequenterUnit::~CFrequenterUnit()
{
    BASE_LOG_DEBUG("CFrequenterUnit Destruct.");
}

void CFrequenterUnit::SetAlarmInfo(const AlarmShowInfo&, bool) {}

void CFrequenterUnit::SetFrequenterInfo(const AlarmShowInfo& info)
{
    m_info = info;
    const protocol::IntelAlarmFaceInfo& block = m_info.faceInfo;
    QPixmap face;
    if (!block.SubPic.isEmpty()) {
        PictureSource source;
        source.bytes = block.SubPic;
        face = m_info.Pictures().Scaled(source, kPicture);
    } else if (!block.bkPic.isEmpty() && !block.faceRects.empty()) {
        PictureSource source;
        source.bytes = block.bkPic;
        if (!block.faceRects.front().isWhole()) {
            source.crop = block.faceRects.front();
            source.cropped = true;
        }
        face = m_info.Pictures().Scaled(source, kPicture);
    } else {
        face = QPixmap(QStringLiteral(":/rightBottom/Images/BodyTemperature/rightBottom/DefaultFace.png"))
                   .scaled(kPicture, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    if (face.isNull())
        return;
    m_pFacePicLabel->setPixmap(face);

    m_pTimeLabel->setText(
        QDateTime::fromSecsSinceEpoch(m_info.captureTime).toString(QStringLiteral("MM/dd hh:mm:ss")));
    m_pCameraLabel->setText(m_info.cameraName.empty() ? QStringLiteral("/") : QString::fromStdString(m_info.cameraName));
    const std::string& library = m_info.alarmInfo.comparison.people.libraryName;
    // A missing library shows a backslash here, unlike the "/" of the other cards.
    m_pFacelibName->setText(library.empty() ? QStringLiteral("\\") : QString::fromStdString(library));
}

void CFrequenterUnit::ShowDetails()
{
    // Earlier visits are searched on the device; until that search is wired
    // in, the card reports that there is nothing to show.
    VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(tr("NoDetails"));
}

} // namespace BodyTemperature
