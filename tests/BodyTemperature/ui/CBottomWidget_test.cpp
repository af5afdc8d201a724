// The capture strip: its card limit and order, its two appearances, and the
// face cut handed to the add-to-library step.
#include <QBuffer>
#include <QHBoxLayout>
#include <QImage>
#include <QImageReader>
#include <QLabel>
#include <QLayoutItem>
#include <QSignalSpy>
#include <gtest/gtest.h>

#include "DashboardRecords.h"
#include "ui/CBottomWidget.h"
#include "ui/CRightNoData.h"
#include "ui/ShowCard/CSnapUnit.h"

using BodyTemperature::AlarmShowInfo;
using BodyTemperature::CBottomWidget;
using BodyTemperature::CSnapUnit;
using namespace dashtest;

namespace {

AlarmShowInfo captureInfo(const std::string& eventId, bool withPicture = true)
{
    AlarmShowInfo info = AlarmShowInfo::FromRecord(record(kCapture, face(0, 0, 2, withPicture), eventId));
    info.kind = 3;
    return info;
}

QByteArray png(int w, int h)
{
    QImage img(w, h, QImage::Format_RGB32);
    img.fill(Qt::darkCyan);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    img.save(&buffer, "PNG");
    return bytes;
}

QImage decode(const QByteArray& bytes, QByteArray* format = nullptr)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    if (format != nullptr)
        *format = reader.format();
    return reader.read();
}

TEST(BottomWidget, KeepsTheTwentyOneNewestCardsBehindTheSpacer)
{
    CBottomWidget strip;
    for (int i = 1; i <= 23; ++i)
        strip.AddSnapInfo(captureInfo("E" + std::to_string(i)));
    ASSERT_EQ(strip.CardCount(), 21);
    EXPECT_NE(strip.CardLayout()->itemAt(0)->spacerItem(), nullptr);
    const auto* oldest = qobject_cast<CSnapUnit*>(strip.CardLayout()->itemAt(1)->widget());
    const auto* newest = qobject_cast<CSnapUnit*>(strip.CardLayout()->itemAt(21)->widget());
    ASSERT_TRUE(oldest && newest);
    EXPECT_EQ(oldest->info().eventID, "E3");
    EXPECT_EQ(newest->info().eventID, "E23");
    EXPECT_EQ(strip.findChildren<CSnapUnit*>().size(), 21);

    strip.Clear();
    EXPECT_EQ(strip.CardCount(), 0);
    EXPECT_TRUE(strip.findChildren<CSnapUnit*>().isEmpty());
}

TEST(BottomWidget, RecordsWithoutAFacePictureAddNothing)
{
    CBottomWidget strip;
    strip.AddSnapInfo(captureInfo("E1", false));
    AlarmShowInfo emptyList = captureInfo("E2");
    emptyList.faceInfoList.clear();
    strip.AddSnapInfo(emptyList);
    EXPECT_EQ(strip.CardCount(), 0);
    EXPECT_TRUE(strip.IsEmpty());

    // Comparison kinds read the single face block, not the list.
    AlarmShowInfo comparison = AlarmShowInfo::FromRecord(record(kComparison, face(0, 0, 2)));
    comparison.kind = 0;
    strip.AddSnapInfo(comparison);
    EXPECT_EQ(strip.CardCount(), 1);
}

TEST(BottomWidget, ObjectNameAndPlaceholderFollowTheContent)
{
    CBottomWidget strip;
    strip.resize(658, 158);
    strip.show();
    testsupport::pump();
    EXPECT_EQ(strip.objectName(), QStringLiteral("m_pBottomWidgetNoData"));
    auto* placeholder = strip.findChild<BodyTemperature::CRightNoData*>();
    auto* corner = strip.findChild<QLabel*>(QStringLiteral("cornerLabel"));
    ASSERT_TRUE(placeholder && corner);
    EXPECT_TRUE(placeholder->isVisible());
    EXPECT_EQ(placeholder->geometry(), QRect(0, 0, 657, 157));
    EXPECT_TRUE(corner->isVisible());

    strip.AddSnapInfo(captureInfo("E1"));
    strip.resize(700, 158);
    testsupport::pump();
    EXPECT_EQ(strip.objectName(), QStringLiteral("m_pBottomWidget"));
    EXPECT_FALSE(placeholder->isVisible());
    EXPECT_FALSE(corner->isVisible());
}

TEST(BottomWidget, FaceCut)
{
    const QByteArray picture = png(400, 200);

    // No rectangle: the bytes go on untouched (still PNG, same bytes).
    EXPECT_EQ(CBottomWidget::CutFace(picture.toStdString(), protocol::PictureRect{}), picture);

    struct Case {
        protocol::PictureRect rect;
        QSize size;
    };
    const Case cases[] = {
        {{0.25, 0.5, 0.5, 0.25}, QSize(200, 50)},
        {{0.0, 0.0, 1.0, 1.0}, QSize(400, 200)},
        {{0.1, 0.1, 0.333, 0.333}, QSize(133, 66)},
    };
    for (const Case& c : cases) {
        QByteArray format;
        const QImage cut = decode(CBottomWidget::CutFace(picture.toStdString(), c.rect), &format);
        EXPECT_EQ(format, QByteArray("jpeg"));
        EXPECT_EQ(cut.size(), c.size);
    }

    // Quality 50: a detailed picture shrinks against the same cut at 95.
    const QByteArray detailed = testsupport::makeJpeg(640, 480, 95);
    const QByteArray cut = CBottomWidget::CutFace(detailed.toStdString(), {0.0, 0.0, 1.0, 1.0});
    EXPECT_LT(cut.size(), detailed.size());

    // A picture that does not decode gives nothing to add.
    EXPECT_TRUE(CBottomWidget::CutFace("garbage", {0.1, 0.1, 0.5, 0.5}).isEmpty());
}

TEST(BottomWidget, AddToLibOffersTheCutAndRefusesBadPictures)
{
    CBottomWidget strip;
    QSignalSpy ready(&strip, &CBottomWidget::SignalFaceReady);
    strip.OnAddToLib(std::string(), {0.1, 0.1, 0.5, 0.5});
    strip.OnAddToLib("garbage", {0.1, 0.1, 0.5, 0.5});
    EXPECT_EQ(ready.count(), 0);
    const QByteArray picture = png(100, 100);
    strip.OnAddToLib(picture.toStdString(), {});
    ASSERT_EQ(ready.count(), 1);
    EXPECT_EQ(ready.at(0).at(0).toByteArray(), picture);
    EXPECT_EQ(strip.LastFaceCut(), picture);
}

} // namespace
