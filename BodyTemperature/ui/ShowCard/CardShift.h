#pragma once
// Inserting the newest card into a card list (the right-hand column, newest
// at the top; the bottom strip, newest at the left) moves every card already
// there by the new card's room. Left to the layout, each moved card -- a dozen
// styled widgets -- is painted again, on every event. A list with a solid
// backdrop instead shifts what it shows by copying its pixels, and only the
// new card and the uncovered edge are painted.
//
// GUI thread; the lists and layouts stay their owners'.
class QBoxLayout;
class QWidget;

namespace BodyTemperature {
namespace CardShift {

// The page's colour, what shows through the lists where they lie on it.
constexpr unsigned kPageBackdrop = 0x0B1626;

// Lets `list` paint its backdrop itself, solid: the page's colour under its
// own styled background (translucent or none). Off where something else lies
// behind the list (a translucent floating panel over the video).
void SetSolidBackdrop(QWidget* list, bool solid);

// Adds `card` as the newest item of `layout`, a bottom-to-top column or a
// right-to-left row whose first item is the spacer that packs the cards. The
// cards there are shifted first, by copying pixels when the list has a solid
// backdrop and is shown; the layout then finds them in place. The list's
// other children (placeholders) keep their places.
void InsertNewest(QBoxLayout* layout, QWidget* card);

} // namespace CardShift
} // namespace BodyTemperature
