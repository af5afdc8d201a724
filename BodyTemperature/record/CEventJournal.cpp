#include "record/CEventJournal.h"

#include <QBuffer>
#include <QDateTime>
#include <QImageWriter>
#include <chrono>
#include <vector>

#include "Base/Log.h"
#include "record/CJournalDatabase.h"
#include "CommonMethodLib/CUserDataPath.h"

namespace BodyTemperature {

namespace {
constexpr size_t kMaxBatch = 5000;
constexpr int64_t kPruneEverySec = 3600;
const QSize kFaceBox(96, 128);
} // namespace

QString CEventJournal::DefaultPath()
{
    return QString::fromLocal8Bit(CUserDataPath::Instance()->componentPath().c_str())
        + QStringLiteral("BodyTemperatureJournal.db");
}

CEventJournal::CEventJournal(Options options) : m_options(std::move(options))
{
    m_worker = std::thread([this] { run(); });
}

CEventJournal::~CEventJournal()
{
    m_stop = true;
    m_wake.notify_all();
    if (m_worker.joinable())
        m_worker.join();
}

void CEventJournal::Append(JournalEvent event)
{
    bool wasEmpty = false;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        wasEmpty = m_queue.empty();
        m_queue.push_back(std::move(event));
        ++m_appended;
        if (m_queue.size() > size_t(kMaxQueued)) {
            m_queue.pop_front();
            ++m_dropped;
            ++m_settled;
        }
    }
    // Only the first row of a batch needs the worker awake; the rest join the
    // batch it is gathering, without a wake-up per alarm.
    if (wasEmpty)
        m_wake.notify_one();
}

bool CEventJournal::Flush(int timeoutMs)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    const int64_t target = m_appended;
    const int64_t droppedBefore = m_dropped;
    m_wake.notify_one();
    m_done.wait_for(lock, std::chrono::milliseconds(timeoutMs),
        [&] { return m_settled >= target || m_failing.load() || m_stop.load(); });
    return m_settled >= target && m_dropped == droppedBefore && !m_failing;
}

