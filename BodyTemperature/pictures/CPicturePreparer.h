#pragma once
// Decodes the face pictures of alarm records on a worker thread before their
// cards are built, so that the GUI thread only scales and shows them. Records
// come out in the order they went in, each once it and every record before
// it are ready; a record with no picture to decode passes straight through
// when nothing waits before it. When more than `keeps` records wait, the
// older ones are handed on undecoded: only the newest can stay on screen,
// and a card that is built from one anyway decodes it itself.
//
// GUI thread: Submit() and the Ready callback. Owned by the information
// display (QObject child). The worker thread is owned here: the destructor
// drops the work not started and joins it after the decode in progress, so
// the page can go (and the module be unloaded) with records in flight.
#include <QObject>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "AlarmShowInfo.h"

namespace BodyTemperature {

class CPicturePreparer final : public QObject {
    Q_OBJECT
public:
    using Ready = std::function<void(const AlarmShowInfo& info, int copies)>;

    CPicturePreparer(int keeps, Ready ready, QObject* parent);
    ~CPicturePreparer() override;

    void Submit(const AlarmShowInfo& info, int copies = 1);

    // Records submitted and not yet handed on.
    int Pending() const { return static_cast<int>(m_items.size()); }

    // The pictures the cards of a record show.
    static std::vector<PictureSource> CardSources(const AlarmShowInfo& info);

protected:
    // Delivers the worker's finished records.
    void customEvent(QEvent* event) override;

private:
    // What the worker needs of a record: its own share of the pictures.
    struct Job {
        uint64_t id = 0;
        std::shared_ptr<CEventPictures> pictures;
        std::vector<PictureSource> sources;
        std::shared_ptr<std::atomic<bool>> skip;
    };
    struct Item {
        uint64_t id = 0;
        AlarmShowInfo info;
        int copies = 1;
        bool ready = false;
        std::shared_ptr<std::atomic<bool>> skip;  // shared with the job
    };

    void work();                  // worker thread
    void onPrepared(uint64_t id); // GUI thread, posted by the worker
    void deliver();

    const int m_iKeeps;
    Ready m_ready;
    std::deque<Item> m_items;  // GUI thread only
    uint64_t m_uNextId = 1;

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<Job> m_jobs;  // guarded by m_mutex
    bool m_bStopping = false;  // guarded by m_mutex
    std::thread m_worker;
};

} // namespace BodyTemperature
