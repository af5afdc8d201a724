#include "playwindow/CStreamDecoder.h"

#include <QUrl>
#include <chrono>
#include <ctime>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
}

#include "Base/Log.h"
#include "playwindow/CAudioOutput.h"
#include "playwindow/CKeyFrameGate.h"
#include "playwindow/CPictureConverter.h"
#include "playwindow/CRtpLossLog.h"
#include "playwindow/CSignalQuality.h"
#include "commlayer/CommErrors.h"
#include "playwindow/CRtspAuthGuard.h"
#include "playwindow/CTransportInput.h"

namespace playwindow {
namespace {

constexpr int kOpenTimeoutMs = 6000;
constexpr int kReadTimeoutMs = 5000;
// A stream without video gives the same answer for a while.
constexpr int kNoVideoRetryMs = 30000;
std::atomic<int> g_liveDecoders{0};

int64_t ThreadCpuNs()
{
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return int64_t(ts.tv_sec) * 1000000000 + ts.tv_nsec;
}

int64_t NowMs()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch()).count();
}

QString AvError(int code)
{
    char buf[AV_ERROR_MAX_STRING_SIZE] = {0};
    av_strerror(code, buf, sizeof(buf));
    return QString::fromUtf8(buf);
}

void QuietFfmpegOnce()
{
    static std::once_flag once;
    std::call_once(once, [] {
        // Damaged frames are counted and shown in the window; FFmpeg's own
        // per-frame messages would only flood the log.
        av_log_set_level(AV_LOG_FATAL);
        avformat_network_init();
    });
}

} // namespace

// Everything FFmpeg allocates for one connection; freed in one place.
struct CStreamDecoder::Session {
    AVFormatContext* fmt = nullptr;
    AVCodecContext* video = nullptr;
    AVCodecContext* audio = nullptr;
    CPictureConverter converter;
    SwrContext* swr = nullptr;
    AVPacket* pkt = nullptr;
    AVFrame* frame = nullptr;
    int videoIndex = -1;
    int audioIndex = -1;
    std::unique_ptr<CTransportInput> input;  // outlives fmt, which reads through it
    std::unique_ptr<CRtspAuthGuard> guard;   // likewise for RTSP, which FFmpeg reads through it

    ~Session()
    {
        if (video != nullptr)
            g_liveDecoders.fetch_sub(1);
        avcodec_free_context(&video);
        avcodec_free_context(&audio);
        swr_free(&swr);
        av_packet_free(&pkt);
        av_frame_free(&frame);
        avformat_close_input(&fmt);
    }
};

CStreamDecoder::CStreamDecoder(CStreamSource source, Callbacks callbacks)
    : m_source(std::move(source)), m_cb(std::move(callbacks))
{
}

CStreamDecoder::~CStreamDecoder()
{
    Stop();
}

int CStreamDecoder::LiveDecoders()
{
    return g_liveDecoders.load();
}

int CStreamDecoder::BackoffMs(int attempt)
{
    return 500 << std::min(attempt, 4);
}

void CStreamDecoder::Start()
{
    if (m_thread.joinable())
        return;
    QuietFfmpegOnce();
    m_stop = false;
    m_thread = std::thread(&CStreamDecoder::Run, this);
}

void CStreamDecoder::RequestStop()
{
    {
        std::lock_guard<std::mutex> lock(m_waitMutex);
        m_stop = true;
    }
    m_waitCv.notify_all();
}

void CStreamDecoder::Stop()
{
    RequestStop();
    if (m_thread.joinable())
        m_thread.join();
    std::lock_guard<std::mutex> lock(m_audioMutex);
    m_audio.reset();
    m_bSound = false;
}

void CStreamDecoder::SetSeen(bool seen)
{
    m_seen = seen;
}

void CStreamDecoder::SetTargetSize(const QSize& size)
{
    m_targetSize = (static_cast<uint64_t>(std::max(0, size.width())) << 32) | static_cast<uint32_t>(std::max(0, size.height()));
}

QImage CStreamDecoder::TakeFrame()
{
    std::lock_guard<std::mutex> lock(m_frameMutex);
    m_framePending = false;
    QImage img = std::move(m_frame);
    m_frame = QImage();
    return img;
}

