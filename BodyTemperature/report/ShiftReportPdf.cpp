#include "report/ShiftReportPdf.h"

#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <algorithm>
#include <cmath>

#include "report/ReportTexts.h"

namespace BodyTemperature {

namespace {

constexpr int kDpi = 150;
constexpr int kMargin = 70;
constexpr int kFooter = 60;
constexpr int kRow = 80;
constexpr int kHeaderRow = 44;
constexpr int kTableTopFirst = 1000;
const QColor kInk(0x1B, 0x26, 0x33);
const QColor kMuted(0x66, 0x73, 0x80);
const QColor kRule(0xD5, 0xDB, 0xE2);
const QColor kAll(0x00, 0x9C, 0xB0);
const QColor kAbnormal(0xFF, 0x4C, 0x1F);
const QColor kNoMask(0xE0, 0x8A, 0x00);
const QColor kNormal(0x12, 0xA8, 0x5C);

QFont font(double points, bool bold = false)
{
    QFont f(QStringLiteral("Sans Serif"));
    f.setPointSizeF(points);
    f.setBold(bold);
    return f;
}

// Columns of the event table: left edges.
constexpr int kColFace = kMargin;
constexpr int kColTime = kMargin + 80;
constexpr int kColCamera = kMargin + 370;
constexpr int kColTemp = kMargin + 660;
constexpr int kColMask = kMargin + 820;
constexpr int kColPerson = kMargin + 960;
// With stations, the station's column takes the time column's spare width
// (a time needs about 180) and part of the camera's.
constexpr int kStationLeft = kColTime + 210;
constexpr int kStationWidth = kColCamera + 130 - kStationLeft;

} // namespace

ShiftReportPdf::ShiftReportPdf(QIODevice& out, const ReportTexts& texts, const ShiftReportSummary& summary,
    bool stations)
    : m_texts(texts), m_summary(summary), m_writer(&out), m_stations(stations)
{
    m_writer.setResolution(kDpi);
    m_writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)));
    m_writer.setTitle(texts("ReportTitle"));
    m_writer.setCreator(QStringLiteral("BodyTemperature"));
    m_ok = m_painter.begin(&m_writer);
    const int bottom = m_writer.height() - kMargin - kFooter;
    m_rowsFirstPage = std::max(0, (bottom - (kTableTopFirst + kHeaderRow)) / kRow);
    m_rowsPerPage = std::max(1, (bottom - (kMargin + kHeaderRow)) / kRow);
    const int64_t rest = std::max<int64_t>(0, summary.flagged - m_rowsFirstPage);
    m_pageCount = 1 + int((rest + m_rowsPerPage - 1) / m_rowsPerPage);
    if (m_ok)
        drawFirstPage();
}

ShiftReportPdf::~ShiftReportPdf()
{
    if (m_painter.isActive())
        m_painter.end();
}

