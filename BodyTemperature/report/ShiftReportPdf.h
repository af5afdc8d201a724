#pragma once
// Draws the PDF of a shift report with Qt's PDF writer: the first page holds
// the title, the range, the four counters and the bar chart of events per
// hour; then the table of abnormal-temperature and no-mask events with their
// faces; every page carries "page n of N". Rows are added one at a time so a
// large range never sits in memory. Used on the export worker thread.
#include <QPainter>
#include <QPdfWriter>
#include <memory>

#include "record/JournalEvent.h"
#include "report/ShiftReportSummary.h"

class QIODevice;

namespace BodyTemperature {

class ReportTexts;

class ShiftReportPdf final {
public:
    // `stations`: the rows come from several stations, and the table names
    // each row's station.
    ShiftReportPdf(QIODevice& out, const ReportTexts& texts, const ShiftReportSummary& summary, bool stations = false);
    ~ShiftReportPdf();
    ShiftReportPdf(const ShiftReportPdf&) = delete;
    ShiftReportPdf& operator=(const ShiftReportPdf&) = delete;

    void AddFlagged(const JournalEvent& e, const QString& station = QString());
    // Ends the document; false when the painter or the device failed.
    bool Finish();

    int PageCount() const { return m_pageCount; }

private:
    void drawFirstPage();
    void drawChart(const QRect& area);
    void drawTableHeader();
    void drawFooter();
    void newPage();

    const ReportTexts& m_texts;
    const ShiftReportSummary& m_summary;
    QPdfWriter m_writer;
    QPainter m_painter;
    int m_page = 1;
    int m_pageCount = 1;
    int m_y = 0;
    int m_rowsFirstPage = 0;
    int m_rowsPerPage = 0;
    bool m_ok = true;
    bool m_stations = false;
};

} // namespace BodyTemperature
