#pragma once
// Draws the emulator's pictures (faces, scenes, live-video frames) with
// QPainter and encodes them as JPEG. Any thread (needs the QGuiApplication
// of main() for fonts). Encoded pictures are cached: a picture for the same
// key is drawn once, so the emulator keeps up with high event rates.
#include <QByteArray>
#include <QImage>
#include <QString>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace devicesim {

struct FaceLook {
    int person = 0;     // identity: skin, hair and shirt colours
    bool mask = false;  // a surgical mask is drawn when worn
    bool glasses = false;
};

using Jpeg = std::shared_ptr<const std::string>;

class PictureFactory final {
public:
    PictureFactory(int sceneWidth, int sceneHeight);

    Jpeg face(const FaceLook& look);
    // A scene with the person standing in it; faceRect receives the
    // face's position as fractions of the picture.
    Jpeg scene(int channel, const QString& channelName, const FaceLook& look, double rect[4]);
    // Where scene() puts the face of this person on this channel.
    void sceneFaceRect(int channel, int person, double rect[4]) const;
    // A live-video frame of the given channel at time t (milliseconds).
    QByteArray frame(int channel, const QString& channelName, qint64 tMs, int width, int height);

    static void drawFace(QPainter& p, const QRectF& box, const FaceLook& look);
    static QByteArray encode(const QImage& img, int quality);

private:
    int m_sceneW;
    int m_sceneH;
    std::mutex m_mutex;
    std::map<std::string, Jpeg> m_cache;
};

} // namespace devicesim
