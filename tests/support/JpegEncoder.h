#pragma once
// JPEG encoding through libjpeg with choices Qt's writer lacks (sampling,
// grayscale, progressive, restart markers), for pictures like cameras send.
#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <cstdio>
#include <cstdlib>
#include <jpeglib.h>

namespace testsupport {

// Qt's own JPEG writer at the given quality.
inline QByteArray EncodeJpeg(const QImage& image, int quality)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", quality);
    return bytes;
}

// components: 1 grayscale, 3 colour; luma sampling 2x2 = 4:2:0, 2x1 = 4:2:2, 1x1 = 4:4:4;
// a restart marker every restartRows MCU rows, or every restartMcus MCUs (0: none).
struct JpegVariant { int components, hSamp, vSamp; bool progressive; int restartRows, restartMcus = 0; };

inline QByteArray EncodeWithLibjpeg(const QImage& source, const JpegVariant& v)
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
    if (v.components == 1)
        jpeg_set_colorspace(&cinfo, JCS_GRAYSCALE);
    cinfo.comp_info[0].h_samp_factor = v.hSamp;  // the chroma components stay at 1 x 1
    cinfo.comp_info[0].v_samp_factor = v.vSamp;
    if (v.progressive)
        jpeg_simple_progression(&cinfo);
    cinfo.restart_in_rows = v.restartRows;
    cinfo.restart_interval = static_cast<unsigned int>(v.restartMcus);
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

} // namespace testsupport
