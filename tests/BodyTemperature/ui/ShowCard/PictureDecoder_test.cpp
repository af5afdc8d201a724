// Region decoding must give exactly the pixels of a full decode, whatever the
// JPEG's sampling, coding mode or restart intervals; oversized headers are
// refused before any pixel memory is taken.
#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <cstdio>
#include <gtest/gtest.h>
#include <jpeglib.h>

#include "Base/Log.h"
#include "ui/ShowCard/PictureDecoder.h"

using namespace BodyTemperature;

namespace {

struct JpegVariant {
    const char* name;
    int components;       // 1 grayscale, 3 colour
    int hSamp, vSamp;     // luma sampling factors: 2x2 = 4:2:0, 2x1 = 4:2:2, 1x1 = 4:4:4
    bool progressive;
    int restartRows;      // restart marker every n MCU rows (0: none)
};

// A busy test picture: gradients, hard edges and noise, so that any mistake
// at block edges or in chroma upsampling changes some pixels.
QImage TestPicture(int w, int h)
{
    QImage img(w, h, QImage::Format_RGB32);
    quint32 seed = 12345;
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            seed = seed * 1103515245u + 12345u;
            const int noise = static_cast<int>((seed >> 16) & 31);
            img.setPixel(x, y, qRgb((x * 7 + noise) & 255, (y * 5 + (x ^ y)) & 255, ((x + y) * 3 + noise) & 255));
        }
    }
    QPainter p(&img);
    p.fillRect(w / 3, h / 3, w / 5, h / 7, Qt::red);
    p.setPen(QPen(Qt::green, 3));
    p.drawEllipse(QRect(w / 2, h / 4, w / 4, h / 3));
    return img;
}

QByteArray EncodeWithLibjpeg(const QImage& source, const JpegVariant& v)
{
    const QImage img = source.convertToFormat(QImage::Format_RGB888);
    jpeg_compress_struct cinfo;
    jpeg_error_mgr err;
    cinfo.err = jpeg_std_error(&err);
    jpeg_create_compress(&cinfo);
    unsigned char* out = nullptr;
    unsigned long outSize = 0;
    jpeg_mem_dest(&cinfo, &out, &outSize);
    cinfo.image_width = static_cast<JDIMENSION>(img.width());
    cinfo.image_height = static_cast<JDIMENSION>(img.height());
    cinfo.input_components = 3;
    cinfo.in_color_space = JCS_RGB;
    jpeg_set_defaults(&cinfo);
    jpeg_set_quality(&cinfo, 85, TRUE);
    if (v.components == 1) {
        jpeg_set_colorspace(&cinfo, JCS_GRAYSCALE);
    } else {
        cinfo.comp_info[0].h_samp_factor = v.hSamp;
        cinfo.comp_info[0].v_samp_factor = v.vSamp;
        cinfo.comp_info[1].h_samp_factor = cinfo.comp_info[1].v_samp_factor = 1;
        cinfo.comp_info[2].h_samp_factor = cinfo.comp_info[2].v_samp_factor = 1;
    }
    if (v.progressive)
        jpeg_simple_progression(&cinfo);
    cinfo.restart_in_rows = v.restartRows;
    jpeg_start_compress(&cinfo, TRUE);
    while (cinfo.next_scanline < cinfo.image_height) {
        JSAMPROW row = const_cast<JSAMPROW>(img.constScanLine(static_cast<int>(cinfo.next_scanline)));
        jpeg_write_scanlines(&cinfo, &row, 1);
    }
    jpeg_finish_compress(&cinfo);
    jpeg_destroy_compress(&cinfo);
    QByteArray bytes(reinterpret_cast<const char*>(out), static_cast<int>(outSize));
    free(out);
    return bytes;
}

// Compares as 32-bit colours so grayscale and RGB results compare alike.
void ExpectSamePixels(const QImage& expected, const QImage& actual, const char* what)
{
    ASSERT_FALSE(actual.isNull()) << what;
    ASSERT_EQ(expected.size(), actual.size()) << what;
    const QImage a = expected.convertToFormat(QImage::Format_RGB32);
    const QImage b = actual.convertToFormat(QImage::Format_RGB32);
    int differing = 0;
    QPoint first(-1, -1);
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            if (a.pixel(x, y) != b.pixel(x, y) && differing++ == 0)
                first = QPoint(x, y);
    EXPECT_EQ(differing, 0) << what << ": first difference at " << first.x() << "," << first.y();
}

class RegionDecode : public ::testing::TestWithParam<JpegVariant> {};

TEST_P(RegionDecode, MatchesFullDecodeCropPixelForPixel)
{
    const JpegVariant v = GetParam();
    // Odd sizes so the last block row and column are partial.
    const QByteArray jpeg = EncodeWithLibjpeg(TestPicture(333, 251), v);
    const QImage full = QImage::fromData(jpeg);
    ASSERT_FALSE(full.isNull());

    const QRect rects[] = {
        QRect(100, 100, 120, 60),   // interior, block aligned start
        QRect(37, 53, 91, 77),      // interior, odd offsets
        QRect(0, 0, 40, 30),        // top-left corner
        QRect(300, 220, 33, 31),    // bottom-right corner, touching both edges
        QRect(0, 120, 333, 9),      // full width strip
        QRect(150, 0, 7, 251),      // full height strip
        QRect(1, 1, 1, 1),          // a single pixel
        QRect(320, 240, 40, 40),    // partly outside: outside pixels are 0, as in QImage::copy
    };
    for (const QRect& r : rects) {
        const QImage region = PictureDecoder::DecodeRegion(jpeg, r);
        ExpectSamePixels(full.copy(r), region,
                         qPrintable(QStringLiteral("%1 rect %2,%3 %4x%5").arg(QString::fromLatin1(v.name))
                                        .arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height())));
    }
}

