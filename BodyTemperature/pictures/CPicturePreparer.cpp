#include "pictures/CPicturePreparer.h"

#include "CThreadHandOff.h"

namespace BodyTemperature {

CPicturePreparer::CPicturePreparer(int keeps, Ready ready, QObject* parent)
    : QObject(parent), m_iKeeps(keeps), m_ready(std::move(ready))
{
    // One worker: a face decodes in a few milliseconds, and the other core
    // stays with the GUI thread and the video windows.
    m_worker = std::thread([this] { work(); });
}

CPicturePreparer::~CPicturePreparer()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_bStopping = true;
        m_jobs.clear();
    }
    for (const Item& item : m_items)
        item.skip->store(true);  // the decode in progress stops at its next picture
    m_wake.notify_all();
    m_worker.join();
}

std::vector<PictureSource> CPicturePreparer::CardSources(const AlarmShowInfo& info)
{
    std::vector<PictureSource> sources;
    const auto add = [&sources](PictureSource source) {
        if (!source.isEmpty())
            sources.push_back(std::move(source));
    };
    if (info.kind == EventKind::Returning) {
        add(CEventPictures::ReturningFaceSourceOf(info.faceInfo));
        return sources;
    }
    if (const protocol::IntelAlarmFaceInfo* block = info.faceBlock())
        add(CEventPictures::FaceSourceOf(*block));
    PictureSource library;
    library.bytes = info.alarmInfo.comparison.libraryPic;
    add(library);
    return sources;
}

void CPicturePreparer::Submit(const AlarmShowInfo& info, int copies)
{
    std::vector<PictureSource> sources = CardSources(info);
    if (sources.empty() && m_items.empty()) {
        m_ready(info, copies);
        return;
    }
    Item item;
    item.id = m_uNextId++;
    item.info = info;
    item.copies = copies;
    item.skip = std::make_shared<std::atomic<bool>>(false);
    item.ready = sources.empty();
    if (!sources.empty()) {
        item.info.Pictures();  // the worker and the cards must share one cache
        Job job{item.id, item.info.pictures, std::move(sources), item.skip};
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_jobs.push_back(std::move(job));
        }
        m_wake.notify_one();
    }
    m_items.push_back(std::move(item));
    for (int i = 0, older = Pending() - m_iKeeps; i < older; ++i)
        m_items[static_cast<size_t>(i)].skip->store(true);
}

void CPicturePreparer::work()
{
    for (;;) {
        Job job;
        {
            std::unique_lock<std::mutex> lock(m_mutex);
            m_wake.wait(lock, [this] { return m_bStopping || !m_jobs.empty(); });
            if (m_bStopping)
                return;
            job = std::move(m_jobs.front());
            m_jobs.pop_front();
        }
        for (const PictureSource& source : job.sources) {
            if (job.skip->load())
                break;
            job.pictures->Prepare(source);
        }
        // Queued to this object: dropped if it is gone by then.
        handoff::Post(this, [this, id = job.id] { onPrepared(id); });
    }
}

void CPicturePreparer::customEvent(QEvent* event)
{
    if (!handoff::Deliver(event))
        QObject::customEvent(event);
}

void CPicturePreparer::onPrepared(uint64_t id)
{
    for (Item& item : m_items) {
        if (item.id == id) {
            item.ready = true;
            break;
        }
    }
    deliver();
}

void CPicturePreparer::deliver()
{
    while (!m_items.empty() && m_items.front().ready) {
        Item item = std::move(m_items.front());
        m_items.pop_front();
        m_ready(item.info, item.copies);
    }
}

} // namespace BodyTemperature
