#pragma once
// Decodes one live stream on its own thread with FFmpeg and keeps the newest
// picture, already scaled to the size its window asks for. A stream that
// cannot be opened, or ends, is retried with a growing pause (0.5 s up to 8 s).
// Every blocking FFmpeg call is bounded by rw_timeout and an interrupt
// callback with a deadline, so Stop() returns promptly; Stop() (and the
// destructor) join the thread. The callbacks run on the decode thread.
// HTTP(S) sources are fetched by the device transport and fed to FFmpeg
// (CTransportInput). A certificate that is not trusted, or a device asking
// for the password in clear, ends the stream for good: retrying would only
// knock on the same door. A stream without video is looked at again only
// now and then. Pictures are shown from a key frame on; when the stream's key
// frames stop coming (well past their usual interval), or data is lost (a
// decode error, a gap in the stream), the pictures built on the missing ones
// are held back until a key frame decodes cleanly, and the window is told it
// waits for one; when too many pictures are lost it is told the signal is
// poor. A window that is not seen has only its key frames decoded.
#include <QImage>
#include <QSize>
#include <QString>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "playwindow/CStreamSource.h"

namespace playwindow {

class CAudioOutput;

class CStreamDecoder final {
public:
    // CertificateNotTrusted and PasswordRefused are final (Stopped follows).
    // NoVideo: the stream carries no picture; tried again after a long pause.
    // WaitingForKeyFrame: connected, packets come, no whole picture can be shown yet.
    // PoorSignal: a large share of the pictures is lost; Playing (no message) when that ends.
    enum class State { Connecting, Playing, Retrying, CertificateNotTrusted, PasswordRefused, Stopped, NoVideo,
        WaitingForKeyFrame, PoorSignal };
    struct Callbacks {
        std::function<void()> frameReady;  // a new picture waits in TakeFrame()
        std::function<void(State, QString)> status;
    };

    CStreamDecoder(CStreamSource source, Callbacks callbacks);
    ~CStreamDecoder();
    CStreamDecoder(const CStreamDecoder&) = delete;
    CStreamDecoder& operator=(const CStreamDecoder&) = delete;

    void Start();
    void Stop();
    // Asks the thread to end without waiting; Stop() or the destructor joins it.
    void RequestStop();
    bool Finished() const { return m_finished.load(); }

    // The size of the area the picture is shown in; the picture keeps its aspect.
    void SetTargetSize(const QSize& size);
    // Takes the newest picture (null when none is waiting). Its rows may be
    // padded past the width (bytesPerLine): compare pictures row by row.
    QImage TakeFrame();
    // Whether the window is seen. Unseen, only key frames are decoded and
    // converted (a few a second, so the picture is current when it shows
    // again); once seen again, pictures show from the next key frame.
    void SetSeen(bool seen);

    // The stream's audio goes to the sound server while enabled. Fails when
    // the stream has no audio or no sound server answers.
    bool EnableSound(bool on);

    // Counters for diagnostics and tests.
    uint64_t DecodedFrames() const { return m_decoded.load(); }
    uint64_t BadPackets() const { return m_badPackets.load(); }
    // Decode thread CPU spent decoding and converting pictures (benches).
    uint64_t DecodeNs() const { return m_decodeNs.load(); }
    uint64_t ConvertNs() const { return m_convertNs.load(); }

    // Decoder contexts alive in this process (leak checks).
    static int LiveDecoders();

    // Pause before reconnect attempt n (0-based), in milliseconds.
    static int BackoffMs(int attempt);

private:
    struct Session;
    struct Playback;
    void Run();
    // Plays until the stream fails; true when pictures came. final: do not retry.
    bool RunOnce(QString& failure, State& final);
    // The steps of a session; false (with failure, and final when retrying is
    // pointless) ends it.
    bool OpenInput(Session& s, QString& failure, State& final);
    bool OpenCodecs(Session& s, QString& failure, State& final);
    bool DecodeVideo(Session& s, Playback& play, QString& failure);
    // Whether the decoded picture may be shown (whole, from a key frame on).
    bool Admit(Session& s, Playback& play);
    void Lost(Playback& play, int count);
    void Publish(QImage picture);
    void PlayAudio(Session& s);
    bool WaitBackoff(int ms);
    static int InterruptCallback(void* opaque);
    void ArmDeadline(int ms);

    const CStreamSource m_source;
    Callbacks m_cb;
    std::thread m_thread;
    std::atomic<bool> m_stop{false};
    std::atomic<bool> m_finished{false};
    std::atomic<int64_t> m_deadlineMs{0};
    std::mutex m_waitMutex;
    std::condition_variable m_waitCv;

    std::mutex m_frameMutex;
    QImage m_frame;
    std::atomic<bool> m_framePending{false};
    std::atomic<uint64_t> m_targetSize{0};  // width << 32 | height

    std::atomic<bool> m_bHasAudio{false};
    std::atomic<bool> m_bSound{false};
    std::mutex m_audioMutex;
    std::unique_ptr<CAudioOutput> m_audio;

    std::atomic<uint64_t> m_decoded{0};
    std::atomic<uint64_t> m_badPackets{0};
    std::atomic<uint64_t> m_decodeNs{0};
    std::atomic<uint64_t> m_convertNs{0};
    std::atomic<bool> m_seen{true};
};

} // namespace playwindow
