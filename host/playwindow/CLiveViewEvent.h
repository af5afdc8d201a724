#pragma once
// What a play window reports about its live view: type 0 or 6 when a preview
// starts, 1 when it stops, with the camera concerned.
#include <QMetaType>
#include <string>

class CLiveViewEvent {
public:
    enum Type { PreviewStarted = 0, PreviewStopped = 1, PreviewRestarted = 6 };
    CLiveViewEvent() = default;
    CLiveViewEvent(int type, std::string cameraId) : m_iEventType(type), m_strCameraID(std::move(cameraId)) {}

    int GetEventType() const { return m_iEventType; }
    const std::string& GetCameraID() const { return m_strCameraID; }

private:
    int m_iEventType = -1;
    std::string m_strCameraID;
};

Q_DECLARE_METATYPE(CLiveViewEvent)
