// Region decoding gives exactly the pixels of a full decode, whatever the JPEG's
// coding; oversized headers are refused before any pixel memory is taken.
#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

#include "support/JpegEncoder.h"
#include "support/TestSupport.h"
#include "pictures/PictureDecoder.h"

using namespace BodyTemperature;
using testsupport::EncodeWithLibjpeg;
using testsupport::JpegVariant;

namespace {

const JpegVariant kPlain420{3, 2, 2, false, 0};

// A busy test picture: gradients, hard edges and noise, so that any mistake
// at block edges or in chroma upsampling changes some pixels.
QImage TestPicture(int w, int h)
{
    QImage img(w, h, QImage::Format_RGB32);
    quint32 seed = 12345;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            seed = seed * 1103515245u + 12345u;
            const int noise = static_cast<int>((seed >> 16) & 31);
            img.setPixel(x, y, qRgb((x * 7 + noise) & 255, (y * 5 + (x ^ y)) & 255, ((x + y) * 3 + noise) & 255));
        }
    QPainter p(&img);
    p.fillRect(w / 3, h / 3, w / 5, h / 7, Qt::red);
    p.setPen(QPen(Qt::green, 3));
    p.drawEllipse(QRect(w / 2, h / 4, w / 4, h / 3));
    return img;
}

// Compared as 32-bit colours so grayscale and RGB results compare alike.
bool SamePixels(const QImage& expected, const QImage& actual)
{
    return !actual.isNull()
        && expected.convertToFormat(QImage::Format_RGB32) == actual.convertToFormat(QImage::Format_RGB32);
}

TEST(PictureDecoder, RegionMatchesFullDecodeCropPixelForPixel)
{
    const struct { const char* name; JpegVariant variant; } rows[] = {
        {"yuv420", kPlain420},
        {"yuv422", {3, 2, 1, false, 0}},
        {"yuv444", {3, 1, 1, false, 0}},
        {"grayscale", {1, 1, 1, false, 0}},
        {"progressive420", {3, 2, 2, true, 0}},
        {"progressive422Every2Rows", {3, 2, 1, true, 2}},
        {"rows420", {3, 2, 2, false, 1}},
        {"everyMcu420", {3, 2, 2, false, 0, 1}},
        {"every7Mcus420", {3, 2, 2, false, 0, 7}},
    };
    const QRect rects[] = {
        QRect(100, 100, 120, 60),  // interior, block aligned start
        QRect(37, 53, 91, 77),     // interior, odd offsets
        QRect(0, 0, 40, 30),       // top-left corner
        QRect(368, 669, 33, 31),   // bottom-right corner, touching both edges
        QRect(0, 120, 401, 9),     // full width strip
        QRect(150, 0, 7, 700),     // full height strip
        QRect(1, 1, 1, 1),         // a single pixel
        QRect(390, 690, 40, 40),   // partly outside: outside pixels are 0, as in QImage::copy
        QRect(120, 300, 150, 170), QRect(0, 650, 401, 50), QRect(390, 520, 11, 3),
    };
    for (const auto& r : rows) {
        // The last block row and column are partial.
        const QByteArray jpeg = EncodeWithLibjpeg(TestPicture(401, 700), r.variant);
        const QImage full = QImage::fromData(jpeg);
        ASSERT_FALSE(full.isNull()) << r.name;
        for (const QRect& rect : rects) {
            EXPECT_TRUE(SamePixels(full.copy(rect), PictureDecoder::DecodeRegion(jpeg, rect)))
                << r.name << " rect " << rect.x() << "," << rect.y() << " " << rect.width() << "x" << rect.height();
        }
    }
}

TEST(PictureDecoder, CorruptPicturesDecodeOrFailCleanly)
{
    // Damaged headers and scans (cut, flipped bytes, forged markers) must
    // end in a picture or a null image, never in a crash or a hang.
    const QByteArray good = EncodeWithLibjpeg(TestPicture(160, 240), {3, 2, 2, false, 1});
    quint32 seed = 99;
    auto next = [&seed] { return seed = seed * 1664525u + 1013904223u; };
    for (int round = 0; round < 300; ++round) {
        QByteArray bad = good;
        for (int e = static_cast<int>(next() % 4); e >= 0; --e) {
            const int at = static_cast<int>(next() % static_cast<quint32>(round % 3 ? bad.size() : 200));
            bad[at] = static_cast<char>(round % 5 == 0 ? 0xFF : next() >> 24);
        }
        if (round % 7 == 0)
            bad.truncate(static_cast<int>(next() % static_cast<quint32>(bad.size())));
        (void)PictureDecoder::DecodeRegion(bad, QRect(20, 150, 60, 60));
        (void)PictureDecoder::DeclaredSize(bad);
    }
}

