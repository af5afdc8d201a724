#include "ui/CSoundConfigPage.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QFileDialog>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "CBTConfigDB.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include "VantorGUIToolkit/CPathComboBox.h"
#include "VantorGUIToolkit/TargetPath.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "ui/SettingsPageLook.h"

namespace BodyTemperature {
namespace {
QString text(const char* key) { return QCoreApplication::translate("CSoundConfigPage", key); }
} // namespace

CSoundConfigPage::CSoundConfigPage(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("SoundConfigPage"));
    setWindowFlags(Qt::WindowFlags(2051));  // dialog, frameless
    setAttribute(Qt::WA_TranslucentBackground);

    m_pFrame = new QFrame(this);
    m_pFrame->setObjectName(QStringLiteral("SoundConfigFrame"));
    ApplySettingsPageLook(m_pFrame);

    m_pTitleLabel = new QLabel(text("VoiceConfiguration"), m_pFrame);
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

    m_pNormalCheck = new QCheckBox(text("NormalBodyTemperaturOwfVDUEE"), m_pFrame);
    m_pNormalCheck->setObjectName(QStringLiteral("m_pNormalCheckBox"));
    m_pAbnormalCheck = new QCheckBox(text("DysthermicSpeechazTNCbEQ"), m_pFrame);
    m_pAbnormalCheck->setObjectName(QStringLiteral("m_pAbnormalCheckBox"));
    m_pNoMaskCheck = new QCheckBox(text("VoiceWithoutMaskNVbxLdpS"), m_pFrame);
    m_pNoMaskCheck->setObjectName(QStringLiteral("m_pNoMaskCheckBox"));
    m_pNormalPath = makeChooser("m_pNormalPathCombo");
    m_pAbnormalPath = makeChooser("m_pAbnormalPathCombo");
    m_pNoMaskPath = makeChooser("m_pNoMaskPathCombo");

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
    auto* rows = new QGridLayout;
    rows->setHorizontalSpacing(16);
    rows->setVerticalSpacing(14);
    rows->setColumnStretch(1, 1);
    rows->addWidget(m_pNormalCheck, 0, 0);
    rows->addWidget(m_pNormalPath, 0, 1);
    rows->addWidget(m_pAbnormalCheck, 1, 0);
    rows->addWidget(m_pAbnormalPath, 1, 1);
    rows->addWidget(m_pNoMaskCheck, 2, 0);
    rows->addWidget(m_pNoMaskPath, 2, 1);
    auto* buttonRow = new QHBoxLayout;
    buttonRow->addStretch(1);
    buttonRow->addWidget(m_pSaveBtn);
    buttonRow->addWidget(m_pCancelBtn);

    auto* inner = new QVBoxLayout(m_pFrame);
    inner->setContentsMargins(20, 12, 16, 16);
    inner->setSpacing(12);
    inner->addLayout(titleRow);
    inner->addSpacing(6);
    inner->addLayout(rows);
    inner->addStretch(1);
    inner->addLayout(buttonRow);

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(m_pFrame);
    // Translations differ in length: the dialog grows with its labels.
    outer->setSizeConstraint(QLayout::SetMinimumSize);
    resize(620, 290);

    connect(m_pSaveBtn, &QPushButton::clicked, this, &CSoundConfigPage::onClickedOK);
    connect(m_pCancelBtn, &QPushButton::clicked, this, &CSoundConfigPage::onClickedCancel);
    connect(m_pCloseBtn, &QToolButton::clicked, this, &CSoundConfigPage::onClickedClose);
}

CSoundConfigPage::~CSoundConfigPage() = default;

VantorGUIToolkit::CPathComboBox* CSoundConfigPage::makeChooser(const char* objectName)
{
    auto* chooser = new VantorGUIToolkit::CPathComboBox(m_pFrame);
    chooser->setObjectName(QString::fromLatin1(objectName));
    chooser->setFileMode(QFileDialog::ExistingFile);
    chooser->setDialogTitle(text("OpenAudioFile"));
    chooser->setFilter(text("AudioFiles") + QStringLiteral("(*.wav)"));
    return chooser;
}

bool CSoundConfigPage::FillDefaultVoicePaths(AlarmDisplayConfig& config, int language)
{
    if (!config.strNoMaskVoice.isEmpty() || !config.strNormalVoice.isEmpty() || !config.strAbnormalVoice.isEmpty())
        return false;
    const bool chinese = language == 1;
    config.strNoMaskVoice =
        VantorGUIToolkit::GetTargetPathFile(chinese ? QStringLiteral("no_mask.wav") : QStringLiteral("no_mask_en.wav"));
    config.strNormalVoice =
        VantorGUIToolkit::GetTargetPathFile(chinese ? QStringLiteral("normal.wav") : QStringLiteral("normal_en.wav"));
    config.strAbnormalVoice = VantorGUIToolkit::GetTargetPathFile(
        chinese ? QStringLiteral("abnormal.wav") : QStringLiteral("abnormal_en.wav"));
    return true;
}

void CSoundConfigPage::SetConfig(const AlarmDisplayConfig& config)
{
    m_config = config;
    if (FillDefaultVoicePaths(m_config, clientcommonlogical::CConfigMgr::Instance()->GetLanguage()))
        CBTConfigDB::Instance()->SaveAlarmDisplayConfig(m_config);

    m_pNormalPath->addPath(m_config.strNormalVoice);
    m_pAbnormalPath->addPath(m_config.strAbnormalVoice);
    m_pNoMaskPath->addPath(m_config.strNoMaskVoice);
    m_pNormalCheck->setChecked(m_config.bSoundNormal);
    m_pAbnormalCheck->setChecked(m_config.bSoundAbnormal);
    m_pNoMaskCheck->setChecked(m_config.bSoundNoMask);
}

void CSoundConfigPage::onClickedOK()
{
    const QString normal = m_pNormalPath->currentPath();
    const QString abnormal = m_pAbnormalPath->currentPath();
    const QString noMask = m_pNoMaskPath->currentPath();
    const bool soundNormal = m_pNormalCheck->isChecked();
    const bool soundAbnormal = m_pAbnormalCheck->isChecked();
    const bool soundNoMask = m_pNoMaskCheck->isChecked();

    if (normal != m_config.strNormalVoice || abnormal != m_config.strAbnormalVoice
        || noMask != m_config.strNoMaskVoice || soundNormal != m_config.bSoundNormal
        || soundAbnormal != m_config.bSoundAbnormal || soundNoMask != m_config.bSoundNoMask) {
        m_config.strNormalVoice = normal;
        m_config.strAbnormalVoice = abnormal;
        m_config.strNoMaskVoice = noMask;
        m_config.bSoundNormal = soundNormal;
        m_config.bSoundAbnormal = soundAbnormal;
        m_config.bSoundNoMask = soundNoMask;
        // On failure the copy keeps the new values: the display plays them for
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

void CSoundConfigPage::onClickedCancel() { reject(); }
void CSoundConfigPage::onClickedClose() { reject(); }

} // namespace BodyTemperature
