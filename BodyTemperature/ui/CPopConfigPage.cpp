#include "ui/CPopConfigPage.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "CBTConfigDB.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include "VantorGUIToolkit/CRegExpValidator.h"
#include "ui/SettingsPageLook.h"

namespace BodyTemperature {
namespace {

QString text(const char* key) { return QCoreApplication::translate("CPopConfigPage", key); }

const char* const kDurationPattern = "[1-9]|[1-9][0-9]|[1-9][0-9][0-9]|1[0-7][0-9][0-9]|1800";

} // namespace

CPopConfigPage::CPopConfigPage(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("PopConfigPage"));
    setWindowFlags(Qt::WindowFlags(2051));  // dialog, frameless
    setAttribute(Qt::WA_TranslucentBackground);

    m_pFrame = new QFrame(this);
    m_pFrame->setObjectName(QStringLiteral("PopConfigFrame"));
    ApplySettingsPageLook(m_pFrame);

    m_pTitleLabel = new QLabel(text("AlarmPopoverConfigurrXBbmhnE"), m_pFrame);
    m_pTitleLabel->setObjectName(QStringLiteral("m_pTitleLabel"));
    QFont titleFont = m_pTitleLabel->font();
    titleFont.setBold(true);
    m_pTitleLabel->setFont(titleFont);
    EnableDragMove(m_pTitleLabel);
    m_pCloseBtn = new QToolButton(m_pFrame);
    m_pCloseBtn->setObjectName(QStringLiteral("m_pCloseBtn"));
    m_pCloseBtn->setToolTip(text("close"));
    m_pCloseBtn->setText(QStringLiteral("\u2715"));
    m_pCloseBtn->setAutoRaise(true);
    m_pCloseBtn->setCursor(Qt::PointingHandCursor);

    m_pNoMaskCheck = new QCheckBox(text("DoNotWearAMaskPopoveDNxNGyNy"), m_pFrame);
    m_pNoMaskCheck->setObjectName(QStringLiteral("m_pNoMaskCheckBox"));
    m_pAbnormalCheck = new QCheckBox(text("TemperatureAnomalyPosryPbLRo"), m_pFrame);
    m_pAbnormalCheck->setObjectName(QStringLiteral("m_pAbnormalCheckBox"));
    m_pAutoCloseCheck = new QCheckBox(text("ThePopoverDisappearszDvdEEjV"), m_pFrame);
    m_pAutoCloseCheck->setObjectName(QStringLiteral("m_pAutoCloseCheckBox"));

    m_pDurationLabel = new QLabel(text("DurationOfTheFramesaaaxzZiX"), m_pFrame);
    m_pDurationLabel->setObjectName(QStringLiteral("m_pDurationLabel"));
    m_pDurationEdit = new QLineEdit(QStringLiteral("5"), m_pFrame);
    m_pDurationEdit->setObjectName(QStringLiteral("m_pDurationEdit"));
    m_pDurationEdit->setValidator(
        new VantorGUIToolkit::CRegExpValidator(QString::fromLatin1(kDurationPattern), m_pDurationEdit));
    // Nothing may enter the field except typed digits: no menu (paste), no
    // drops, no middle-click paste, and the paste shortcut is swallowed below.
    m_pDurationEdit->setContextMenuPolicy(Qt::NoContextMenu);
    m_pDurationEdit->setAcceptDrops(false);
    m_pDurationEdit->installEventFilter(this);
    m_pDurationEdit->setToolTip(text("PleaseEnterAPositiveInteger") + QLatin1Char(' ')
        + text("From%1To%2").arg(QStringLiteral("1"), QStringLiteral("1800")));
    m_pDurationEdit->setFixedWidth(120);

    m_pSaveBtn = new QPushButton(text("Save"), m_pFrame);
    m_pSaveBtn->setObjectName(QStringLiteral("m_pSaveBtn"));
    m_pSaveBtn->setDefault(true);
    m_pCancelBtn = new QPushButton(text("UndoMerge"), m_pFrame);
    m_pCancelBtn->setObjectName(QStringLiteral("m_pCancelBtn"));
    for (QPushButton* b : {m_pSaveBtn, m_pCancelBtn}) {
        b->setMinimumWidth(88);
        b->setCursor(Qt::PointingHandCursor);
    }

