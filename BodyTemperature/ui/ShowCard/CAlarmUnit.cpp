#include "ui/ShowCard/CAlarmUnit.h"

#include <QDateTime>
#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QVariant>

#include "Base/Log.h"
#include "ui/ShowCard/CCardHold.h"
#include "ui/ShowCard/CComparisonDetail.h"
#include "ui/ShowCard/CardStyle.h"

namespace BodyTemperature {

namespace {

const QSize kCardSize(380, 222);
const QSize kSmallPicture(120, 160);
const QSize kBigPicture(182, 242);

QString OrSlash(const std::string& text)
{
    return text.empty() ? QStringLiteral("/") : QString::fromStdString(text);
}

} // namespace

CAlarmUnit::CAlarmUnit(QWidget* parent) : CRightUnitBase(parent)
{
    setFixedSize(kCardSize);

    m_pSecondPicLabel = new QLabel(this);
    m_pNameLabel = new QLabel(this);
    // Person names come from the device's libraries: shown as typed, never as markup.
    m_pNameLabel->setTextFormat(Qt::PlainText);
    m_pSimilarityLabel = new QLabel(this);
    m_pSimilarityLabel->setAlignment(Qt::AlignCenter);
    m_pSimilarityLabel->hide();
    m_pMaskRow = new QFrame(this);
    m_pMaskRow->setObjectName(QStringLiteral("m_pMaskRow"));
    m_pMaskTextLabel = new QLabel(m_pMaskRow);
    m_pMaskTextLabel->setTextFormat(Qt::PlainText);
    m_pTemperatureLabel = new QLabel(this);
    m_pTemperatureLabel->setAlignment(Qt::AlignCenter);
    m_pTemperatureLabel->hide();
    m_pMaskIconLabel = new QLabel(this);
    m_pMaskIconLabel->setFixedSize(16, 16);
    m_pMaskIconLabel->hide();
}

CAlarmUnit::~CAlarmUnit()
{
    BASE_LOG_DEBUG("CAlarmUnit Destruct");
}

QString CAlarmUnit::UnitText(uint32_t unitCode)
{
    switch (unitCode) {
    case 0: return tr("DegreeC");
    case 1: return tr("DegreeF");
    case 2: return tr("xYyCxaTr");
    default: return QString();
    }
}

void CAlarmUnit::SetAlarmInfo(const AlarmShowInfo& info, bool bLarge)
{
    m_info = info;
    m_listPic.clear();
    // The list sizes a new card from its bottom strip before filling it; the
    // card's own geometry wins, also when the filling stops early.
    if (!bLarge)
        setFixedSize(kCardSize);
    const protocol::IntelAlarmFaceInfo* block = m_info.faceBlock();
    if (!block)
        return;

    const protocol::FaceComparisonInfo& comparison = m_info.alarmInfo.comparison;
    if (comparison.similarity != 0.0)
        m_pSimilarityLabel->setText(CardStyle::SimilarityText(comparison.similarity));
    else
        m_pSimilarityLabel->hide();

    switch (MaskReadingOf(block->Mask)) {
    case MaskReading::Worn: m_pMaskTextLabel->setText(tr("WearingAMask")); break;
    case MaskReading::Missing: m_pMaskTextLabel->setText(tr("NoGauzeMask")); break;
    case MaskReading::Unknown: m_pMaskTextLabel->setText(QStringLiteral("/")); break;
    }

    m_pTimeLabel->setText(
        QDateTime::fromSecsSinceEpoch(m_info.captureTime).toString(QStringLiteral("MM/dd hh:mm:ss")));
    m_pCameraLabel->setText(OrSlash(m_info.cameraName));

    ShowName(comparison.people, bLarge);

    if (!ShowPictures(*block, bLarge))
        return;
    if (!bLarge)
        ApplySmallLayout();
}

void CAlarmUnit::ShowName(const protocol::PeopleInfo& people, bool bLarge)
{
    if (!people.name.empty()) {
        m_pNameLabel->setText(QString::fromStdString(people.name));
    } else {
        switch (m_info.kind) {
        case EventKind::Comparison:
            m_pNameLabel->setText(tr("FacePictureComparison"));
            break;
        case EventKind::Stranger:
            m_pNameLabel->setText(people.alternativeName.empty() ? tr("AStranger")
                                                                 : QString::fromStdString(people.alternativeName));
            break;
        case EventKind::ComparisonFailed:
            m_pNameLabel->setText(people.alternativeName.empty() ? tr("FaceFail")
                                                                 : QString::fromStdString(people.alternativeName));
            break;
        case EventKind::Capture:
            m_pNameLabel->setText(tr("FaceCaptured"));
            break;
        case EventKind::TemperatureCapture:
            m_pNameLabel->setText(tr("FaceTemperatureCaptureJLMWvg"));
            // Temperature captures stand out on their own card background (a
            // rule of the module style sheet on this property). A style sheet
            // of the card's own would re-polish every label of the card. The
            // background is drawn for the list card's size: the pop-up keeps
            // its own alarm frame whatever event it shows.
            if (!bLarge) {
                setProperty("temperatureCapture", true);
                CardStyle::Repolish(this);
            }
            break;
        default:
            m_pNameLabel->setText(QStringLiteral("/"));
            break;
        }
    }
}

bool CAlarmUnit::ShowPictures(const protocol::IntelAlarmFaceInfo& block, bool bLarge)
{
    const QSize pictureSize = bLarge ? kBigPicture : kSmallPicture;
    const QPixmap face = m_info.Pictures().Scaled(CEventPictures::FaceSourceOf(block), pictureSize);
    if (face.isNull())
        return false;
    m_listPic.append(face);

    if (!m_info.alarmInfo.comparison.libraryPic.isEmpty()) {
        PictureSource library;
        library.bytes = m_info.alarmInfo.comparison.libraryPic;
        const QPixmap libraryFace = m_info.Pictures().Scaled(library, pictureSize);
        if (libraryFace.isNull())
            return false;
        m_listPic.append(libraryFace);
    }

    const QString defaultFace = bLarge ? QStringLiteral(":/reCustomer/Images/AIShowPlugin/reCustomer/DefaultFaceBig.png")
                                       : QStringLiteral(":/reCustomer/Images/AIShowPlugin/reCustomer/DefaultFace.png");
    auto pictureAt = [&](int i) {
        const QPixmap& p = i < m_listPic.size() ? m_listPic.at(i) : QPixmap(defaultFace);
        return p.size() == pictureSize ? p : p.scaled(pictureSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    };
    m_pFacePicLabel->setPixmap(pictureAt(0));
    m_pSecondPicLabel->setPixmap(pictureAt(1));
    return true;
}

void CAlarmUnit::ApplySmallLayout()
{
    const bool capture = m_info.isCaptureKind();
    const int textX = capture ? 201 : 281;
    const int textW = capture ? 170 : 90;
    const Qt::Alignment leftCentre = Qt::AlignLeft | Qt::AlignVCenter;

    m_pFacePicLabel->setGeometry(10, 10, 120, 160);
    m_pFacePicLabel->show();
    m_pSecondPicLabel->setGeometry(140, 10, 120, 160);
    m_pSecondPicLabel->show();
    m_pTemperatureLabel->setGeometry(68, 10, 128, 28);
    m_pTemperatureLabel->setAlignment(Qt::AlignCenter);
    m_pMaskIconLabel->setGeometry(capture ? 262 : 342, 67, 16, 16);
    m_pNameLabel->setGeometry(textX, 23, textW, 20);
    m_pNameLabel->setAlignment(leftCentre);
    m_pSimilarityLabel->setGeometry(102, 68, 66, 34);
    m_pSimilarityLabel->setAlignment(Qt::AlignCenter);
    m_pMaskRow->setGeometry(textX, 64, capture ? 170 : 92, 20);
    m_pMaskRow->show();
    m_pMaskTextLabel->setGeometry(0, 0, capture ? 146 : 68, 20);
    m_pMaskTextLabel->setMaximumWidth(capture ? 146 : 68);
    m_pMaskTextLabel->setAlignment(leftCentre);
    m_pCameraLabel->setGeometry(textX, 104, textW, 20);
    m_pCameraLabel->setAlignment(leftCentre);
    m_pTimeLabel->setGeometry(textX, 144, textW, 20);
    m_pTimeLabel->setAlignment(leftCentre);
    m_pNameLabel->raise();
    m_pTemperatureLabel->raise();
    m_pSimilarityLabel->raise();

    const QString colour = CardStyle::LevelColour(m_info.alarmType);
    if (!colour.isEmpty()) {
        CardStyle::Rename(m_pNameLabel, QStringLiteral("m_pName") + colour);
        CardStyle::Rename(m_pMaskTextLabel, QStringLiteral("m_pFacelibName") + colour);
        CardStyle::Rename(m_pTimeLabel, QStringLiteral("m_pTime") + colour);
        CardStyle::Rename(m_pCameraLabel, QStringLiteral("m_pCamera") + colour);
        CardStyle::Rename(m_pSimilarityLabel, QStringLiteral("m_pSimilarity") + colour);
    }
    CardStyle::SetBold(m_pNameLabel);

    CardStyle::SetBold(m_pSimilarityLabel);
    m_pSimilarityLabel->setVisible(m_info.alarmInfo.comparison.similarity != 0.0);

    m_pTemperatureLabel->hide();
    const protocol::ThermometryInfo& thermometry = m_info.alarmInfo.thermometry;
    if (thermometry.TemperatureEnabled == 1)
        CardStyle::ApplyTemperatureBadge(m_pTemperatureLabel, m_info.temperatureType,
                                         CardStyle::TemperatureText(thermometry.Temperature),
                                         UnitText(thermometry.TemperatureUnit), false);
    CardStyle::ApplySmallMaskIcon(m_pMaskIconLabel, m_info.maskType);

    m_pDetailBtn->setGeometry(10, 180, 361, 32);
    m_pDetailBtn->show();
    if (!colour.isEmpty()) {
        CardStyle::Rename(this, (capture ? QStringLiteral("Snap_") : QStringLiteral("Comparison_")) + colour);
        CardStyle::Rename(m_pDetailBtn, QStringLiteral("DetailBtn_") + colour);
    }
    CardStyle::SetBold(m_pDetailBtn);
    update();
}

void CAlarmUnit::SetFrequenterInfo(const AlarmShowInfo&) {}

void CAlarmUnit::ShowDetails()
{
    // Alarms keep arriving while the dialog runs its own loop: the list may
    // trim this card or the page may go. The hold keeps a trimmed card until
    // the dialog ends; after exec() neither this card nor the dialog may be
    // touched (the dialog deletes itself on close, or goes with its parent).
    CCardHold hold(this);
    auto* dialog = new CComparisonDetail(parentWidget());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->SetAlarmInfo(m_info);
    dialog->exec();
}

} // namespace BodyTemperature
