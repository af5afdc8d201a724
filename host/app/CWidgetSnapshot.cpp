#include "CWidgetSnapshot.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QWidget>

namespace WidgetSnapshot {

QJsonObject Describe(const QWidget* widget)
{
    QJsonObject o;
    o.insert(QStringLiteral("class"), QString::fromLatin1(widget->metaObject()->className()));
    o.insert(QStringLiteral("objectName"), widget->objectName());
    o.insert(QStringLiteral("visible"), widget->isVisible());
    const QRect g = widget->geometry();
    o.insert(QStringLiteral("geometry"), QJsonObject{{QStringLiteral("x"), g.x()}, {QStringLiteral("y"), g.y()},
                                             {QStringLiteral("width"), g.width()},
                                             {QStringLiteral("height"), g.height()}});
    if (auto* label = qobject_cast<const QLabel*>(widget))
        o.insert(QStringLiteral("text"), label->text());
    else if (auto* button = qobject_cast<const QAbstractButton*>(widget))
        o.insert(QStringLiteral("text"), button->text());
    else if (auto* edit = qobject_cast<const QLineEdit*>(widget))
        o.insert(QStringLiteral("text"), edit->text());
    if (!widget->toolTip().isEmpty())
        o.insert(QStringLiteral("toolTip"), widget->toolTip());
    o.insert(QStringLiteral("styleSheet"), widget->styleSheet());
    QJsonArray children;
    for (const QObject* child : widget->children()) {
        if (auto* w = qobject_cast<const QWidget*>(child))
            children.append(Describe(w));
    }
    o.insert(QStringLiteral("children"), children);
    return o;
}

bool Write(const QString& folder, QWidget* mainWindow)
{
    QDir().mkpath(folder);
    bool ok = true;
    if (mainWindow)
        ok = mainWindow->grab().save(QDir(folder).filePath(QStringLiteral("window.png")), "PNG") && ok;
    QJsonArray tops;
    for (QWidget* w : QApplication::topLevelWidgets()) {
        tops.append(Describe(w));
        if (w != mainWindow && w->isVisible() && !w->objectName().isEmpty())
            ok = w->grab().save(QDir(folder).filePath(w->objectName() + QStringLiteral(".png")), "PNG") && ok;
    }
    QFile file(QDir(folder).filePath(QStringLiteral("widgets.json")));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(QJsonDocument(tops).toJson());
    return ok;
}

void Operate(const QStringList& steps)
{
    for (const QString& step : steps) {
        const QString name = step.section(QLatin1Char('='), 0, 0);
        for (QWidget* top : QApplication::topLevelWidgets()) {
            QWidget* w = top->objectName() == name ? top : top->findChild<QWidget*>(name);
            if (auto* button = qobject_cast<QAbstractButton*>(w))
                button->click();
            else if (auto* box = qobject_cast<QComboBox*>(w))
                box->setCurrentIndex(step.section(QLatin1Char('='), 1).toInt());
            else
                continue;
            break;
        }
    }
}

} // namespace WidgetSnapshot
