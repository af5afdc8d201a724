#include "report/ReportTexts.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QTranslator>

namespace BodyTemperature {

namespace {

const char* const kContext = "CShiftReportExporter";

// Keys of this file, for lupdate.
const char* const kKeys[] = {
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportColTime"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportColDevice"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportColCamera"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportColStation"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportColEventCode"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportColKind"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportColTemperature"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportColTemperatureState"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportColMask"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportColPerson"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportColLibrary"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportColSimilarity"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportKindComparison"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportKindCapture"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportKindTemperatureCapture"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportKindReturning"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportStateAbnormal"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportStateNormal"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportStateNotMeasured"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportMaskNone"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportMaskWorn"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportMaskUnknown"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportFolderNotWritable"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportWriteFailed"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportJournalUnavailable"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportSiteUnavailable"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportTitle"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportRange"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportGenerated"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportEventsPerHour"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportFlaggedEvents"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportPage"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportNoFlagged"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportColFace"),
    QT_TRANSLATE_NOOP("CShiftReportExporter", "ReportHour"),
};

} // namespace

ReportTexts::ReportTexts(int language) : m_translator(std::make_unique<QTranslator>())
{
    const QString suffix = language == 1 ? QStringLiteral("zh_CN") : QStringLiteral("en");
    m_loaded = m_translator->load(QStringLiteral(":/BodyTemperature/i18n/BodyTemperature_%1.qm").arg(suffix));
    (void)kKeys;
}

ReportTexts::~ReportTexts() = default;

QString ReportTexts::text(const char* context, const char* key) const
{
    const QString t = m_loaded ? m_translator->translate(context, key) : QString();
    return t.isEmpty() ? QString::fromLatin1(key) : t;
}

QString ReportTexts::operator()(const char* key) const
{
    return text(kContext, key);
}

QString ReportTexts::kind(uint32_t kind) const
{
    switch (kind) {
    case 0: case 1: case 2: return (*this)("ReportKindComparison");
    case 3: return (*this)("ReportKindCapture");
    case 4: return (*this)("ReportKindTemperatureCapture");
    default: return (*this)("ReportKindReturning");
    }
}

QString ReportTexts::temperatureState(const JournalEvent& e) const
{
    if (e.countsAbnormal())
        return (*this)("ReportStateAbnormal");
    if (e.countsNormal())
        return (*this)("ReportStateNormal");
    return (*this)("ReportStateNotMeasured");
}

QString ReportTexts::mask(const JournalEvent& e) const
{
    if (e.mask == 1)
        return (*this)("ReportMaskNone");
    if (e.mask == 2)
        return (*this)("ReportMaskWorn");
    return (*this)("ReportMaskUnknown");
}

QString ReportTexts::temperature(const JournalEvent& e)
{
    if (!e.temperatureMeasured)
        return QString();
    static const char* const units[] = {"\u00b0C", "\u00b0F", "K"};
    return QString::number(e.temperature, 'f', 1) + QLatin1Char(' ')
        + QString::fromUtf8(units[e.temperatureUnit < 3 ? e.temperatureUnit : 0]);
}

QString ReportTexts::time(int64_t secs)
{
    return QDateTime::fromSecsSinceEpoch(secs).toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
}

} // namespace BodyTemperature
