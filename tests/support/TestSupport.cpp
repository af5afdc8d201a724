#include "support/TestSupport.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPainter>
#include <QThread>
#include <sys/mount.h>

#include "Base/Log.h"
#include "CommonMethodLib/CUserDataPath.h"
#include "support/JpegEncoder.h"

namespace testsupport {

void TempDirTest::SetUp()
{
    ASSERT_TRUE(m_dir.isValid());
    CUserDataPath::Instance()->setComponentPath(m_dir.filePath(QStringLiteral("component")).toStdString());
}

void TempDirTest::TearDown()
{
    CUserDataPath::Instance()->setComponentPath(std::string());
}

bool waitUntil(const std::function<bool()>& pred, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    while (!pred()) {
        if (timer.elapsed() > timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(2);
    }
    return true;
}

void pump(int ms)
{
    QElapsedTimer timer;
    timer.start();
    do {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        if (ms > 0)
            QThread::msleep(1);
    } while (timer.elapsed() < ms);
}

QString buildDir() { return QStringLiteral(BT_BUILD_DIR); }
QString sourceDir() { return QStringLiteral(BT_SOURCE_DIR); }
QString binDir() { return buildDir() + QStringLiteral("/bin"); }
QString modulePath() { return binDir() + QStringLiteral("/modules/libBodyTemperature.so"); }

QByteArray readFile(const QString& path, qint64 offset)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    f.seek(offset);
    return f.readAll();
}

bool writeFile(const QString& path, const QByteArray& data)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(data) == data.size();
}

QByteArray logText(qint64 offset) { return readFile(QString::fromStdString(Base::Log::CurrentFile()), offset); }

SmallDisk::SmallDisk(const QString& dir, const char* size) : m_dir(dir)
{
    QDir().mkpath(dir);
    m_mounted = ::mount("tmpfs", QFile::encodeName(dir).constData(), "tmpfs", 0,
                    (QByteArray("size=") + size).constData())
        == 0;
}

SmallDisk::~SmallDisk()
{
    if (m_mounted)
        ::umount2(QFile::encodeName(m_dir).constData(), MNT_DETACH);
}

QByteArray makeJpeg(int width, int height, int quality, QImage::Format fmt)
{
    QImage img(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            img.setPixel(x, y, qRgb((x * 255) / qMax(1, width - 1), (y * 255) / qMax(1, height - 1), (x + y) % 256));
    QPainter p(&img);
    p.fillRect(width / 4, height / 4, width / 8 + 1, height / 8 + 1, Qt::white);
    p.end();
    if (fmt != QImage::Format_RGB32)
        img = img.convertToFormat(fmt);
    return testsupport::EncodeJpeg(img, quality);
}

} // namespace testsupport
