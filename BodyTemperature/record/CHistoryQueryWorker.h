#pragma once
// Runs the screening history's queries on an owned worker thread
// ("bt-history"), so the GUI thread never waits for a query.
//
// Created on the GUI thread by the history view, which owns it; it owns the
// history sources (this station's and, when given, the site's) and uses them
// on its thread only. Submit() replaces whatever was waiting and cancels the
// query in flight (the source's Cancel()); results come back on the GUI
// thread through signalResult, tagged with the request's ticket. The
// destructor cancels, stops and joins the worker (bounded by the
// cancellation of one query).
#include <QObject>
#include <QString>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "record/IHistorySource.h"

namespace BodyTemperature {

class CHistoryQueryWorker final : public QObject {
    Q_OBJECT
public:
    struct Request {
        uint64_t ticket = 0;
        bool site = false;                // the site's source (when there is one)
        bool newer = false;               // rows written after `watermark` (live)
        HistoryFilter filter;
        std::optional<HistoryKey> after;  // page start (not for newer)
        int64_t watermark = 0;
    };
    struct Reply {
        uint64_t ticket = 0;
        bool newer = false;
        IHistorySource::Result result = IHistorySource::Result::Failed;
        HistoryPage page;
        QString error;
    };

    CHistoryQueryWorker(QObject* parent, std::unique_ptr<IHistorySource> station,
        std::unique_ptr<IHistorySource> site);
    ~CHistoryQueryWorker() override;

    bool HasSite() const { return m_site != nullptr; }
    // GUI thread. `cancelRunning`: abort the query in flight (a filter change);
    // a live poll leaves a page being read alone.
    void Submit(Request request, bool cancelRunning);

signals:
    void signalResult(std::shared_ptr<BodyTemperature::CHistoryQueryWorker::Reply> reply);

private:
    void run();

    std::unique_ptr<IHistorySource> m_station;
    std::unique_ptr<IHistorySource> m_site;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::optional<Request> m_pending;  // guarded by m_mutex
    IHistorySource* m_running = nullptr;  // guarded by m_mutex
    bool m_stop = false;                  // guarded by m_mutex
    std::thread m_thread;
};

} // namespace BodyTemperature
