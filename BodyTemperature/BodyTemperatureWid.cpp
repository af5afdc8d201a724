#include "BodyTemperatureWid.h"

#include <QGridLayout>

#include "ui/AddIntoFaceLib/CBTAddFaceWnd.h"
#include "ui/CBodyTemperatureDlg.h"
#include "ui/History/CHistoryWindow.h"
#include "ui/ShowCard/CComparisonDetail.h"
#include "ui/ShowCard/ReCustomer/CFrequenterUnit.h"

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
    // Device searches of returning-person cards and face uploads run module
    // code on other threads: their requests are cut, so these return at once.
    CFrequenterUnit::StopAllDetails(m_pDialog);
    CBTAddFaceWnd::CloseAllUnder(m_pDialog);
    delete m_pLayout;
    m_pLayout = nullptr;
    delete m_pDialog;
    m_pDialog = nullptr;
}

void BodyTemperatureWid::saveState()
{
    m_listState.clear();
    // A detail dialog left open would keep running its loop over a page that
    // is no longer shown.
    CComparisonDetail::CloseAllUnder(this);
    // The screening history window goes with the page it was opened from.
    for (CHistoryWindow* history : findChildren<CHistoryWindow*>())
        history->close();
    if (m_pDialog == nullptr)
        return;
    for (const QByteArray& id : m_pDialog->GetPlayingCameraIds())
        m_listState.append(publicdatacontroller::AIStateItem{id, {}});
    m_pDialog->StopAllLiveView();
    m_pDialog->SetAlarmListening(false);
    CFrequenterUnit::StopAllDetails(m_pDialog);
    CBTAddFaceWnd::CloseAllUnder(m_pDialog);
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
