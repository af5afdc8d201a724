// The play-window layout manager with real widgets (the division selector and
// the full-screen container are exercised through the live view).
#include <QFile>
#include <QWidget>
#include <algorithm>
#include <gtest/gtest.h>

#include "aiguitoolkit/CWidgetLayoutMgr.h"
#include "support/TestSupport.h"

using aiguitoolkit::CWidgetLayoutMgr;

namespace {

class LayoutTest : public testsupport::TempDirTest {
protected:
    void SetUp() override
    {
        TempDirTest::SetUp();
        container.resize(900, 600);
        for (int i = 0; i < 9; ++i)
            windows.append(new QWidget(&container));
        container.show();
    }
    // The layout file with this content; no file at all for an empty one.
    QString Write(const QByteArray& xml)
    {
        QFile f(path(QStringLiteral("WidgetLayout.xml")));
        if (xml.isEmpty())
            f.remove();
        else if (f.open(QIODevice::WriteOnly))
            f.write(xml);
        return f.fileName();
    }
    QWidget container;
    QList<QWidget*> windows;
};

TEST_F(LayoutTest, LayoutSourceAndDivisions)
{
    const struct {
        const char* name;
        QByteArray xml;
        bool fromFile;
        QList<int> types;
        int windowsOfStart;
    } rows[] = {
        {"missing file", {}, false, {1, 2, 3}, 4},
        {"malformed", "<WidgetLayout><Layout type=", false, {1, 2, 3}, 4},
        {"no usable layout", "<WidgetLayout><Layout type=\"0\" rows=\"2\" cols=\"2\"/></WidgetLayout>", false, {1, 2, 3}, 4},
        {"file", "<WidgetLayout><Layout type=\"1\" rows=\"1\" cols=\"1\"/><Layout type=\"2\" rows=\"3\" cols=\"3\">"
                 "<Cell row=\"0\" col=\"0\" rowSpan=\"2\" colSpan=\"2\"/><Cell row=\"0\" col=\"2\"/><Cell row=\"1\" col=\"2\"/>"
                 "<Cell row=\"2\" col=\"0\"/><Cell row=\"2\" col=\"1\"/><Cell row=\"2\" col=\"2\"/>"
                 "<Cell row=\"5\" col=\"5\"/></Layout></WidgetLayout>",
            true, {1, 2}, 6},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.name);
        CWidgetLayoutMgr mgr;
        mgr.Init(Write(r.xml), windows, &container, 2);
        EXPECT_EQ(mgr.LoadedFromFile(), r.fromFile);
        EXPECT_EQ(mgr.Types(), r.types);
        EXPECT_EQ(mgr.DisplayedWindows().size(), r.windowsOfStart);
        EXPECT_EQ(std::count_if(windows.begin(), windows.end(), [](QWidget* w) { return w->isVisible(); }), r.windowsOfStart);
    }
}

TEST_F(LayoutTest, SpanningCellAndMaximise)
{
    CWidgetLayoutMgr mgr;
    mgr.Init(Write("<WidgetLayout><Layout type=\"2\" rows=\"3\" cols=\"3\"><Cell row=\"0\" col=\"0\" rowSpan=\"2\" colSpan=\"2\"/>"
                   "<Cell row=\"0\" col=\"2\"/></Layout></WidgetLayout>"),
        windows, &container, 2);
    EXPECT_EQ(windows[0]->geometry(), QRect(0, 0, 599, 399));
    EXPECT_EQ(windows[1]->geometry(), QRect(600, 0, 300, 199));
    mgr.MaximizeWindow(windows[1]);
    EXPECT_EQ(windows[1]->geometry(), container.rect());
    EXPECT_FALSE(windows[0]->isVisible());
    container.resize(1000, 700);  // stays maximised over the new size
    EXPECT_EQ(windows[1]->geometry(), container.rect());
    mgr.RestoreNormal();
    EXPECT_TRUE(windows[0]->isVisible());
    mgr.Redisplay(7);  // unknown type: unchanged
    EXPECT_EQ(mgr.GetCurrentType(), 2);
}

TEST_F(LayoutTest, BuiltInGridsTileTheContainer)
{
    CWidgetLayoutMgr mgr;
    mgr.Init(Write({}), windows, &container, 3);
    // 3 x 3 over 900 x 600 with one-pixel gaps.
    EXPECT_EQ(windows[0]->geometry(), QRect(0, 0, 299, 199));
    EXPECT_EQ(windows[4]->geometry(), QRect(300, 200, 299, 199));
    EXPECT_EQ(windows[8]->geometry(), QRect(600, 400, 300, 200));
    mgr.Redisplay(1);
    EXPECT_EQ(windows[0]->geometry(), container.rect());
    EXPECT_FALSE(windows[1]->isVisible());
}

} // namespace