bool CStreamDecoder::EnableSound(bool on)
{
    std::lock_guard<std::mutex> lock(m_audioMutex);
    if (!on) {
        m_bSound = false;
        m_audio.reset();
        return true;
    }
    if (!m_bHasAudio)
        return false;
    auto out = std::make_unique<CAudioOutput>();
    if (!out->Open())
        return false;
    m_audio = std::move(out);
    m_bSound = true;
    return true;
}

int CStreamDecoder::InterruptCallback(void* opaque)
{
    auto* self = static_cast<CStreamDecoder*>(opaque);
    return (self->m_stop.load() || NowMs() > self->m_deadlineMs.load()) ? 1 : 0;
}

void CStreamDecoder::ArmDeadline(int ms)
{
    m_deadlineMs = NowMs() + ms;
}

bool CStreamDecoder::WaitBackoff(int ms)
{
    std::unique_lock<std::mutex> lock(m_waitMutex);
    return !m_waitCv.wait_for(lock, std::chrono::milliseconds(ms), [this] { return m_stop.load(); });
}

void CStreamDecoder::Run()
{
    int attempt = 0;
    while (!m_stop) {
        if (m_cb.status)
            m_cb.status(State::Connecting, QString());
        QString failure;
        State final = State::Stopped;
        const bool played = RunOnce(failure, final);
        if (m_stop)
            break;
        if (final == State::NoVideo) {
            if (m_cb.status)
                m_cb.status(State::NoVideo, failure);
            if (!WaitBackoff(kNoVideoRetryMs))
                break;
            continue;
        }
        if (final != State::Stopped) {
            BASE_LOG_ERROR("stream %s refused: %s", qUtf8Printable(m_source.url), qUtf8Printable(failure));
            if (m_cb.status)
                m_cb.status(final, failure);
            break;
        }
        if (played)
            attempt = 0;  // it worked for a while: retry quickly
        BASE_LOG_WARN("stream %s: %s", qUtf8Printable(m_source.url), qUtf8Printable(failure));
        if (m_cb.status)
            m_cb.status(State::Retrying, failure);
        if (!WaitBackoff(BackoffMs(attempt++)))
            break;
    }
    if (m_cb.status)
        m_cb.status(State::Stopped, QString());
    m_finished = true;
}

namespace {
// Why the device transport could not open a stream, for the window and the log.
QString TransportFailure(const std::pair<int, int>& error, CStreamDecoder::State& final)
{
    switch (error.first) {
    case commlayer::kErrTls:
        final = CStreamDecoder::State::CertificateNotTrusted;
        return QStringLiteral("the device's certificate is not trusted (password not sent)");
    case commlayer::kErrInsecureAuth:
        final = CStreamDecoder::State::PasswordRefused;
        return QStringLiteral("the device asked for the password in clear text (not sent)");
    case commlayer::kErrPassword: return QStringLiteral("wrong user name or password");
    case commlayer::kErrConnect: return QStringLiteral("Connection refused");
    case commlayer::kErrTimeout: return QStringLiteral("no answer");
    case commlayer::kErrHttp:
    case commlayer::kErrDeviceStatus: return QStringLiteral("the device answered %1").arg(error.second);
    default: return QStringLiteral("transfer failed [%1-%2]").arg(error.first).arg(error.second);
    }
}

// What FFmpeg's own refusal to open means when the guard held the password back.
QString GuardRefusal(CRtspAuthGuard::Refusal refusal, const QString& failure, CStreamDecoder::State& final)
{
    switch (refusal) {
    case CRtspAuthGuard::Refusal::None:
        break;
    case CRtspAuthGuard::Refusal::PasswordNotSent:
        final = CStreamDecoder::State::PasswordRefused;
        return QStringLiteral("the device asked for the password in a way it may not travel (not sent)");
    case CRtspAuthGuard::Refusal::CertificateNotTrusted:
        final = CStreamDecoder::State::CertificateNotTrusted;
        return QStringLiteral("the device's certificate is not trusted (password not sent)");
    case CRtspAuthGuard::Refusal::RedirectedElsewhere:
        return QStringLiteral("the device redirected the stream to another address (not followed)");
    }
    return failure;
}

void SetRtspOptions(AVDictionary** opts, bool overUdp)
{
    // Interleaved in the RTSP connection: no loss, and one port through firewalls.
    av_dict_set(opts, "rtsp_transport", overUdp ? "udp" : "tcp", 0);
    // A reorder queue over TCP too, so packets a camera drops are noticed (CRtpLossLog).
    if (!overUdp)
        av_dict_set(opts, "reorder_queue_size", "4", 0);
    av_dict_set(opts, "timeout", "5000000", 0);
    // The codec parameters come with the session description: little to probe.
    av_dict_set(opts, "probesize", "200000", 0);
    av_dict_set(opts, "analyzeduration", "400000", 0);
}

// Streams up to 1080p: one thread per window, the windows spread over the
// cores. Slice threads cost a third more CPU per H.265 picture even when the
// camera sends one slice; frame threads a quarter (H.264) to a third (H.265)
// more in hand-offs, plus a frame of latency each. A 1080p picture takes a
// few milliseconds on one core, well inside its 40. Larger streams get frame
// threads.
void ChooseThreads(AVCodecContext* video, const AVCodecParameters* par)
{
    if (par->width * par->height > 1920 * 1088) {
        video->thread_count = std::max(1, std::min(4, int(std::thread::hardware_concurrency())));
        video->thread_type = FF_THREAD_FRAME | FF_THREAD_SLICE;
    } else {
        video->thread_count = 1;
    }
}

} // namespace

