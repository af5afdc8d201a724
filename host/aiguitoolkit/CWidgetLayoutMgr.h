#pragma once
// Lays play windows out in a container as a division (type 1: one window,
// 2: four, 3: nine, or whatever the layout file defines) and maximises one
// window over the whole container. Layouts come from an XML file when it
// exists, otherwise from the built-in set:
//   <WidgetLayout>
//     <Layout type="2" rows="2" cols="2"/>
//     <Layout type="4" rows="3" cols="3">   <!-- cells spanning several grid cells -->
//       <Cell row="0" col="0" rowSpan="2" colSpan="2"/> ...
//     </Layout>
//   </WidgetLayout>
// The manager does not own the windows or the container. GUI thread.
// Each window's dynamic property "soleView" (kSoleViewProperty) tells whether
// it has the container to itself (maximised, or a one-window division).
#include <QList>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QVector>

class QWidget;

namespace aiguitoolkit {

class CWidgetLayoutMgr : public QObject {
    Q_OBJECT
public:
    struct Layout {
        int type = 0;
        int rows = 1;
        int cols = 1;
        QVector<QRect> cells;  // in grid units, display order
    };

    explicit CWidgetLayoutMgr(QObject* parent = nullptr);
    ~CWidgetLayoutMgr() override;

    // Reads the layout file (built-in layouts when it is missing or unreadable),
    // takes the windows and shows the start type in the container.
    void Init(const QString& layoutFile, const QList<QWidget*>& windows, QWidget* container, int startType);
    bool LoadedFromFile() const { return m_bFromFile; }

    void Redisplay(int type);
    int GetCurrentType() const { return m_iType; }
    int WindowCountOf(int type) const;
    QList<int> Types() const;
    // Windows of the current division, in display order.
    QList<QWidget*> DisplayedWindows() const;

    void MaximizeWindow(QWidget* window);
    void RestoreNormal();
    QWidget* MaximizedWindow() const { return m_pMaximized; }

    static QVector<Layout> BuiltInLayouts();
    static constexpr const char* kSoleViewProperty = "soleView";

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool ReadLayoutFile(const QString& path);
    const Layout* LayoutOf(int type) const;
    void Relayout();

    QVector<Layout> m_layouts;
    QList<QWidget*> m_windows;
    QPointer<QWidget> m_pContainer;
    QWidget* m_pMaximized = nullptr;
    int m_iType = 0;
    bool m_bFromFile = false;
};

} // namespace aiguitoolkit
