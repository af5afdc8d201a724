#pragma once
// Keeps a card alive while something started from it still runs: a modal
// dialog opened from the card (its nested event loop keeps delivering alarms,
// and the lists keep trimming), a device search or an upload for its event.
//
// Lists never delete a card themselves: they hand a card they trim to
// RetireCard, which deletes it at once when nothing holds it, and otherwise
// hides it and deletes it (deleteLater) when the last CCardHold goes away.
// GUI thread only. A hold does not own the card: if the card goes with its
// parent (the page is torn down) the hold simply finds it gone.
#include <QPointer>
#include <QWidget>

namespace BodyTemperature {

class CCardHold final {
public:
    explicit CCardHold(QWidget* card);
    ~CCardHold();
    CCardHold(const CCardHold&) = delete;
    CCardHold& operator=(const CCardHold&) = delete;

    // The held card, or nullptr once it has been deleted by its parent.
    QWidget* card() const { return m_card.data(); }

private:
    QPointer<QWidget> m_card;
};

// Deletes a card a list no longer shows, or defers that while it is held.
void RetireCard(QWidget* card);

// True while at least one CCardHold holds the card.
bool IsCardHeld(const QWidget* card);

} // namespace BodyTemperature
