#pragma once
// The pop-up settings dialog: which faces raise the alarm pop-up and whether,
// after how many seconds (1 to 1800), it disappears by itself. Works on its
// own copy of the settings and saves the whole record itself; the information
// display runs it modally and copies GetConfig() back whatever the outcome.
// Created each time its button is pressed. GUI thread.
#include <QDialog>

#include "AlarmDisplayConfig.h"

class QCheckBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;
class QToolButton;

namespace BodyTemperature {

class CPopConfigPage final : public QDialog {
    Q_OBJECT
public:
    explicit CPopConfigPage(QWidget* parent = nullptr);
    ~CPopConfigPage() override;

    // Takes a copy and shows it: the three boxes and the duration in decimal.
    void SetConfig(const AlarmDisplayConfig& config);
    const AlarmDisplayConfig& GetConfig() const { return m_config; }

public slots:
    void onClickedOK();
    void onClickedClose();
    void onDispearSwich();

    // Escape closes like the close button: the fields go back to the copy.
    void reject() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showCopy();

    AlarmDisplayConfig m_config;
    QFrame* m_pFrame = nullptr;
    QToolButton* m_pCloseBtn = nullptr;
    QCheckBox* m_pNoMaskCheck = nullptr;
    QCheckBox* m_pAbnormalCheck = nullptr;
    QCheckBox* m_pAutoCloseCheck = nullptr;
    QLabel* m_pDurationLabel = nullptr;
    QLineEdit* m_pDurationEdit = nullptr;
    QPushButton* m_pSaveBtn = nullptr;
    QPushButton* m_pCancelBtn = nullptr;
};

} // namespace BodyTemperature
