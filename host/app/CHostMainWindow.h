#pragma once
// The host's main window: a bar with one button per loaded module and a stack
// of pages. It creates a page on its first opening, calls readState() when a
// page becomes active and saveState() when it is left or the host closes, and
// keeps each page's saved-state list in the page-state store. GUI thread.
#include <QHash>
#include <QMainWindow>
#include <QPointer>

#include "CModuleLoader.h"
#include "CPageStateStore.h"

class QStackedWidget;
class QVBoxLayout;
class QPushButton;
class QLabel;

class CHostMainWindow final : public QMainWindow {
    Q_OBJECT
public:
    CHostMainWindow(CModuleLoader& loader, CPageStateStore& stateStore, QWidget* parent = nullptr);
    ~CHostMainWindow() override;

    // Opens the page whose descriptor has this object name (or DLL name).
    bool OpenPage(const QString& name);
    // Leaves the active page (saveState) and writes the page-state store.
    void LeaveActivePage();
    publicdatacontroller::IAIWidget* ActivePage() const { return m_active; }
    QPushButton* ButtonFor(const QString& objectName) const;

protected:
    void closeEvent(QCloseEvent* event) override;

private slots:
    void OnModuleButtonClicked();

private:
    void activate(LoadedModule& module);

    CModuleLoader& m_loader;
    CPageStateStore& m_stateStore;
    QStackedWidget* m_pStack = nullptr;
    QVBoxLayout* m_pButtonLayout = nullptr;
    QLabel* m_pEmptyLabel = nullptr;
    QHash<QString, QPointer<publicdatacontroller::IAIWidget>> m_pages;
    QPointer<publicdatacontroller::IAIWidget> m_active;
    QString m_activeName;
};
