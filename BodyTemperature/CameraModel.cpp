#include "CameraModel.h"

namespace BodyTemperature {

CameraModel::CameraModel(QObject* parent, bool showPreviewButtons)
    : QStandardItemModel(parent), m_bShowPreviewButtons(showPreviewButtons)
{
    setColumnCount(1);
}

CameraModel::~CameraModel() = default;

} // namespace BodyTemperature
