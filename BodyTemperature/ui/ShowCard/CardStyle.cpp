#include "ui/ShowCard/CardStyle.h"

#include <QLabel>
#include <QStyle>
#include <cmath>
#include <cstdlib>

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

void Rename(QWidget* w, const QString& objectName)
{
    if (!w || w->objectName() == objectName)
        return;
    w->setObjectName(objectName);
    w->style()->unpolish(w);
    w->style()->polish(w);
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

QString MaskLetter(uint32_t maskState)
{
    switch (maskState) {
    case 0: return QStringLiteral("R");
    case 1: return QStringLiteral("Y");
    case 2: return QStringLiteral("G");
    default: return QString();
    }
}

QString BadgePicture(uint32_t temperatureState, bool big)
{
    QString letter;
    switch (temperatureState) {
    case 0: letter = QStringLiteral("R"); break;
    case 1: letter = QStringLiteral("Y"); break;
    case 2: letter = QStringLiteral("G"); break;
    default: return QString();
    }
    return QStringLiteral(":/icons/Images/BodyTemperature/icons/%1-temp%2.png").arg(letter, big ? QStringLiteral("1") : QString());
}

} // namespace

void ApplySmallMaskIcon(QLabel* icon, uint32_t maskState)
{
    if (!icon || maskState == 3)
        return;
    const QString letter = MaskLetter(maskState);
    if (letter.isEmpty()) {
        icon->hide();
        return;
    }
    icon->setStyleSheet(
        QStringLiteral("QLabel{border-image: url(:/icons/Images/BodyTemperature/icons/%1-mask16.png);}").arg(letter));
    icon->show();
}

void ApplyBigMaskIcon(QLabel* icon, uint32_t maskState)
{
    if (!icon)
        return;
    const QString letter = MaskLetter(maskState);
    if (letter.isEmpty()) {
        icon->hide();
        return;
    }
    icon->setStyleSheet(
        QStringLiteral("border-image: url(:/icons/Images/BodyTemperature/icons/%1-mask32.png);").arg(letter));
    icon->show();
}

void ApplyTemperatureBadge(QLabel* badge, uint32_t temperatureState, const QString& temperatureText,
                           const QString& unitText, bool big)
{
    if (!badge || temperatureState == 3)
        return;
    const QString picture = BadgePicture(temperatureState, big);
    if (big)
        badge->setStyleSheet(QStringLiteral("QLabel{border-image: url(") + picture
                             + QStringLiteral(");font-family: Helvetica;font-weight:bold;font-size:32px;color: #FFFFFF;"
                                              "letter-spacing: 1.78px;}"));
    else
        badge->setStyleSheet(QStringLiteral("QLabel{border-image: url(") + picture
                             + QStringLiteral(");font-family: Helvetica;font-weight:bold;font-size:18px;color: #FFFFFF;"
                                              "letter-spacing: 0.89px;}"));
    const double value = std::atof(temperatureText.toUtf8().constData());
    if (value == 65535.0) {
        badge->hide();
        return;
    }
    badge->setText(TemperatureText(value) + QLatin1Char(' ') + unitText);
    badge->show();
}

} // namespace CardStyle
} // namespace BodyTemperature
