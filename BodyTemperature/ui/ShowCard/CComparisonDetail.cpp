#include "ui/ShowCard/CComparisonDetail.h"

#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>

#include "Base/Log.h"
#include "ui/ShowCard/CComparisonDetailForm.h"
#include "ui/ShowCard/CDetailContent.h"
#include "ui/ShowCard/CardStyle.h"

namespace BodyTemperature {

namespace {

const char* const kDefaultFace = ":/reCustomer/Images/AIShowPlugin/reCustomer/DefaultFaceBig.png";

QPixmap DefaultPicture(const QSize& size)
{
    return QPixmap(QString::fromLatin1(kDefaultFace)).scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

// The picture scaled to `size`; the default face when there is none or it
// cannot be decoded (or is refused for its size), the latter with a warning.
QPixmap PictureOrDefault(const AlarmShowInfo& info, const PictureSource& source, const QSize& size, const char* what)
{
    if (source.isEmpty())
        return DefaultPicture(size);
    const QImage image = info.Pictures().Image(source);
    if (image.isNull()) {
        BASE_LOG_WARN("the %s picture of event %s cannot be shown (%d bytes); showing the default picture", what,
                      info.eventID.c_str(), static_cast<int>(source.bytes.size()));
        return DefaultPicture(size);
    }
    return QPixmap::fromImage(image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

} // namespace

CComparisonDetail::CComparisonDetail(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint), m_ui(std::make_unique<CComparisonDetailForm>())
{
    m_ui->setupUi(this);
    setStyleSheet(CardStyle::ModuleStyleSheet());
    connect(m_ui->m_pCloseBtn, &QPushButton::clicked, this, &QDialog::reject);
}

CComparisonDetail::~CComparisonDetail() = default;

void CComparisonDetail::SetAlarmInfo(const AlarmShowInfo& info)
{
    const CDetailContent c = CDetailContent::From(info);
    CComparisonDetailForm& ui = *m_ui;

    ui.m_pTitleLbl->setText(c.title);
    ui.m_pSimilarityLbl->setText(c.similarity);
    ui.m_pSimilarityLbl->setVisible(!c.similarity.isEmpty());
    ui.m_pCameraLbl->setText(c.camera);
    ui.m_pTimeLbl->setText(c.time);

    for (size_t i = 0; i < c.attributes.size(); ++i)
        ui.m_attributeValues[i]->setText(c.attributes[i]);
    const QString persons[] = {c.personName, c.contact, c.idType, c.idNo, c.birthDate, c.listName,
                               c.personGender, c.personMask};
    for (size_t i = 0; i < ui.m_personValues.size(); ++i)
        ui.m_personValues[i]->setText(persons[i]);
    for (size_t i = 0; i < ui.m_extendNames.size(); ++i) {
        ui.m_extendNames[i]->setText(c.extendNames[i]);
        ui.m_extendValues[i]->setText(c.extendValues[i]);
    }

    ui.m_attributeCaptions[7]->setVisible(c.showTemperatureState);
    ui.m_attributeValues[7]->setVisible(c.showTemperatureState);
    ui.m_pTemperatureStateIcon->setVisible(c.showTemperatureState);
    // A code the table does not know shows "/" beside a neutral dot.
    const char* const dot = c.temperatureStateCode == 1 ? "#FF4C1F" : c.temperatureStateCode == 0 ? "#19DF7B" : "#8A96A8";
    ui.m_pTemperatureStateIcon->setStyleSheet(
        QStringLiteral("background-color: %1; border-radius: 5px;").arg(QLatin1String(dot)));

    ui.m_pComparisonFrame->setVisible(!c.capture);
    ui.m_pPersonFrame->setVisible(!c.capture);
    ui.m_pSecondFrame->setVisible(!c.capture);
    ui.placeFirstFrame(c.firstFrameX);
    ui.m_pMainFrame->setStyleSheet(c.mainFrameStyle);
    ui.m_pStackedWidget->setCurrentIndex(c.page);
    ui.placePages(c.capture);
    ShowPictures(info, c.capture);

    if (c.badge)
        ShowBigBadge(c.temperatureState, c.temperatureText, c.unitText);
    CardStyle::ApplyBigMaskIcon(ui.m_pBigMaskIcon, c.maskState);
}

void CComparisonDetail::ShowPictures(const AlarmShowInfo& info, bool capture)
{
    CComparisonDetailForm& ui = *m_ui;
    const QSize pictureSize(CComparisonDetailForm::kPictureWidth, CComparisonDetailForm::kPictureHeight);
    const protocol::IntelAlarmFaceInfo* block = info.faceBlock();
    PictureSource face;
    if (block != nullptr)
        face = CEventPictures::FaceSourceOf(*block);
    ui.m_pFirstPicLbl->setPixmap(PictureOrDefault(info, face, pictureSize, "face"));

    if (capture) {
        ui.m_pSecondPicLbl->clear();
        // The whole scene, never the face cut out of it.
        PictureSource scene;
        if (block != nullptr)
            scene.bytes = block->bkPic;
        ui.m_pBigPicLbl->setPixmap(PictureOrDefault(info, scene, ui.m_pBigPicLbl->size(), "scene"));
        ui.m_pBigPicLbl->show();
    } else {
        PictureSource library;
        library.bytes = info.alarmInfo.comparison.libraryPic;
        ui.m_pSecondPicLbl->setPixmap(PictureOrDefault(info, library, pictureSize, "library"));
        ui.m_pBigPicLbl->clear();
        ui.m_pBigPicLbl->hide();
    }
}

void CComparisonDetail::ShowBigBadge(uint32_t state, const QString& temperature, const QString& unit)
{
    if (m_pBigTemperatureLbl == nullptr) {
        m_pBigTemperatureLbl = new QLabel(this);
        m_pBigTemperatureLbl->setObjectName(QStringLiteral("m_pBigTemperatureLbl"));
        m_pBigTemperatureLbl->setGeometry(325, 80, 256, 50);
        m_pBigTemperatureLbl->setAlignment(Qt::AlignCenter);
        m_pBigTemperatureLbl->hide();
    }
    m_pBigTemperatureLbl->raise();
    CardStyle::ApplyTemperatureBadge(m_pBigTemperatureLbl, state, temperature, unit, true);
}

void CComparisonDetail::CloseAllUnder(QObject* root)
{
    if (root == nullptr)
        return;
    for (CComparisonDetail* dialog : root->findChildren<CComparisonDetail*>())
        dialog->reject();
}

} // namespace BodyTemperature
