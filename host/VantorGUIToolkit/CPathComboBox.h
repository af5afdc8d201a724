#pragma once
// A file chooser: an editable combo box holding paths, with a browse button
// that opens a file dialog (mode, title and name filter set by the owner).
// The chosen file becomes the current path. GUI thread only.
#include <QFileDialog>
#include <QString>
#include <QWidget>
#include <functional>

class QComboBox;
class QToolButton;

namespace VantorGUIToolkit {

class CPathComboBox final : public QWidget {
    Q_OBJECT
public:
    explicit CPathComboBox(QWidget* parent = nullptr);
    ~CPathComboBox() override;

    // A QFileDialog::FileMode value; 1 (ExistingFile) chooses one existing file.
    void setFileMode(int mode);
    int fileMode() const { return m_iFileMode; }
    void setDialogTitle(const QString& title);
    // A name filter such as "Audio files(*.wav)".
    void setFilter(const QString& filter);
    QString filter() const { return m_strFilter; }
    // Asked about each file chosen in the dialog; a file it refuses (false)
    // is not taken and the current path stays. The owner says why.
    void setPathCheck(std::function<bool(const QString&)> check) { m_pathCheck = std::move(check); }

    // Adds path as an item (once) and makes it current.
    void addPath(const QString& path);
    // The edit text: what the user typed or chose.
    QString currentPath() const;

    QComboBox* comboBox() const { return m_pCombo; }
    QToolButton* browseButton() const { return m_pBrowseBtn; }

signals:
    void signalPathChanged(const QString& path);

public slots:
    // Opens the file dialog modally; a chosen file becomes the current path.
    void onBrowse();

private:
    QComboBox* m_pCombo = nullptr;
    QToolButton* m_pBrowseBtn = nullptr;
    int m_iFileMode = QFileDialog::ExistingFile;
    QString m_strTitle;
    QString m_strFilter;
    std::function<bool(const QString&)> m_pathCheck;
};

} // namespace VantorGUIToolkit
