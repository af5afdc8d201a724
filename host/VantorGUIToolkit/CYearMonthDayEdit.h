#pragma once
// A date field of the host's forms: "yyyy-MM-dd" with a calendar pop-up, in
// the system locale, never later than the limit the form sets. The time part
// is kept (forms send "yyyy-MM-ddThh:mm:ss"). GUI thread; created with a parent.
#include <QDateTimeEdit>

namespace VantorGUIToolkit {

class CYearMonthDayEdit final : public QDateTimeEdit {
    Q_OBJECT
public:
    explicit CYearMonthDayEdit(QWidget* parent = nullptr);
    ~CYearMonthDayEdit() override;

    // Latest value the user may choose.
    void SetLatest(const QDateTime& latest);
    // The value as "yyyy-MM-ddThh:mm:ss".
    QString IsoText() const;
};

} // namespace VantorGUIToolkit
