#include "ui/ShowCard/CWaitShowWid.h"

#include <QCoreApplication>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMovie>
#include <QSpacerItem>
#include <QTimer>

namespace BodyTemperature {

CWaitShowWid::CWaitShowWid(QWidget* parent, const QString& strAnimationFile) : QDialog(parent)
{
    if (objectName().isEmpty())
        setObjectName(QStringLiteral("WaitShowWid"));
    resize(410, 338);
    auto* outer = new QHBoxLayout(this);
    outer->setSpacing(0);
    outer->setContentsMargins(0, 48, 0, 0);
    auto* frame = new QFrame(this);
    frame->setObjectName(QStringLiteral("frame"));
    frame->setFrameShape(QFrame::StyledPanel);
    frame->setFrameShadow(QFrame::Raised);
    auto* grid = new QGridLayout(frame);
    grid->setHorizontalSpacing(15);
    grid->setVerticalSpacing(32);
    m_pCaptionLabel = new QLabel(frame);
    m_pCaptionLabel->setObjectName(QStringLiteral("label"));
    m_pCaptionLabel->setFixedHeight(24);
    m_pCaptionLabel->setAlignment(Qt::AlignCenter);
    m_pCaptionLabel->setText(QCoreApplication::translate("WaitShowWid", "Processing"));
    grid->addWidget(m_pCaptionLabel, 0, 0);
    m_pAnimationLabel = new QLabel(frame);
    m_pAnimationLabel->setObjectName(QStringLiteral("labelMovie"));
    m_pAnimationLabel->setAlignment(Qt::AlignCenter);
    m_pAnimationLabel->setText(QString());
    grid->addWidget(m_pAnimationLabel, 1, 0);
    grid->addItem(new QSpacerItem(20, 40, QSizePolicy::Minimum, QSizePolicy::Expanding), 2, 0);
    outer->addWidget(frame);

    m_pMovie = new QMovie(strAnimationFile, QByteArray(), this);
    m_pMovie->setScaledSize(QSize(54, 54));
    m_pAnimationLabel->setMovie(m_pMovie);
    m_pMovie->start();

    setFixedSize(300, 210);
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);

    m_pTimer = new QTimer(this);
    connect(m_pTimer, &QTimer::timeout, this, &CWaitShowWid::OnWaitTimeOut);
    m_pTimer->start(kTickMs);
    connect(this, &QDialog::rejected, this, &CWaitShowWid::SignalCancel);
}

CWaitShowWid::~CWaitShowWid()
{
    m_pTimer->stop();
}

void CWaitShowWid::OnWaitTimeOut()
{
    if (m_iChaseState == 0)
        reject();
    else if (m_iChaseState == 1)
        accept();
    m_iChaseState = 2;
}

void CWaitShowWid::OnStopChaseByAccept()
{
    m_iChaseState = 1;
}

void CWaitShowWid::OnStopChaseByReject()
{
    m_iChaseState = 0;
}

void CWaitShowWid::OnImmediatelyStopChase()
{
    m_iChaseState = 1;
    accept();
    m_iChaseState = 2;
}

void CWaitShowWid::OnSetProgressValue(int) {}

} // namespace BodyTemperature
