#include "ui/ShowCard/ReCustomer/CHFPDPicLabelList.h"

#include <QDebug>
#include <QGridLayout>

#include "ui/ShowCard/ReCustomer/CHFPDPicLabel.h"

namespace BodyTemperature {

CHFPDPicLabelList::CHFPDPicLabelList(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("CPicLabelList"));
    m_pGrid = new QGridLayout(this);
    m_pGrid->setContentsMargins(0, 0, 0, 0);
    m_pGrid->setSpacing(4);
    m_pGrid->setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

void CHFPDPicLabelList::SetGeometryOfLabels(const QSize& thumb, int spacing, int columns)
{
    m_thumb = thumb;
    m_iColumns = qMax(1, columns);
    m_pGrid->setSpacing(spacing);
    m_pGrid->setContentsMargins(0, 0, 0, 0);
    for (CHFPDPicLabel* label : m_labels)
        label->setFixedSize(m_thumb);
    relayout();
}

CHFPDPicLabel* CHFPDPicLabelList::AddPicLabel(unsigned int uPicLsh, const QString& strTime)
{
    CHFPDPicLabel* label = nullptr;
    if (!m_spare.isEmpty()) {
        label = m_spare.takeLast();
        label->Reset(uPicLsh, strTime);
    } else {
        label = new CHFPDPicLabel(uPicLsh, strTime, this);
        connect(label, &CHFPDPicLabel::SignalClicked, this, &CHFPDPicLabelList::SignalPicLabelClickedWithLsh);
        connect(label, &CHFPDPicLabel::SignalDoubleClicked, this, &CHFPDPicLabelList::SignalLabelDbClicked);
    }
    label->setFixedSize(m_thumb);
    m_pGrid->addWidget(label, m_labels.size() / m_iColumns, m_labels.size() % m_iColumns);
    m_labels.append(label);
    label->show();
    return label;
}

bool CHFPDPicLabelList::RemovePicLabel(unsigned int uPicLsh)
{
    CHFPDPicLabel* label = FindPicLabel(uPicLsh);
    if (label == nullptr)
        return false;
    m_labels.removeOne(label);
    m_pGrid->removeWidget(label);
    // Later: the removal may come from a slot of the label's own signal.
    label->hide();
    label->deleteLater();
    relayout();
    return true;
}

bool CHFPDPicLabelList::SelectPicLabel(unsigned int uPicLsh)
{
    CHFPDPicLabel* chosen = FindPicLabel(uPicLsh);
    if (chosen == nullptr)
        return false;
    for (CHFPDPicLabel* label : m_labels)
        label->SetChecked(label == chosen);
    return true;
}

CHFPDPicLabel* CHFPDPicLabelList::FindPicLabel(unsigned int uPicLsh) const
{
    for (CHFPDPicLabel* label : m_labels)
        if (label->PicLsh() == uPicLsh)
            return label;
    qDebug() << "PicLsh " << uPicLsh << "is not existed.";
    return nullptr;
}

void CHFPDPicLabelList::ClearPicLabels()
{
    for (CHFPDPicLabel* label : m_labels) {
        m_pGrid->removeWidget(label);
        label->hide();
    }
    m_spare.append(m_labels);
    m_labels.clear();
}

int CHFPDPicLabelList::Count() const
{
    return m_labels.size();
}

void CHFPDPicLabelList::relayout()
{
    for (CHFPDPicLabel* label : m_labels)
        m_pGrid->removeWidget(label);
    for (int i = 0; i < m_labels.size(); ++i)
        m_pGrid->addWidget(m_labels[i], i / m_iColumns, i % m_iColumns);
}

} // namespace BodyTemperature
