#pragma once
// Shared helpers of the tests: a temporary-folder fixture that also points the
// host's component folder there, event-loop waits, build paths, pictures.
#include <QByteArray>
#include <QImage>
#include <QObject>
#include <QString>
#include <QTemporaryDir>
#include <functional>
#include <memory>
#include <gtest/gtest.h>

namespace testsupport {

// Per-test temporary folder; the host component folder points into it.
class TempDirTest : public ::testing::Test {
public:
    QString path(const QString& name) const { return m_dir.filePath(name); }

protected:
    void SetUp() override;
    void TearDown() override;
    QTemporaryDir m_dir;
};

// Spins the event loop until pred() holds or the time runs out.
bool waitUntil(const std::function<bool()>& pred, int timeoutMs = 5000);
// Spins the event loop for about ms milliseconds.
void pump(int ms = 0);

QString buildDir();
QString sourceDir();
QString binDir();
QString modulePath();  // bin/modules/libBodyTemperature.so

// A file's bytes from offset on; empty when it cannot be read.
QByteArray readFile(const QString& path, qint64 offset = 0);
// Writes data as the whole file; false when it cannot.
bool writeFile(const QString& path, const QByteArray& data);
// The process's log from byte offset on (from 0, its size marks where a step begins).
QByteArray logText(qint64 offset = 0);

// The child of parent with this object name (and type); the test fails
// when there is none.
template <typename T>
T* child(const QObject* parent, const char* objectName)
{
    T* found = parent->findChild<T*>(QString::fromLatin1(objectName));
    EXPECT_NE(found, nullptr) << objectName;
    return found;
}
template <typename T, typename Owner>
T* child(const std::unique_ptr<Owner>& parent, const char* objectName)
{
    return child<T>(parent.get(), objectName);
}

// A small file system (tmpfs of `size`, e.g. "96k") mounted on dir, made if
// missing, until destroyed; for full disks. Needs the right to mount: a test
// that cannot have it skips.
class SmallDisk {
public:
    SmallDisk(const QString& dir, const char* size);
    ~SmallDisk();
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    bool mounted() const { return m_mounted; }

private:
    QString m_dir;
    bool m_mounted = false;
};

// A JPEG of the given size with a recognisable gradient and a marker.
QByteArray makeJpeg(int width, int height, int quality = 85, QImage::Format fmt = QImage::Format_RGB32);

} // namespace testsupport
