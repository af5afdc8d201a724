#include "CPageStateStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include "Base/Log.h"

CPageStateStore::CPageStateStore(QString filePath) : m_filePath(std::move(filePath)) {}

bool CPageStateStore::Load()
{
    m_pages.clear();
    QFile file(m_filePath);
    if (!file.exists())
        return true;
    if (!file.open(QIODevice::ReadOnly)) {
        BASE_LOG_WARN("cannot read page state %s", qUtf8Printable(m_filePath));
        return false;
    }
    const QJsonDocument doc = QJsonDocument::fromJson(file.readAll());
    if (!doc.isObject()) {
        BASE_LOG_WARN("page state %s is not valid; starting empty", qUtf8Printable(m_filePath));
        return false;
    }
    const QJsonObject root = doc.object();
    for (auto it = root.begin(); it != root.end(); ++it) {
        QList<publicdatacontroller::AIStateItem> items;
        for (const QJsonValue& v : it.value().toArray()) {
            const QJsonObject o = v.toObject();
            publicdatacontroller::AIStateItem item;
            item.name = QByteArray::fromBase64(o.value(QStringLiteral("name")).toString().toLatin1());
            for (const QJsonValue& n : o.value(QStringLiteral("values")).toArray())
                item.values.append(n.toInt());
            items.append(item);
        }
        m_pages.insert(it.key(), items);
    }
    return true;
}

bool CPageStateStore::Save() const
{
    QJsonObject root;
    for (auto it = m_pages.begin(); it != m_pages.end(); ++it) {
        QJsonArray items;
        for (const publicdatacontroller::AIStateItem& item : it.value()) {
            QJsonArray values;
            for (qint32 n : item.values)
                values.append(n);
            QJsonObject o;
            // Names are byte strings: base64 keeps any byte intact.
            o.insert(QStringLiteral("name"), QString::fromLatin1(item.name.toBase64()));
            o.insert(QStringLiteral("values"), values);
            items.append(o);
        }
        root.insert(it.key(), items);
    }
    QDir().mkpath(QFileInfo(m_filePath).absolutePath());
    QSaveFile file(m_filePath);
    if (!file.open(QIODevice::WriteOnly)) {
        BASE_LOG_WARN("cannot write page state %s", qUtf8Printable(m_filePath));
        return false;
    }
    file.write(QJsonDocument(root).toJson());
    return file.commit();
}

QList<publicdatacontroller::AIStateItem> CPageStateStore::Get(const QString& page) const
{
    return m_pages.value(page);
}

void CPageStateStore::Set(const QString& page, const QList<publicdatacontroller::AIStateItem>& items)
{
    m_pages.insert(page, items);
}