void ShiftReportPdf::drawFirstPage()
{
    QPainter& p = m_painter;
    const int w = m_writer.width();
    p.setPen(kInk);
    p.setFont(font(20, true));
    p.drawText(QRect(kMargin, kMargin, w - 2 * kMargin, 60), Qt::AlignLeft | Qt::AlignVCenter, m_texts("ReportTitle"));
    p.setFont(font(10));
    p.drawText(QRect(kMargin, kMargin + 70, w - 2 * kMargin, 32), Qt::AlignLeft | Qt::AlignVCenter,
        m_texts("ReportRange").arg(m_summary.from.toString(QStringLiteral("yyyy-MM-dd hh:mm")),
            m_summary.to.toString(QStringLiteral("yyyy-MM-dd hh:mm"))));
    p.setPen(kMuted);
    p.setFont(font(8));
    p.drawText(QRect(kMargin, kMargin + 104, w - 2 * kMargin, 28), Qt::AlignLeft | Qt::AlignVCenter,
        m_texts("ReportGenerated").arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"))));

    // The four counters, in the order and colours of the page's title strip.
    struct Counter {
        const char* key;
        int64_t value;
        QColor colour;
    };
    const Counter counters[] = {
        {"TheTotalNumberOfyDridGtt", m_summary.counts.all, kAll},
        {"TemperatureAnomaliesWaPooFNo", m_summary.counts.abnormal, kAbnormal},
        {"NoGauzeMask", m_summary.counts.noMask, kNoMask},
        {"TemperatureIsNormalLvoFXpTP", m_summary.counts.normal, kNormal},
    };
    const int boxTop = kMargin + 160;
    const int gap = 24;
    const int boxW = (w - 2 * kMargin - 3 * gap) / 4;
    for (int i = 0; i < 4; ++i) {
        const QRect box(kMargin + i * (boxW + gap), boxTop, boxW, 120);
        p.setPen(QPen(counters[i].colour, 3));
        p.setBrush(Qt::NoBrush);
        p.drawRoundedRect(box, 10, 10);
        p.setPen(kMuted);
        p.setFont(font(9));
        p.drawText(box.adjusted(16, 10, -16, -70), Qt::AlignLeft | Qt::AlignVCenter,
            m_texts.text("BodyTemperature::BTShowTitle", counters[i].key));
        p.setPen(counters[i].colour);
        p.setFont(font(22, true));
        p.drawText(box.adjusted(16, 46, -16, -8), Qt::AlignLeft | Qt::AlignVCenter, QString::number(counters[i].value));
    }

    p.setPen(kInk);
    p.setFont(font(12, true));
    p.drawText(QRect(kMargin, boxTop + 160, w - 2 * kMargin, 40), Qt::AlignLeft | Qt::AlignVCenter,
        m_texts("ReportEventsPerHour"));
    drawChart(QRect(kMargin, boxTop + 210, w - 2 * kMargin, kTableTopFirst - 80 - (boxTop + 210)));

    p.setPen(kInk);
    p.setFont(font(12, true));
    p.drawText(QRect(kMargin, kTableTopFirst - 60, w - 2 * kMargin, 40), Qt::AlignLeft | Qt::AlignVCenter,
        m_texts("ReportFlaggedEvents"));
    m_y = kTableTopFirst;
    drawTableHeader();
    if (m_summary.flagged == 0) {
        p.setPen(kMuted);
        p.setFont(font(10));
        p.drawText(QRect(kMargin, m_y + 10, w - 2 * kMargin, 40), Qt::AlignLeft | Qt::AlignVCenter,
            m_texts("ReportNoFlagged"));
    }
    drawFooter();
}

void ShiftReportPdf::drawChart(const QRect& area)
{
    QPainter& p = m_painter;
    const std::vector<int64_t>& buckets = m_summary.buckets;
    const int64_t top = std::max<int64_t>(1, *std::max_element(buckets.begin(), buckets.end()));
    const QRect plot = area.adjusted(70, 10, -10, -50);
    p.setPen(QPen(kRule, 2));
    p.drawLine(plot.bottomLeft(), plot.bottomRight());
    p.setFont(font(7));
    for (int i = 0; i <= 4; ++i) {
        const int y = plot.bottom() - plot.height() * i / 4;
        p.setPen(QPen(kRule, 1));
        p.drawLine(plot.left(), y, plot.right(), y);
        p.setPen(kMuted);
        p.drawText(QRect(area.left(), y - 14, 62, 28), Qt::AlignRight | Qt::AlignVCenter,
            QString::number((top * i + 3) / 4));
    }
    const int n = int(buckets.size());
    const double slot = double(plot.width()) / n;
    const int labelEvery = std::max(1, int(std::ceil(60.0 / slot)));
    for (int i = 0; i < n; ++i) {
        const int h = int(double(plot.height()) * double(buckets[size_t(i)]) / double(top));
        const int x = plot.left() + int(i * slot + slot * 0.15);
        const int bw = std::max(1, int(slot * 0.7));
        p.fillRect(QRect(x, plot.bottom() - h, bw, h), kAll);
        if (i % labelEvery == 0) {
            const QDateTime t = m_summary.from.addSecs(int64_t(i) * 3600 * m_summary.bucketHours);
            p.setPen(kMuted);
            p.drawText(QRect(x - 30, plot.bottom() + 6, bw + 60, 30), Qt::AlignHCenter | Qt::AlignTop,
                t.toString(QStringLiteral("hh:mm")));
        }
    }
}

void ShiftReportPdf::drawTableHeader()
{
    QPainter& p = m_painter;
    const int w = m_writer.width();
    p.fillRect(QRect(kMargin, m_y, w - 2 * kMargin, kHeaderRow - 6), QColor(0xEE, 0xF2, 0xF6));
    p.setPen(kInk);
    p.setFont(font(8, true));
    const QRect row(0, m_y, 0, kHeaderRow - 6);
    auto cell = [&](int x, int width, const char* key) {
        p.drawText(QRect(x + 6, row.top(), width, row.height()), Qt::AlignLeft | Qt::AlignVCenter, m_texts(key));
    };
    cell(kColFace, 80, "ReportColFace");
    cell(kColTime, m_stations ? kStationLeft - kColTime - 10 : 280, "ReportColTime");
    const int camera = m_stations ? kStationLeft + kStationWidth : kColCamera;
    if (m_stations)
        cell(kStationLeft, kStationWidth - 10, "ReportColStation");
    cell(camera, kColTemp - camera - 10, "ReportColCamera");
    cell(kColTemp, 150, "ReportColTemperature");
    cell(kColMask, 130, "ReportColMask");
    cell(kColPerson, w - kMargin - kColPerson, "ReportColPerson");
    m_y += kHeaderRow;
}

void ShiftReportPdf::drawFooter()
{
    QPainter& p = m_painter;
    p.setPen(kMuted);
    p.setFont(font(8));
    p.drawText(QRect(kMargin, m_writer.height() - kMargin - 30, m_writer.width() - 2 * kMargin, 30),
        Qt::AlignRight | Qt::AlignVCenter, m_texts("ReportPage").arg(m_page).arg(m_pageCount));
}

void ShiftReportPdf::newPage()
{
    m_ok = m_writer.newPage() && m_ok;
    ++m_page;
    m_y = kMargin;
    drawTableHeader();
    drawFooter();
}

void ShiftReportPdf::AddFlagged(const JournalEvent& e, const QString& station)
{
    if (!m_ok)
        return;
    if (m_y + kRow > m_writer.height() - kMargin - kFooter)
        newPage();
    QPainter& p = m_painter;
    const QRect faceBox(kColFace + 6, m_y + 6, 51, 68);
    QImage face;
    if (!e.faceJpeg.isEmpty() && face.loadFromData(e.faceJpeg, "JPEG"))
        p.drawImage(faceBox, face);
    else
        p.fillRect(faceBox, QColor(0xE4, 0xE8, 0xEE));
    const QRect text(0, m_y, 0, kRow);
    auto cell = [&](int x, int width, const QString& s, const QColor& colour) {
        p.setPen(colour);
        p.drawText(QRect(x + 6, text.top(), width - 12, text.height()), Qt::AlignLeft | Qt::AlignVCenter,
            p.fontMetrics().elidedText(s, Qt::ElideRight, width - 12));
    };
    p.setFont(font(8));
    cell(kColTime, m_stations ? kStationLeft - kColTime : 290, ReportTexts::time(e.time), kInk);
    const int camera = m_stations ? kStationLeft + kStationWidth : kColCamera;
    if (m_stations)
        cell(kStationLeft, kStationWidth, station, kInk);
    cell(camera, kColTemp - camera, QString::fromStdString(e.cameraName.empty() ? e.cameraId : e.cameraName), kInk);
    const QString temperature = e.temperatureMeasured ? ReportTexts::temperature(e) : QStringLiteral("/");
    cell(kColTemp, 160, temperature, e.countsAbnormal() ? kAbnormal : kInk);
    cell(kColMask, 140, m_texts.mask(e), e.countsNoMask() ? kNoMask : kInk);
    cell(kColPerson, m_writer.width() - kMargin - kColPerson,
        e.personName.empty() ? QStringLiteral("/") : QString::fromStdString(e.personName), kInk);
    p.setPen(QPen(kRule, 1));
    p.drawLine(kMargin, m_y + kRow - 1, m_writer.width() - kMargin, m_y + kRow - 1);
    m_y += kRow;
}

bool ShiftReportPdf::Finish()
{
    if (!m_painter.isActive())
        return false;
    return m_painter.end() && m_ok;
}

} // namespace BodyTemperature
