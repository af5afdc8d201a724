#include "ui/ShowCard/CComparisonDetailForm.h"

#include <QCoreApplication>
#include <QDialog>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QVariant>

namespace BodyTemperature {

namespace {

// Main frame: the captured face and the library face side by side, their pair
// centred under the big temperature badge of the dialog.
const int kMainX = 36, kMainY = 64, kMainW = 834, kMainH = 494;
const int kFrameY = 16;
const int kSecondFrameX = 419;
// Right column.
const int kRightX = 894, kRightW = 360;
const int kSceneY = 128, kSceneH = 203;

const char* const kAttributeNames[] = {"m_pGender", "m_pMask", "m_pAgeGroup", "m_pGlasses",
                                       "m_pExpression", "m_pBeard", "m_pHat", "m_pTemperatureState"};
const char* const kPersonNames[] = {"m_pPersonName", "m_pContact", "m_pIDType", "m_pIDNo",
                                    "m_pBirthDate", "m_pListName", "m_pPersonGender", "m_pPersonMask"};

QLabel* NewLabel(QWidget* parent, const QString& objectName, bool caption)
{
    auto* label = new QLabel(parent);
    label->setObjectName(objectName);
    label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    // The style sheet tells captions from values by this property.
    label->setProperty("detailCaption", caption);
    return label;
}

QFrame* NewPictureFrame(QWidget* parent, const char* frameName, const char* labelName, QLabel** label)
{
    auto* frame = new QFrame(parent);
    frame->setObjectName(QLatin1String(frameName));
    frame->resize(CComparisonDetailForm::kPictureWidth + 2, CComparisonDetailForm::kPictureHeight + 2);
    *label = new QLabel(frame);
    (*label)->setObjectName(QLatin1String(labelName));
    (*label)->setGeometry(1, 1, CComparisonDetailForm::kPictureWidth, CComparisonDetailForm::kPictureHeight);
    return frame;
}

QGridLayout* NewRows(QWidget* page)
{
    auto* grid = new QGridLayout(page);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(0);
    grid->setColumnMinimumWidth(0, 140);
    grid->setColumnStretch(1, 1);
    return grid;
}

} // namespace

void CComparisonDetailForm::setupUi(QDialog* dialog)
{
    if (dialog->objectName().isEmpty())
        dialog->setObjectName(QStringLiteral("ComparisonDetailClass"));
    dialog->setFixedSize(kWidth, kHeight);

    m_pBorderFrame = new QFrame(dialog);
    m_pBorderFrame->setObjectName(QStringLiteral("m_pBorderFrame"));
    m_pBorderFrame->setGeometry(0, 0, kWidth, kHeight);

    setupTitleBar(dialog);
    setupPictures(dialog);

    m_pCameraLbl = NewLabel(dialog, QStringLiteral("m_pCameraLbl"), false);
    m_pCameraLbl->setGeometry(kRightX, 64, kRightW, 30);
    m_pTimeLbl = NewLabel(dialog, QStringLiteral("m_pTimeLbl"), false);
    m_pTimeLbl->setGeometry(kRightX, 94, kRightW, 26);
    m_pBigPicLbl = new QLabel(dialog);
    m_pBigPicLbl->setObjectName(QStringLiteral("m_pBigPicLbl"));
    m_pBigPicLbl->setGeometry(kRightX, kSceneY, kRightW, kSceneH);

    m_pStackedWidget = new QStackedWidget(dialog);
    m_pStackedWidget->setObjectName(QStringLiteral("m_pStackedWidget"));
    m_pStackedWidget->addWidget(setupAttributePage());
    m_pStackedWidget->addWidget(setupPersonPage());
    m_pStackedWidget->setCurrentIndex(0);
    placePages(false);

    m_pBorderFrame->lower();
    retranslateUi(dialog);
}

void CComparisonDetailForm::setupTitleBar(QDialog* dialog)
{
    auto* mark = new QFrame(dialog);
    mark->setObjectName(QStringLiteral("m_pTitleMark"));
    mark->setGeometry(24, 19, 4, 18);
    m_pTitleLbl = NewLabel(dialog, QStringLiteral("m_pTitleLbl"), false);
    m_pTitleLbl->setGeometry(38, 0, 900, 56);
    m_pCloseBtn = new QPushButton(dialog);
    m_pCloseBtn->setObjectName(QStringLiteral("m_pCloseBtn"));
    m_pCloseBtn->setGeometry(kWidth - 44, 16, 24, 24);
    m_pCloseBtn->setCursor(Qt::PointingHandCursor);
    auto* line = new QFrame(dialog);
    line->setObjectName(QStringLiteral("m_pTitleLine"));
    line->setGeometry(0, 56, kWidth, 1);
}

void CComparisonDetailForm::setupPictures(QDialog* dialog)
{
    m_pMainFrame = new QFrame(dialog);
    m_pMainFrame->setObjectName(QStringLiteral("frame"));
    m_pMainFrame->setGeometry(kMainX, kMainY, kMainW, kMainH);
    m_pFirstFrame = NewPictureFrame(m_pMainFrame, "m_pFirstFrame", "m_pFirstPicLbl", &m_pFirstPicLbl);
    m_pSecondFrame = NewPictureFrame(m_pMainFrame, "m_pSecondFrame", "m_pSecondPicLbl", &m_pSecondPicLbl);
    m_pSecondFrame->move(kSecondFrameX, kFrameY);
    m_pComparisonFrame = new QFrame(m_pMainFrame);
    m_pComparisonFrame->setObjectName(QStringLiteral("m_pComparisonFrame"));
    m_pComparisonFrame->setGeometry((kMainW - 100) / 2, kFrameY + (kPictureHeight - 52) / 2, 100, 52);
    m_pSimilarityLbl = NewLabel(m_pComparisonFrame, QStringLiteral("m_pSimilarityLbl"), false);
    m_pSimilarityLbl->setGeometry(0, 0, 100, 52);
    m_pSimilarityLbl->setAlignment(Qt::AlignCenter);
    m_pSimilarityLbl->setStyleSheet(QStringLiteral(
        "QLabel\n{\n   border-image: url(:/background/Images/BodyTemperature/background/faceComparePic.png);\n}"));
    m_pBigMaskIcon = new QLabel(m_pMainFrame);
    m_pBigMaskIcon->setObjectName(QStringLiteral("m_pBigMaskIcon"));
    m_pBigMaskIcon->setFixedSize(32, 32);
    m_pBigMaskIcon->hide();
    placeFirstFrame(1);
}

QWidget* CComparisonDetailForm::setupAttributePage()
{
    auto* attributePage = new QWidget(m_pStackedWidget);
    attributePage->setObjectName(QStringLiteral("m_pAttributePage"));
    QGridLayout* rows = NewRows(attributePage);
    for (int i = 0; i < 8; ++i) {
        const QString base = QLatin1String(kAttributeNames[i]);
        m_attributeCaptions[i] = NewLabel(attributePage, base + QStringLiteral("Caption"), true);
        m_attributeValues[i] = NewLabel(attributePage, base + QStringLiteral("Value"), false);
        m_attributeCaptions[i]->setFixedHeight(27);
        m_attributeValues[i]->setFixedHeight(27);
        rows->addWidget(m_attributeCaptions[i], i, 0);
        if (i < 7)
            rows->addWidget(m_attributeValues[i], i, 1);
    }
    // The temperature state carries a coloured dot right after its text.
    auto* stateRow = new QHBoxLayout;
    stateRow->setSpacing(8);
    m_pTemperatureStateIcon = new QLabel(attributePage);
    m_pTemperatureStateIcon->setObjectName(QStringLiteral("m_pTemperatureStateIcon"));
    m_pTemperatureStateIcon->setFixedSize(10, 10);
    stateRow->addWidget(m_attributeValues[7]);
    stateRow->addWidget(m_pTemperatureStateIcon);
    stateRow->addStretch(1);
    rows->addLayout(stateRow, 7, 1);
    rows->setRowStretch(8, 1);
    return attributePage;
}

QWidget* CComparisonDetailForm::setupPersonPage()
{
    auto* personPage = new QWidget(m_pStackedWidget);
    personPage->setObjectName(QStringLiteral("m_pPersonPage"));
    auto* pageLayout = new QGridLayout(personPage);
    pageLayout->setContentsMargins(0, 0, 0, 0);
    m_pPersonFrame = new QFrame(personPage);
    m_pPersonFrame->setObjectName(QStringLiteral("m_pPersonFrame"));
    pageLayout->addWidget(m_pPersonFrame, 0, 0);
    QGridLayout* personRows = NewRows(m_pPersonFrame);
    for (int i = 0; i < 8; ++i) {
        const QString base = QLatin1String(kPersonNames[i]);
        m_personCaptions[i] = NewLabel(m_pPersonFrame, base + QStringLiteral("Caption"), true);
        m_personValues[i] = NewLabel(m_pPersonFrame, base + QStringLiteral("Value"), false);
        m_personCaptions[i]->setFixedHeight(32);
        m_personValues[i]->setFixedHeight(32);
        personRows->addWidget(m_personCaptions[i], i, 0);
        personRows->addWidget(m_personValues[i], i, 1);
    }
    for (int i = 0; i < 4; ++i) {
        m_extendNames[i] = NewLabel(m_pPersonFrame, QStringLiteral("m_pExtendName%1").arg(i), true);
        m_extendValues[i] = NewLabel(m_pPersonFrame, QStringLiteral("m_pExtendValue%1").arg(i), false);
        m_extendNames[i]->setFixedHeight(32);
        m_extendValues[i]->setFixedHeight(32);
        personRows->addWidget(m_extendNames[i], 8 + i, 0);
        personRows->addWidget(m_extendValues[i], 8 + i, 1);
    }
    personRows->setRowStretch(12, 1);
    return personPage;
}

void CComparisonDetailForm::retranslateUi(QDialog* dialog)
{
    const char* const context = "BodyTemperature::CComparisonDetail";
    dialog->setWindowTitle(QCoreApplication::translate("BodyTemperature::CComparisonDetail", "FacePictureComparisonInformation"));
    m_pCloseBtn->setToolTip(QCoreApplication::translate("BodyTemperature::CComparisonDetail", "Close"));
    const char* const attributeKeys[] = {
        QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Gender"),
        QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "GauzeMask"),
        QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "AgeGroup"),
        QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "WearGlasses"),
        QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "FacialExpression"),
        QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Beard"),
        QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "WearAHat"),
        QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "TemperatureState")};
    const char* const personKeys[] = {
        QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "PersonName"),
        QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Contact"),
        QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "IDType"),
        QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "IDNo"),
        QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "DateOfBirth"),
        QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "ListName"),
        QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "Gender"),
        QT_TRANSLATE_NOOP("BodyTemperature::CComparisonDetail", "GauzeMask")};
    for (int i = 0; i < 8; ++i) {
        m_attributeCaptions[i]->setText(QCoreApplication::translate(context, attributeKeys[i]));
        m_personCaptions[i]->setText(QCoreApplication::translate(context, personKeys[i]));
    }
}

void CComparisonDetailForm::placeFirstFrame(int x)
{
    m_pFirstFrame->move(x, kFrameY);
    m_pBigMaskIcon->move(x + 9, kFrameY + 9);
    m_pBigMaskIcon->raise();
}

void CComparisonDetailForm::placePages(bool belowScene)
{
    const int y = belowScene ? kSceneY + kSceneH + 12 : kSceneY;
    m_pStackedWidget->setGeometry(kRightX, y, kRightW, kMainY + kMainH - y);
}

} // namespace BodyTemperature
