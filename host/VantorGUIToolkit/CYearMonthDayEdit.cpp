#include "VantorGUIToolkit/CYearMonthDayEdit.h"

namespace VantorGUIToolkit {

CYearMonthDayEdit::CYearMonthDayEdit(QWidget* parent) : QDateTimeEdit(parent)
{
    setLocale(QLocale::system());
    setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    setCalendarPopup(true);
    setMinimumDateTime(QDateTime(QDate(1900, 1, 1), QTime(0, 0, 0)));
}

CYearMonthDayEdit::~CYearMonthDayEdit() = default;

void CYearMonthDayEdit::SetLatest(const QDateTime& latest)
{
    setMaximumDateTime(latest);
}

QString CYearMonthDayEdit::IsoText() const
{
    return dateTime().toString(QStringLiteral("yyyy-MM-ddThh:mm:ss"));
}

} // namespace VantorGUIToolkit
