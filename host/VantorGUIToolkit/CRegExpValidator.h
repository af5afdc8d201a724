#pragma once
// Validator of the host's input fields: the whole text must match a regular
// expression. A text that is a proper prefix of a match is Intermediate (the
// field may hold it while the user types), anything else is refused, so a
// field only ever holds a prefix of a valid value or nothing. GUI thread.
#include <QRegExpValidator>

namespace VantorGUIToolkit {

class CRegExpValidator final : public QRegExpValidator {
    Q_OBJECT
public:
    explicit CRegExpValidator(const QString& pattern, QObject* parent = nullptr);
};

} // namespace VantorGUIToolkit
