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

// The page's texts keep their translation context without the namespace.
struct PageText {
    Q_DECLARE_TR_FUNCTIONS(CPopConfigPage)
};

const char* const kDurationPattern = "[1-9]|[1-9][0-9]|[1-9][0-9][0-9]|1[0-7][0-9][0-9]|1800";

} // namespace

CPopConfigPage::CPopConfigPage(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("PopConfigPage"));
    const SettingsDialogFrame parts = MakeSettingsDialogFrame(this, QStringLiteral("PopConfigFrame"),
        PageText::tr("AlarmPopoverConfigurrXBbmhnE"), PageText::tr("close"), PageText::tr("Save"),
        PageText::tr("UndoMerge"));
    m_pFrame = parts.frame;
    m_pCloseBtn = parts.close;
    m_pSaveBtn = parts.save;
    m_pCancelBtn = parts.cancel;

    m_pNoMaskCheck = new QCheckBox(PageText::tr("DoNotWearAMaskPopoveDNxNGyNy"), m_pFrame);
    m_pNoMaskCheck->setObjectName(QStringLiteral("m_pNoMaskCheckBox"));
    m_pAbnormalCheck = new QCheckBox(PageText::tr("TemperatureAnomalyPosryPbLRo"), m_pFrame);
    m_pAbnormalCheck->setObjectName(QStringLiteral("m_pAbnormalCheckBox"));
    m_pAutoCloseCheck = new QCheckBox(PageText::tr("ThePopoverDisappearszDvdEEjV"), m_pFrame);
    m_pAutoCloseCheck->setObjectName(QStringLiteral("m_pAutoCloseCheckBox"));

    m_pDurationLabel = new QLabel(PageText::tr("DurationOfTheFramesaaaxzZiX"), m_pFrame);
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
    m_pDurationEdit->setToolTip(PageText::tr("PleaseEnterAPositiveInteger") + QLatin1Char(' ')
        + PageText::tr("From%1To%2").arg(QStringLiteral("1"), QStringLiteral("1800")));
    m_pDurationEdit->setFixedWidth(120);

    auto* durationRow = new QHBoxLayout;
    durationRow->setContentsMargins(24, 0, 0, 0);
    durationRow->addWidget(m_pDurationLabel);
    durationRow->addWidget(m_pDurationEdit);
    durationRow->addStretch(1);
    auto* body = new QVBoxLayout;
    body->setSpacing(12);
    body->addWidget(m_pNoMaskCheck);
    body->addWidget(m_pAbnormalCheck);
    body->addWidget(m_pAutoCloseCheck);
    body->addLayout(durationRow);
    LayOutSettingsDialog(this, parts, body, 4, QSize(400, 300));

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
        VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(PageText::tr("TimeCannotBeEmpty"));
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
            VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(PageText::tr("SaveFailed"));
            accept();
            return;
        }
    }
    VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(PageText::tr("SaveSuccessfulYCFI2BGO"));
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
