#pragma once
// The screening history window, opened from the page's report tool button:
// a history tab (CHistoryTab) and the shift report (CShiftReportDialog) as a
// second tab; the history's Export moves to the report with its filter.
//
// Created by CBTShowWidget with the page as parent (so it closes with the
// page), one at a time, not modal, deleted when closed. GUI thread. Owns the
// tab's query worker through the tab; a site source, when given, adds the
// scope selector.
#include <QDateTime>
#include <QWidget>

#include "ui/History/CHistoryTab.h"

class QTabWidget;

namespace BodyTemperature {

class CShiftReportDialog;

class CHistoryWindow final : public QWidget {
    Q_OBJECT
public:
    // `tab`: everything but the station source, made here from journalPath.
    CHistoryWindow(QWidget* parent, const QString& journalPath, const QDateTime& pageOpenedAt,
        CHistoryTab::Options tab);
    ~CHistoryWindow() override;

    CHistoryTab* History() const { return m_pHistory; }
    CShiftReportDialog* Report() const { return m_pReport; }

private:
    QTabWidget* m_pTabs = nullptr;
    CHistoryTab* m_pHistory = nullptr;
    CShiftReportDialog* m_pReport = nullptr;
};

} // namespace BodyTemperature
