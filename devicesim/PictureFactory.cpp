#include "PictureFactory.h"

#include <QBuffer>
#include <QDateTime>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

namespace devicesim {

namespace {
const QColor kSkins[] = {QColor(241, 194, 167), QColor(224, 172, 105), QColor(198, 134, 66),
    QColor(141, 85, 36), QColor(255, 219, 172), QColor(234, 192, 134)};
const QColor kHair[] = {QColor(30, 20, 10), QColor(90, 60, 30), QColor(200, 170, 90), QColor(60, 60, 60),
    QColor(140, 40, 20), QColor(15, 15, 15)};
const QColor kShirts[] = {QColor(40, 90, 160), QColor(160, 40, 40), QColor(40, 140, 70), QColor(120, 120, 130),
    QColor(200, 160, 40), QColor(90, 50, 130)};
template <typename T, size_t N>
const T& pick(const T (&a)[N], int i) { return a[size_t(std::abs(i)) % N]; }
} // namespace

PictureFactory::PictureFactory(int sceneWidth, int sceneHeight) : m_sceneW(sceneWidth), m_sceneH(sceneHeight) {}

QByteArray PictureFactory::encode(const QImage& img, int quality)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    img.save(&buffer, "JPEG", quality);
    return bytes;
}

void PictureFactory::drawFace(QPainter& p, const QRectF& box, const FaceLook& look)
{
    p.save();
    p.setRenderHint(QPainter::Antialiasing);
    const double w = box.width();
    const double h = box.height();
    const QRectF head(box.x() + w * 0.18, box.y() + h * 0.12, w * 0.64, h * 0.78);
    // Hair behind the head, then the head itself.
    p.setPen(Qt::NoPen);
    p.setBrush(pick(kHair, look.person));
    p.drawEllipse(head.adjusted(-w * 0.04, -h * 0.06, w * 0.04, -h * 0.3));
    p.setBrush(pick(kSkins, look.person));
    p.drawEllipse(head);
    // Eyes and brows.
    const double eyeY = head.y() + head.height() * 0.42;
    const double eyeDx = head.width() * 0.2;
    const double cx = head.center().x();
    p.setBrush(Qt::white);
    p.drawEllipse(QPointF(cx - eyeDx, eyeY), w * 0.07, h * 0.035);
    p.drawEllipse(QPointF(cx + eyeDx, eyeY), w * 0.07, h * 0.035);
    p.setBrush(QColor(50, 40, 30));
    p.drawEllipse(QPointF(cx - eyeDx, eyeY), w * 0.03, h * 0.03);
    p.drawEllipse(QPointF(cx + eyeDx, eyeY), w * 0.03, h * 0.03);
    p.setPen(QPen(pick(kHair, look.person), std::max(1.0, w * 0.02)));
    p.drawLine(QPointF(cx - eyeDx * 1.5, eyeY - h * 0.07), QPointF(cx - eyeDx * 0.5, eyeY - h * 0.08));
    p.drawLine(QPointF(cx + eyeDx * 0.5, eyeY - h * 0.08), QPointF(cx + eyeDx * 1.5, eyeY - h * 0.07));
    if (look.glasses) {
        p.setPen(QPen(Qt::black, std::max(1.0, w * 0.015)));
        p.setBrush(Qt::NoBrush);
        p.drawEllipse(QPointF(cx - eyeDx, eyeY), w * 0.1, h * 0.06);
        p.drawEllipse(QPointF(cx + eyeDx, eyeY), w * 0.1, h * 0.06);
        p.drawLine(QPointF(cx - eyeDx + w * 0.1, eyeY), QPointF(cx + eyeDx - w * 0.1, eyeY));
    }
    // Nose and mouth, or the mask over them.
    const double mouthY = head.y() + head.height() * 0.75;
    if (look.mask) {
        QPainterPath mask;
        const QRectF m(head.x() + head.width() * 0.1, head.y() + head.height() * 0.55, head.width() * 0.8,
            head.height() * 0.35);
        mask.addRoundedRect(m, w * 0.06, h * 0.06);
        p.setPen(QPen(QColor(120, 160, 190), std::max(1.0, w * 0.01)));
        p.setBrush(QColor(170, 215, 240));
        p.drawPath(mask);
        for (int i = 1; i <= 2; ++i)
            p.drawLine(QPointF(m.left() + 4, m.top() + m.height() * i / 3), QPointF(m.right() - 4, m.top() + m.height() * i / 3));
        p.drawLine(m.topLeft(), QPointF(head.left() - w * 0.02, eyeY + h * 0.02));
        p.drawLine(m.topRight(), QPointF(head.right() + w * 0.02, eyeY + h * 0.02));
    } else {
        p.setPen(QPen(pick(kSkins, look.person).darker(130), std::max(1.0, w * 0.015)));
        p.drawLine(QPointF(cx, eyeY + h * 0.05), QPointF(cx - w * 0.03, mouthY - h * 0.1));
        p.setPen(QPen(QColor(150, 50, 50), std::max(1.0, w * 0.02)));
        p.setBrush(Qt::NoBrush);
        p.drawArc(QRectF(cx - w * 0.12, mouthY - h * 0.07, w * 0.24, h * 0.1), 200 * 16, 140 * 16);
    }
    p.restore();
}

