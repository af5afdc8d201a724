#include "ui/ShowCard/CardStyle.h"

#include <QFile>
#include <QLabel>
#include <QStyle>
#include <charconv>
#include <cmath>

namespace BodyTemperature {
namespace CardStyle {

QString LevelColour(uint32_t alarmType)
{
    switch (alarmType) {
    case 0: return QStringLiteral("Red");
    case 1: return QStringLiteral("Yellow");
    case 2: return QStringLiteral("Blue");
    case 3: return QStringLiteral("Green");
    default: return QString();
    }
}

void Repolish(QWidget* w)
{
    // A widget not polished yet takes the rules for its current name and
    // properties when it is first shown; polishing it now would be done twice.
    if (!w->testAttribute(Qt::WA_WState_Polished))
        return;
    w->style()->unpolish(w);
    w->style()->polish(w);
}

void SetBold(QWidget* w)
{
    QFont f = w->font();
    f.setBold(true);
    w->setFont(f);
}

void Rename(QWidget* w, const QString& objectName)
{
    if (!w || w->objectName() == objectName)
        return;
    w->setObjectName(objectName);
    Repolish(w);
}

QString SimilarityText(double similarity)
{
    return QString::number(static_cast<int>(std::trunc(similarity * 100 + 0.5))) + QLatin1Char('%');
}

QString TemperatureText(double temperature)
{
    return QString::number(temperature, 'f', 1);
}

namespace {

// Pictures by state code 0..2 (red, yellow, green); other codes have none.
const char* const kMask16[] = {":/icons/Images/BodyTemperature/icons/R-mask16.png",
                               ":/icons/Images/BodyTemperature/icons/Y-mask16.png",
                               ":/icons/Images/BodyTemperature/icons/G-mask16.png"};
const char* const kMask32[] = {":/icons/Images/BodyTemperature/icons/R-mask32.png",
                               ":/icons/Images/BodyTemperature/icons/Y-mask32.png",
                               ":/icons/Images/BodyTemperature/icons/G-mask32.png"};
const char* const kBadge[] = {":/icons/Images/BodyTemperature/icons/R-temp.png",
                              ":/icons/Images/BodyTemperature/icons/Y-temp.png",
                              ":/icons/Images/BodyTemperature/icons/G-temp.png"};
const char* const kBigBadge[] = {":/icons/Images/BodyTemperature/icons/R-temp1.png",
                                 ":/icons/Images/BodyTemperature/icons/Y-temp1.png",
                                 ":/icons/Images/BodyTemperature/icons/G-temp1.png"};

// The pop-up is refilled for every event, mostly with the same badge and icon:
// setting an equal style sheet again would still parse it and re-polish.
void SetSheet(QWidget* w, const QString& sheet)
{
    if (w->styleSheet() != sheet)
        w->setStyleSheet(sheet);
}

QString ByState(const char* const (&pictures)[3], uint32_t state)
{
    return state < 3 ? QString::fromLatin1(pictures[state]) : QString();
}

// atof's reading (the leading number, 0 when there is none) with a decimal
// point whatever the process locale: on Unix QCoreApplication adopts the
// environment's locale, and atof under a decimal comma reads "36.5" as 36.
double LeadingNumber(const QString& text)
{
    const QByteArray utf8 = text.trimmed().toUtf8();
    const char* first = utf8.constData();
    const char* last = first + utf8.size();
    if (first != last && *first == '+')
        ++first;
    double value = 0.0;
    return std::from_chars(first, last, value).ec == std::errc() ? value : 0.0;
}

} // namespace

void ApplySmallMaskIcon(QLabel* icon, MaskState maskState)
{
    if (!icon || maskState == MaskState::Unknown)
        return;
    const QString picture = ByState(kMask16, static_cast<uint32_t>(maskState));
    if (picture.isEmpty()) {
        icon->hide();
        return;
    }
    SetSheet(icon, QStringLiteral("QLabel{border-image: url(") + picture + QStringLiteral(");}"));
    icon->show();
}

void ApplyBigMaskIcon(QLabel* icon, MaskState maskState)
{
    if (!icon)
        return;
    const QString picture = ByState(kMask32, static_cast<uint32_t>(maskState));
    if (picture.isEmpty()) {
        icon->hide();
        return;
    }
    SetSheet(icon, QStringLiteral("border-image: url(") + picture + QStringLiteral(");"));
    icon->show();
}

void ApplyTemperatureBadge(QLabel* badge, uint32_t temperatureState, const QString& temperatureText,
                           const QString& unitText, bool big)
{
    if (!badge || temperatureState == 3)
        return;
    const QString picture = ByState(big ? kBigBadge : kBadge, temperatureState);
    if (big)
        SetSheet(badge, QStringLiteral("QLabel{border-image: url(") + picture
                             + QStringLiteral(");font-family: Helvetica;font-weight:bold;font-size:32px;color: #FFFFFF;"
                                              "letter-spacing: 1.78px;}"));
    else
        SetSheet(badge, QStringLiteral("QLabel{border-image: url(") + picture
                             + QStringLiteral(");font-family: Helvetica;font-weight:bold;font-size:18px;color: #FFFFFF;"
                                              "letter-spacing: 0.89px;}"));
    const double value = LeadingNumber(temperatureText);
    if (value == 65535.0) {
        badge->hide();
        return;
    }
    badge->setText(TemperatureText(value) + QLatin1Char(' ') + unitText);
    badge->show();
}

const QString& ModuleStyleSheet()
{
    static const QString sheet = [] {
        QFile file(QStringLiteral(":/BodyTemperature/Qss/BodyTemperature/BodyTemperature.qss"));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }();
    return sheet;
}

} // namespace CardStyle
} // namespace BodyTemperature
