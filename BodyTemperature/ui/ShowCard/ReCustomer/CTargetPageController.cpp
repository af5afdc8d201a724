#include "ui/ShowCard/ReCustomer/CTargetPageController.h"

#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "VantorGUIToolkit/CIntValidator.h"
#include "ui/ShowCard/ReCustomer/CHFPDPaging.h"

namespace BodyTemperature {

namespace {

QIcon twoStateIcon(const QString& normal, const QString& disabled)
{
    const QString dir = QStringLiteral(":/publicIcon/Images/public/PublicIcon/");
    QIcon icon;
    icon.addFile(dir + normal, QSize(), QIcon::Normal);
    icon.addFile(dir + disabled, QSize(), QIcon::Disabled);
    return icon;
}

// First and last show an icon and name themselves in a tool tip; previous
// and next show their names.
QPushButton* pagerButton(QWidget* parent, const char* name, const QString& tip, const QIcon& icon)
{
    auto* b = new QPushButton(parent);
    b->setObjectName(QLatin1String(name));
    b->setToolTip(tip);
    b->setIcon(icon);
    b->setFixedSize(32, 28);
    b->setIconSize(QSize(16, 16));
    b->setCursor(Qt::PointingHandCursor);
    return b;
}

QPushButton* pagerButton(QWidget* parent, const char* name, const QString& text)
{
    auto* b = new QPushButton(text, parent);
    b->setObjectName(QLatin1String(name));
    b->setFixedHeight(28);
    b->setMinimumWidth(32);
    b->setCursor(Qt::PointingHandCursor);
    return b;
}

} // namespace

CTargetPageController::CTargetPageController(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("CTargetPageController"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    m_pCountLabel = new QLabel(this);
    m_pCountLabel->setObjectName(QStringLiteral("m_pCountLabel"));
    row->addWidget(m_pCountLabel);
    row->addStretch(1);

    m_pHomePageBtn = pagerButton(this, "pHomePageBtn", tr("FirstPage"),
        twoStateIcon(QStringLiteral("HomePage.png"), QStringLiteral("HomePageDisabled.png")));
    m_pPreviousBtn = pagerButton(this, "pPreviousBtn", tr("PrevPage"));
    m_pNextBtn = pagerButton(this, "pNextBtn", tr("NextPage"));
    m_pLastPageBtn = pagerButton(this, "pLastPageBtn", tr("LastPage"),
        twoStateIcon(QStringLiteral("LastPage.png"), QStringLiteral("LastPageDisabled.png")));
    m_pGoToLabel = new QLabel(tr("GoTo"), this);
    m_pGoToLabel->setObjectName(QStringLiteral("m_pGoToLabel"));
    m_pPageEdit = new QLineEdit(this);
    m_pPageEdit->setObjectName(QStringLiteral("m_pPageEdit"));
    m_pPageEdit->setFixedSize(48, 28);
    m_pPageEdit->setAlignment(Qt::AlignCenter);
    m_pPageValidator = new VantorGUIToolkit::CIntValidator(1, 1, m_pPageEdit);
    m_pPageEdit->setValidator(m_pPageValidator);
    m_pPageLabel = new QLabel(this);
    m_pPageLabel->setObjectName(QStringLiteral("m_pPageLabel"));

    row->addWidget(m_pHomePageBtn);
    row->addWidget(m_pPreviousBtn);
    row->addWidget(m_pGoToLabel);
    row->addWidget(m_pPageEdit);
    row->addWidget(m_pPageLabel);
    row->addWidget(m_pNextBtn);
    row->addWidget(m_pLastPageBtn);

    connect(m_pHomePageBtn, &QPushButton::clicked, this, &CTargetPageController::OnHomePageClicked);
    connect(m_pPreviousBtn, &QPushButton::clicked, this, &CTargetPageController::OnPreviousBtnClicked);
    connect(m_pNextBtn, &QPushButton::clicked, this, &CTargetPageController::OnNextBtnClicked);
    connect(m_pLastPageBtn, &QPushButton::clicked, this, &CTargetPageController::OnLastPageBtnClicked);
    connect(m_pPageEdit, &QLineEdit::returnPressed, this, &CTargetPageController::OnJump);
    SetPageInfo(1, 0);
}

void CTargetPageController::SetPageInfo(unsigned int uPageCount, unsigned int uRecordCount)
{
    m_uPageCount = qMax(1u, uPageCount);
    m_uCurrentPage = 1;
    m_pCountLabel->setText(tr("AllIn") + QLatin1Char(' ') + QString::number(uRecordCount) + QLatin1Char(' ')
        + tr("Records"));
    // The "/count" part is a fixed format, not a text to translate.
    m_pPageLabel->setText(QStringLiteral("/%1").arg(m_uPageCount) + tr("Page"));
    m_pPageValidator->setRange(1, int(m_uPageCount));
    m_pPageEdit->clear();
    updateButtons();
}

void CTargetPageController::OnHomePageClicked()
{
    goTo(1);
}

void CTargetPageController::OnPreviousBtnClicked()
{
    if (m_uCurrentPage > 1)
        goTo(m_uCurrentPage - 1);
}

void CTargetPageController::OnNextBtnClicked()
{
    if (m_uCurrentPage < m_uPageCount)
        goTo(m_uCurrentPage + 1);
}

void CTargetPageController::OnLastPageBtnClicked()
{
    goTo(m_uPageCount);
}

void CTargetPageController::OnJump()
{
    uint32_t target = 0;
    if (CHFPDPaging::JumpTarget(m_pPageEdit->text(), m_uCurrentPage, m_uPageCount, target))
        goTo(target);
}

void CTargetPageController::OnCurrentPageChanged()
{
    updateButtons();
    m_pPageEdit->setText(QString::number(m_uCurrentPage));
    emit SignalPageChanged(m_uCurrentPage);
}

void CTargetPageController::goTo(unsigned int uPage)
{
    m_uCurrentPage = uPage;
    OnCurrentPageChanged();
}

void CTargetPageController::updateButtons()
{
    const CHFPDPaging::Buttons b = CHFPDPaging::ButtonsFor(m_uCurrentPage, m_uPageCount);
    m_pHomePageBtn->setEnabled(b.first);
    m_pPreviousBtn->setEnabled(b.prev);
    m_pNextBtn->setEnabled(b.next);
    m_pLastPageBtn->setEnabled(b.last);
}

} // namespace BodyTemperature
