#include "ui/CBTShowWidgetForm.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QScrollArea>
#include <QToolButton>
#include <QVBoxLayout>

#include "aiguitoolkit/CShakeButton.h"
#include "ui/BTShowLiveView.h"
#include "ui/CBTShowWidget.h"
#include "ui/CBottomWidget.h"

namespace BodyTemperature {

namespace {
QLabel* pictureLabel(const QString& file, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setPixmap(QPixmap(file));
    return label;
}
} // namespace

void CBTShowWidgetForm::setupUi(CBTShowWidget* owner)
{
    owner->setObjectName(QStringLiteral("BTShowWidget"));
    owner->resize(1642, 1080);
    auto* main = new QHBoxLayout(owner);
    main->setContentsMargins(0, 0, 0, 0);
    main->setSpacing(0);

    // Left: room for the statistics title, the live view, the bottom strip.
    auto* leftColumn = new QVBoxLayout();
    leftColumn->setContentsMargins(0, 0, 0, 0);
    leftColumn->setSpacing(0);
    main->addLayout(leftColumn, 1);
    setupLeftColumn(owner, leftColumn);

    // Right: header, alarm tool bar and the list of alarm cards.
    setupRightPanel(owner, main);
}

void CBTShowWidgetForm::setupLeftColumn(CBTShowWidget* owner, QVBoxLayout* leftColumn)
{
    auto* titleSpace = new QWidget(owner);
    titleSpace->setObjectName(QStringLiteral("m_pTitleSpace"));
    titleSpace->setFixedHeight(72);
    leftColumn->addWidget(titleSpace);

    m_pLiveViewFrame = new QFrame(owner);
    m_pLiveViewFrame->setObjectName(QStringLiteral("m_pLiveViewFrame"));
    auto* liveLayout = new QGridLayout(m_pLiveViewFrame);
    // The right margin leaves room for the right retract button.
    liveLayout->setContentsMargins(8, 0, 16, 0);
    m_pLiveView = new BTShowLiveView(m_pLiveViewFrame);
    liveLayout->addWidget(m_pLiveView);
    leftColumn->addWidget(m_pLiveViewFrame, 1);

    auto* retractRow = new QHBoxLayout();
    retractRow->setContentsMargins(0, 0, 0, 0);
    m_pBottomRetractBtn = new QToolButton(owner);
    m_pBottomRetractBtn->setObjectName(QStringLiteral("m_pRetractBottomBtn"));
    m_pBottomRetractBtn->setFixedSize(115, 11);
    retractRow->addStretch(1);
    retractRow->addWidget(m_pBottomRetractBtn);
    retractRow->addStretch(1);
    leftColumn->addLayout(retractRow);

    m_pBottomScrollArea = new QScrollArea(owner);
    m_pBottomScrollArea->setObjectName(QStringLiteral("m_pBottomScrollArea"));
    m_pBottomScrollArea->setFrameShape(QFrame::NoFrame);
    m_pBottomScrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_pBottomScrollArea->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pBottomScrollArea->setWidgetResizable(true);
    m_pBottomScrollArea->setFixedHeight(170);
    m_pBottomWidget = new CBottomWidget();
    m_pBottomWidget->setGeometry(0, 0, 658, 158);
    m_pBottomScrollArea->setWidget(m_pBottomWidget);
    // The strip draws its own two looks; the area itself stays see-through.
    m_pBottomScrollArea->viewport()->setAutoFillBackground(false);
    m_pBottomWidget->setAutoFillBackground(false);
    leftColumn->addWidget(m_pBottomScrollArea);
}

void CBTShowWidgetForm::setupRightPanel(CBTShowWidget* owner, QHBoxLayout* main)
{
    m_pRightPanel = new QFrame(owner);
    m_pRightPanel->setObjectName(QStringLiteral("m_pRightPanel"));
    m_pRightPanel->setFixedWidth(423);
    auto* rightColumn = new QVBoxLayout(m_pRightPanel);
    rightColumn->setContentsMargins(8, 8, 8, 8);
    rightColumn->setSpacing(8);
    main->addWidget(m_pRightPanel);

    auto* header = new QWidget(m_pRightPanel);
    header->setObjectName(QStringLiteral("m_pRightHeader"));
    auto* headerRow = new QHBoxLayout(header);
    headerRow->setContentsMargins(0, 0, 0, 0);
    auto* headerText = new QLabel(CBTShowWidget::tr("InformationDisplayrMJyZHOJ"), header);
    headerText->setObjectName(QStringLiteral("m_pInformationDisplayLabel"));
    headerRow->addStretch(1);
    headerRow->addWidget(pictureLabel(QStringLiteral(":/icon/Images/public/Icon/left.png"), header));
    headerRow->addWidget(headerText);
    headerRow->addWidget(pictureLabel(QStringLiteral(":/icon/Images/public/Icon/right.png"), header));
    headerRow->addStretch(1);
    rightColumn->addWidget(header);

    rightColumn->addWidget(setupToolBar());

    m_pRightScrollArea = new QScrollArea(m_pRightPanel);
    m_pRightScrollArea->setObjectName(QStringLiteral("m_pRightScrollArea"));
    m_pRightScrollArea->setFrameShape(QFrame::NoFrame);
    m_pRightScrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pRightScrollArea->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_pRightScrollArea->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_pRightScrollArea->setWidgetResizable(true);
    m_pRightListWidget = new QWidget();
    m_pRightListWidget->setObjectName(QStringLiteral("m_pRightListWidget"));
    m_pRightListWidget->setGeometry(0, 0, 386, 577);
    m_pRightScrollArea->setWidget(m_pRightListWidget);
    m_pRightScrollArea->viewport()->setAutoFillBackground(false);
    m_pRightListWidget->setAutoFillBackground(false);
    rightColumn->addWidget(m_pRightScrollArea, 1);
}

QWidget* CBTShowWidgetForm::setupToolBar()
{
    m_pToolBar = new QWidget(m_pRightPanel);
    m_pToolBar->setObjectName(QStringLiteral("m_pToolBtnWidget"));
    m_pToolBar->setFixedHeight(40);
    auto* toolRow = new QHBoxLayout(m_pToolBar);
    toolRow->setContentsMargins(0, 0, 0, 0);
    toolRow->setSpacing(8);
    m_pEnableAlarmBtn = new aiguitoolkit::CShakeButton(m_pToolBar);
    m_pEnableAlarmBtn->setObjectName(QStringLiteral("m_pEnableAlarmBtn"));
    m_pEnableAlarmBtn->setCheckable(true);
    m_pEnableAlarmBtn->setChecked(true);
    m_pAlarmTypeBtn = new aiguitoolkit::CShakeButton(m_pToolBar);
    m_pAlarmTypeBtn->setObjectName(QStringLiteral("m_pAlarmTypeBtn"));
    m_pPopBtn = new aiguitoolkit::CShakeButton(m_pToolBar);
    m_pPopBtn->setObjectName(QStringLiteral("m_pPopBtn"));
    m_pSoundBtn = new aiguitoolkit::CShakeButton(m_pToolBar);
    m_pSoundBtn->setObjectName(QStringLiteral("m_pSoundBtn"));
    m_pReportBtn = new aiguitoolkit::CShakeButton(m_pToolBar);
    m_pReportBtn->setObjectName(QStringLiteral("m_pReportBtn"));
    for (QToolButton* b : {static_cast<QToolButton*>(m_pEnableAlarmBtn), static_cast<QToolButton*>(m_pAlarmTypeBtn),
             static_cast<QToolButton*>(m_pPopBtn), static_cast<QToolButton*>(m_pSoundBtn),
             static_cast<QToolButton*>(m_pReportBtn)})
        b->setMinimumSize(24, 24);
    toolRow->addWidget(m_pEnableAlarmBtn);
    toolRow->addStretch(1);
    toolRow->addWidget(m_pAlarmTypeBtn);
    toolRow->addWidget(m_pPopBtn);
    toolRow->addWidget(m_pSoundBtn);
    toolRow->addWidget(m_pReportBtn);
    return m_pToolBar;
}

} // namespace BodyTemperature
