#pragma once
// Which part of a tree row the user clicked: the row's text, or the picture
// that a delegate draws at the right end of the row (role 436).
#include <QMetaType>

namespace VantorGUIToolkit {

enum CItemDataRole {
    ItemDisplayRole = 0,        // Qt::DisplayRole: the text part of the row
    ItemRightPixmapRole = 436,  // the picture at the right end of the row
};

} // namespace VantorGUIToolkit

Q_DECLARE_METATYPE(VantorGUIToolkit::CItemDataRole)
