// The statistics title: four groups, captions and tool tips, and each number
// of signalNum landing in the label of its meaning.
#include <QLabel>
#include <gtest/gtest.h>

#include "ui/BTShowTitle.h"

using BodyTemperature::BTShowTitle;

namespace {

QString text(const BTShowTitle& t, const char* name)
{
    const auto* label = t.findChild<QLabel*>(QString::fromLatin1(name));
    return label != nullptr ? label->text() : QStringLiteral("<missing>");
}

TEST(BTShowTitle, GroupsCaptionsAndToolTips)
{
    BTShowTitle title;
    ASSERT_NE(title.findChild<QWidget*>(QStringLiteral("widgetTopBtns")), nullptr);
    struct Group {
        const char* group;
        const char* caption;
        const char* key;
    };
    const Group groups[] = {
        {"btnAllNum", "m_pAll", "TheTotalNumberOfyDridGtt"},
        {"btnAbnormal", "m_pAbnormal", "TemperatureAnomaliesWaPooFNo"},
        {"btnNoMask", "m_pMask", "NoGauzeMask"},
        {"btnNormal", "m_pNormal", "TemperatureIsNormalLvoFXpTP"},
    };
    int previousX = -1;
    title.resize(790, 36);
    title.show();
    for (const Group& g : groups) {
        SCOPED_TRACE(g.group);
        const auto* group = title.findChild<QWidget*>(QString::fromLatin1(g.group));
        ASSERT_NE(group, nullptr);
        EXPECT_EQ(group->toolTip(), QString::fromLatin1(g.key));
        EXPECT_EQ(group->maximumWidth(), 100);
        EXPECT_GT(group->x(), previousX) << "display order: total, abnormal, no mask, normal";
        previousX = group->x();
        EXPECT_EQ(text(title, g.caption), QString::fromLatin1(g.key) + QStringLiteral(":"));
    }
}

TEST(BTShowTitle, NumbersGoToTheLabelOfTheirMeaning)
{
    BTShowTitle title;
    for (const char* label : {"labelAllNum", "labelAbnormal", "labelNoMask", "labelNormal"})
        EXPECT_EQ(text(title, label), QStringLiteral("0")) << label;

    title.SetNum(12, 7, 3, 40);  // all, normal, no mask, abnormal
    EXPECT_EQ(text(title, "labelAllNum"), QStringLiteral("12"));
    EXPECT_EQ(text(title, "labelNormal"), QStringLiteral("7"));
    EXPECT_EQ(text(title, "labelNoMask"), QStringLiteral("3"));
    EXPECT_EQ(text(title, "labelAbnormal"), QStringLiteral("40"));

    title.SetNum(1234567, 0, 0, 0);
    EXPECT_EQ(text(title, "labelAllNum"), QStringLiteral("1234567"));
}

} // namespace
