#pragma once
// Placeholder shown while a card list is empty: a picture and "NoData".
#include <QWidget>

class QFrame;
class QLabel;

namespace BodyTemperature {

class CRightNoData final : public QWidget {
    Q_OBJECT
public:
    explicit CRightNoData(QWidget* parent = nullptr);
    ~CRightNoData() override;

private:
    QFrame* m_pFrame = nullptr;
    QLabel* m_pPicture = nullptr;
    QLabel* m_pNoDataText = nullptr;
};

} // namespace BodyTemperature
