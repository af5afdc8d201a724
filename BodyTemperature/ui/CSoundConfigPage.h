#pragma once
// The voice settings dialog: the three voice prompts (normal temperature,
// abnormal temperature, no mask) switched on or off, each with its sound file.
// Works on its own copy of the settings and saves the whole record itself; the
// information display runs it modally and copies GetConfig() back whatever the
// outcome. Created each time its button is pressed. GUI thread.
#include <QDialog>

#include "AlarmDisplayConfig.h"

class QCheckBox;
class QFrame;
class QPushButton;
class QToolButton;

namespace VantorGUIToolkit {
class CPathComboBox;
}

namespace BodyTemperature {

class CSoundConfigPage final : public QDialog {
    Q_OBJECT
public:
    explicit CSoundConfigPage(QWidget* parent = nullptr);
    ~CSoundConfigPage() override;

    // Takes a copy; when all three voice paths are empty it fills in the
    // shipped voice files for the client's language and saves the record at
    // once. Then shows the copy.
    void SetConfig(const AlarmDisplayConfig& config);
    const AlarmDisplayConfig& GetConfig() const { return m_config; }

    // Whether the settings store can keep this path: it writes paths into its
    // statement unescaped, so a single quote would fail the save and leave
    // the settings table empty.
    static bool IsStorablePath(const QString& path);

public slots:
    void onClickedOK();
    void onClickedCancel();
    void onClickedClose();

private:
    VantorGUIToolkit::CPathComboBox* makeChooser(const char* objectName);

    AlarmDisplayConfig m_config;
    QFrame* m_pFrame = nullptr;
    QToolButton* m_pCloseBtn = nullptr;
    QCheckBox* m_pNormalCheck = nullptr;
    QCheckBox* m_pAbnormalCheck = nullptr;
    QCheckBox* m_pNoMaskCheck = nullptr;
    VantorGUIToolkit::CPathComboBox* m_pNormalPath = nullptr;
    VantorGUIToolkit::CPathComboBox* m_pAbnormalPath = nullptr;
    VantorGUIToolkit::CPathComboBox* m_pNoMaskPath = nullptr;
    QPushButton* m_pSaveBtn = nullptr;
    QPushButton* m_pCancelBtn = nullptr;
};

} // namespace BodyTemperature
