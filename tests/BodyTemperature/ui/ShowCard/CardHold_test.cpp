// A card trimmed from a list while something started from it still runs
// stays alive until the last hold ends, then goes; an unheld card goes at once.
#include <QPointer>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>
#include <memory>

#include "ui/ShowCard/CCardHold.h"

using namespace BodyTemperature;

namespace {

struct HoldRow {
    const char* name;
    int holds;           // holds taken before the card is retired
    bool aliveAfterRetire;
};

TEST(CardHold, RetireDeletesOnlyWhenNothingHolds)
{
    const HoldRow rows[] = {
        {"unheld goes at once", 0, false},
        {"one hold defers", 1, true},
        {"two holds defer", 2, true},
    };
    for (const HoldRow& row : rows) {
        SCOPED_TRACE(row.name);
        QWidget list;
        QPointer<QWidget> card = new QWidget(&list);
        card->show();
        std::vector<std::unique_ptr<CCardHold>> holds;
        for (int i = 0; i < row.holds; ++i)
            holds.push_back(std::make_unique<CCardHold>(card.data()));
        RetireCard(card.data());
        EXPECT_EQ(!card.isNull(), row.aliveAfterRetire);
        if (card.isNull())
            continue;
        EXPECT_FALSE(card->isVisible());
        while (holds.size() > 1) {
            holds.pop_back();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            EXPECT_FALSE(card.isNull());
        }
        holds.clear();
        QTRY_VERIFY(card.isNull());
    }
}

TEST(CardHold, AHeldCardThatIsNeverRetiredStays)
{
    QWidget list;
    QPointer<QWidget> card = new QWidget(&list);
    { CCardHold hold(card.data()); EXPECT_TRUE(IsCardHeld(card.data())); }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(card.isNull());
    EXPECT_FALSE(IsCardHeld(card.data()));
}

TEST(CardHold, AHoldOutlivingItsCardIsHarmless)
{
    auto list = std::make_unique<QWidget>();
    auto* card = new QWidget(list.get());
    CCardHold hold(card);
    RetireCard(card);
    list.reset(); // the page goes, taking the card with it
    EXPECT_EQ(hold.card(), nullptr);
}

} // namespace
