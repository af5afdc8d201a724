// The capture strip: its card limit and order, its two appearances, and the
// face cut handed to the add-to-library step.
#include <QLayout>
#include <QImage>
#include <QLabel>
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

AlarmShowInfo captureInfo(const std::string& eventId)
{
    AlarmShowInfo info = AlarmShowInfo::FromRecord(record(kCapture, face(0, 0, 2), eventId));
    info.kind = BodyTemperature::EventKind::Capture;
    return info;
}

TEST(BottomWidget, KeepsTheTwentyOneNewestCardsBehindTheSpacer)
{
    CBottomWidget strip;
    for (int i = 1; i <= 23; ++i)
        strip.AddSnapInfo(captureInfo("E" + std::to_string(i)));
    QLayout* cards = strip.layout();
    ASSERT_EQ(cards->count(), 22);
    EXPECT_NE(cards->itemAt(0)->spacerItem(), nullptr);
    const auto* oldest = qobject_cast<CSnapUnit*>(cards->itemAt(1)->widget());
    const auto* newest = qobject_cast<CSnapUnit*>(cards->itemAt(21)->widget());
    ASSERT_TRUE(oldest && newest);
    EXPECT_EQ(oldest->info().eventID, "E3");
    EXPECT_EQ(newest->info().eventID, "E23");
    EXPECT_EQ(strip.findChildren<CSnapUnit*>().size(), 21);

    strip.Clear();
    EXPECT_EQ(cards->count(), 1);
    EXPECT_TRUE(strip.findChildren<CSnapUnit*>().isEmpty());
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

TEST(BottomWidget, AddToLibOffersTheFaceCut)
{
    CBottomWidget strip;
    QSignalSpy ready(&strip, &CBottomWidget::SignalFaceReady);
    // No picture, or one that does not decode: nothing to add.
    strip.OnAddToLib(std::string(), {0.1, 0.1, 0.5, 0.5});
    strip.OnAddToLib("garbage", {0.1, 0.1, 0.5, 0.5});
    EXPECT_EQ(ready.count(), 0);
    // Without a rectangle the bytes go on untouched (CBTAddFaceWnd_test, from a card).
    const QByteArray picture = testsupport::makeJpeg(400, 200, 95);

    struct Case { protocol::PictureRect rect; QSize size; };
    for (const Case& c : {Case{{0.25, 0.5, 0.5, 0.25}, QSize(200, 50)}, Case{{0.1, 0.1, 0.333, 0.333}, QSize(133, 66)},
             Case{{0.0, 0.0, 1.0, 1.0}, QSize(400, 200)}}) {
        const int before = ready.count();
        strip.OnAddToLib(picture.toStdString(), c.rect);
        ASSERT_EQ(ready.count(), before + 1);
        const QByteArray cut = ready.last().at(0).toByteArray();
        EXPECT_TRUE(cut.startsWith("\xff\xd8\xff")) << "JPEG";
        EXPECT_EQ(QImage::fromData(cut).size(), c.size);
        // Quality 50: even the whole picture shrinks against the original at 95.
        EXPECT_LT(cut.size(), picture.size());
    }
}

} // namespace
