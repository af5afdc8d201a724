#include "alarms/CVoicePlayer.h"

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

#include "Base/Log.h"

#ifdef Q_OS_WIN
#include <windows.h>
#include <mmsystem.h>
#ifdef _MSC_VER
#pragma comment(lib, "winmm.lib")
#endif
#else
#include <pulse/error.h>
#include <pulse/simple.h>
#include <sndfile.h>
#endif

namespace BodyTemperature {
namespace {

// The GUI thread writes the path only while the flag says idle; the worker
// reads it only after it was started.
std::atomic<bool> g_bIdle{true};
std::atomic<bool> g_bStop{false};
std::atomic<int> g_iStarted{0};
std::string g_strPath;
// With no sound server every prompt fails within milliseconds; at several
// alarms a second a line per failure would flood the log, so only the changes
// between "plays" and "does not play" are logged.
std::atomic<bool> g_bSilent{false};

// Owns the worker so that it never outlives the module. The page stops and
// joins it when it is destroyed (before the host unloads the module); this
// destructor is the last resort at unload.
struct Worker {
    std::thread thread;
    std::mutex sinkMutex;
    CVoicePlayer::Sink sink;

    void join()
    {
        if (thread.joinable())
            thread.join();
    }
    ~Worker()
    {
        g_bStop = true;
        join();
    }
};

Worker& worker()
{
    static Worker s_worker;
    return s_worker;
}

void run()
{
    CVoicePlayer::Sink sink;
    {
        std::lock_guard<std::mutex> lock(worker().sinkMutex);
        sink = worker().sink;
    }
    const std::string path = g_strPath;
    const bool played = sink ? sink(path) : CVoicePlayer::PlayOnDevice(path);
    // No logging once a stop was asked for: the module may be unloading, and
    // the logger's first use on a thread needs the loader lock that the
    // unloading thread holds while it waits for this one.
    if (!g_bStop) {
        if (!played && !g_bSilent.exchange(true))
            BASE_LOG_WARN("no sound output (voice prompt %s did not play); voice prompts stay silent until one "
                          "plays again", path.c_str());
        else if (played && g_bSilent.exchange(false))
            BASE_LOG_INFO("sound output back");
    }
    g_bIdle = true;
}

} // namespace

bool CVoicePlayer::Play(const QString& path)
{
    if (path.isEmpty())
        return false;
    bool expected = true;
    if (!g_bIdle.compare_exchange_strong(expected, false))
        return false;
    Worker& w = worker();
    // The previous worker has already set the flag: it is finishing, not playing.
    w.join();
    g_strPath = path.toLocal8Bit().toStdString();
    g_bStop = false;
    ++g_iStarted;
    w.thread = std::thread(run);
    return true;
}

bool CVoicePlayer::IsIdle()
{
    return g_bIdle;
}

int CVoicePlayer::StartedCount()
{
    return g_iStarted;
}

void CVoicePlayer::SetSink(Sink sink)
{
    Worker& w = worker();
    std::lock_guard<std::mutex> lock(w.sinkMutex);
    w.sink = std::move(sink);
}

void CVoicePlayer::Shutdown()
{
    g_bStop = true;
    worker().join();
    g_bStop = false;
}

#ifdef Q_OS_WIN

bool CVoicePlayer::PlayOnDevice(const std::string& localPath)
{
    wchar_t wide[256] = {0};
    MultiByteToWideChar(CP_ACP, 0, localPath.c_str(), -1, wide, 256);
    // SND_FILENAME alone: synchronous, the worker returns when the prompt ends.
    return PlaySoundW(wide, nullptr, SND_FILENAME) != FALSE;
}

#else

bool CVoicePlayer::PlayOnDevice(const std::string& localPath)
{
    SF_INFO info{};
    SNDFILE* file = sf_open(localPath.c_str(), SFM_READ, &info);
    if (file == nullptr) {
        BASE_LOG_DEBUG("cannot read voice file %s: %s", localPath.c_str(), sf_strerror(nullptr));
        return false;
    }
    if ((info.format & SF_FORMAT_TYPEMASK) != SF_FORMAT_WAV || info.channels <= 0 || info.samplerate <= 0) {
        BASE_LOG_DEBUG("voice file %s is not a WAV file", localPath.c_str());
        sf_close(file);
        return false;
    }

    pa_sample_spec sample{};
    sample.format = PA_SAMPLE_S16LE;
    sample.rate = static_cast<uint32_t>(info.samplerate);
    sample.channels = static_cast<uint8_t>(info.channels);
    int error = 0;
    // Fails at once ("Connection refused") when no sound server runs.
    pa_simple* stream = pa_simple_new(nullptr, "BodyTemperature", PA_STREAM_PLAYBACK, nullptr, "voice prompt",
        &sample, nullptr, nullptr, &error);
    if (stream == nullptr) {
        BASE_LOG_DEBUG("no sound output for %s: %s", localPath.c_str(), pa_strerror(error));
        sf_close(file);
        return false;
    }

    bool ok = true;
    std::vector<short> buffer(static_cast<size_t>(1024 * info.channels));
    for (;;) {
        if (g_bStop) {
            ok = false;
            break;
        }
        const sf_count_t frames = sf_readf_short(file, buffer.data(), 1024);
        if (frames <= 0)
            break;
        const size_t bytes = static_cast<size_t>(frames) * static_cast<size_t>(info.channels) * sizeof(short);
        if (pa_simple_write(stream, buffer.data(), bytes, &error) < 0) {
            BASE_LOG_DEBUG("sound output failed for %s: %s", localPath.c_str(), pa_strerror(error));
            ok = false;
            break;
        }
    }
    if (ok && pa_simple_drain(stream, &error) < 0)
        ok = false;
    pa_simple_free(stream);
    sf_close(file);
    return ok;
}

#endif

} // namespace BodyTemperature
