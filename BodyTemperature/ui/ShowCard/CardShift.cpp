#include "ui/ShowCard/CardShift.h"

#include <QBoxLayout>
#include <QPaintEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>
#include <QWidget>
#include <utility>
#include <vector>

namespace BodyTemperature {
namespace CardShift {

namespace {

// An opaque widget gets no background from Qt: this paints, before the
// list's own paint, what Qt and the page would have painted under it.
class SolidBackdrop final : public QObject {
public:
    explicit SolidBackdrop(QWidget* list) : QObject(list)
    {
        setObjectName(QStringLiteral("solidBackdrop"));
        list->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        // A style sheet polish takes the attribute away for a translucent rule.
        if (event->type() == QEvent::Polish || event->type() == QEvent::StyleChange)
            static_cast<QWidget*>(watched)->setAttribute(Qt::WA_OpaquePaintEvent, true);
        if (event->type() == QEvent::Paint) {
            auto* list = static_cast<QWidget*>(watched);
            QPainter painter(list);
            painter.setClipRegion(static_cast<QPaintEvent*>(event)->region());
            painter.fillRect(list->rect(), QColor(QRgb(kPageBackdrop)));
            QStyleOption option;
            option.initFrom(list);
            list->style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, list);
        }
        return false;
    }
};

} // namespace

void SetSolidBackdrop(QWidget* list, bool solid)
{
    // No meta-object of its own: found by name, checked by type.
    auto* backdrop = dynamic_cast<SolidBackdrop*>(
        list->findChild<QObject*>(QStringLiteral("solidBackdrop"), Qt::FindDirectChildrenOnly));
    const bool changed = (backdrop != nullptr) != solid;
    if (solid && backdrop == nullptr)
        new SolidBackdrop(list);
    else if (!solid)
        delete backdrop;  // removes its event filter
    list->setAttribute(Qt::WA_OpaquePaintEvent, solid);
    if (changed)
        list->update();
}

void InsertNewest(QBoxLayout* layout, QWidget* card)
{
    QWidget* list = layout->parentWidget();
    const bool vertical = layout->direction() == QBoxLayout::BottomToTop;
    const bool hasCards = layout->count() > 1;
    if (hasCards && list != nullptr && list->isVisible() && list->testAttribute(Qt::WA_OpaquePaintEvent)) {
        const QSize room = card->size().expandedTo(card->minimumSize());
        const int shift = (vertical ? room.height() : room.width()) + layout->spacing();
        // scroll() moves every child; only the cards are meant to move.
        std::vector<std::pair<QWidget*, QPoint>> others;
        for (QObject* child : list->children()) {
            auto* w = qobject_cast<QWidget*>(child);
            if (w != nullptr && !w->isWindow() && layout->indexOf(w) < 0)
                others.emplace_back(w, w->pos());
        }
        list->scroll(vertical ? 0 : shift, vertical ? shift : 0);
        for (const auto& other : others)
            other.first->move(other.second);
    }
    layout->addWidget(card);
}

} // namespace CardShift
} // namespace BodyTemperature
