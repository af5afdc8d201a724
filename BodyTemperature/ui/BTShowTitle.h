#pragma once
// The statistics strip over the information display: total, abnormal
// temperature, no mask, normal temperature. It keeps no numbers of its own;
// the dashboard dialog forwards every signalNum of the information display to
// SetNum. Colours and fonts come from the module style sheet (by object name).
// GUI thread; owned by the dashboard dialog.
#include <QWidget>

class QLabel;

namespace BodyTemperature {

class BTShowTitle final : public QWidget {
    Q_OBJECT
public:
    explicit BTShowTitle(QWidget* parent = nullptr);
    ~BTShowTitle() override;

    // Same argument order as CBTShowWidget::signalNum; each number lands in
    // the label of its meaning, not in display order.
    void SetNum(int iAllNum, int iNormalNum, int iNoMaskNum, int iAbnormalNum);

private:
    QWidget* addGroup(QWidget* container, const char* groupName, const char* captionName,
        const char* numberName, const QString& key, QLabel** number);

    QLabel* m_pAllNum = nullptr;
    QLabel* m_pAbnormalNum = nullptr;
    QLabel* m_pNoMaskNum = nullptr;
    QLabel* m_pNormalNum = nullptr;
};

} // namespace BodyTemperature
