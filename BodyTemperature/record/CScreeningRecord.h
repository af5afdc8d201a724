#pragma once
// What the information display keeps of its shift: each accepted alarm goes
// to the event journal (CEventJournal) together with its classification and
// the face the cards already decoded. Created and called by CBTShowWidget on
// the GUI thread; owns the journal (its worker is joined in the destructor).
// A journal that fails is announced once (log and a message at the lower
// right of the screen) and the page goes on. With a site record in the host
// configuration it also owns the replicator that sends the journal there.
#include <QDateTime>
#include <QObject>
#include <QString>
#include <memory>

#include "AlarmShowInfo.h"
#include "record/JournalEvent.h"

namespace BodyTemperature {

class CEventJournal;
class CSiteReplicator;

class CScreeningRecord final : public QObject {
    Q_OBJECT
public:
    // path: the journal file (empty: the per-user component folder's).
    explicit CScreeningRecord(QObject* parent, const QString& path = QString());
    ~CScreeningRecord() override;

    // One accepted alarm; `shown` is how much the page's total rose for it.
    void Append(const AlarmShowInfo& info, int shown);

    QString JournalPath() const { return m_path; }
    // When the page was opened: reports start there by default.
    QDateTime OpenedAt() const { return m_openedAt; }
    CEventJournal* Journal() const { return m_journal.get(); }
    CSiteReplicator* Replicator() const { return m_replicator.get(); }  // null without a site record

    static JournalEvent EventOf(const AlarmShowInfo& info, int shown);

signals:
    // GUI thread: the journal stopped (reason) or resumed (empty) being
    // written, or replaced a damaged file (reason).
    void signalJournalState(const QString& reason);
    // GUI thread: the site record took rows again (state 0, CSiteReplicator::State)
    // or cannot take them since sinceMs (ms since 1970).
    void signalSiteRecordState(int state, qint64 sinceMs);

private:
    void onStateChanged(bool failing, bool replaced, const QString& reason);

    QString m_path;
    QDateTime m_openedAt;
    bool m_bAnnounced = false;
    std::unique_ptr<CSiteReplicator> m_replicator;
    std::unique_ptr<CEventJournal> m_journal;  // after the replicator: it goes first and notifies it to the end
};

} // namespace BodyTemperature
