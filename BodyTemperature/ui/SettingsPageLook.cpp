#include "ui/SettingsPageLook.h"

#include <QColor>
#include <QMouseEvent>
#include <QPalette>
#include <QWidget>

namespace BodyTemperature {
namespace {

class DragMoveFilter final : public QObject {
public:
    explicit DragMoveFilter(QWidget* handle) : QObject(handle), m_pHandle(handle) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched != m_pHandle)
            return false;
        QWidget* window = m_pHandle->window();
        switch (event->type()) {
        case QEvent::MouseButtonPress: {
            auto* e = static_cast<QMouseEvent*>(event);
            if (e->button() == Qt::LeftButton) {
                m_bDragging = true;
                m_offset = e->globalPos() - window->frameGeometry().topLeft();
            }
            break;
        }
        case QEvent::MouseMove:
            if (m_bDragging && (static_cast<QMouseEvent*>(event)->buttons() & Qt::LeftButton))
                window->move(static_cast<QMouseEvent*>(event)->globalPos() - m_offset);
            break;
        case QEvent::MouseButtonRelease:
            m_bDragging = false;
            break;
        default:
            break;
        }
        return false;
    }

private:
    QWidget* m_pHandle;
    bool m_bDragging = false;
    QPoint m_offset;
};

} // namespace

void EnableDragMove(QWidget* handle)
{
    handle->installEventFilter(new DragMoveFilter(handle));
}

void ApplySettingsPageLook(QWidget* panel)
{
    QPalette pal = panel->palette();
    const QColor background(24, 32, 46);
    const QColor field(36, 46, 64);
    const QColor text(235, 240, 248);
    pal.setColor(QPalette::Window, background);
    pal.setColor(QPalette::WindowText, text);
    pal.setColor(QPalette::Base, field);
    pal.setColor(QPalette::AlternateBase, background);
    pal.setColor(QPalette::Text, text);
    pal.setColor(QPalette::Button, field);
    pal.setColor(QPalette::ButtonText, text);
    pal.setColor(QPalette::ToolTipBase, background);
    pal.setColor(QPalette::ToolTipText, text);
    pal.setColor(QPalette::Highlight, QColor(38, 120, 220));
    pal.setColor(QPalette::HighlightedText, Qt::white);
    pal.setColor(QPalette::Disabled, QPalette::Text, QColor(130, 138, 150));
    pal.setColor(QPalette::Disabled, QPalette::WindowText, QColor(130, 138, 150));
    pal.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(130, 138, 150));
    pal.setColor(QPalette::Disabled, QPalette::Base, background);
    panel->setPalette(pal);
    panel->setAutoFillBackground(true);
}

} // namespace BodyTemperature
