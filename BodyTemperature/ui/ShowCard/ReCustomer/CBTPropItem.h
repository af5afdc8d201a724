#pragma once
// One attribute of a capture in the detail view: a framed tile with an icon
// (or a colour swatch), the attribute's name and its value. Created as a
// child of the detail view; GUI thread.
#include <QColor>
#include <QWidget>

class QLabel;

namespace BodyTemperature {

class CBTPropItem final : public QWidget {
    Q_OBJECT
public:
    explicit CBTPropItem(QWidget* parent = nullptr);

    void SetTitle(const QString& title);
    // Value text and icon resource (empty: no icon).
    void SetValue(const QString& text, const QString& iconPath);
    // Colour code of the colour table; unknown codes show no swatch colour.
    void SetColorCode(int code);
    void SetSelected(bool selected);
    void SetValueColor(const QColor& color);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void applyFrame();

    bool m_bSelected = false;
    QWidget* m_PicLabel = nullptr;
    QLabel* m_pIcon = nullptr;
    QLabel* m_pLabelTitle = nullptr;
    QLabel* m_pLabelTitleSel = nullptr;
    QString m_strIcon;
};

} // namespace BodyTemperature
