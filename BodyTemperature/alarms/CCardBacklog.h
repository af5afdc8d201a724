#pragma once
// Cards are the costly part of an alarm (widgets, picture decoding); counting
// it is not. The information display counts every record at once and hands
// its cards here. While the page keeps up they are built at once. When
// records come faster than the page can draw -- building has used up a slice
// of kSliceMs before the event loop got control back -- the records wait,
// and of the waiting ones only those that can still be seen get cards: the
// newest listKeeps in the right-hand list, the newest stripKeeps in the
// bottom strip. Older waiting records are skipped (they would be trimmed as
// soon as built). Waiting records are built from a zero timer in slices of at
// most kSliceMs, so input and painting run in between, oldest first.
//
// GUI thread. Owned by the information display (QObject child); the builder
// is the display's and runs only from Add() or the timer. The clock is the
// only seam (tests drive slices with their own).
#include <QObject>
#include <deque>
#include <functional>

#include "AlarmShowInfo.h"

class QTimer;

namespace BodyTemperature {

class CCardBacklog final : public QObject {
    Q_OBJECT
public:
    static constexpr int kSliceMs = 25;

    // copies: cards per record (a returning person open in two views has two).
    using Builder = std::function<void(const AlarmShowInfo& info, int copies, bool list, bool strip)>;
    using Clock = std::function<qint64()>;  // milliseconds, monotonic

    CCardBacklog(int listKeeps, int stripKeeps, Builder builder, QObject* parent, Clock clock = Clock());

    void Add(AlarmShowInfo info, int copies = 1);

    int Pending() const { return static_cast<int>(m_pending.size()); }
    quint64 Built() const { return m_uBuilt; }
    quint64 Skipped() const { return m_uSkipped; }

private:
    struct Item {
        AlarmShowInfo info;
        int copies = 1;
    };
    qint64 now() const;
    bool sliceSpent() const;
    void openSlice();
    void drain();
    void trim();

    const int m_iListKeeps;
    const int m_iStripKeeps;
    Builder m_builder;
    Clock m_clock;
    std::deque<Item> m_pending;
    qint64 m_iSliceStart = -1;  // -1: no slice open (the event loop has had control since)
    quint64 m_uBuilt = 0;
    quint64 m_uSkipped = 0;
    QTimer* m_pTimer = nullptr;
};

} // namespace BodyTemperature
