#include "VantorGUIToolkit/CInformationDlg.h"

#include "Base/Log.h"

namespace VantorGUIToolkit {
namespace {
QStringList& shown()
{
    static QStringList s_shown;
    return s_shown;
}
} // namespace

void CInformationDlg::ShowInformationAtScreenRightBottom(const QString& text)
{
    shown().append(text);
    BASE_LOG_INFO("information: %s", qUtf8Printable(text));
}

QStringList CInformationDlg::ShownMessages() { return shown(); }
void CInformationDlg::ClearShownMessages() { shown().clear(); }

} // namespace VantorGUIToolkit
