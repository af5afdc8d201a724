#include "ui/CTypeConfigPage.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QFrame>
#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>

#include "ui/SettingsPageLook.h"

namespace BodyTemperature {
namespace {
// The page's texts keep their translation context without the namespace.
struct PageText {
    Q_DECLARE_TR_FUNCTIONS(CTypeConfigPage)
};
} // namespace

CTypeConfigPage::CTypeConfigPage(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("TypeConfigPage"));
    // Pop-up + frameless: a click anywhere else closes the panel.
    setWindowFlags(windowFlags() | Qt::Popup | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);

    m_pFrame = new QFrame(this);
    m_pFrame->setObjectName(QStringLiteral("TypeConfigFrame"));
    ApplySettingsPageLook(m_pFrame);

    m_pComparisonCheck = new QCheckBox(PageText::tr("FacePictureComparisonAlarm"), m_pFrame);
    m_pComparisonCheck->setObjectName(QStringLiteral("m_pFaceComparisonCheckBox"));
    m_pTemperatureCheck = new QCheckBox(PageText::tr("FaceTemperatureCaptureJLMWvg"), m_pFrame);
    m_pTemperatureCheck->setObjectName(QStringLiteral("m_pFaceTemperatureCaptureCheckBox"));
    m_pCaptureCheck = new QCheckBox(PageText::tr("FaceCaptureAlarm"), m_pFrame);
    m_pCaptureCheck->setObjectName(QStringLiteral("m_pFaceCaptureCheckBox"));

    auto* inner = new QVBoxLayout(m_pFrame);
    inner->setContentsMargins(16, 12, 16, 12);
    inner->setSpacing(10);
    for (QCheckBox* box : {m_pComparisonCheck, m_pTemperatureCheck, m_pCaptureCheck}) {
        box->setCursor(Qt::PointingHandCursor);
        // The panel's size is fixed per language; a label longer than that
        // is clipped rather than stretching the panel, and stays readable
        // as a tool tip.
        box->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        box->setToolTip(box->text());
        inner->addWidget(box);
        connect(box, &QCheckBox::clicked, this, &CTypeConfigPage::onDealCheck);
    }
    inner->addStretch(1);

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(m_pFrame);

    SetConfig(m_config);
}

CTypeConfigPage::~CTypeConfigPage() = default;

void CTypeConfigPage::SetConfig(const AlarmDisplayConfig& config)
{
    m_config = config;
    m_pComparisonCheck->setChecked(m_config.bFacePictureComparison);
    m_pTemperatureCheck->setChecked(m_config.bFaceTemperatureCapture);
    m_pCaptureCheck->setChecked(m_config.bFaceCapture);
}

void CTypeConfigPage::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!isWindow())
        return;
    QScreen* screen = QGuiApplication::screenAt(geometry().center());
    if (screen == nullptr)
        screen = parentWidget() != nullptr ? parentWidget()->screen() : QGuiApplication::primaryScreen();
    if (screen == nullptr)
        return;
    const QRect area = screen->availableGeometry();
    const QRect g = frameGeometry();
    const int x = qMax(area.left(), qMin(g.left(), area.right() + 1 - g.width()));
    const int y = qMax(area.top(), qMin(g.top(), area.bottom() + 1 - g.height()));
    if (x != g.left() || y != g.top())
        move(pos() + QPoint(x - g.left(), y - g.top()));
}

void CTypeConfigPage::onDealCheck(bool)
{
    // All three are read, not only the clicked one: the receiver stores the
    // whole TemperatureAlarm.
    m_config.bFacePictureComparison = m_pComparisonCheck->isChecked();
    m_config.bFaceTemperatureCapture = m_pTemperatureCheck->isChecked();
    m_config.bFaceCapture = m_pCaptureCheck->isChecked();
    TemperatureAlarm alarm = m_config;
    emit signalCheckState(alarm);
}

QSize CTypeConfigPage::PageSize(int language)
{
    return language == 1 ? QSize(190, 130) : QSize(290, 150);
}

QPoint CTypeConfigPage::PagePosition(const QRect& bar, int language)
{
    const float w = language == 1 ? 230.0f : 330.0f;
    const float x = static_cast<float>(bar.x() + bar.width()) - static_cast<float>(bar.width()) * w / 1920.0f;
    const float y = static_cast<float>(bar.y() + bar.height()) * 142.0f / 1080.0f;
    return QPoint(static_cast<int>(x), static_cast<int>(y));
}

void CTypeConfigPage::PlaceUnder(const QWidget* bar, int language)
{
    resize(PageSize(language));
    const QPoint global = bar->mapToGlobal(PagePosition(bar->geometry(), language));
    move(isWindow() ? global : bar->mapFromGlobal(global));
}

} // namespace BodyTemperature
