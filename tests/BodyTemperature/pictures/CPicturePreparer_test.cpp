// Records reach their cards in order with their pictures decoded; a burst
// decodes only what can still be shown; the page can go with decodes in flight.
#include <QTest>
#include <memory>
#include <string>
#include <vector>
#include <gtest/gtest.h>

#include "pictures/CPicturePreparer.h"
#include "support/TestSupport.h"

using BodyTemperature::AlarmShowInfo;
using BodyTemperature::CEventPictures;
using BodyTemperature::CPicturePreparer;

namespace {

const QByteArray& Scene()
{
    static const QByteArray s_scene = testsupport::makeJpeg(1280, 720);
    return s_scene;
}

// kind 4 with the scene cut to a face; "none": no picture at all.
AlarmShowInfo Record(const std::string& id, bool withPicture)
{
    AlarmShowInfo info;
    info.kind = BodyTemperature::EventKind::TemperatureCapture;
    info.eventID = id;
    protocol::IntelAlarmFaceInfo face;
    if (withPicture) {
        face.bkPic = Scene();
        face.bNoSubPic = true;
        face.faceRects.push_back({0.4, 0.2, 0.2, 0.4});
    }
    info.faceInfoList.push_back(face);
    return info;
}

// decodedBefore: the face was decoded when the card could be built.
struct Delivered { std::string id; bool decodedBefore; };

} // namespace

TEST(PicturePreparer, RecordsComeOutInOrderWithTheirPicturesDecoded)
{
    // pictures: per record, in arrival order; handedOnAtOnce: delivered inside Submit().
    const struct { const char* name; std::vector<bool> pictures; int handedOnAtOnce; } rows[] = {
        {"no pictures: straight through", {false, false, false}, 3},
        {"pictures only", {true, true, true}, 0},
        {"a record without pictures waits for the one before", {true, false, true, false}, 0},
        {"nothing waits before the first", {false, true, false}, 1},
    };
    for (const auto& r : rows) {
        std::vector<Delivered> out;
        CPicturePreparer preparer(20, [&out](const AlarmShowInfo& info, int copies) {
            EXPECT_EQ(copies, 2);
            const auto* face = info.faceBlock();
            out.push_back({info.eventID, !info.Pictures().CachedImage(CEventPictures::FaceSourceOf(*face)).isNull()});
        }, nullptr);
        for (size_t i = 0; i < r.pictures.size(); ++i)
            preparer.Submit(Record(std::to_string(i), r.pictures[i]), 2);
        EXPECT_EQ(static_cast<int>(out.size()), r.handedOnAtOnce) << r.name;
        ASSERT_TRUE(QTest::qWaitFor([&] { return out.size() == r.pictures.size(); }, 5000)) << r.name;
        EXPECT_EQ(preparer.Pending(), 0) << r.name;
        for (size_t i = 0; i < out.size(); ++i) {
            EXPECT_EQ(out[i].id, std::to_string(i)) << r.name;
            EXPECT_EQ(out[i].decodedBefore, static_cast<bool>(r.pictures[i])) << r.name << " record " << i;
        }
    }
}

TEST(PicturePreparer, ABurstDecodesOnlyWhatCanStillBeShown)
{
    constexpr int kRecords = 400, kKeeps = 5;
    std::vector<AlarmShowInfo> out;
    CPicturePreparer preparer(kKeeps, [&out](const AlarmShowInfo& info, int) { out.push_back(info); }, nullptr);
    for (int i = 0; i < kRecords; ++i)
        preparer.Submit(Record(std::to_string(i), true));
    ASSERT_TRUE(QTest::qWaitFor([&] { return out.size() == kRecords; }, 20000));
    int decoded = 0;
    for (int i = 0; i < kRecords; ++i) {
        EXPECT_EQ(out[static_cast<size_t>(i)].eventID, std::to_string(i));
        decoded += out[static_cast<size_t>(i)].Pictures().DecodeCount();
    }
    // The newest always; of the older ones only those the worker reached
    // before they fell out of the window.
    for (int i = kRecords - kKeeps; i < kRecords; ++i)
        EXPECT_EQ(out[static_cast<size_t>(i)].Pictures().DecodeCount(), 1) << i;
    EXPECT_LT(decoded, kRecords / 4);
}

TEST(PicturePreparer, GoesWithDecodesInFlight)
{
    // The records' pictures outlive the preparer: the worker holds its own
    // share, and nothing is handed on once it is gone.
    std::vector<AlarmShowInfo> kept;
    int delivered = 0;
    {
        CPicturePreparer preparer(50, [&delivered](const AlarmShowInfo&, int) { ++delivered; }, nullptr);
        for (int i = 0; i < 30; ++i) {
            kept.push_back(Record(std::to_string(i), true));
            preparer.Submit(kept.back());
        }
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(delivered, 0);
    const auto* face = kept.back().faceBlock();
    EXPECT_FALSE(kept.back().Pictures().Image(CEventPictures::FaceSourceOf(*face)).isNull());
}
