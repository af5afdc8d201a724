#pragma once
// The item model behind the dashboard's camera tree: the host's areas with
// their cameras, decorated for this page. Created by CAppRscManager.
#include <QStandardItemModel>

namespace BodyTemperature {

class CameraModel : public QStandardItemModel {
    Q_OBJECT
public:
    CameraModel(QObject* parent, bool showPreviewButtons);
    ~CameraModel() override;

    bool showPreviewButtons() const { return m_bShowPreviewButtons; }

private:
    bool m_bShowPreviewButtons;
};

} // namespace BodyTemperature
