#include "aiguitoolkit/CShakeButton.h"

#include <QEvent>
#include <QFile>
#include <QMouseEvent>
#include <QTimer>

namespace aiguitoolkit {

namespace {
constexpr int kShakeIntervalMs = 25;
// Sideways offsets in eighths of the range: out, back, smaller swings, rest.
constexpr int kShakePattern[] = {8, -8, 5, -5, 2, -2, 0};
constexpr int kShakeSteps = static_cast<int>(sizeof(kShakePattern) / sizeof(kShakePattern[0]));
} // namespace

CShakeButton::CShakeButton(QWidget* parent) : QToolButton(parent)
{
    setAutoRaise(true);
    setCursor(Qt::PointingHandCursor);
    m_pShakeTimer = new QTimer(this);
    m_pShakeTimer->setInterval(kShakeIntervalMs);
    connect(m_pShakeTimer, &QTimer::timeout, this, &CShakeButton::shakeStep);
    connect(this, &QToolButton::clicked, this, &CShakeButton::startShake);
    connect(this, &QToolButton::toggled, this, &CShakeButton::refreshPicture);
}

CShakeButton::~CShakeButton() = default;

void CShakeButton::setPictureAttibute(const QString& strPattern, int iFirst, int iShakeRange)
{
    m_strPattern = strPattern;
    m_iShakeRange = qMax(0, iShakeRange);
    for (int state = 0; state < StateCount; ++state) {
        const QString file = strPattern.arg(iFirst + state);
        m_pictures[state] = QFile::exists(file) ? QPixmap(file) : QPixmap();
    }
    if (!m_pictures[Normal].isNull())
        setIconSize(m_pictures[Normal].size());
    refreshPicture();
}

bool CShakeButton::isShaking() const
{
    return m_pShakeTimer->isActive();
}

void CShakeButton::refreshPicture()
{
    PictureState state = Normal;
    if (!isEnabled())
        state = Disabled;
    else if (m_bPressed || isChecked())
        state = Pressed;
    else if (m_bHovered)
        state = Hover;
    if (m_pictures[state].isNull())
        state = Normal;
    m_eShown = state;
    setIcon(m_pictures[state].isNull() ? QIcon() : QIcon(m_pictures[state]));
}

void CShakeButton::enterEvent(QEvent* event)
{
    m_bHovered = true;
    refreshPicture();
    QToolButton::enterEvent(event);
}

void CShakeButton::leaveEvent(QEvent* event)
{
    m_bHovered = false;
    refreshPicture();
    QToolButton::leaveEvent(event);
}

void CShakeButton::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        m_bPressed = true;
        refreshPicture();
    }
    QToolButton::mousePressEvent(event);
}

void CShakeButton::mouseReleaseEvent(QMouseEvent* event)
{
    m_bPressed = false;
    QToolButton::mouseReleaseEvent(event);
    refreshPicture();
}

void CShakeButton::changeEvent(QEvent* event)
{
    QToolButton::changeEvent(event);
    if (event->type() == QEvent::EnabledChange)
        refreshPicture();
}

void CShakeButton::startShake()
{
    if (m_iShakeRange == 0 || m_pShakeTimer->isActive())
        return;
    m_restPos = pos();
    m_iShakeStep = 0;
    m_pShakeTimer->start();
}

void CShakeButton::shakeStep()
{
    if (m_iShakeStep >= kShakeSteps) {
        m_pShakeTimer->stop();
        move(m_restPos);
        return;
    }
    move(m_restPos + QPoint(kShakePattern[m_iShakeStep] * m_iShakeRange / 8, 0));
    ++m_iShakeStep;
}

} // namespace aiguitoolkit