QByteArray CEventJournal::EncodeFace(const QImage& face)
{
    if (face.isNull())
        return QByteArray();
    QImage scaled = face.size().boundedTo(kFaceBox) == face.size()
        ? face
        : face.scaled(kFaceBox, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    for (int attempt = 0; attempt < 8; ++attempt) {
        for (int quality = 75; quality >= 30; quality -= 15) {
            QByteArray bytes;
            QBuffer buffer(&bytes);
            buffer.open(QIODevice::WriteOnly);
            QImageWriter writer(&buffer, "JPEG");
            writer.setQuality(quality);
            if (!writer.write(scaled))
                return QByteArray();
            if (bytes.size() <= JournalEvent::kMaxFaceBytes)
                return bytes;
        }
        scaled = scaled.scaled(scaled.size() / 2, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        if (scaled.isNull())
            break;
    }
    return QByteArray();
}

void CEventJournal::setFailing(const QString& reason)
{
    const bool failing = !reason.isEmpty();
    if (m_failing.exchange(failing) == failing)
        return;
    if (failing)
        BASE_LOG_WARN("screening journal %s cannot be written (%s); the page goes on without it",
            qUtf8Printable(m_options.path), qUtf8Printable(reason));
    else
        BASE_LOG_INFO("screening journal %s is written again", qUtf8Printable(m_options.path));
    m_done.notify_all();
    if (m_options.onStateChanged)
        m_options.onStateChanged(failing ? State::Failing : State::Recovered, reason);
}

bool CEventJournal::ensureOpen(CJournalDatabase& db)
{
    if (db.IsOpen())
        return true;
    const bool ok = db.Open(m_options.path, CJournalDatabase::OpenMode::Write);
    if (!db.movedAside().isEmpty()) {
        BASE_LOG_WARN("screening journal %s was damaged (%s); kept as %s, a new one is started",
            qUtf8Printable(m_options.path), qUtf8Printable(db.error()), qUtf8Printable(db.movedAside()));
        if (m_options.onStateChanged)
            m_options.onStateChanged(State::Replaced, db.error());
    }
    return ok;
}

void CEventJournal::prune(CJournalDatabase& db)
{
    if (m_options.retentionDays <= 0)
        return;
    const int64_t before = QDateTime::currentSecsSinceEpoch() - int64_t(m_options.retentionDays) * 86400;
    const int removed = db.PruneBefore(before, m_options.keepAfterKey);
    if (removed > 0)
        BASE_LOG_INFO("screening journal: %d row(s) older than %d day(s) removed", removed, m_options.retentionDays);
}

void CEventJournal::pruneToSize(CJournalDatabase& db)
{
    const int64_t limit = m_sizeLimit;
    if (limit <= 0)
        return;
    const int64_t used = db.UsedBytes();
    if (used >= 0 && used <= limit)
        return;
    // Down to nine tenths: a chunk at a time rather than a few rows per batch.
    const int removed = db.PruneToSize(limit / 10 * 9, m_options.keepAfterKey);
    if (removed > 0)
        BASE_LOG_INFO("screening journal %s: %d oldest row(s) removed to stay within %.1f MB (%.1f MB were used)",
            qUtf8Printable(m_options.path), removed, double(limit) / (1 << 20), double(used) / (1 << 20));
    else if (removed < 0)
        BASE_LOG_WARN("screening journal %s: cannot keep it within %.1f MB (%s)", qUtf8Printable(m_options.path),
            double(limit) / (1 << 20), qUtf8Printable(db.error()));
}

void CEventJournal::run()
{
    CJournalDatabase db;
    int64_t lastPrune = 0;
    for (;;) {
        std::vector<JournalEvent> batch;
        {
            std::unique_lock<std::mutex> lock(m_mutex);
            m_wake.wait(lock, [this] { return m_stop.load() || !m_queue.empty(); });
            if (m_queue.empty())
                break;  // stopping, nothing left
            // Let a batch gather; a stop commits at once.
            m_wake.wait_for(lock, std::chrono::milliseconds(kBatchMs), [this] { return m_stop.load(); });
            const size_t n = std::min(m_queue.size(), kMaxBatch);
            batch.reserve(n);
            for (size_t i = 0; i < n; ++i) {
                batch.push_back(std::move(m_queue.front()));
                m_queue.pop_front();
            }
        }
        for (JournalEvent& e : batch) {
            if (e.faceJpeg.isEmpty()) {
                if (!e.faceImage.isNull())
                    e.faceJpeg = EncodeFace(e.faceImage);
                else if (e.pictures && !e.faceSource.isEmpty())
                    e.faceJpeg = EncodeFace(e.pictures->Image(e.faceSource));
            }
            e.faceImage = QImage();
            e.pictures.reset();
            e.faceSource = PictureSource();
        }

        if (ensureOpen(db) && db.Insert(batch)) {
            setFailing(QString());
            m_written += int64_t(batch.size());
            // Pruned before the batch counts as settled: a Flush() returns
            // with the journal already within its bounds.
            const int64_t now = QDateTime::currentSecsSinceEpoch();
            if (now - lastPrune >= kPruneEverySec) {
                lastPrune = now;
                prune(db);
            }
            pruneToSize(db);
            {
                std::lock_guard<std::mutex> lock(m_mutex);
                m_settled += int64_t(batch.size());
            }
            m_done.notify_all();
            if (m_options.onCommitted)
                m_options.onCommitted();
            continue;
        }

        setFailing(db.error().isEmpty() ? QStringLiteral("unknown error") : db.error());
        db.Close();
        {
            // Keep the rows for the next attempt, oldest first, within the bound.
            std::unique_lock<std::mutex> lock(m_mutex);
            for (auto it = batch.rbegin(); it != batch.rend(); ++it)
                m_queue.push_front(std::move(*it));
            while (m_queue.size() > size_t(kMaxQueued)) {
                m_queue.pop_front();
                ++m_dropped;
                ++m_settled;
            }
            m_wake.wait_for(lock, std::chrono::milliseconds(kRetryMs), [this] { return m_stop.load(); });
            if (m_stop) {
                m_dropped += int64_t(m_queue.size());
                m_settled += int64_t(m_queue.size());
                m_queue.clear();
                break;
            }
        }
    }
    m_done.notify_all();
}

} // namespace BodyTemperature
