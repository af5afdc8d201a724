#include "CommonMethodLib/CUserDataPath.h"

#include <QDir>
#include <QStandardPaths>

CUserDataPath* CUserDataPath::Instance()
{
    static CUserDataPath s_instance;
    return &s_instance;
}

std::string CUserDataPath::componentPath()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    QString dir;
    if (!m_override.empty()) {
        dir = QString::fromStdString(m_override);
    } else {
        dir = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
        if (dir.isEmpty())
            dir = QDir::homePath() + QStringLiteral("/.local/share");
        dir += QStringLiteral("/VantorDesk/Component");
    }
    QDir().mkpath(dir);
    if (!dir.endsWith(QLatin1Char('/')))
        dir += QLatin1Char('/');
    return dir.toLocal8Bit().toStdString();
}

void CUserDataPath::setComponentPath(const std::string& folder)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_override = folder;
}
