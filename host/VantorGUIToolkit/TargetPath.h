#pragma once
// Resolves a resource file name (voice files, layout files...) to a full path.
// Searched in order: folders added with AddTargetSearchPath, then
// "<application folder>/Audio", "<application folder>/Resource", the
// application folder itself. When the file is found nowhere the path in the
// first default folder is returned, so callers always get a full path.
#include <QString>

namespace VantorGUIToolkit {

QString GetTargetPathFile(const QString& fileName);
void AddTargetSearchPath(const QString& folder);

} // namespace VantorGUIToolkit