// The cut of a face rectangle: FaceRectClamp_test, through the cards' pictures.

// Turns the size fields of the first SOFn segment into w x h.
QByteArray WithDeclaredSize(QByteArray jpeg, int w, int h)
{
    for (int i = 2; i + 9 < jpeg.size() && static_cast<unsigned char>(jpeg[i]) == 0xFF;) {
        const unsigned char marker = static_cast<unsigned char>(jpeg[i + 1]);
        if (marker == 0xC0 || marker == 0xC2) {
            const char size[] = {char(h >> 8), char(h & 0xFF), char(w >> 8), char(w & 0xFF)};
            return jpeg.replace(i + 5, 4, size, 4);
        }
        i += 2 + ((static_cast<unsigned char>(jpeg[i + 2]) << 8) | static_cast<unsigned char>(jpeg[i + 3]));
    }
    ADD_FAILURE() << "no frame header";
    return jpeg;
}

TEST(PictureDecoder, SizeLimitsAreCheckedOnTheHeader)
{
    const QByteArray small = EncodeWithLibjpeg(TestPicture(64, 48), kPlain420);
    const struct { int w, h; bool allowed; } rows[] = {
        {8192, 4882, true},   // 39.99 megapixels, sides at the limit
        {8193, 16, false},    // one side too long
        {16, 8193, false},
        {8000, 5001, false},  // 40.008 megapixels
        {30000, 30000, false},
    };
    for (const auto& r : rows) {
        const QByteArray jpeg = WithDeclaredSize(small, r.w, r.h);
        EXPECT_EQ(PictureDecoder::DeclaredSize(jpeg), QSize(r.w, r.h));
        EXPECT_EQ(PictureDecoder::IsSizeAllowed(QSize(r.w, r.h)), r.allowed) << r.w << "x" << r.h;
        if (!r.allowed) {  // refused, not decoded from a forged header
            EXPECT_TRUE(PictureDecoder::Decode(jpeg).isNull()) << r.w << "x" << r.h;
            EXPECT_TRUE(PictureDecoder::DecodeRegion(jpeg, QRect(10, 10, 30, 30)).isNull()) << r.w << "x" << r.h;
            EXPECT_TRUE(PictureDecoder::DecodeScaled(jpeg, QSize(32, 24)).isNull()) << r.w << "x" << r.h;
        }
    }
    EXPECT_TRUE(testsupport::logText().contains("declares 30000 x 30000 pixels"));
}

TEST(PictureDecoder, BrokenAndForeignPictures)
{
    const QImage picture = TestPicture(80, 60);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    // Non-JPEG pictures decode in full and are cut like a full decode.
    EXPECT_TRUE(SamePixels(picture.copy(10, 10, 30, 20), PictureDecoder::DecodeRegion(png, QRect(10, 10, 30, 20))));

    EXPECT_TRUE(PictureDecoder::Decode(QByteArray()).isNull());
    EXPECT_TRUE(PictureDecoder::Decode(QByteArray("not a picture")).isNull());
    const QByteArray jpeg = EncodeWithLibjpeg(picture, kPlain420);
    EXPECT_TRUE(PictureDecoder::DecodeRegion(jpeg.left(20), QRect(0, 0, 10, 10)).isNull());
    // Decoded straight to a size, whatever the picture's own proportions.
    EXPECT_EQ(PictureDecoder::DecodeScaled(jpeg, QSize(20, 45)).size(), QSize(20, 45));
    EXPECT_EQ(PictureDecoder::DecodeScaled(png, QSize(160, 30)).size(), QSize(160, 30));
    EXPECT_TRUE(PictureDecoder::DecodeScaled(QByteArray("not a picture"), QSize(20, 45)).isNull());
}

} // namespace