// What one decoding session keeps from picture to picture.
struct CStreamDecoder::Playback {
    Playback(bool decoderRecovers, AVFormatContext* fmt) : gate(decoderRecovers, NowMs()), rtpLoss(fmt) {}
    bool playing = false;
    int badInARow = 0;
    bool seen = true;
    CKeyFrameGate gate;
    CSignalQuality quality;
    CRtpLossLog rtpLoss;
    // Pictures still to come that may lack data, key frames or not. Two: the
    // reader notices a gap while it reads the packet after it, which may
    // already belong to the next picture.
    int tornPictures = 0;
};

bool CStreamDecoder::RunOnce(QString& failure, State& final)
{
    Session s;
    if (!OpenInput(s, failure, final) || !OpenCodecs(s, failure, final))
        return false;
    Playback play(s.video->codec_id == AV_CODEC_ID_H264, s.fmt);
    while (!m_stop) {
        ArmDeadline(kReadTimeoutMs);
        const int ret = av_read_frame(s.fmt, s.pkt);
        if (ret < 0) {
            failure = ret == AVERROR_EOF ? QStringLiteral("the stream ended") : AvError(ret);
            return play.playing;
        }
        if (s.pkt->stream_index == s.videoIndex) {
            if (!DecodeVideo(s, play, failure))
                return play.playing;
        } else if (s.pkt->stream_index == s.audioIndex && s.audio != nullptr && m_bSound) {
            PlayAudio(s);
        }
        av_packet_unref(s.pkt);
    }
    return play.playing;
}

bool CStreamDecoder::OpenInput(Session& s, QString& failure, State& final)
{
    s.fmt = avformat_alloc_context();
    if (s.fmt == nullptr) {
        failure = QStringLiteral("out of memory");
        return false;
    }
    s.fmt->interrupt_callback.callback = &CStreamDecoder::InterruptCallback;
    s.fmt->interrupt_callback.opaque = this;
    ArmDeadline(kOpenTimeoutMs);
    const AVInputFormat* format = nullptr;
    if (m_source.viaTransport) {
        s.input = std::make_unique<CTransportInput>(m_source.device, m_source.path, [this] {
            return InterruptCallback(this) != 0;
        });
        switch (s.input->Open()) {
        case CTransportInput::Outcome::Open:
            break;
        case CTransportInput::Outcome::Failed:
            failure = TransportFailure(s.input->Error(), final);
            return false;
        case CTransportInput::Outcome::Interrupted:
            failure = QStringLiteral("no answer");
            return false;
        }
        s.fmt->pb = s.input->Io();
        s.fmt->flags |= AVFMT_FLAG_CUSTOM_IO;
        format = s.input->Format();
    }
    AVDictionary* opts = nullptr;
    av_dict_set(&opts, "rw_timeout", "5000000", 0);
    av_dict_set(&opts, "probesize", "1000000", 0);
    av_dict_set(&opts, "analyzeduration", "1500000", 0);
    QString openUrl = m_source.url;
    if (m_source.url.startsWith(QLatin1String("rtsp:"), Qt::CaseInsensitive)
        || m_source.url.startsWith(QLatin1String("rtsps:"), Qt::CaseInsensitive)) {
        SetRtspOptions(&opts, m_source.rtspOverUdp);
        // FFmpeg talks to the guard on loopback, never to the device: the
        // guard alone holds the credentials and the device's certificate.
        s.guard = std::make_unique<CRtspAuthGuard>(m_source.device);
        if (!s.guard->Start()) {
            av_dict_free(&opts);
            failure = QStringLiteral("no local port");
            return false;
        }
        openUrl = s.guard->LocalUrl(m_source.path);
    }
    int ret = avformat_open_input(&s.fmt, m_source.viaTransport ? "" : openUrl.toUtf8().constData(), format, &opts);
    av_dict_free(&opts);
    if (ret < 0) {
        failure = GuardRefusal(s.guard ? s.guard->Refused() : CRtspAuthGuard::Refusal::None, AvError(ret), final);
        return false;
    }
    ArmDeadline(kOpenTimeoutMs);
    ret = avformat_find_stream_info(s.fmt, nullptr);
    if (ret < 0) {
        failure = AvError(ret);
        return false;
    }
    return true;
}

