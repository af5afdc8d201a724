#pragma once
// A module's page widget. The host keeps the page's saved-state list here:
// the module writes it in saveState() (page left or host closing) and reads it
// in readState() (page shown); the host persists it between runs.
#include <QByteArray>
#include <QList>
#include <QWidget>

namespace publicdatacontroller {

struct AIStateItem {
    QByteArray name;
    QList<qint32> values;
    bool operator==(const AIStateItem& o) const { return name == o.name && values == o.values; }
};

class IAIWidget : public QWidget {
    Q_OBJECT
public:
    explicit IAIWidget(QWidget* parent = nullptr) : QWidget(parent) {}
    ~IAIWidget() override;

    virtual void saveState() = 0;
    virtual void readState() = 0;

    QList<AIStateItem>& stateList() { return m_listState; }
    const QList<AIStateItem>& stateList() const { return m_listState; }

public slots:
    virtual void onConfigBtnClicked() = 0;
    virtual void onMinmumBtnClicked() = 0;
    virtual void onCloseBtnClicked() = 0;

protected:
    QList<AIStateItem> m_listState;
};

} // namespace publicdatacontroller
