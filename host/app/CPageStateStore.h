#pragma once
// Keeps each page's saved-state list across runs, in a JSON file of the host
// (one object per page, keyed by the page's object name). GUI thread.
#include <QHash>
#include <QList>
#include <QString>

#include "publicdatacontroller/IAIWidget.h"

class CPageStateStore final {
public:
    explicit CPageStateStore(QString filePath);

    bool Load();
    bool Save() const;

    QList<publicdatacontroller::AIStateItem> Get(const QString& page) const;
    void Set(const QString& page, const QList<publicdatacontroller::AIStateItem>& items);
    QString FilePath() const { return m_filePath; }

private:
    QString m_filePath;
    QHash<QString, QList<publicdatacontroller::AIStateItem>> m_pages;
};