bool CStreamDecoder::OpenCodecs(Session& s, QString& failure, State& final)
{
    const AVCodec* vcodec = nullptr;
    s.videoIndex = av_find_best_stream(s.fmt, AVMEDIA_TYPE_VIDEO, -1, -1, &vcodec, 0);
    if (s.videoIndex < 0 || vcodec == nullptr) {
        failure = QStringLiteral("no video in the stream");
        final = State::NoVideo;
        return false;
    }
    s.video = avcodec_alloc_context3(vcodec);
    if (s.video == nullptr) {
        failure = QStringLiteral("out of memory");
        return false;
    }
    g_liveDecoders.fetch_add(1);
    const AVCodecParameters* par = s.fmt->streams[s.videoIndex]->codecpar;
    avcodec_parameters_to_context(s.video, par);
    ChooseThreads(s.video, par);
    const int ret = avcodec_open2(s.video, vcodec, nullptr);
    if (ret < 0) {
        failure = AvError(ret);
        return false;
    }
    const AVCodec* acodec = nullptr;
    s.audioIndex = av_find_best_stream(s.fmt, AVMEDIA_TYPE_AUDIO, -1, s.videoIndex, &acodec, 0);
    if (s.audioIndex >= 0 && acodec != nullptr) {
        s.audio = avcodec_alloc_context3(acodec);
        avcodec_parameters_to_context(s.audio, s.fmt->streams[s.audioIndex]->codecpar);
        if (avcodec_open2(s.audio, acodec, nullptr) < 0)
            avcodec_free_context(&s.audio);
    }
    m_bHasAudio = s.audio != nullptr;
    s.pkt = av_packet_alloc();
    s.frame = av_frame_alloc();
    return true;
}

bool CStreamDecoder::DecodeVideo(Session& s, Playback& play, QString& failure)
{
    if (play.seen != m_seen.load()) {
        // Unseen: key frames only. Seen again: what follows the next key frame.
        play.seen = !play.seen;
        s.video->skip_frame = play.seen ? AVDISCARD_DEFAULT : AVDISCARD_NONKEY;
        if (play.seen)
            play.gate.Damaged(true);
    }
    const bool keyPacket = (s.pkt->flags & AV_PKT_FLAG_KEY) != 0;
    // A picture lost whole shows as a step in the time stamps; one lost in
    // part, as packets missing from the RTP sequence.
    const int missing = s.pkt->pts != AV_NOPTS_VALUE ? play.quality.MissingBefore(s.pkt->pts) : 0;
    const bool torn = play.rtpLoss.Take() > 0;
    if (torn)
        play.tornPictures = 2;
    if (play.playing && (missing > 0 || torn)) {
        play.gate.Damaged();
        Lost(play, std::max(missing, 1));
    }
    // A key packet mends what was lost: no need to say so for it.
    if (!keyPacket && play.gate.SayWaiting(NowMs()) && m_cb.status)
        m_cb.status(State::WaitingForKeyFrame, QString());
    int64_t mark = ThreadCpuNs();
    const int ret = avcodec_send_packet(s.video, s.pkt);
    if (ret < 0 && ret != AVERROR(EAGAIN)) {
        m_decodeNs += uint64_t(ThreadCpuNs() - mark);
        ++m_badPackets;
        // Before its first picture a stream joined between key frames fails
        // until one comes (parameter sets ride with it): that is waiting.
        if (!play.playing)
            return true;
        play.gate.Damaged();
        Lost(play, 1);
        if (++play.badInARow == 1 && m_cb.status)
            m_cb.status(State::Playing, QStringLiteral("damaged frame skipped"));
        if (play.badInARow > 50) {
            failure = QStringLiteral("the stream cannot be decoded");
            return false;
        }
        return true;
    }
    while (avcodec_receive_frame(s.video, s.frame) == 0) {
        const int64_t decoded = ThreadCpuNs();
        m_decodeNs += uint64_t(decoded - mark);
        mark = decoded;
        QImage picture;
        if (Admit(s, play)) {
            const uint64_t target = m_targetSize.load();
            picture = s.converter.Convert(*s.frame,
                QSize(static_cast<int>(target >> 32), static_cast<int>(target & 0xffffffffu)));
            if (picture.isNull())
                ++m_badPackets;
        }
        av_frame_unref(s.frame);
        if (!picture.isNull()) {
            ++m_decoded;
            if (!play.playing) {
                play.playing = true;
                if (m_cb.status)
                    m_cb.status(State::Playing, QString());
            }
            Publish(std::move(picture));
        }
        const int64_t converted = ThreadCpuNs();
        m_convertNs += uint64_t(converted - mark);
        mark = converted;
    }
    return true;
}

