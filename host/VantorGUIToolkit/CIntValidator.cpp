#include "VantorGUIToolkit/CIntValidator.h"

#include <QRegularExpression>

namespace VantorGUIToolkit {

CIntValidator::CIntValidator(int bottom, int top, QObject* parent) : QIntValidator(bottom, top, parent) {}

CIntValidator::~CIntValidator() = default;

QValidator::State CIntValidator::validate(QString& input, int&) const
{
    static const QRegularExpression number(QStringLiteral("^-?[0-9]*$"));
    if (input.isEmpty() || input == QLatin1String("-"))
        return bottom() < 0 || input.isEmpty() ? Intermediate : Invalid;
    if (!number.match(input).hasMatch())
        return Invalid;
    bool ok = false;
    const qlonglong value = input.toLongLong(&ok);
    if (!ok)
        return Invalid;
    if (value > top())
        return Invalid;
    if (value < bottom())
        return value < 0 ? Invalid : Intermediate;  // more digits may still reach the range
    return Acceptable;
}

void CIntValidator::fixup(QString& input) const
{
    bool ok = false;
    const qlonglong value = input.toLongLong(&ok);
    if (!ok) {
        input = QString::number(bottom());
        return;
    }
    input = QString::number(qBound<qlonglong>(bottom(), value, top()));
}

} // namespace VantorGUIToolkit
