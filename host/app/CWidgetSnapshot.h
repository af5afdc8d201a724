#pragma once
// Diagnostic snapshot of the running host: a picture of the main window and
// the tree of every top-level widget with its children as JSON.
#include <QJsonObject>
#include <QString>
#include <QStringList>

class QWidget;

namespace WidgetSnapshot {

// One widget and its children: class, objectName, visible, geometry (relative
// to the parent), text and toolTip where the widget has them, styleSheet, children.
QJsonObject Describe(const QWidget* widget);
// Writes "<folder>/window.png" (the main window), "<folder>/<objectName>.png"
// for every other visible window that has a name, and "<folder>/widgets.json".
bool Write(const QString& folder, QWidget* mainWindow);
// Steps a demo takes before its snapshot: "NAME" clicks the button of that
// object name, "NAME=N" chooses item N of that list box (in any window).
void Operate(const QStringList& steps);

} // namespace WidgetSnapshot