void CStreamDecoder::Lost(Playback& play, int count)
{
    if (play.quality.Pictures(count, true, NowMs()) && m_cb.status)
        m_cb.status(State::PoorSignal, QString());
}

bool CStreamDecoder::Admit(Session& s, Playback& play)
{
    play.badInARow = 0;  // the decoder follows the stream, whole pictures or not
    const bool damaged = play.tornPictures > 0 || s.frame->decode_error_flags != 0
        || (s.frame->flags & AV_FRAME_FLAG_CORRUPT) != 0;
    play.tornPictures = std::max(0, play.tornPictures - 1);
    if (play.playing && play.quality.Pictures(1, damaged, NowMs()) && m_cb.status)
        m_cb.status(play.quality.Poor() ? State::PoorSignal : State::Playing, QString());
    if (!play.gate.Admit(s.frame->key_frame != 0, damaged, NowMs()) || s.frame->width <= 0 || s.frame->height <= 0) {
        if (damaged)
            ++m_badPackets;
        return false;
    }
    return true;
}

void CStreamDecoder::Publish(QImage picture)
{
    {
        std::lock_guard<std::mutex> lock(m_frameMutex);
        m_frame = std::move(picture);
    }
    // One notification per picture the window has not taken yet: a busy GUI
    // skips pictures instead of queueing them.
    if (!m_framePending.exchange(true) && m_cb.frameReady)
        m_cb.frameReady();
}

void CStreamDecoder::PlayAudio(Session& s)
{
    if (avcodec_send_packet(s.audio, s.pkt) < 0)
        return;
    while (avcodec_receive_frame(s.audio, s.frame) == 0) {
        if (s.swr == nullptr) {
            AVChannelLayout outLayout;
            av_channel_layout_default(&outLayout, CAudioOutput::kChannels);
            swr_alloc_set_opts2(&s.swr, &outLayout, AV_SAMPLE_FMT_S16, CAudioOutput::kRate, &s.frame->ch_layout,
                static_cast<AVSampleFormat>(s.frame->format), s.frame->sample_rate, 0, nullptr);
            if (s.swr != nullptr && swr_init(s.swr) < 0)
                swr_free(&s.swr);
        }
        if (s.swr != nullptr) {
            const int maxOut = swr_get_out_samples(s.swr, s.frame->nb_samples);
            std::vector<int16_t> out(static_cast<size_t>(std::max(0, maxOut)) * CAudioOutput::kChannels);
            uint8_t* outPlanes[1] = {reinterpret_cast<uint8_t*>(out.data())};
            const int n = swr_convert(s.swr, outPlanes, maxOut, const_cast<const uint8_t**>(s.frame->extended_data),
                s.frame->nb_samples);
            if (n > 0) {
                out.resize(static_cast<size_t>(n) * CAudioOutput::kChannels);
                std::lock_guard<std::mutex> lock(m_audioMutex);
                if (m_audio)
                    m_audio->Push(std::move(out));
            }
        }
        av_frame_unref(s.frame);
    }
}

} // namespace playwindow
