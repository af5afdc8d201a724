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
#include "clientcommonlogical/CConfigMgr.h"
#include "ui/SettingsPageLook.h"

namespace BodyTemperature {
namespace {
// The page's texts keep their translation context without the namespace.
struct PageText {
    Q_DECLARE_TR_FUNCTIONS(CSoundConfigPage)
};
} // namespace

CSoundConfigPage::CSoundConfigPage(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("SoundConfigPage"));
    const SettingsDialogFrame parts = MakeSettingsDialogFrame(this, QStringLiteral("SoundConfigFrame"),
        PageText::tr("VoiceConfiguration"), PageText::tr("close"), PageText::tr("Save"),
        PageText::tr("UndoMerge"));
    m_pFrame = parts.frame;
    m_pCloseBtn = parts.close;
    m_pSaveBtn = parts.save;
    m_pCancelBtn = parts.cancel;

    m_pNormalCheck = new QCheckBox(PageText::tr("NormalBodyTemperaturOwfVDUEE"), m_pFrame);
    m_pNormalCheck->setObjectName(QStringLiteral("m_pNormalCheckBox"));
    m_pAbnormalCheck = new QCheckBox(PageText::tr("DysthermicSpeechazTNCbEQ"), m_pFrame);
    m_pAbnormalCheck->setObjectName(QStringLiteral("m_pAbnormalCheckBox"));
    m_pNoMaskCheck = new QCheckBox(PageText::tr("VoiceWithoutMaskNVbxLdpS"), m_pFrame);
    m_pNoMaskCheck->setObjectName(QStringLiteral("m_pNoMaskCheckBox"));
    m_pNormalPath = makeChooser("m_pNormalPathCombo");
    m_pAbnormalPath = makeChooser("m_pAbnormalPathCombo");
    m_pNoMaskPath = makeChooser("m_pNoMaskPathCombo");

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
    LayOutSettingsDialog(this, parts, rows, 6, QSize(620, 290));

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
    chooser->setDialogTitle(PageText::tr("OpenAudioFile"));
    chooser->setFilter(PageText::tr("AudioFiles") + QStringLiteral("(*.wav)"));
    chooser->setPathCheck([](const QString& path) {
        if (IsStorablePath(path))
            return true;
        VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(PageText::tr("VoicePathWithQuote"));
        return false;
    });
    return chooser;
}

bool CSoundConfigPage::IsStorablePath(const QString& path)
{
    return !path.contains(QLatin1Char('\''));
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
    // A typed path the store cannot keep would empty the settings: the page
    // stays open so that the user can choose another file.
    if (!IsStorablePath(normal) || !IsStorablePath(abnormal) || !IsStorablePath(noMask)) {
        VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(PageText::tr("VoicePathWithQuote"));
        return;
    }

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
            VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(PageText::tr("SaveFailed"));
            accept();
            return;
        }
    }
    VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(PageText::tr("SaveSuccessfulYCFI2BGO"));
    accept();
}

void CSoundConfigPage::onClickedCancel() { reject(); }
void CSoundConfigPage::onClickedClose() { reject(); }

} // namespace BodyTemperature
