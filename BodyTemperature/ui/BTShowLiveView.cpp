#include "ui/BTShowLiveView.h"

#include <QResizeEvent>

#include "clientcommonlogical/CConfigMgr.h"

namespace BodyTemperature {

BTShowLiveView::BTShowLiveView(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("BTShowLiveView"));
    resize(855, 597);
    const int windows = clientcommonlogical::CConfigMgr::Instance()->GetLanguage() == 1 ? 9 : 4;
    m_views.resize(windows);
}

BTShowLiveView::~BTShowLiveView() = default;

void BTShowLiveView::Init(QAbstractItemModel*) {}

void BTShowLiveView::restorePlayingCameras(const QStringList& cameraIds)
{
    for (int i = 0; i < cameraIds.size() && i < m_views.size(); ++i) {
        if (!cameraIds[i].isEmpty())
            m_views[i] = cameraIds[i].toStdString();
    }
}

void BTShowLiveView::stopAllLiveView()
{
    for (std::string& v : m_views)
        v.clear();
}

void BTShowLiveView::SelectFreeWindow()
{
    for (int i = 0; i < m_views.size(); ++i) {
        if (m_views[i].empty()) {
            m_iSelected = i;
            return;
        }
    }
}

void BTShowLiveView::OpenCamera(const std::string& cameraId, int)
{
    if (m_iSelected >= 0 && m_iSelected < m_views.size())
        m_views[m_iSelected] = cameraId;
}

void BTShowLiveView::RemoveCamera(const std::string&) {}

QList<QByteArray> BTShowLiveView::GetPlayingCameraIds() const
{
    QList<QByteArray> ids;
    for (const std::string& v : m_views)
        if (!v.empty())
            ids.append(QByteArray::fromStdString(v));
    return ids;
}

QVector<std::string> BTShowLiveView::openViewCameraIds() const
{
    QVector<std::string> ids;
    for (const std::string& v : m_views)
        if (!v.empty())
            ids.append(v);
    return ids;
}

void BTShowLiveView::resizeEvent(QResizeEvent* event)
{
    emit SignalResized();
    QWidget::resizeEvent(event);
}

} // namespace BodyTemperature
