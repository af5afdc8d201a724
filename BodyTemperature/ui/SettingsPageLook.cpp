#include "ui/SettingsPageLook.h"

#include <QColor>
#include <QPalette>
#include <QWidget>

namespace BodyTemperature {

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
