#include "CPicturePreparer.h"

#include <QFutureWatcher>
#include <QThreadPool>
#include <QtConcurrent/QtConcurrentRun>
#include <atomic>

namespace BodyTemperature {

struct CPicturePreparer::Item {
    AlarmShowInfo info;
    int copies = 1;
    // Set when the record is no longer worth decoding ahead (too old, or the
    // page goes); the worker checks it before each picture.
    std::shared_ptr<std::atomic<bool>> skip = std::make_shared<std::atomic<bool>>(false);
    QFutureWatcher<void>* watcher = nullptr;  // null: nothing to decode
};

CPicturePreparer::CPicturePreparer(int keeps, Ready ready, QObject* parent)
    : QObject(parent), m_iKeeps(keeps), m_ready(std::move(ready)), m_pool(std::make_unique<QThreadPool>())
{
    // One worker: a face decodes in a few milliseconds, and the other core
    // stays with the GUI thread and the video windows.
    m_pool->setMaxThreadCount(1);
}

CPicturePreparer::~CPicturePreparer()
{
    for (const auto& item : m_items)
        item->skip->store(true);
    m_pool->clear();
    m_pool->waitForDone();
}

std::vector<PictureSource> CPicturePreparer::CardSources(const AlarmShowInfo& info)
{
    std::vector<PictureSource> sources;
    const auto add = [&sources](PictureSource source) {
        if (!source.isEmpty())
            sources.push_back(std::move(source));
    };
    if (info.kind == 5) {
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
    auto item = std::make_unique<Item>();
    item->info = info;
    item->copies = copies;
    if (!sources.empty()) {
        item->info.Pictures();  // the worker and the cards must share one cache
        item->watcher = new QFutureWatcher<void>(this);
        connect(item->watcher, &QFutureWatcherBase::finished, this, &CPicturePreparer::deliver);
        item->watcher->setFuture(QtConcurrent::run(m_pool.get(),
            [pictures = item->info.pictures, sources = std::move(sources), skip = item->skip] {
                for (const PictureSource& source : sources) {
                    if (skip->load())
                        return;
                    pictures->Prepare(source);
                }
            }));
    }
    m_items.push_back(std::move(item));
    for (int i = 0, older = Pending() - m_iKeeps; i < older; ++i)
        m_items[static_cast<size_t>(i)]->skip->store(true);
}

void CPicturePreparer::deliver()
{
    if (m_bDelivering)
        return;  // the loop below hands on whatever became ready meanwhile
    m_bDelivering = true;
    while (!m_items.empty()) {
        const Item& front = *m_items.front();
        if (front.watcher != nullptr && !front.watcher->isFinished())
            break;
        std::unique_ptr<Item> item = std::move(m_items.front());
        m_items.pop_front();
        if (item->watcher != nullptr)
            item->watcher->deleteLater();  // this may be its own finished signal
        m_ready(item->info, item->copies);
    }
    m_bDelivering = false;
}

} // namespace BodyTemperature
