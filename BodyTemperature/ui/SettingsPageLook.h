#pragma once
// The fallback look of the settings pages, and dragging of the frameless ones.
// The look is set as a palette so that the module's style sheet, which styles
// the pages by object name, still takes precedence wherever it says something.
class QWidget;

namespace BodyTemperature {

// Gives panel a dark, opaque background and light text for its children.
void ApplySettingsPageLook(QWidget* panel);

// A frameless window has no title bar to drag: pressing the left button on
// handle and moving drags handle's window. The filter is owned by handle.
void EnableDragMove(QWidget* handle);

} // namespace BodyTemperature
