#include "ui/CRightNoData.h"

#include <QFrame>
#include <QCoreApplication>
#include <QLabel>
#include <QVBoxLayout>

namespace BodyTemperature {

CRightNoData::CRightNoData(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TranslucentBackground);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    m_pFrame = new QFrame(this);
    m_pFrame->setObjectName(QStringLiteral("frame"));
    outer->addWidget(m_pFrame);
    auto* inner = new QVBoxLayout(m_pFrame);
    m_pPicture = new QLabel(m_pFrame);
    m_pPicture->setObjectName(QStringLiteral("label"));
    m_pPicture->setFixedSize(120, 90);
    m_pNoDataText = new QLabel(m_pFrame);
    m_pNoDataText->setObjectName(QStringLiteral("m_pNoDataText"));
    m_pNoDataText->setAlignment(Qt::AlignCenter);
    m_pNoDataText->setText(QCoreApplication::translate("RightNoData", "NoData"));
    inner->addStretch(1);
    inner->addWidget(m_pPicture, 0, Qt::AlignHCenter);
    inner->addWidget(m_pNoDataText, 0, Qt::AlignHCenter);
    inner->addStretch(1);
}

CRightNoData::~CRightNoData() = default;

} // namespace BodyTemperature
