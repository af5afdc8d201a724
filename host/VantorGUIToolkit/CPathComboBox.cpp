#include "VantorGUIToolkit/CPathComboBox.h"

#include <QComboBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QToolButton>

namespace VantorGUIToolkit {

CPathComboBox::CPathComboBox(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("PathComboBox"));
    m_pCombo = new QComboBox(this);
    m_pCombo->setObjectName(QStringLiteral("PathComboBoxCombo"));
    m_pCombo->setEditable(true);
    m_pCombo->setInsertPolicy(QComboBox::NoInsert);
    m_pCombo->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    // Long paths: the end (the file name) is the interesting part.
    m_pCombo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_pCombo->setMinimumContentsLength(12);

    m_pBrowseBtn = new QToolButton(this);
    m_pBrowseBtn->setObjectName(QStringLiteral("PathComboBoxBrowseBtn"));
    m_pBrowseBtn->setText(QStringLiteral("..."));
    m_pBrowseBtn->setCursor(Qt::PointingHandCursor);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    layout->addWidget(m_pCombo, 1);
    layout->addWidget(m_pBrowseBtn);

    connect(m_pBrowseBtn, &QToolButton::clicked, this, &CPathComboBox::onBrowse);
    connect(m_pCombo, &QComboBox::currentTextChanged, this, &CPathComboBox::signalPathChanged);
}

CPathComboBox::~CPathComboBox() = default;

void CPathComboBox::setFileMode(int mode) { m_iFileMode = mode; }
void CPathComboBox::setDialogTitle(const QString& title) { m_strTitle = title; }
void CPathComboBox::setFilter(const QString& filter) { m_strFilter = filter; }

void CPathComboBox::addPath(const QString& path)
{
    int idx = m_pCombo->findText(path);
    if (idx < 0) {
        m_pCombo->addItem(path);
        idx = m_pCombo->count() - 1;
    }
    m_pCombo->setCurrentIndex(idx);
    m_pCombo->setEditText(path);
    m_pCombo->setToolTip(path);
    // A long path shows its end: the file name is what tells the paths apart.
    if (m_pCombo->lineEdit() != nullptr)
        m_pCombo->lineEdit()->end(false);
}

QString CPathComboBox::currentPath() const { return m_pCombo->currentText(); }

void CPathComboBox::onBrowse()
{
    // A dialog object rather than the static helper: the frameless settings
    // pages that host this widget need a real child window, and the dialog
    // must start in the folder of the current file.
    QFileDialog dialog(this, m_strTitle);
    dialog.setObjectName(QStringLiteral("PathComboBoxFileDialog"));
    dialog.setFileMode(static_cast<QFileDialog::FileMode>(m_iFileMode));
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    if (!m_strFilter.isEmpty())
        dialog.setNameFilter(m_strFilter);
    const QFileInfo current(currentPath());
    if (!currentPath().isEmpty() && current.dir().exists())
        dialog.setDirectory(current.absolutePath());
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QStringList files = dialog.selectedFiles();
    if (!files.isEmpty() && (!m_pathCheck || m_pathCheck(files.first())))
        addPath(files.first());
}

} // namespace VantorGUIToolkit
