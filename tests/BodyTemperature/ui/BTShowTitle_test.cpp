// The statistics title: four groups in display order, each with its caption,
// tool tip and the number of signalNum that belongs to its meaning.
#include <QLabel>
#include <gtest/gtest.h>

#include "ui/BTShowTitle.h"

using BodyTemperature::BTShowTitle;

namespace {

QString text(const QWidget& parent, const char* name)
{
    const auto* label = parent.findChild<QLabel*>(QString::fromLatin1(name));
    return label != nullptr ? label->text() : QStringLiteral("<missing>");
}

TEST(BTShowTitle, GroupsCaptionsToolTipsAndNumbers)
{
    BTShowTitle title;
    title.show();
    ASSERT_NE(title.findChild<QWidget*>(QStringLiteral("widgetTopBtns")), nullptr);
    const struct {
        const char *group, *caption, *key, *number, *value;
    } groups[] = {
        {"btnAllNum", "m_pAll", "TheTotalNumberOfyDridGtt", "labelAllNum", "12"},
        {"btnAbnormal", "m_pAbnormal", "TemperatureAnomaliesWaPooFNo", "labelAbnormal", "40"},
        {"btnNoMask", "m_pMask", "NoGauzeMask", "labelNoMask", "3"},
        {"btnNormal", "m_pNormal", "TemperatureIsNormalLvoFXpTP", "labelNormal", "7"},
    };
    for (const auto& g : groups)
        EXPECT_EQ(text(title, g.number), QStringLiteral("0")) << g.number;
    title.SetNum(12, 7, 3, 40);  // all, normal, no mask, abnormal

    int previousX = -1;
    for (const auto& g : groups) {
        SCOPED_TRACE(g.group);
        const auto* group = title.findChild<QWidget*>(QString::fromLatin1(g.group));
        ASSERT_NE(group, nullptr);
        EXPECT_EQ(group->toolTip(), QString::fromLatin1(g.key));
        EXPECT_GT(group->x(), previousX) << "display order: total, abnormal, no mask, normal";
        previousX = group->x();
        EXPECT_EQ(text(*group, g.caption), QString::fromLatin1(g.key) + QStringLiteral(":"));
        EXPECT_EQ(text(*group, g.number), QString::fromLatin1(g.value));
    }
}

} // namespace