    auto* titleRow = new QHBoxLayout;
    titleRow->addWidget(m_pTitleLabel, 1);
    titleRow->addWidget(m_pCloseBtn);
    auto* durationRow = new QHBoxLayout;
    durationRow->setContentsMargins(24, 0, 0, 0);
    durationRow->addWidget(m_pDurationLabel);
    durationRow->addWidget(m_pDurationEdit);
    durationRow->addStretch(1);
    auto* buttonRow = new QHBoxLayout;
    buttonRow->addStretch(1);
    buttonRow->addWidget(m_pSaveBtn);
    buttonRow->addWidget(m_pCancelBtn);

    auto* inner = new QVBoxLayout(m_pFrame);
    inner->setContentsMargins(20, 12, 16, 16);
    inner->setSpacing(12);
    inner->addLayout(titleRow);
    inner->addSpacing(4);
    inner->addWidget(m_pNoMaskCheck);
    inner->addWidget(m_pAbnormalCheck);
    inner->addWidget(m_pAutoCloseCheck);
    inner->addLayout(durationRow);
    inner->addStretch(1);
    inner->addLayout(buttonRow);

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(m_pFrame);
    // Translations differ in length: the dialog grows with its labels.
    outer->setSizeConstraint(QLayout::SetMinimumSize);
    resize(400, 300);

    connect(m_pSaveBtn, &QPushButton::clicked, this, &CPopConfigPage::onClickedOK);
    connect(m_pCancelBtn, &QPushButton::clicked, this, &CPopConfigPage::onClickedClose);
    connect(m_pCloseBtn, &QToolButton::clicked, this, &CPopConfigPage::onClickedClose);
    connect(m_pAutoCloseCheck, &QCheckBox::clicked, this, &CPopConfigPage::onDispearSwich);

    showCopy();
}

CPopConfigPage::~CPopConfigPage() = default;

void CPopConfigPage::SetConfig(const AlarmDisplayConfig& config)
{
    m_config = config;
    showCopy();
}

void CPopConfigPage::showCopy()
{
    m_pNoMaskCheck->setChecked(m_config.bPopNoMask);
    m_pAbnormalCheck->setChecked(m_config.bPopAbnormal);
    m_pAutoCloseCheck->setChecked(m_config.bPopAutoClose);
    m_pDurationEdit->setText(QString::number(m_config.iPopDuration));
    onDispearSwich();
}

void CPopConfigPage::onDispearSwich()
{
    // Disabled, not cleared: the duration is kept and saved with the rest.
    m_pDurationEdit->setEnabled(m_pAutoCloseCheck->isChecked());
}

void CPopConfigPage::onClickedOK()
{
    if (m_pDurationEdit->text().isEmpty()) {
        VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(text("TimeCannotBeEmpty"));
        return;
    }
    const bool noMask = m_pNoMaskCheck->isChecked();
    const bool abnormal = m_pAbnormalCheck->isChecked();
    const bool autoClose = m_pAutoCloseCheck->isChecked();
    const int duration = m_pDurationEdit->text().toInt();
    if (noMask != m_config.bPopNoMask || abnormal != m_config.bPopAbnormal || autoClose != m_config.bPopAutoClose
        || duration != m_config.iPopDuration) {
        m_config.bPopNoMask = noMask;
        m_config.bPopAbnormal = abnormal;
        m_config.bPopAutoClose = autoClose;
        m_config.iPopDuration = duration;
        // On failure the copy keeps the new values: the display uses them for
        // the rest of the run even though the file could not take them.
        if (!CBTConfigDB::Instance()->SaveAlarmDisplayConfig(m_config)) {
            VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(text("SaveFailed"));
            accept();
            return;
        }
    }
    VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(text("SaveSuccessfulYCFI2BGO"));
    accept();
}

void CPopConfigPage::onClickedClose() { reject(); }

void CPopConfigPage::reject()
{
    showCopy();
    QDialog::reject();
}

bool CPopConfigPage::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_pDurationEdit) {
        if (event->type() == QEvent::KeyPress) {
            auto* key = static_cast<QKeyEvent*>(event);
            if (key->matches(QKeySequence::Paste))
                return true;
            // Typing 0 into 0 or nothing would start a leading zero.
            if (key->key() == Qt::Key_0 && m_pDurationEdit->text().toInt() == 0)
                return true;
        } else if (event->type() == QEvent::MouseButtonRelease || event->type() == QEvent::MouseButtonPress) {
            // X11 pastes the selection on a middle click.
            if (static_cast<QMouseEvent*>(event)->button() == Qt::MiddleButton)
                return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace BodyTemperature
