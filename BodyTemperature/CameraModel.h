#pragma once
// The item model behind the dashboard's camera tree: the host's areas with
// their cameras (UiDataController::CLogicModel), each camera row decorated for
// this page with a play button picture (role 436), its tooltip (role 466) and
// a state icon (role 1) from the camera's availability and playing state.
// Created by CAppRscManager; GUI thread.
#include "UiDataController/CLogicModel.h"

namespace BodyTemperature {

class CameraModel : public UiDataController::CLogicModel {
    Q_OBJECT
public:
    CameraModel(QObject* parent, const UiDataController::StruResouceOfElementParam& options, bool showPreviewButtons);
    CameraModel(QObject* parent, bool showPreviewButtons);
    ~CameraModel() override;

    // Extra roles of camera rows: whether it plays, and the path of its state icon.
    enum { PlayingRole = Qt::UserRole + 77, IconPathRole = Qt::UserRole + 78 };

    // Recomputes one camera's state icon (called when it starts or stops playing).
    void UpdateCameraIcon(const QModelIndex& index, bool playing);
    bool IsCameraPlaying(const QModelIndex& index) const;

public slots:
    void OnGroupRowsAdd(const QModelIndex& miParent, int iStart, int iEnd);

private:
    void DecorateArea(const std::string& areaId, const QString& tooltip);
    void OnCameraStateChanged(const QString& cameraId);

    bool m_bShowPreviewButtons;
};

} // namespace BodyTemperature
