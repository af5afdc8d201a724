#pragma once
// JPEG encoding with choices Qt's writer lacks (sampling, grayscale,
// progressive, restart markers), for pictures like cameras send: libjpeg's
// own cjpeg (libjpeg-turbo-progs) does it.
#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QProcess>

namespace testsupport {

// Qt's own JPEG writer at the given quality.
inline QByteArray EncodeJpeg(const QImage& image, int quality)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", quality);
    return bytes;
}

// components: 1 grayscale, 3 colour; luma sampling 2x2 = 4:2:0, 2x1 = 4:2:2, 1x1 = 4:4:4;
// a restart marker every restartRows MCU rows, or every restartMcus MCUs (0: none).
struct JpegVariant { int components, hSamp, vSamp; bool progressive; int restartRows, restartMcus = 0; };

// At quality 85; empty when cjpeg fails.
inline QByteArray EncodeWithLibjpeg(const QImage& source, const JpegVariant& v)
{
    QStringList args{QStringLiteral("-quality"), QStringLiteral("85"), QStringLiteral("-sample"),
        QStringLiteral("%1x%2").arg(v.hSamp).arg(v.vSamp)};
    if (v.components == 1)
        args << QStringLiteral("-grayscale");
    if (v.progressive)
        args << QStringLiteral("-progressive");
    if (v.restartRows > 0)
        args << QStringLiteral("-restart") << QString::number(v.restartRows);
    if (v.restartMcus > 0)
        args << QStringLiteral("-restart") << QStringLiteral("%1B").arg(v.restartMcus);
    QByteArray ppm;
    QBuffer buffer(&ppm);
    buffer.open(QIODevice::WriteOnly);
    source.convertToFormat(QImage::Format_RGB888).save(&buffer, "PPM");
    QProcess cjpeg;
    cjpeg.start(QStringLiteral("cjpeg"), args);
    cjpeg.write(ppm);
    cjpeg.closeWriteChannel();
    const bool ok = cjpeg.waitForFinished(30000) && cjpeg.exitStatus() == QProcess::NormalExit && cjpeg.exitCode() == 0;
    return ok ? cjpeg.readAllStandardOutput() : QByteArray();
}

} // namespace testsupport
