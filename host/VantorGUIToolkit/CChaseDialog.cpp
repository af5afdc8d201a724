#include "VantorGUIToolkit/CChaseDialog.h"

#include <QCoreApplication>
#include <QFrame>
#include <QLabel>
#include <QMovie>
#include <QPushButton>
#include <QVBoxLayout>

namespace VantorGUIToolkit {

namespace {
const char* const kCancel = QT_TRANSLATE_NOOP("VantorGUIToolkit::CChaseDialog", "Cancel");
// The text keys callers pass, marked here so their translations stay in this
// dialog's context.
[[maybe_unused]] const char* const kCallerKeys[] = {
    QT_TRANSLATE_NOOP("VantorGUIToolkit::CChaseDialog", "Processing"),
};
} // namespace

CChaseDialog::CChaseDialog(const QString& animationFile, const char* textKey, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("ChaseDialog"));
    setAttribute(Qt::WA_TranslucentBackground);
    setModal(true);
    setFixedSize(300, 210);

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    auto* frame = new QFrame(this);
    frame->setObjectName(QStringLiteral("m_pChaseFrame"));
    frame->setStyleSheet(QStringLiteral("QFrame#m_pChaseFrame{background-color:#2B2F36;border:1px solid #3E444D;"
                                        "border-radius:4px;}QLabel{color:#E6E6E6;font-size:14px;}"
                                        "QPushButton{color:#E6E6E6;background:#3A4048;border:none;border-radius:2px;"
                                        "min-width:80px;min-height:26px;}QPushButton:hover{background:#4A515B;}"));
    outer->addWidget(frame);
    auto* box = new QVBoxLayout(frame);
    box->setContentsMargins(20, 24, 20, 18);
    box->setSpacing(14);

    m_pAnimationLabel = new QLabel(frame);
    m_pAnimationLabel->setObjectName(QStringLiteral("m_pAnimationLabel"));
    m_pAnimationLabel->setAlignment(Qt::AlignCenter);
    m_pMovie = new QMovie(animationFile, QByteArray(), this);
    m_pMovie->setScaledSize(QSize(54, 54));
    m_pAnimationLabel->setMovie(m_pMovie);
    box->addWidget(m_pAnimationLabel, 1);

    m_pTextLabel = new QLabel(QCoreApplication::translate("VantorGUIToolkit::CChaseDialog", textKey), frame);
    m_pTextLabel->setObjectName(QStringLiteral("m_pTextLabel"));
    m_pTextLabel->setAlignment(Qt::AlignCenter);
    box->addWidget(m_pTextLabel);

    m_pCancelBtn = new QPushButton(QCoreApplication::translate("VantorGUIToolkit::CChaseDialog", kCancel), frame);
    m_pCancelBtn->setObjectName(QStringLiteral("m_pCancelBtn"));
    m_pCancelBtn->setAutoDefault(false);
    box->addWidget(m_pCancelBtn, 0, Qt::AlignHCenter);
    connect(m_pCancelBtn, &QPushButton::clicked, this, &CChaseDialog::reject);

    m_pMovie->start();
}

CChaseDialog::~CChaseDialog() = default;

int CChaseDialog::ExecChase()
{
    if (m_bStopped)
        return QDialog::Accepted;
    return exec();
}

void CChaseDialog::OnImmediatelyStopChase()
{
    m_bStopped = true;
    m_pMovie->stop();
    done(QDialog::Accepted);
}

void CChaseDialog::reject()
{
    // The worker decides when it has stopped; cancel is asked once.
    if (m_bStopped || m_bCancelSent)
        return;
    m_bCancelSent = true;
    m_pCancelBtn->setEnabled(false);
    emit SignalCancel();
}

} // namespace VantorGUIToolkit
