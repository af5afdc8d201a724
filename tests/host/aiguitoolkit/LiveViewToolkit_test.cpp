// Layout manager, division selector and full-screen container with real widgets.
#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>
#include <gtest/gtest.h>

#include "aiguitoolkit/CCutNumFrame.h"
#include "aiguitoolkit/CFullScreenWidget.h"
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
    QString Write(const QByteArray& xml)
    {
        const QString p = path(QStringLiteral("WidgetLayout.xml"));
        QFile f(p);
        f.open(QIODevice::WriteOnly);
        f.write(xml);
        return p;
    }
    QWidget container;
    QList<QWidget*> windows;
};

TEST_F(LayoutTest, LayoutSourceAndDivisions)
{
    struct Row {
        const char* name;
        QByteArray xml;  // empty: no file
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
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        CWidgetLayoutMgr mgr;
        mgr.Init(r.xml.isEmpty() ? path(QStringLiteral("none.xml")) : Write(r.xml), windows, &container, 2);
        EXPECT_EQ(mgr.LoadedFromFile(), r.fromFile);
        EXPECT_EQ(mgr.Types(), r.types);
        EXPECT_EQ(mgr.DisplayedWindows().size(), r.windowsOfStart);
        int visible = 0;
        for (QWidget* w : windows)
            visible += w->isVisible() ? 1 : 0;
        EXPECT_EQ(visible, r.windowsOfStart);
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
    mgr.Init(path(QStringLiteral("none.xml")), windows, &container, 3);
    // 3 x 3 over 900 x 600 with one-pixel gaps.
    EXPECT_EQ(windows[0]->geometry(), QRect(0, 0, 299, 199));
    EXPECT_EQ(windows[4]->geometry(), QRect(300, 200, 299, 199));
    EXPECT_EQ(windows[8]->geometry(), QRect(600, 400, 300, 200));
    mgr.Redisplay(1);
    EXPECT_EQ(windows[0]->geometry(), container.rect());
    EXPECT_FALSE(windows[1]->isVisible());
}

TEST(CutNumFrame, OffersOnlyDivisionsThatFitAndReportsTheType)
{
    aiguitoolkit::CCutNumFrame frame;
    QSignalSpy spy(&frame, &aiguitoolkit::CCutNumFrame::SignalClickedBtn);
    struct Row { int max; bool hide; QList<int> offered; bool nineVisible; } rows[] = {
        {9, true, {1, 4, 9}, true}, {4, true, {1, 4}, false}, {4, false, {1, 4}, true}, {1, true, {1}, false}};
    for (const Row& r : rows) {
        frame.SetMaxWndNum(r.max, r.hide);
        EXPECT_EQ(frame.OfferedWindowCounts(), r.offered) << r.max;
        EXPECT_EQ(!frame.ButtonOfType(3)->isHidden(), r.nineVisible) << r.max;
    }
    frame.SetMaxWndNum(9, true);
    frame.show();
    frame.ButtonOfType(3)->click();
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).toInt(), 3);
    EXPECT_FALSE(frame.isVisible());
}

TEST(FullScreenWidget, EnterLeaveAndEscapeRestoreTheLayoutSlot)
{
    QWidget page;
    auto* layout = new QVBoxLayout(&page);
    auto* above = new QWidget(&page);
    auto* full = new aiguitoolkit::CFullScreenWidget(&page);
    auto* below = new QWidget(&page);
    layout->addWidget(above);
    layout->addWidget(full);
    layout->addWidget(below);
    page.resize(400, 300);
    page.show();
    QSignalSpy changed(full, &aiguitoolkit::CFullScreenWidget::SignalScreenChanged);
    for (bool byEscape : {false, true}) {
        full->EnterFullScreen();
        EXPECT_TRUE(full->IsFullScreen());
        EXPECT_TRUE(full->isWindow());
        EXPECT_EQ(layout->indexOf(full), -1);
        if (byEscape)
            QTest::keyClick(full, Qt::Key_Escape);
        else
            full->LeaveFullScreen();
        EXPECT_FALSE(full->IsFullScreen());
        EXPECT_EQ(full->parentWidget(), &page);
        EXPECT_EQ(layout->indexOf(full), 1);
    }
    ASSERT_EQ(changed.count(), 4);
    EXPECT_TRUE(changed.at(0).at(0).toBool());
    EXPECT_FALSE(changed.at(1).at(0).toBool());
    full->LeaveFullScreen();  // not full screen: nothing
    EXPECT_EQ(changed.count(), 4);
}

} // namespace
