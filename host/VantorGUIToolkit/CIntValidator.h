#pragma once
// Integer validator of the host's forms. Unlike QIntValidator it refuses a
// keystroke that takes the number past the top of the range (instead of
// letting the field hold it as Intermediate), and fixup clamps into the range.
// GUI thread.
#include <QIntValidator>

namespace VantorGUIToolkit {

class CIntValidator final : public QIntValidator {
    Q_OBJECT
public:
    CIntValidator(int bottom, int top, QObject* parent = nullptr);
    ~CIntValidator() override;

    State validate(QString& input, int& pos) const override;
    void fixup(QString& input) const override;
};

} // namespace VantorGUIToolkit
