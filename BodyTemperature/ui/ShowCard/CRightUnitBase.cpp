#include "ui/ShowCard/CRightUnitBase.h"

#include <QLabel>
#include <QPushButton>

#include "Base/Log.h"

namespace BodyTemperature {

CRightUnitBase::CRightUnitBase(QWidget* parent) : QFrame(parent)
{
    m_pFacePicLabel = new QLabel(this);
    m_pTimeLabel = new QLabel(this);
    m_pCameraLabel = new QLabel(this);
    // Camera names come from devices: shown as typed, never as markup.
    m_pTimeLabel->setTextFormat(Qt::PlainText);
    m_pCameraLabel->setTextFormat(Qt::PlainText);
    m_pDetailBtn = new QPushButton(tr("ViewDetails"), this);
    m_pDetailBtn->setFlat(true);
    m_pDetailBtn->setCursor(Qt::PointingHandCursor);
    connect(m_pDetailBtn, &QPushButton::clicked, this, &CRightUnitBase::onDetailesBtnClicked);
}

CRightUnitBase::~CRightUnitBase()
{
    BASE_LOG_DEBUG("CRightUnitBase Destruct.");
}

void CRightUnitBase::onDetailesBtnClicked()
{
    ShowDetails();
}

} // namespace BodyTemperature
