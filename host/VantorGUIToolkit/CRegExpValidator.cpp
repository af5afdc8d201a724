#include "VantorGUIToolkit/CRegExpValidator.h"

namespace VantorGUIToolkit {

CRegExpValidator::CRegExpValidator(const QString& pattern, QObject* parent)
    : QRegExpValidator(QRegExp(pattern), parent)
{
}

} // namespace VantorGUIToolkit
