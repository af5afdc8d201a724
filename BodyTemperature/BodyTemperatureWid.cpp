#include "BodyTemperatureWid.h"

#include <QGridLayout>

// The one way into ui/: the page widget holds the dashboard dialog.
#include "ui/CBodyTemperatureDlg.h"

namespace BodyTemperature {

BodyTemperatureWid::BodyTemperatureWid(QWidget* parent) : IAIWidget(parent)
{
    m_pLayout = new QGridLayout(this);
    m_pLayout->setContentsMargins(0, 0, 0, 0);
    m_pDialog = new CBodyTemperatureDlg(this);
    m_pLayout->addWidget(m_pDialog);
}

BodyTemperatureWid::~BodyTemperatureWid()
{
    m_pDialog->StopBackgroundWork();
    delete m_pLayout;
    m_pLayout = nullptr;
    delete m_pDialog;
    m_pDialog = nullptr;
}

void BodyTemperatureWid::saveState()
{
    m_listState.clear();
    CBodyTemperatureDlg::CloseDetailWindows(this);
    if (m_pDialog == nullptr)
        return;
    for (const QByteArray& id : m_pDialog->GetPlayingCameraIds())
        m_listState.append(publicdatacontroller::AIStateItem{id, {}});
    m_pDialog->StopAllLiveView();
    m_pDialog->SetAlarmListening(false);
    m_pDialog->StopBackgroundWork();
}

void BodyTemperatureWid::readState()
{
    QStringList ids;
    for (const publicdatacontroller::AIStateItem& item : m_listState)
        ids.append(QString::fromUtf8(item.name));
    if (m_pDialog == nullptr)
        return;
    m_pDialog->RestorePlayingCameras(ids);
    m_pDialog->SetAlarmListening(true);
    m_pDialog->update();
}

void BodyTemperatureWid::onConfigBtnClicked() {}
void BodyTemperatureWid::onMinmumBtnClicked() {}
void BodyTemperatureWid::onCloseBtnClicked() {}

} // namespace BodyTemperature
