#include "ui/CBTViewTree.h"

namespace BodyTemperature {

CBTViewTree::CBTViewTree(QWidget* parent) : QTreeView(parent) {}

CBTViewTree::~CBTViewTree() = default;

} // namespace BodyTemperature
