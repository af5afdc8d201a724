#include "ui/AddIntoFaceLib/CAddFaceFormRules.h"

#include <QBuffer>
#include <QImage>

namespace BodyTemperature {

CAddFaceFormRules::Rows CAddFaceFormRules::RowsFor(const CapabilitySet::FaceDataLibraryCap& cap, int regionMode,
    const std::vector<CapabilitySet::PersonInfoExtendCfg>& extend)
{
    Rows rows;
    rows.gender = cap.bSex;
    rows.idType = cap.bIDType && !cap.idTypeList.empty();
    rows.idNumber = cap.bIDNumber;
    rows.region = regionMode == 1 && cap.bRegion;
    rows.contact = cap.bContact;
    rows.birthDate = cap.bBirthDate;
    rows.extend = extend;
    return rows;
}

QString CAddFaceFormRules::ContactPattern(int maxLen)
{
    // "\xD2\xBB" and "\xFD\x9B" are U+4E00 and U+9FA5 in the national code page.
    return QString::fromUtf8("[^\xD2\xBB-\xFD\x9B]{%1}").arg(maxLen > 0 ? maxLen : 32);
}

QString CAddFaceFormRules::IDNumberPattern(int maxLen)
{
    return QStringLiteral("[0-9a-zA-Z]{%1}").arg(maxLen);
}

QString CAddFaceFormRules::EscapeXml(const QString& text)
{
    QString out = text;
    out.replace(QLatin1Char('&'), QLatin1String("&amp;"));
    out.replace(QLatin1Char('<'), QLatin1String("&lt;"));
    out.replace(QLatin1Char('>'), QLatin1String("&gt;"));
    out.replace(QLatin1Char('"'), QLatin1String("&quot;"));
    out.replace(QLatin1Char('\''), QLatin1String("&apos;"));
    return out;
}

QByteArray CAddFaceFormRules::FitPicture(const QByteArray& jpeg, int limit)
{
    if (jpeg.size() <= limit)
        return jpeg;
    QImage image;
    if (!image.loadFromData(jpeg))
        return {};
    for (;;) {
        for (int quality : {50, 35, 20}) {
            QByteArray out;
            QBuffer buffer(&out);
            buffer.open(QIODevice::WriteOnly);
            if (image.save(&buffer, "JPEG", quality) && out.size() <= limit)
                return out;
        }
        if (image.width() < 32 || image.height() < 32)
            return {};
        image = image.scaled(image.size() * 3 / 4, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
}

} // namespace BodyTemperature
