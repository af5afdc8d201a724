#include "ui/SettingsPageLook.h"

#include <QDialog>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

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

SettingsDialogFrame MakeSettingsDialogFrame(QDialog* dialog, const QString& frameName, const QString& title,
    const QString& closeTip, const QString& saveText, const QString& cancelText)
{
    dialog->setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    dialog->setAttribute(Qt::WA_TranslucentBackground);

    SettingsDialogFrame parts;
    parts.frame = new QFrame(dialog);
    parts.frame->setObjectName(frameName);
    ApplySettingsPageLook(parts.frame);

    parts.title = new QLabel(title, parts.frame);
    parts.title->setObjectName(QStringLiteral("m_pTitleLabel"));
    QFont titleFont = parts.title->font();
    titleFont.setBold(true);
    parts.title->setFont(titleFont);
    EnableDragMove(parts.title);
    parts.close = new QToolButton(parts.frame);
    parts.close->setObjectName(QStringLiteral("m_pCloseBtn"));
    parts.close->setToolTip(closeTip);
    parts.close->setText(QStringLiteral("\u2715"));
    parts.close->setAutoRaise(true);
    parts.close->setCursor(Qt::PointingHandCursor);

    parts.save = new QPushButton(saveText, parts.frame);
    parts.save->setObjectName(QStringLiteral("m_pSaveBtn"));
    parts.save->setDefault(true);
    parts.cancel = new QPushButton(cancelText, parts.frame);
    parts.cancel->setObjectName(QStringLiteral("m_pCancelBtn"));
    for (QPushButton* b : {parts.save, parts.cancel}) {
        b->setMinimumWidth(88);
        b->setCursor(Qt::PointingHandCursor);
    }
    return parts;
}

void LayOutSettingsDialog(QDialog* dialog, const SettingsDialogFrame& parts, QLayout* body, int spacingAfterTitle,
    const QSize& startSize)
{
    auto* titleRow = new QHBoxLayout;
    titleRow->addWidget(parts.title, 1);
    titleRow->addWidget(parts.close);
    auto* buttonRow = new QHBoxLayout;
    buttonRow->addStretch(1);
    buttonRow->addWidget(parts.save);
    buttonRow->addWidget(parts.cancel);

    auto* inner = new QVBoxLayout(parts.frame);
    inner->setContentsMargins(20, 12, 16, 16);
    inner->setSpacing(12);
    inner->addLayout(titleRow);
    inner->addSpacing(spacingAfterTitle);
    inner->addLayout(body);
    inner->addStretch(1);
    inner->addLayout(buttonRow);

    auto* outer = new QVBoxLayout(dialog);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(parts.frame);
    outer->setSizeConstraint(QLayout::SetMinimumSize);
    dialog->resize(startSize);
}

} // namespace BodyTemperature
