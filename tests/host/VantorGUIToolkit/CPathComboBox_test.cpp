// The file chooser: the browse button's dialog, choosing and cancelling,
// typed paths, items kept once.
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>
#include <gtest/gtest.h>

#include "VantorGUIToolkit/CPathComboBox.h"

using VantorGUIToolkit::CPathComboBox;

namespace {

TEST(PathComboBox, BrowseOpensTheConfiguredDialogAndTakesTheChosenFile)
{
    QTemporaryDir dir;
    const QString first = dir.filePath(QStringLiteral("first.wav"));
    const QString second = dir.filePath(QStringLiteral("second.wav"));
    for (const QString& p : {first, second}) {
        QFile f(p);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    }
    CPathComboBox box;
    box.setFileMode(QFileDialog::ExistingFile);
    box.setDialogTitle(QStringLiteral("Pick a sound"));
    box.setFilter(QStringLiteral("Sounds(*.wav)"));
    box.addPath(first);
    box.show();
    QSignalSpy changed(&box, &CPathComboBox::signalPathChanged);

    // Cancel, choose, cancel again: only the choice changes the path.
    for (bool choose : {false, true, false}) {
        bool opened = false;
        QTimer::singleShot(0, &box, [&] {
            auto* dialog = box.findChild<QFileDialog*>();
            ASSERT_NE(dialog, nullptr);
            opened = true;
            EXPECT_TRUE(dialog->isModal());
            EXPECT_EQ(dialog->fileMode(), QFileDialog::ExistingFile);
            EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Pick a sound"));
            EXPECT_EQ(dialog->nameFilters(), QStringList{QStringLiteral("Sounds(*.wav)")});
            // It starts where the current file is.
            EXPECT_EQ(dialog->directory().absolutePath(), dir.path());
            if (choose)
                dialog->selectFile(second);
            choose ? static_cast<QDialog*>(dialog)->accept() : static_cast<QDialog*>(dialog)->reject();
        });
        box.browseButton()->click();
        ASSERT_TRUE(opened);
    }
    EXPECT_EQ(box.currentPath(), second);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(box.comboBox()->count(), 2);
}

TEST(PathComboBox, KeepsEachPathOnceAndReportsTypedText)
{
    CPathComboBox box;
    box.addPath(QStringLiteral("/a.wav"));
    box.addPath(QStringLiteral("/b.wav"));
    box.addPath(QStringLiteral("/a.wav"));
    EXPECT_EQ(box.comboBox()->count(), 2);
    EXPECT_EQ(box.currentPath(), QStringLiteral("/a.wav"));
    box.comboBox()->setEditText(QStringLiteral("/typed/by/hand.wav"));
    EXPECT_EQ(box.currentPath(), QStringLiteral("/typed/by/hand.wav"));
    box.addPath(QString());
    EXPECT_TRUE(box.currentPath().isEmpty());
}

} // namespace
