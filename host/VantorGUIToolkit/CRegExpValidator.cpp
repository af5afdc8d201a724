#include "VantorGUIToolkit/CRegExpValidator.h"

namespace VantorGUIToolkit {

CRegExpValidator::CRegExpValidator(const QString& pattern, QObject* parent)
    : QRegExpValidator(QRegExp(pattern), parent)
{
}

CIntValidator::CIntValidator(int bottom, int top, QObject* parent)
    : QValidator(parent), m_iBottom(bottom), m_iTop(top)
{
}

QValidator::State CIntValidator::validate(QString& input, int&) const
{
    if (input.isEmpty())
        return Intermediate;
    for (const QChar c : input) {
        if (!c.isDigit() || c.unicode() > 0x7f)
            return Invalid;
    }
    if (input.size() > 1 && input.at(0) == QLatin1Char('0'))
        return Invalid;
    bool ok = false;
    const qlonglong value = input.toLongLong(&ok);
    if (!ok || value > m_iTop)
        return Invalid;
    if (value >= m_iBottom)
        return Acceptable;
    // Below the range: acceptable only if appending digits can still land in
    // it (a lone 0 cannot grow without becoming a leading zero).
    if (value == 0)
        return Invalid;
    for (qlonglong v = value * 10, span = 10; v <= m_iTop; v *= 10, span *= 10) {
        if (v + span - 1 >= m_iBottom)
            return Intermediate;
    }
    return Invalid;
}

} // namespace VantorGUIToolkit
