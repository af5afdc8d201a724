#pragma once
// The colour, icon and text rules shared by the event cards: object names by
// colour level (the style sheet colours them), mask icons, temperature badges,
// similarity and time texts. GUI thread.
#include <QString>
#include <cstdint>

#include "AlarmShowInfo.h"

class QLabel;
class QWidget;

namespace BodyTemperature {
namespace CardStyle {

// "Red", "Yellow", "Blue", "Green" for the colour levels 0..3; empty otherwise.
QString LevelColour(uint32_t alarmType);

// Applies the style sheet again, for a widget whose object name or styled
// property changed; nothing for a widget not polished yet (never shown), which
// gets the rules when it is.
void Repolish(QWidget* w);
void SetBold(QWidget* w);
// The module's style sheet, read from its resource once.
const QString& ModuleStyleSheet();

// Gives `w` the object name and, when the name changed, polishes it again so
// the style sheet's rules for the new name apply.
void Rename(QWidget* w, const QString& objectName);

// trunc(similarity * 100 + 0.5) followed by "%".
QString SimilarityText(double similarity);

// Fixed notation with one decimal ("36.5", "98.0").
QString TemperatureText(double temperature);

// The mask icon of the small cards: the three icon states styled and shown,
// MaskState::Unknown untouched, any other value hidden.
void ApplySmallMaskIcon(QLabel* icon, MaskState maskState);
// The mask icon of the pop-up: the three icon states styled and shown, any
// other value hidden.
void ApplyBigMaskIcon(QLabel* icon, MaskState maskState);

// The temperature badge: nothing for state 3; hidden for the value 65535
// ("not measured"); else "<value with one decimal> <unit>" on the state's
// badge picture. `temperatureText` is parsed with atof rules, always with a
// decimal point; `unitText` is the translated unit (empty for unknown unit
// codes). No unit conversion.
void ApplyTemperatureBadge(QLabel* badge, uint32_t temperatureState, const QString& temperatureText,
                           const QString& unitText, bool big);

} // namespace CardStyle
} // namespace BodyTemperature
