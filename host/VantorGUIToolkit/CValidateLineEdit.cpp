#include "VantorGUIToolkit/CValidateLineEdit.h"

#include <QToolTip>

#include "VantorGUIToolkit/CRegExpValidator.h"

namespace VantorGUIToolkit {

CValidateLineEdit::CValidateLineEdit(QWidget* parent) : QLineEdit(parent)
{
    connect(this, &QLineEdit::inputRejected, this, &CValidateLineEdit::onInputRejected);
}

CValidateLineEdit::~CValidateLineEdit() = default;

void CValidateLineEdit::SetRegExp(const QString& pattern)
{
    const QValidator* old = validator();
    setValidator(pattern.isEmpty() ? nullptr : new CRegExpValidator(pattern, this));
    if (old && old->parent() == this)
        delete old;
}

void CValidateLineEdit::ShowTip(const QString& text)
{
    setFocus(Qt::OtherFocusReason);
    QToolTip::showText(mapToGlobal(QPoint(0, height())), text, this);
}

void CValidateLineEdit::onInputRejected()
{
    if (!toolTip().isEmpty())
        QToolTip::showText(mapToGlobal(QPoint(0, height())), toolTip(), this);
}

} // namespace VantorGUIToolkit
