#include "CHostMainWindow.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "Base/Log.h"
#include "publicdatacontroller/IAIWidget.h"

CHostMainWindow::CHostMainWindow(CModuleLoader& loader, CPageStateStore& stateStore, QWidget* parent)
    : QMainWindow(parent), m_loader(loader), m_stateStore(stateStore)
{
    setObjectName(QStringLiteral("VantorDeskMainWindow"));
    setWindowTitle(QStringLiteral("VantorDesk"));
    auto* central = new QWidget(this);
    central->setObjectName(QStringLiteral("m_pCentralWidget"));
    auto* layout = new QHBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    auto* bar = new QWidget(central);
    bar->setObjectName(QStringLiteral("m_pModuleBar"));
    bar->setFixedWidth(64);
    m_pButtonLayout = new QVBoxLayout(bar);
    m_pButtonLayout->setContentsMargins(8, 12, 8, 12);
    m_pButtonLayout->setSpacing(8);

    m_pStack = new QStackedWidget(central);
    m_pStack->setObjectName(QStringLiteral("m_pPageStack"));
    m_pEmptyLabel = new QLabel(tr("No module loaded"), m_pStack);
    m_pEmptyLabel->setObjectName(QStringLiteral("m_pEmptyLabel"));
    m_pEmptyLabel->setAlignment(Qt::AlignCenter);
    m_pStack->addWidget(m_pEmptyLabel);

    layout->addWidget(bar);
    layout->addWidget(m_pStack, 1);
    setCentralWidget(central);
    setStyleSheet(QStringLiteral(
        "QMainWindow, QWidget#m_pCentralWidget { background-color: #10161f; }"
        "QWidget#m_pModuleBar { background-color: #0a0f16; border-right: 1px solid #1e2a38; }"
        "QWidget#m_pModuleBar QPushButton { border: none; border-radius: 8px; padding: 4px; }"
        "QWidget#m_pModuleBar QPushButton:checked { background-color: #1f3347; }"
        "QWidget#m_pModuleBar QPushButton:hover { background-color: #18293a; }"
        "QLabel#m_pEmptyLabel { color: #7f8c99; font-size: 16px; }"));

    for (LoadedModule& m : m_loader.Modules()) {
        auto* button = new QPushButton(bar);
        button->setObjectName(m.descriptor->getObjectName());
        button->setIcon(QIcon(m.descriptor->getAIIconUrl()));
        button->setIconSize(QSize(40, 40));
        button->setFixedSize(48, 48);
        button->setCheckable(true);
        button->setToolTip(m.descriptor->getAIName());
        button->setProperty("moduleName", m.descriptor->getObjectName());
        connect(button, &QPushButton::clicked, this, &CHostMainWindow::OnModuleButtonClicked);
        m_pButtonLayout->addWidget(button);
    }
    m_pButtonLayout->addStretch(1);
}

CHostMainWindow::~CHostMainWindow() = default;

QPushButton* CHostMainWindow::ButtonFor(const QString& objectName) const
{
    return findChild<QPushButton*>(objectName);
}

void CHostMainWindow::OnModuleButtonClicked()
{
    auto* button = qobject_cast<QPushButton*>(sender());
    if (button)
        OpenPage(button->property("moduleName").toString());
}

bool CHostMainWindow::OpenPage(const QString& name)
{
    for (LoadedModule& m : m_loader.Modules()) {
        if (m.descriptor->getObjectName() == name || m.descriptor->getAIDllName() == name) {
            activate(m);
            return true;
        }
    }
    BASE_LOG_WARN("no module named %s", qUtf8Printable(name));
    return false;
}

void CHostMainWindow::activate(LoadedModule& module)
{
    const QString name = module.descriptor->getObjectName();
    for (QPushButton* b : findChildren<QPushButton*>())
        if (b->property("moduleName").isValid())
            b->setChecked(b->property("moduleName").toString() == name);
    if (m_active && m_activeName == name)
        return;
    LeaveActivePage();

    QPointer<publicdatacontroller::IAIWidget> page = m_pages.value(name);
    if (!page) {
        page = module.descriptor->getAIWidget(m_pStack);
        if (!page) {
            BASE_LOG_ERROR("module %s gave no page widget", qUtf8Printable(name));
            return;
        }
        page->stateList() = m_stateStore.Get(name);
        m_pStack->addWidget(page);
        m_pages.insert(name, page);
    }
    m_pStack->setCurrentWidget(page);
    m_active = page;
    m_activeName = name;
    page->readState();
}

void CHostMainWindow::LeaveActivePage()
{
    if (!m_active)
        return;
    m_active->saveState();
    m_stateStore.Set(m_activeName, m_active->stateList());
    m_stateStore.Save();
    m_active = nullptr;
    m_activeName.clear();
}

void CHostMainWindow::closeEvent(QCloseEvent* event)
{
    LeaveActivePage();
    QMainWindow::closeEvent(event);
}
