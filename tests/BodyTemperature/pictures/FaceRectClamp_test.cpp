// Face rectangles from devices are clamped to their picture where they enter
// the page: whatever a device sends, a crop stays inside the picture.
#include <cmath>
#include <limits>
#include <gtest/gtest.h>

#include "AlarmShowInfo.h"
#include "pictures/FaceRectClamp.h"
#include "support/TestSupport.h"
#include "ui/CBottomWidget.h"

using namespace BodyTemperature;
using protocol::PictureRect;

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

// pixels: on a 1920 x 1080 picture.
struct Row { const char* name; PictureRect given, clamped; QRect pixels; };

const Row kRows[] = {
    {"inside", {0.25, 0.5, 0.5, 0.25}, {0.25, 0.5, 0.5, 0.25}, {480, 540, 960, 270}},
    {"whole", {0, 0, 1, 1}, {0, 0, 1, 1}, {0, 0, 1920, 1080}},
    {"fractions truncate", {0.3333, 0.6666, 0.1003, 0.1005}, {0.3333, 0.6666, 0.1003, 0.1005}, {639, 719, 192, 108}},
    {"ten times the picture", {0, 0, 10, 10}, {0, 0, 1, 1}, {0, 0, 1920, 1080}},
    {"1e300 wide", {0.5, 0.5, 1e300, 1e300}, {0.5, 0.5, 0.5, 0.5}, {960, 540, 960, 540}},
    {"largest doubles", {1.7e308, 1.7e308, 1.7e308, 1.7e308}, {}, {}},
    {"over the right edge", {0.75, 0, 0.5, 0.5}, {0.75, 0, 0.25, 0.5}, {1440, 0, 480, 540}},
    {"negative origin", {-0.5, -0.5, 1, 1}, {0, 0, 0.5, 0.5}, {0, 0, 960, 540}},
    {"negative size", {0.5, 0.5, -0.2, 0.2}, {}, {}},
    {"entirely outside", {2, 2, 1, 1}, {}, {}},
    {"NaN", {kNaN, 0, 0.5, 0.5}, {}, {}},
    {"infinite", {0, 0, kInf, 0.5}, {}, {}},
    {"minus infinity", {-kInf, 0, 1, 1}, {}, {}},
    {"no rectangle", {0, 0, 0, 0}, {}, {}},
};

bool same(const PictureRect& a, const PictureRect& b)
{
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}

} // namespace

TEST(FaceRectClamp, EveryRectangleEndsInsideItsPicture)
{
    for (const Row& r : kRows) {
        SCOPED_TRACE(r.name);
        const PictureRect c = ClampFaceRect(r.given);
        EXPECT_TRUE(same(c, r.clamped)) << c.x << " " << c.y << " " << c.width << " " << c.height;
        EXPECT_EQ(FaceRectInPixels(QSize(1920, 1080), r.given), r.pixels);
    }
    EXPECT_EQ(FaceRectInPixels(QSize(), kRows[0].given), QRect());
}

// The cards' path: the record enters, its rectangles are clamped, the face is
// cut from a real 1080p scene and never comes out larger than the scene.
TEST(FaceRectClamp, CardsCutFacesNoLargerThanTheScene)
{
    const QByteArray scene = testsupport::makeJpeg(1920, 1080);
    for (const Row& r : kRows) {
        SCOPED_TRACE(r.name);
        publicdatacontroller::IntelAlarmEventInfo record;
        record.eventType = 100101;
        protocol::IntelAlarmFaceInfo face;
        face.bkPic = scene;
        face.bNoSubPic = true;
        face.faceRects = {r.given, r.given};
        record.faceInfoList.push_back(face);
        record.faceInfo = face;
        AlarmShowInfo info = AlarmShowInfo::FromRecord(record);
        info.kind = EventKind::Capture;
        for (const auto* block : {&info.faceInfoList.front(), &info.faceInfo})
            for (const PictureRect& rect : block->faceRects)
                EXPECT_TRUE(same(rect, r.clamped));
        const QImage cut = info.Pictures().Image(CEventPictures::FaceSourceOf(*info.faceBlock()));
        ASSERT_FALSE(cut.isNull());
        EXPECT_EQ(cut.size(), r.pixels.isEmpty() ? QSize(1920, 1080) : r.pixels.size());

        // The add-to-library cut takes any rectangle as well.
        const QByteArray forLibrary = CBottomWidget::CutFace(scene.toStdString(), r.given);
        QImage libraryFace;
        ASSERT_TRUE(libraryFace.loadFromData(forLibrary));
        EXPECT_EQ(libraryFace.size(), r.pixels.isEmpty() ? QSize(1920, 1080) : r.pixels.size());
    }
}
