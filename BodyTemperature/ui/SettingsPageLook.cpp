#include "ui/SettingsPageLook.h"

#include <QMouseEvent>
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
    static const char* const kLook =
        "QFrame#%1 { background-color: #0F1D31; border: 1px solid #24405F; border-radius: 4px; }"
        "QLabel, QCheckBox { color: #C9D3E0; font-size: 13px; background: transparent; border: none; }"
        "QLabel#m_pTitleLabel { color: #FFFFFF; font-size: 14px; font-weight: bold; }"
        "QLabel:disabled, QCheckBox:disabled { color: #5C6F86; }"
        "QCheckBox::indicator { width: 14px; height: 14px; border: 1px solid #4A6585; border-radius: 2px;"
        " background-color: #13233A; }"
        "QCheckBox::indicator:hover { border-color: #06E7FF; }"
        "QCheckBox::indicator:checked { background-color: #06E7FF; border-color: #06E7FF;"
        " image: url(:/settings/Images/BodyTemperature/Settings/check.png); }"
        "QLineEdit, QComboBox { background-color: #13233A; color: #E6EDF5; border: 1px solid #24405F;"
        " border-radius: 2px; padding: 2px 6px; min-height: 22px; font-size: 13px; }"
        "QLineEdit:disabled { color: #5C6F86; }"
        "QLineEdit:focus, QComboBox:focus { border-color: #06E7FF; }"
        "QComboBox QAbstractItemView { background-color: #13233A; color: #E6EDF5;"
        " selection-background-color: rgba(6, 231, 255, 0.25); }"
        "QPushButton { background-color: #13233A; color: #E6EDF5; border: 1px solid #24405F; border-radius: 2px;"
        " padding: 4px 14px; min-width: 60px; font-size: 13px; }"
        "QPushButton#m_pSaveBtn { background-color: #1677D2; border-color: #1677D2; color: #FFFFFF; }"
        "QPushButton:hover, QToolButton:hover { border-color: #06E7FF; }"
        "QToolButton { background: transparent; color: #C9D3E0; border: 1px solid transparent; padding: 2px 6px; }"
        "QToolButton#PathComboBoxBrowseBtn { background-color: #13233A; border-color: #24405F; }";
    panel->setStyleSheet(QString::fromLatin1(kLook).arg(panel->objectName()));
}

} // namespace BodyTemperature
