#pragma once
// One play window of a live-view grid: plays a camera's live stream (decoded
// on the window's own thread, see CStreamDecoder) and paints the newest
// picture scaled into itself. Idle, it shows the logo its style sheet gives
// "QLabel#m_pLiveViewWindow". It has a tool bar (sound, close "m_pCloseBtn")
// shown while the pointer is over a playing window, a selected state, and
// accepts cameras dropped from a tree (mime data with the properties
// "GroupGUID" and "CameraGUID"). Created, driven and destroyed on the GUI
// thread; stopping a preview (or destroying the window) joins its thread.
#include <QElapsedTimer>
#include <QFrame>
#include <QImage>
#include <QList>
#include <memory>
#include <string>
#include <vector>

#include "playwindow/CLiveViewEvent.h"
#include "publicdatacontroller/CLocalDataManagerDelegate.h"

class CLiveViewControllerPlugin;
class QLabel;
class QPushButton;
class QToolButton;

namespace playwindow {
class CStreamDecoder;
struct CStreamSource;
class CVideoSurface;
}

class CStreamPlayWindowWithTask : public QFrame {
    Q_OBJECT
public:
    // Tool-bar buttons a page may ask for.
    enum ToolBarButton { BtnSound = 3, BtnCapture = 4, BtnPtz = 9, BtnZoom = 10, BtnInstantPlayback = 11,
        BtnStreamInfo = 17, BtnTalk = 18 };

    explicit CStreamPlayWindowWithTask(int index, QWidget* parent = nullptr);
    ~CStreamPlayWindowWithTask() override;

    int GetIndex() const { return m_iIndex; }
    void SetLiveViewControllerPlugin(CLiveViewControllerPlugin* plugin) { m_pPlugin = plugin; }
    void SetToolBarBtnList(const QList<int>& buttons, const QList<int>& extraButtons);
    void EnableToolBar(bool enable);
    void SetStreamSettings(const publicdatacontroller::StreamSettings& settings) { m_settings = settings; }
    QPushButton* GetCloseButton() const { return m_pCloseBtn; }

    // Starts the live view of a camera found through the plugin. A camera the
    // plugin does not know (or that has no stream) still takes the window,
    // which says so until it is stopped; false only for an empty identifier.
    bool StartPreview(const std::string& cameraId, int iValue, int iReserved1, int iReserved2);
    // Starts a stream by URL (the camera identifier is only reported).
    // Credentials in the URL are used for the device but never kept in it.
    bool StartPreviewUrl(const QString& url, const std::string& cameraId);
    void StopPreview();
    bool IsPreviewing() const { return m_bPreviewing; }
    // Previewing, and the stream is being fetched (the camera was found).
    bool HasStream() const { return m_decoder != nullptr; }
    std::string GetPreviewCameraID() const { return m_strCameraID; }
    // The stream shown now, without credentials (stream information).
    QString PlayingUrl() const { return m_strUrl; }
    int GetStartValue() const { return m_iStartValue; }

    bool IsSoundOpen() const { return m_bSound; }
    bool OpenSound();
    void CloseSound();

    void SetSelected(bool selected);
    bool IsSelected() const { return m_bSelected; }

    // What the window shows now: the newest picture, the message text.
    QImage CurrentFrame() const;
    QString MessageText() const;
    bool HasFrame() const;
    // Decoder statistics (diagnostics, tests, benches).
    uint64_t DecodedFrames() const;
    uint64_t PaintedFrames() const;
    uint64_t BadPackets() const;
    // CPU per step so far: decoding and converting (decode thread), painting (GUI thread).
    struct StepCost {
        uint64_t decodeNs = 0;
        uint64_t convertNs = 0;
        uint64_t paintNs = 0;
    };
    StepCost StepCosts() const;

signals:
    void SignalSelected();
    void SignalPlayStateChanged();
    void SignalDoubleClicked();
    void SignalLiveViewEvent(CLiveViewEvent eventLiveView);
    void SignalDrop(QDropEvent* event);
    void SignalSoundBtnClicked();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    bool event(QEvent* event) override;

    void OnFrameReady(quint64 generation);
    void OnDecoderStatus(quint64 generation, int state, const QString& message);
    bool StartSource(const playwindow::CStreamSource& source, const std::string& cameraId);
    std::unique_ptr<playwindow::CStreamDecoder> MakeDecoder(const playwindow::CStreamSource& source, quint64 generation);
    // Main stream while the window has its grid to itself, sub stream otherwise.
    void ChooseStream(bool mainStream);
    void Retire(std::unique_ptr<playwindow::CStreamDecoder> decoder);
    void BeginPreview(const std::string& cameraId, const QString& url);
    // alert: a refusal the operator must act on (shown in red).
    void ShowMessage(const QString& text, int ms = 0, bool alert = false);
    void UpdateChildren();
    // Tells the decoders whether anyone can see this window.
    void UpdateSeen();
    // After a picture or a change of signal: the message the picture needs, if any.
    void ShowSignalState();

    int m_iIndex;
    CLiveViewControllerPlugin* m_pPlugin = nullptr;
    publicdatacontroller::StreamSettings m_settings;
    std::unique_ptr<playwindow::CStreamDecoder> m_decoder;
    quint64 m_generation = 0;      // of m_decoder's posts
    quint64 m_lastGeneration = 0;
    // The stream being switched to, shown once it has a picture.
    std::unique_ptr<playwindow::CStreamDecoder> m_pending;
    quint64 m_pendingGeneration = 0;
    QString m_pendingUrl;
    std::vector<std::unique_ptr<playwindow::CStreamDecoder>> m_retired;  // stopping, joined when done
    bool m_bProfiles = false;     // the camera has main and sub streams
    bool m_bMainStream = false;
    std::string m_strCameraID;
    QString m_strUrl;  // never with credentials
    int m_iStartValue = 0;
    bool m_bPreviewing = false;
    bool m_bSound = false;
    bool m_bSelected = false;
    bool m_bToolBar = false;
    bool m_bHover = false;
    QList<int> m_toolButtons;

    QLabel* m_pLiveViewWindow = nullptr;
    playwindow::CVideoSurface* m_pVideo = nullptr;
    QLabel* m_pMessage = nullptr;
    QFrame* m_pToolBar = nullptr;
    QLabel* m_pTitle = nullptr;
    QToolButton* m_pSoundBtn = nullptr;
    QPushButton* m_pCloseBtn = nullptr;
    class QTimer* m_pMessageTimer = nullptr;
    class QTimer* m_pStallTimer = nullptr;
    QElapsedTimer m_frameClock;  // since the last picture
    bool m_bStalled = false;
    bool m_bPlayedOnce = false;
    bool m_bPoorSignal = false;
};
