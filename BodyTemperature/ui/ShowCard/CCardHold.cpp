#include "ui/ShowCard/CCardHold.h"

#include <QVariant>

namespace BodyTemperature {

namespace {

// Kept as dynamic properties so that any card type (capture, alarm, pop-up,
// returning-person) can be held without a common base class.
const char* const kHoldCount = "btCardHoldCount";
const char* const kRetired = "btCardRetired";

int holdCount(const QWidget* card)
{
    return card->property(kHoldCount).toInt();
}

} // namespace

CCardHold::CCardHold(QWidget* card) : m_card(card)
{
    if (card != nullptr)
        card->setProperty(kHoldCount, holdCount(card) + 1);
}

CCardHold::~CCardHold()
{
    QWidget* card = m_card.data();
    if (card == nullptr)
        return;
    const int left = holdCount(card) - 1;
    card->setProperty(kHoldCount, left);
    // deleteLater: the last hold usually ends inside the card's own slot,
    // right after the dialog's exec() returns.
    if (left <= 0 && card->property(kRetired).toBool())
        card->deleteLater();
}

void RetireCard(QWidget* card)
{
    if (card == nullptr)
        return;
    if (holdCount(card) <= 0) {
        delete card;
        return;
    }
    card->hide();
    card->setProperty(kRetired, true);
}

bool IsCardHeld(const QWidget* card)
{
    return card != nullptr && holdCount(card) > 0;
}

} // namespace BodyTemperature
