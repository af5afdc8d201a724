#pragma once
// The settings pages' own look, and dragging of the frameless ones.
// The pages live under the module's style sheet, which would otherwise leave
// their texts dark on a dark panel; the look is a small style sheet on the
// page's panel that only covers what must be readable.
#include <QString>

class QDialog;
class QFrame;
class QLabel;
class QLayout;
class QPushButton;
class QSize;
class QToolButton;
class QWidget;

namespace BodyTemperature {

// A dark panel with light texts and fields for panel and its children
// (panel must have its object name set).
void ApplySettingsPageLook(QWidget* panel);

// A frameless window has no title bar to drag: pressing the left button on
// handle and moving drags handle's window. The filter is owned by handle.
void EnableDragMove(QWidget* handle);

// The parts every frameless settings dialog with Save and Cancel shares; all
// are children of frame, which is a child of the dialog.
struct SettingsDialogFrame {
    QFrame* frame = nullptr;
    QLabel* title = nullptr;
    QToolButton* close = nullptr;
    QPushButton* save = nullptr;
    QPushButton* cancel = nullptr;
};

// Makes dialog frameless with a translucent background and creates its panel
// (named frameName, with the settings look), the bold title that drags the
// window, the close button and the Save (default) and Cancel buttons.
SettingsDialogFrame MakeSettingsDialogFrame(QDialog* dialog, const QString& frameName, const QString& title,
    const QString& closeTip, const QString& saveText, const QString& cancelText);

// Lays the panel out: title row, body, a stretch, the buttons at the right.
// The dialog starts at startSize and grows with its labels, whose length
// differs between translations.
void LayOutSettingsDialog(QDialog* dialog, const SettingsDialogFrame& parts, QLayout* body, int spacingAfterTitle,
    const QSize& startSize);

} // namespace BodyTemperature
