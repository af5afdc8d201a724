#include "record/CHistoryQueryWorker.h"

#include <QImage>
#include <QMetaObject>
#include <QPointer>
#include <pthread.h>

namespace BodyTemperature {

namespace {

// The table's face thumbnails are decoded here rather than on the GUI thread.
constexpr int kThumbHeight = 48;

void decodeFaces(HistoryPage& page)
{
    for (HistoryRow& row : page.rows) {
        if (row.event.faceJpeg.isEmpty())
            continue;
        QImage face;
        if (face.loadFromData(row.event.faceJpeg, "JPEG"))
            row.event.faceImage = face.scaledToHeight(kThumbHeight, Qt::SmoothTransformation);
    }
}

} // namespace

CHistoryQueryWorker::CHistoryQueryWorker(QObject* parent, std::unique_ptr<IHistorySource> station,
    std::unique_ptr<IHistorySource> site)
    : QObject(parent), m_station(std::move(station)), m_site(std::move(site))
{
    m_thread = std::thread([this] { run(); });
}

CHistoryQueryWorker::~CHistoryQueryWorker()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
        m_pending.reset();
        if (m_running != nullptr)
            m_running->Cancel();
    }
    m_wake.notify_all();
    m_thread.join();
}

void CHistoryQueryWorker::Submit(Request request, bool cancelRunning)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_pending = std::move(request);
        if (cancelRunning && m_running != nullptr)
            m_running->Cancel();
    }
    m_wake.notify_all();
}

void CHistoryQueryWorker::run()
{
    pthread_setname_np(pthread_self(), "bt-history");
    for (;;) {
        Request request;
        IHistorySource* source = nullptr;
        {
            std::unique_lock<std::mutex> lock(m_mutex);
            m_wake.wait(lock, [this] { return m_stop || m_pending.has_value(); });
            if (m_stop)
                return;
            request = std::move(*m_pending);
            m_pending.reset();
            source = request.site && m_site ? m_site.get() : m_station.get();
            m_running = source;
        }
        auto reply = std::make_shared<Reply>();
        reply->ticket = request.ticket;
        reply->newer = request.newer;
        if (request.newer)
            reply->result = source->Newer(request.filter, request.watermark, reply->page, reply->error);
        else
            reply->result = source->Page(request.filter, request.after ? &*request.after : nullptr, reply->page,
                reply->error);
        if (reply->result == IHistorySource::Result::Ok)
            decodeFaces(reply->page);
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_running = nullptr;
            if (m_stop)
                return;
        }
        // Delivered on the GUI thread; dropped by Qt if this object is gone.
        QMetaObject::invokeMethod(this, [this, reply] { emit signalResult(reply); }, Qt::QueuedConnection);
    }
}

} // namespace BodyTemperature
