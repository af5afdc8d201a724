#include "VantorGUIToolkit/CInformationDlg.h"

#include <QApplication>
#include <QCoreApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPropertyAnimation>
#include <QScreen>
#include <QTimer>

#include "Base/Log.h"

namespace VantorGUIToolkit {
namespace {

QStringList& shownTexts()
{
    static QStringList s_shown;
    return s_shown;
}

// Live message windows, oldest first. QPointer: a window can be destroyed by
// its own fade or by application shutdown, in any order.
QList<QPointer<CInformationDlg>>& liveMessages()
{
    static QList<QPointer<CInformationDlg>> s_live;
    return s_live;
}

// Messages still on screen when the application ends are deleted while
// widgets may still be deleted (QApplication runs post routines first).
void deleteLiveMessages()
{
    const QList<CInformationDlg*> live = CInformationDlg::VisibleMessages();
    for (CInformationDlg* dlg : live)
        delete dlg;
}

QScreen* screenUnderMouse()
{
    QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    return screen ? screen : QGuiApplication::primaryScreen();
}

} // namespace

CInformationDlg::CInformationDlg(const QString& text)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus)
{
    setObjectName(QStringLiteral("InformationDlg"));
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_DeleteOnClose);

    m_pText = new QLabel(this);
    m_pText->setObjectName(QStringLiteral("InformationText"));
    // Messages may quote names from devices: never interpreted as markup.
    m_pText->setTextFormat(Qt::PlainText);
    m_pText->setText(text);
    m_pText->setWordWrap(true);
    m_pText->setMaximumWidth(320);
    m_pText->setStyleSheet(QStringLiteral("color: #ffffff; font-size: 13px; background: transparent;"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(18, 12, 18, 12);
    layout->addWidget(m_pText);
    adjustSize();
    setMinimumWidth(qMax(width(), 200));

    m_pScreen = screenUnderMouse();
}

CInformationDlg::~CInformationDlg()
{
    auto& live = liveMessages();
    for (int i = live.size() - 1; i >= 0; --i) {
        if (live.at(i).isNull() || live.at(i).data() == this)
            live.removeAt(i);
    }
    restack();
}

QString CInformationDlg::Text() const { return m_pText->text(); }

void CInformationDlg::ShowInformationAtScreenRightBottom(const QString& text)
{
    shownTexts().append(text);
    BASE_LOG_INFO("information: %s", qUtf8Printable(text));
    // Without a widget application (command-line tools) the log line is all.
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr)
        return;

    static const bool s_cleanupRegistered = [] {
        qAddPostRoutine(deleteLiveMessages);
        return true;
    }();
    (void)s_cleanupRegistered;

    auto* dlg = new CInformationDlg(text);
    liveMessages().append(dlg);
    restack();
    dlg->show();
    dlg->raise();
    QTimer::singleShot(kShowMs, dlg, [dlg] { dlg->startFade(); });
}

QStringList CInformationDlg::ShownMessages() { return shownTexts(); }
void CInformationDlg::ClearShownMessages() { shownTexts().clear(); }

QList<CInformationDlg*> CInformationDlg::VisibleMessages()
{
    QList<CInformationDlg*> out;
    for (const auto& p : liveMessages()) {
        if (!p.isNull())
            out.append(p.data());
    }
    return out;
}

void CInformationDlg::startFade()
{
    if (m_pFade != nullptr)
        return;
    m_pFade = new QPropertyAnimation(this, "windowOpacity", this);
    m_pFade->setDuration(kFadeMs);
    m_pFade->setStartValue(1.0);
    m_pFade->setEndValue(0.0);
    connect(m_pFade, &QPropertyAnimation::finished, this, &QWidget::close);
    m_pFade->start();
}

void CInformationDlg::restack()
{
    // Each screen has its own column: a message stays on the screen where the
    // mouse was when it appeared.
    if (QGuiApplication::instance() == nullptr)
        return;
    QList<QScreen*> screens;
    QList<int> bottoms;
    const auto& live = liveMessages();
    for (int i = live.size() - 1; i >= 0; --i) {
        CInformationDlg* dlg = live.at(i).data();
        if (dlg == nullptr)
            continue;
        QScreen* screen = dlg->m_pScreen ? dlg->m_pScreen.data() : screenUnderMouse();
        if (screen == nullptr)
            continue;
        const QRect area = screen->availableGeometry();
        int idx = screens.indexOf(screen);
        if (idx < 0) {
            screens.append(screen);
            bottoms.append(area.bottom() + 1 - kMargin);
            idx = screens.size() - 1;
        }
        const int bottom = bottoms.at(idx);
        dlg->move(area.right() + 1 - kMargin - dlg->width(), bottom - dlg->height());
        bottoms[idx] = bottom - dlg->height() - kSpacing;
    }
}

void CInformationDlg::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath path;
    path.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
    painter.fillPath(path, QColor(30, 36, 48, 230));
    painter.setPen(QColor(255, 255, 255, 40));
    painter.drawPath(path);
}

} // namespace VantorGUIToolkit
