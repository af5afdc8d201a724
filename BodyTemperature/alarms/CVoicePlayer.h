#pragma once
// The voice prompts of the information display. One process-wide player: a
// request while a prompt is playing is dropped, never queued, so a prompt is
// never cut off and a burst of alarms cannot pile up sound.
//
// Play() is called on the GUI thread. It stores the path (local 8-bit
// encoding), clears the idle flag and starts a worker thread that plays the
// file synchronously and sets the flag back to idle, whatever the outcome.
// The worker is owned by the player: it is joined before the next one starts,
// when the page goes away (Shutdown(), called by the information display's
// destructor, so that nothing runs while the host unloads the module) and,
// as a last resort, at unload. A prompt that does not play is logged once
// ("no sound output"), and again only after one played ("sound output back").
#include <QString>
#include <functional>
#include <string>

namespace BodyTemperature {

class CVoicePlayer final {
public:
    // The sound device: plays one file synchronously, true when it played.
    using Sink = std::function<bool(const std::string& localPath)>;

    // False when a prompt is still playing (the request is dropped) or the
    // path is empty; true when a worker was started.
    static bool Play(const QString& path);
    static bool IsIdle();
    // Requests accepted since start (for diagnostics and tests).
    static int StartedCount();

    // Replaces the sound device (tests); an empty function restores the real one.
    static void SetSink(Sink sink);
    // The real device: PlaySoundW on Windows; libsndfile + PulseAudio elsewhere.
    static bool PlayOnDevice(const std::string& localPath);
    // Stops a running prompt at the next buffer and joins the worker.
    static void Shutdown();

    CVoicePlayer() = delete;
};

} // namespace BodyTemperature