Jpeg PictureFactory::face(const FaceLook& look)
{
    const std::string key = "face/" + std::to_string(look.person % 64) + "/" + std::to_string(look.mask)
        + std::to_string(look.glasses);
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        auto it = m_cache.find(key);
        if (it != m_cache.end())
            return it->second;
    }
    QImage img(240, 320, QImage::Format_RGB32);
    img.fill(QColor(200, 205, 210));
    QPainter p(&img);
    p.setPen(Qt::NoPen);
    p.setBrush(pick(kShirts, look.person));
    p.drawEllipse(QRectF(20, 270, 200, 140));
    drawFace(p, QRectF(20, 10, 200, 280), look);
    p.end();
    auto jpeg = std::make_shared<const std::string>(encode(img, 85).toStdString());
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_cache.emplace(key, jpeg).first->second;
}

void PictureFactory::sceneFaceRect(int channel, int person, double rect[4]) const
{
    // The person stands at a place that depends on identity and channel.
    const int slot = (person * 7 + channel * 3) % 5;
    const double fw = 0.09;
    rect[0] = 0.12 + slot * 0.16;
    rect[1] = 0.22;
    rect[2] = fw;
    rect[3] = fw * m_sceneW / m_sceneH * 1.3;
}

Jpeg PictureFactory::scene(int channel, const QString& channelName, const FaceLook& look, double rect[4])
{
    sceneFaceRect(channel, look.person, rect);
    const std::string key = "scene/" + std::to_string(channel) + "/" + std::to_string(look.person % 64) + "/"
        + std::to_string(look.mask) + std::to_string(look.glasses);
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        auto it = m_cache.find(key);
        if (it != m_cache.end())
            return it->second;
    }
    QImage img(m_sceneW, m_sceneH, QImage::Format_RGB32);
    QPainter p(&img);
    QLinearGradient sky(0, 0, 0, m_sceneH);
    sky.setColorAt(0, QColor(150 + channel * 20 % 80, 170, 190));
    sky.setColorAt(0.6, QColor(120, 125, 130));
    sky.setColorAt(1, QColor(80, 80, 85));
    p.fillRect(img.rect(), sky);
    // Doors and a floor so the picture looks like a hallway.
    p.setBrush(QColor(90, 70, 50));
    for (int i = 0; i < 4; ++i)
        p.drawRect(QRectF(m_sceneW * (0.05 + i * 0.25), m_sceneH * 0.15, m_sceneW * 0.12, m_sceneH * 0.5));
    p.fillRect(QRectF(0, m_sceneH * 0.65, m_sceneW, m_sceneH * 0.35), QColor(110, 105, 100));
    const QRectF faceBox(rect[0] * m_sceneW, rect[1] * m_sceneH, rect[2] * m_sceneW, rect[3] * m_sceneH);
    p.setPen(Qt::NoPen);
    p.setBrush(pick(kShirts, look.person));
    p.drawRoundedRect(QRectF(faceBox.x() - faceBox.width() * 0.4, faceBox.bottom() - faceBox.height() * 0.1,
                          faceBox.width() * 1.8, m_sceneH * 0.5), 30, 30);
    drawFace(p, faceBox, look);
    p.setPen(Qt::white);
    QFont f = p.font();
    f.setPixelSize(std::max(12, m_sceneH / 30));
    p.setFont(f);
    p.drawText(QPointF(m_sceneW * 0.02, m_sceneH * 0.05), channelName);
    p.end();
    auto jpeg = std::make_shared<const std::string>(encode(img, 80).toStdString());
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_cache.emplace(key, jpeg).first->second;
}

QByteArray PictureFactory::frame(int channel, const QString& channelName, qint64 tMs, int width, int height)
{
    QImage img(width, height, QImage::Format_RGB32);
    QPainter p(&img);
    p.fillRect(img.rect(), QColor(40 + channel * 30 % 120, 60, 90));
    p.fillRect(QRectF(0, height * 0.7, width, height * 0.3), QColor(90, 90, 95));
    // A walker crossing the picture every 8 seconds.
    const double phase = double(tMs % 8000) / 8000.0;
    const double x = width * (0.05 + phase * 0.8);
    FaceLook look;
    look.person = int(tMs / 8000) + channel;
    look.mask = (look.person % 3) == 0;
    p.setPen(Qt::NoPen);
    p.setBrush(pick(kShirts, look.person));
    p.drawRoundedRect(QRectF(x - width * 0.03, height * 0.42, width * 0.14, height * 0.4), 8, 8);
    drawFace(p, QRectF(x, height * 0.2, width * 0.08, height * 0.24), look);
    p.setPen(Qt::white);
    QFont f = p.font();
    f.setPixelSize(std::max(10, height / 18));
    p.setFont(f);
    p.drawText(QPointF(8, height / 14.0 + 4), channelName);
    p.drawText(QPointF(8, height - 10),
        QDateTime::fromMSecsSinceEpoch(tMs).toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz")));
    p.end();
    return encode(img, 70);
}

} // namespace devicesim
