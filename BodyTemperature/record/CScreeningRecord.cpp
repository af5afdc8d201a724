#include "record/CScreeningRecord.h"

#include <QMetaObject>

#include "record/CEventJournal.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "record/CSiteReplicator.h"

namespace BodyTemperature {

CScreeningRecord::CScreeningRecord(QObject* parent, const QString& path)
    : QObject(parent), m_path(path.isEmpty() ? CEventJournal::DefaultPath() : path),
      m_openedAt(QDateTime::currentDateTime())
{
    CEventJournal::Options options;
    options.path = m_path;
    options.retentionDays = clientcommonlogical::CConfigMgr::Instance()->GetRecordRetentionDays();
    // The worker reports here; the journal (and its worker) ends before this object does.
    options.onStateChanged = [this](CEventJournal::State state, const QString& reason) {
        const bool failing = state == CEventJournal::State::Failing;
        const bool replaced = state == CEventJournal::State::Replaced;
        QMetaObject::invokeMethod(
            this, [this, failing, replaced, reason] { onStateChanged(failing, replaced, reason); }, Qt::QueuedConnection);
    };
    const clientcommonlogical::SiteRecordConfig site = clientcommonlogical::CConfigMgr::Instance()->GetSiteRecord();
    if (site.IsSet()) {
        CSiteReplicator::Options replication;
        replication.site = site;
        replication.journalPath = m_path;
        replication.onStateChanged = [this](CSiteReplicator::State state, int64_t sinceMs, const QString&) {
            QMetaObject::invokeMethod(
                this, [this, state, sinceMs] { emit signalSiteRecordState(int(state), sinceMs); },
                Qt::QueuedConnection);
        };
        m_replicator = std::make_unique<CSiteReplicator>(std::move(replication));
        options.keepAfterKey = CSiteReplicator::AckKey(site);
        options.onCommitted = [this] { m_replicator->Notify(); };
    }
    m_journal = std::make_unique<CEventJournal>(std::move(options));
    m_journal->SetSizeLimit(clientcommonlogical::CConfigMgr::Instance()->GetRecordMaxBytes());
}

CScreeningRecord::~CScreeningRecord()
{
    m_journal.reset();
    m_replicator.reset();
}

JournalEvent CScreeningRecord::EventOf(const AlarmShowInfo& info, int shown)
{
    JournalEvent e;
    e.time = info.captureTime;
    e.deviceId = info.deviceID;
    e.deviceName = info.deviceName;
    e.cameraId = info.strID;
    e.cameraName = info.cameraName;
    e.eventCode = info.eventType;
    // The journal keeps the display codes as their numbers.
    e.kind = static_cast<uint32_t>(info.kind);
    e.popType = static_cast<uint32_t>(info.popType);
    e.maskType = static_cast<uint32_t>(info.maskType);
    e.temperatureType = info.temperatureType;
    e.alarmType = info.alarmType;
    e.shown = shown;
    const protocol::IntelAlarmFaceInfo* face = info.faceBlock();
    const protocol::ThermometryInfo& t = info.alarmInfo.thermometry;
    if (face != nullptr && face->TemperatureEnabled == 1) {
        e.temperatureMeasured = true;
        e.temperature = face->Temperature;
        e.temperatureUnit = face->TemperatureUnit;
    } else if (t.TemperatureEnabled == 1) {
        e.temperatureMeasured = true;
        e.temperature = t.Temperature;
        e.temperatureUnit = t.TemperatureUnit;
    }
    if (face != nullptr)
        e.mask = face->Mask;
    const protocol::FaceComparisonInfo& c = info.alarmInfo.comparison;
    e.personName = c.people.name.empty() ? c.people.alternativeName : c.people.name;
    e.library = c.people.libraryName.empty() ? c.people.FDID : c.people.libraryName;
    e.similarity = c.similarity;
    if (face != nullptr) {
        // The cards decoded this picture a moment ago: take theirs. Only when
        // no card did is it decoded, and then on the journal's worker.
        e.faceSource = CEventPictures::FaceSourceOf(*face);
        e.faceImage = info.Pictures().CachedImage(e.faceSource);
        if (e.faceImage.isNull())
            e.pictures = info.pictures;
    }
    return e;
}

void CScreeningRecord::Append(const AlarmShowInfo& info, int shown)
{
    m_journal->Append(EventOf(info, shown));
}

void CScreeningRecord::onStateChanged(bool failing, bool replaced, const QString& reason)
{
    emit signalJournalState(failing || replaced ? reason : QString());
    if (!(failing || replaced) || m_bAnnounced)
        return;
    // Once per page: a journal that keeps failing must not flood the screen.
    m_bAnnounced = true;
    VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(
        replaced ? tr("ScreeningRecordDamaged") : tr("ScreeningRecordUnavailable"));
}

} // namespace BodyTemperature