INSTANTIATE_TEST_SUITE_P(Variants, RegionDecode,
                         ::testing::Values(JpegVariant{"yuv420", 3, 2, 2, false, 0},
                                           JpegVariant{"yuv422", 3, 2, 1, false, 0},
                                           JpegVariant{"yuv444", 3, 1, 1, false, 0},
                                           JpegVariant{"progressive420", 3, 2, 2, true, 0},
                                           JpegVariant{"grayscale", 1, 1, 1, false, 0},
                                           JpegVariant{"restart420", 3, 2, 2, false, 1},
                                           JpegVariant{"restart422progressive", 3, 2, 1, true, 2}),
                         [](const ::testing::TestParamInfo<JpegVariant>& info) { return std::string(info.param.name); });

TEST(PictureDecoder, CropRectTruncatesFractions)
{
    struct Row {
        QSize size;
        protocol::PictureRect rect;
        QRect expected;
    } rows[] = {
        {{400, 200}, {0.25, 0.5, 0.5, 0.25}, QRect(100, 100, 200, 50)},
        {{400, 200}, {0, 0, 1, 1}, QRect(0, 0, 400, 200)},
        {{1920, 1080}, {0.3333, 0.6666, 0.1, 0.1}, QRect(639, 719, 192, 108)},
        {{333, 251}, {0.999, 0.999, 0.001, 0.001}, QRect(332, 250, 0, 0)},
    };
    for (const Row& r : rows)
        EXPECT_EQ(PictureDecoder::CropRectFor(r.size, r.rect), r.expected);
}

// Turns the size fields of the first SOFn segment into w x h.
QByteArray WithDeclaredSize(QByteArray jpeg, int w, int h)
{
    for (int i = 2; i + 9 < jpeg.size();) {
        if (static_cast<unsigned char>(jpeg[i]) != 0xFF)
            break;
        const unsigned char marker = static_cast<unsigned char>(jpeg[i + 1]);
        const int length = (static_cast<unsigned char>(jpeg[i + 2]) << 8) | static_cast<unsigned char>(jpeg[i + 3]);
        if (marker == 0xC0 || marker == 0xC2) {
            jpeg[i + 5] = static_cast<char>(h >> 8);
            jpeg[i + 6] = static_cast<char>(h & 0xFF);
            jpeg[i + 7] = static_cast<char>(w >> 8);
            jpeg[i + 8] = static_cast<char>(w & 0xFF);
            return jpeg;
        }
        i += 2 + length;
    }
    ADD_FAILURE() << "no frame header";
    return jpeg;
}

TEST(PictureDecoder, SizeLimitsAreCheckedOnTheHeader)
{
    const QByteArray small = EncodeWithLibjpeg(TestPicture(64, 48), {"yuv420", 3, 2, 2, false, 0});
    struct Row {
        int w, h;
        bool allowed;
    } rows[] = {
        {8192, 4882, true},    // 39.99 megapixels, sides at the limit
        {8193, 16, false},     // one side too long
        {16, 8193, false},
        {8000, 5001, false},   // 40.008 megapixels
        {30000, 30000, false},
    };
    for (const Row& r : rows) {
        const QByteArray jpeg = WithDeclaredSize(small, r.w, r.h);
        EXPECT_EQ(PictureDecoder::DeclaredSize(jpeg), QSize(r.w, r.h));
        EXPECT_EQ(PictureDecoder::IsSizeAllowed(QSize(r.w, r.h)), r.allowed) << r.w << "x" << r.h;
    }
}

TEST(PictureDecoder, HugeHeaderIsRefusedAndLogged)
{
    const QByteArray jpeg =
        WithDeclaredSize(EncodeWithLibjpeg(TestPicture(64, 48), {"yuv420", 3, 2, 2, false, 0}), 30000, 30000);
    EXPECT_TRUE(PictureDecoder::Decode(jpeg).isNull());
    EXPECT_TRUE(PictureDecoder::DecodeRegion(jpeg, QRect(100, 100, 50, 50)).isNull());

    QFile log(QString::fromStdString(Base::Log::CurrentFile()));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(log.readAll().contains("declares 30000 x 30000 pixels"));
}

TEST(PictureDecoder, BrokenAndForeignPictures)
{
    const QImage picture = TestPicture(80, 60);
    QByteArray png;
    {
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        picture.save(&buffer, "PNG");
    }
    // Non-JPEG pictures decode in full and are cut like a full decode.
    ExpectSamePixels(picture.copy(10, 10, 30, 20), PictureDecoder::DecodeRegion(png, QRect(10, 10, 30, 20)), "png");

    const QByteArray jpeg = EncodeWithLibjpeg(picture, {"yuv420", 3, 2, 2, false, 0});
    EXPECT_TRUE(PictureDecoder::Decode(QByteArray()).isNull());
    EXPECT_TRUE(PictureDecoder::Decode(QByteArray("not a picture")).isNull());
    EXPECT_TRUE(PictureDecoder::DecodeRegion(jpeg.left(20), QRect(0, 0, 10, 10)).isNull());
}

} // namespace
