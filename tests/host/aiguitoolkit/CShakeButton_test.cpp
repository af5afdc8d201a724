// The shake button: which picture of the series shows in which state, the
// fallback for missing pictures, and a click shake that ends where it began.
#include <QImage>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "aiguitoolkit/CShakeButton.h"
#include "support/TestSupport.h"

using aiguitoolkit::CShakeButton;

namespace {

TEST(CShakeButton, PicturePerStateWithFallback)
{
    QTemporaryDir dir;
    // Pictures 5 (normal), 7 (pressed) and 8 (disabled); no hover picture.
    for (int n : {5, 7, 8}) {
        QImage img(20, 18, QImage::Format_ARGB32);
        img.fill(QColor::fromHsv(n * 40, 200, 200));
        ASSERT_TRUE(img.save(dir.filePath(QStringLiteral("%1.png").arg(n))));
    }
    CShakeButton button;
    button.setCheckable(true);
    button.setPictureAttibute(dir.filePath(QStringLiteral("%1.png")), 5, 10);
    EXPECT_EQ(button.iconSize(), QSize(20, 18));
    EXPECT_TRUE(button.hasPicture(CShakeButton::Normal));
    EXPECT_FALSE(button.hasPicture(CShakeButton::Hover));
    EXPECT_EQ(button.shownState(), CShakeButton::Normal);

    button.setChecked(true);
    EXPECT_EQ(button.shownState(), CShakeButton::Pressed);
    button.setEnabled(false);
    EXPECT_EQ(button.shownState(), CShakeButton::Disabled);
    button.setEnabled(true);
    button.setChecked(false);
    EXPECT_EQ(button.shownState(), CShakeButton::Normal);

    CShakeButton bare;
    bare.setPictureAttibute(dir.filePath(QStringLiteral("missing-%1.png")), 0, 10);
    EXPECT_TRUE(bare.icon().isNull());
}

TEST(CShakeButton, ClickShakesAndComesBackToRest)
{
    QWidget parent;
    CShakeButton button(&parent);
    button.move(40, 30);
    parent.show();
    button.setPictureAttibute(QStringLiteral("/nowhere/%1.png"), 0, 10);
    button.click();
    EXPECT_TRUE(button.isShaking());
    ASSERT_TRUE(testsupport::waitUntil([&] { return !button.isShaking(); }));
    EXPECT_EQ(button.pos(), QPoint(40, 30));

    CShakeButton still(&parent);
    still.setPictureAttibute(QStringLiteral("/nowhere/%1.png"), 0, 0);
    still.click();
    EXPECT_FALSE(still.isShaking());
}

} // namespace
