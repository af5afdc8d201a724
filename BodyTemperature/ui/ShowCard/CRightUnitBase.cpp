#include "ui/ShowCard/CRightUnitBase.h"

#include <QLabel>
#include <QPushButton>

namespace BodyTemperature {

CRightUnitBase::CRightUnitBase(QWidget* parent) : QFrame(parent)
{
    m_pFacePicLabel = new QLabel(this);
    m_pTimeLabel = new QLabel(this);
    m_pCameraLabel = new QLabel(this);
    m_pDetailBtn = new QPushButton(tr("ViewDetails"), this);
    m_pDetailBtn->setFlat(true);
    connect(m_pDetailBtn, &QPushButton::clicked, this, &CRightUnitBase::onDetailesBtnClicked);
}

CRightUnitBase::~CRightUnitBase() = default;

void CRightUnitBase::onDetailesBtnClicked()
{
    ShowDetails();
}

} // namespace BodyTemperature
