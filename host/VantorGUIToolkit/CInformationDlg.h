#pragma once
// The host's information manager: short messages shown at the lower right of
// the screen that fade out after a few seconds; several stack. GUI thread.
#include <QString>
#include <QStringList>

namespace VantorGUIToolkit {

class CInformationDlg {
public:
    static void ShowInformationAtScreenRightBottom(const QString& text);
    // The texts shown so far in this process, oldest first (diagnostics, tests).
    static QStringList ShownMessages();
    static void ClearShownMessages();
};

} // namespace VantorGUIToolkit
