#pragma once
// The page widget the host embeds. It owns the dashboard dialog and carries
// the page's saved-state list: one entry per live-view camera (the camera
// identifier as the name, no values). GUI thread.
#include "publicdatacontroller/IAIWidget.h"

class QGridLayout;

namespace BodyTemperature {

class CBodyTemperatureDlg;

class BodyTemperatureWid final : public publicdatacontroller::IAIWidget {
    Q_OBJECT
public:
    explicit BodyTemperatureWid(QWidget* parent = nullptr);
    ~BodyTemperatureWid() override;

    void saveState() override;
    void readState() override;

    CBodyTemperatureDlg* dialog() const { return m_pDialog; }

public slots:
    void onConfigBtnClicked() override;
    void onMinmumBtnClicked() override;
    void onCloseBtnClicked() override;

private:
    QGridLayout* m_pLayout = nullptr;
    CBodyTemperatureDlg* m_pDialog = nullptr;
};

} // namespace BodyTemperature
