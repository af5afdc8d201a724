#pragma once
// The settings pages' own look, and dragging of the frameless ones.
// The pages live under the module's style sheet, which would otherwise leave
// their texts dark on a dark panel; the look is a small style sheet on the
// page's panel that only covers what must be readable.
class QWidget;

namespace BodyTemperature {

// A dark panel with light texts and fields for panel and its children
// (panel must have its object name set).
void ApplySettingsPageLook(QWidget* panel);

// A frameless window has no title bar to drag: pressing the left button on
// handle and moving drags handle's window. The filter is owned by handle.
void EnableDragMove(QWidget* handle);

} // namespace BodyTemperature
