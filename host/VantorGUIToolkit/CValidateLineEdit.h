#pragma once
// A line edit of the host's forms whose input is held to a rule (a validator
// it owns) and which shows a hint as a tool tip at itself: on demand (the form
// found the value wrong) or when a keystroke was refused (its own tool tip,
// which forms use to state the rule). GUI thread; created with a parent.
#include <QLineEdit>

namespace VantorGUIToolkit {

class CValidateLineEdit final : public QLineEdit {
    Q_OBJECT
public:
    explicit CValidateLineEdit(QWidget* parent = nullptr);
    ~CValidateLineEdit() override;

    // Installs a CRegExpValidator for the pattern (replacing the previous one);
    // an empty pattern removes the rule.
    void SetRegExp(const QString& pattern);
    // Shows text as a tool tip just below the field and gives it the focus.
    void ShowTip(const QString& text);

private:
    void onInputRejected();
};

} // namespace VantorGUIToolkit
