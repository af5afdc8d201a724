#pragma once
// Diagnostic snapshot of the running host: a picture of the main window and
// the tree of every top-level widget with its children as JSON.
#include <QJsonObject>
#include <QString>

class QWidget;

namespace WidgetSnapshot {

// One widget and its children: class, objectName, visible, geometry (relative
// to the parent), text and toolTip where the widget has them, styleSheet, children.
QJsonObject Describe(const QWidget* widget);
// Writes "<folder>/window.png" (the main window) and "<folder>/widgets.json".
bool Write(const QString& folder, QWidget* mainWindow);

} // namespace WidgetSnapshot
