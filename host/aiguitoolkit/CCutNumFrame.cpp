#include "aiguitoolkit/CCutNumFrame.h"

#include <QHBoxLayout>
#include <QToolButton>

namespace aiguitoolkit {

CCutNumFrame::CCutNumFrame(QWidget* parent) : QFrame(parent, Qt::Popup | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("CCutNumFrame"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(6);
    const int kinds[][2] = {{1, 1}, {2, 4}, {3, 9}};
    for (const auto& k : kinds) {
        auto* btn = new QToolButton(this);
        btn->setObjectName(QStringLiteral("m_pCut%1Btn").arg(k[1]));
        btn->setText(QString::number(k[1]));
        btn->setToolTip(tr("%1Windows").arg(k[1]));
        btn->setFixedSize(32, 32);
        layout->addWidget(btn);
        const int type = k[0];
        connect(btn, &QToolButton::clicked, this, [this, type] {
            hide();
            emit SignalClickedBtn(type);
        });
        m_entries.append(Entry{k[0], k[1], btn});
    }
    adjustSize();
}

CCutNumFrame::~CCutNumFrame() = default;

void CCutNumFrame::SetMaxWndNum(int count, bool bHide)
{
    for (const Entry& e : m_entries) {
        const bool offered = e.windows <= count;
        e.button->setVisible(offered || !bHide);
        e.button->setEnabled(offered);
    }
    adjustSize();
}

QList<int> CCutNumFrame::OfferedWindowCounts() const
{
    QList<int> counts;
    for (const Entry& e : m_entries)
        if (e.button->isEnabled() && !e.button->isHidden())
            counts.append(e.windows);
    return counts;
}

QToolButton* CCutNumFrame::ButtonOfType(int type) const
{
    for (const Entry& e : m_entries)
        if (e.type == type)
            return e.button;
    return nullptr;
}

} // namespace aiguitoolkit
