#include "VantorGUIToolkit/TargetPath.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QMutex>
#include <QStringList>

namespace VantorGUIToolkit {
namespace {
QMutex g_mutex;
QStringList& extraFolders()
{
    static QStringList s_folders;
    return s_folders;
}
} // namespace

void AddTargetSearchPath(const QString& folder)
{
    QMutexLocker lock(&g_mutex);
    if (!extraFolders().contains(folder))
        extraFolders().append(folder);
}

QString GetTargetPathFile(const QString& fileName)
{
    QStringList folders;
    {
        QMutexLocker lock(&g_mutex);
        folders = extraFolders();
    }
    const QString app = QCoreApplication::applicationDirPath();
    folders << app + QStringLiteral("/Audio") << app + QStringLiteral("/Resource") << app;
    for (const QString& f : folders) {
        const QString candidate = QDir(f).filePath(fileName);
        if (QFileInfo::exists(candidate))
            return QDir::cleanPath(candidate);
    }
    return QDir::cleanPath(QDir(app + QStringLiteral("/Audio")).filePath(fileName));
}

} // namespace VantorGUIToolkit
