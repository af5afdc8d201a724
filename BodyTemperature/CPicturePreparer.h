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
// display (QObject child). The worker pool is owned here: the destructor
// drops the work not started and waits for the decode in progress, so the
// page can go (and the module be unloaded) with records in flight.
#include <QObject>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "AlarmShowInfo.h"

class QThreadPool;

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

private:
    struct Item;

    void deliver();

    const int m_iKeeps;
    Ready m_ready;
    std::unique_ptr<QThreadPool> m_pool;
    std::deque<std::unique_ptr<Item>> m_items;
    bool m_bDelivering = false;
};

} // namespace BodyTemperature
