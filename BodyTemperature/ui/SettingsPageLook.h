#pragma once
// The fallback look of the settings pages: a dark panel with light text, set
// as a palette so that the module's style sheet, which styles the pages by
// object name, still takes precedence wherever it says something.
class QWidget;

namespace BodyTemperature {

// Gives panel a dark, opaque background and light text for its children.
void ApplySettingsPageLook(QWidget* panel);

} // namespace BodyTemperature
