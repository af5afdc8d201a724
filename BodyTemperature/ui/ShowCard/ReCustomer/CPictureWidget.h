#pragma once
// A picture scaled into the widget's area with the face rectangle drawn over
// it (fractions of the picture, so it follows the scaling). Created by the
// frequent-person detail view as a child; GUI thread.
#include <QImage>
#include <QRectF>
#include <QString>
#include <QWidget>

namespace BodyTemperature {

class CPictureWidget final : public QWidget {
    Q_OBJECT
public:
    explicit CPictureWidget(QWidget* parent = nullptr);

    // Decodes an encoded picture (size-checked like every picture from a
    // device) and scales it to the widget; false (and the picture cleared)
    // when it does not load.
    bool ShowPictureByBuffer(const QByteArray& bytes);
    // All zero: no rectangle.
    void SetFaceRect(const QRectF& rect);
    // Text drawn in place of a picture (loading, failure); empty for none.
    void SetMessage(const QString& text);
    void Clear();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage m_image;
    QRectF m_faceRect;
    QString m_strMessage;
};

} // namespace BodyTemperature
