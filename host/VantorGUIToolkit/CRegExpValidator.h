#pragma once
// Validators of the host's input fields. Unlike Qt's own, they never accept
// a partial value that could not be completed into a valid one, so a field
// only ever holds a prefix of a valid value (or nothing). GUI thread.
#include <QRegExpValidator>
#include <QValidator>

namespace VantorGUIToolkit {

// Whole-text regular expression. Text that is a proper prefix of a match is
// Intermediate, anything else that does not match is Invalid.
class CRegExpValidator final : public QRegExpValidator {
    Q_OBJECT
public:
    explicit CRegExpValidator(const QString& pattern, QObject* parent = nullptr);
};

// Whole numbers in [bottom, top] written without sign or leading zero.
// Empty text is Intermediate; a number above top, or one that cannot reach
// bottom by typing more digits, is Invalid.
class CIntValidator final : public QValidator {
    Q_OBJECT
public:
    CIntValidator(int bottom, int top, QObject* parent = nullptr);

    State validate(QString& input, int& pos) const override;
    int bottom() const { return m_iBottom; }
    int top() const { return m_iTop; }

private:
    int m_iBottom;
    int m_iTop;
};

} // namespace VantorGUIToolkit
