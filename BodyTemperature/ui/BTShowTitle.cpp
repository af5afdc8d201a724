#include "ui/BTShowTitle.h"

#include <QHBoxLayout>
#include <QLabel>

namespace BodyTemperature {

namespace {
constexpr int kGroupMaxWidth = 100;
}

BTShowTitle::BTShowTitle(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("BTShowTitle"));
    auto* outer = new QHBoxLayout(this);
    outer->setSpacing(0);
    outer->setContentsMargins(0, 0, 0, 0);
    auto* container = new QWidget(this);
    container->setObjectName(QStringLiteral("widgetTopBtns"));
    outer->addWidget(container);
    auto* row = new QHBoxLayout(container);
    row->setSpacing(0);
    row->setContentsMargins(0, 0, 0, 0);

    // Display order: total, abnormal, no mask, normal.
    row->addWidget(addGroup(container, "btnAllNum", "m_pAll", "labelAllNum", tr("TheTotalNumberOfyDridGtt"), &m_pAllNum));
    row->addWidget(addGroup(container, "btnAbnormal", "m_pAbnormal", "labelAbnormal",
        tr("TemperatureAnomaliesWaPooFNo"), &m_pAbnormalNum));
    row->addWidget(addGroup(container, "btnNoMask", "m_pMask", "labelNoMask", tr("NoGauzeMask"), &m_pNoMaskNum));
    row->addWidget(addGroup(container, "btnNormal", "m_pNormal", "labelNormal", tr("TemperatureIsNormalLvoFXpTP"),
        &m_pNormalNum));

    SetNum(0, 0, 0, 0);
}

BTShowTitle::~BTShowTitle() = default;

QWidget* BTShowTitle::addGroup(QWidget* container, const char* groupName, const char* captionName,
    const char* numberName, const QString& key, QLabel** number)
{
    auto* group = new QWidget(container);
    group->setObjectName(QString::fromLatin1(groupName));
    group->setMaximumWidth(kGroupMaxWidth);
    group->setToolTip(key);
    auto* layout = new QHBoxLayout(group);
    layout->setSpacing(0);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* caption = new QLabel(key + QStringLiteral(":"), group);
    caption->setObjectName(QString::fromLatin1(captionName));
    *number = new QLabel(group);
    (*number)->setObjectName(QString::fromLatin1(numberName));
    layout->addWidget(caption);
    layout->addWidget(*number);
    return group;
}

void BTShowTitle::SetNum(int iAllNum, int iNormalNum, int iNoMaskNum, int iAbnormalNum)
{
    m_pAllNum->setText(QString::number(iAllNum));
    m_pNormalNum->setText(QString::number(iNormalNum));
    m_pNoMaskNum->setText(QString::number(iNoMaskNum));
    m_pAbnormalNum->setText(QString::number(iAbnormalNum));
}

} // namespace BodyTemperature
