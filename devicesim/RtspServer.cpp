// GStreamer first: its headers use names that Qt defines as macros.
#include <gst/app/gstappsrc.h>
#include <gst/gst.h>
#include <gst/rtsp-server/rtsp-server.h>

#include "RtspServer.h"

#include <QDateTime>
#include <QImage>
#include <QString>
#include <chrono>
#include <cstring>

#include "PictureFactory.h"
#include "SceneClip.h"

namespace devicesim {

namespace {

struct StreamSpec {
    int channel;
    int width;
    int height;
    int fps;
    std::shared_ptr<SceneClip> clip;  // set: the stream loops this clip instead of encoding live
};

// One playing media: its own frame clock.
struct Playing {
    StreamSpec format;
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    long long frameNo = 0;
};

// The next access unit of the clip. Late frames (while the clip is still being
// encoded) move the clock instead of coming in a burst afterwards.
void pushClipFrame(GstElement* appsrc, Playing* p)
{
    const int fps = std::max(1, p->format.fps);
    const auto frame = std::chrono::microseconds(1000000LL / fps);
    const auto now = std::chrono::steady_clock::now();
    if (now > p->start + p->frameNo * frame + frame)
        p->start = now - p->frameNo * frame;
    std::this_thread::sleep_until(p->start + p->frameNo * frame);
    std::vector<uint8_t> unit;
    if (!p->format.clip->Frame(p->frameNo, unit)) {
        gst_app_src_end_of_stream(GST_APP_SRC(appsrc));
        return;
    }
    const GstClockTime duration = GST_SECOND / guint64(fps);
    GstBuffer* buffer = gst_buffer_new_memdup(unit.data(), unit.size());
    GST_BUFFER_PTS(buffer) = GstClockTime(p->frameNo) * duration;
    GST_BUFFER_DURATION(buffer) = duration;
    ++p->frameNo;
    gst_app_src_push_buffer(GST_APP_SRC(appsrc), buffer);
}

void onNeedData(GstElement* appsrc, guint, gpointer user)
{
    auto* p = static_cast<Playing*>(user);
    if (p->format.clip) {
        pushClipFrame(appsrc, p);
        return;
    }
    const auto due = p->start + std::chrono::microseconds(1000000LL * p->frameNo / std::max(1, p->format.fps));
    std::this_thread::sleep_until(due);
    // Time stamps from the frame count: a late frame keeps its place instead of
    // sharing a stamp with the next one.
    const GstClockTime duration = GST_SECOND / guint64(std::max(1, p->format.fps));
    const GstClockTime pts = GstClockTime(p->frameNo) * duration;
    ++p->frameNo;
    const QImage img = PictureFactory::frameImage(p->format.channel, QStringLiteral("Channel %1").arg(p->format.channel),
        QDateTime::currentMSecsSinceEpoch(), p->format.width, p->format.height);
    const gsize size = gsize(img.sizeInBytes());
    GstBuffer* buffer = gst_buffer_new_allocate(nullptr, size, nullptr);
    gst_buffer_fill(buffer, 0, img.constBits(), size);
    GST_BUFFER_PTS(buffer) = pts;
    GST_BUFFER_DURATION(buffer) = duration;
    gst_app_src_push_buffer(GST_APP_SRC(appsrc), buffer);
}

void onMediaConfigure(GstRTSPMediaFactory*, GstRTSPMedia* media, gpointer user)
{
    const auto* format = static_cast<const StreamSpec*>(user);
    GstElement* element = gst_rtsp_media_get_element(media);
    GstElement* appsrc = gst_bin_get_by_name_recurse_up(GST_BIN(element), "src");
    auto* playing = new Playing{*format};
    g_object_set_data_full(G_OBJECT(media), "bt-playing", playing, [](gpointer p) { delete static_cast<Playing*>(p); });
    g_signal_connect(appsrc, "need-data", G_CALLBACK(onNeedData), playing);
    gst_object_unref(appsrc);
    gst_object_unref(element);
}

std::string Launch(const StreamSpec& s, bool h265)
{
    const int kbps = s.width >= 1280 ? 4000 : 600;
    const std::string caps = "video/x-raw,format=BGRx,width=" + std::to_string(s.width) + ",height="
        + std::to_string(s.height) + ",framerate=" + std::to_string(s.fps) + "/1";
    const std::string gop = std::to_string(2 * s.fps);
    if (s.clip)
        return "( appsrc name=src is-live=true format=time caps=video/x-h265,stream-format=byte-stream,alignment=au"
               " ! h265parse ! rtph265pay name=pay0 pt=96 config-interval=-1 )";
    const std::string encoder = h265
        ? "x265enc tune=zerolatency speed-preset=ultrafast key-int-max=" + gop + " bitrate=" + std::to_string(kbps)
            + " ! video/x-h265,profile=main ! rtph265pay name=pay0 pt=96 config-interval=-1"
        : "x264enc tune=zerolatency speed-preset=ultrafast key-int-max=" + gop + " bitrate=" + std::to_string(kbps)
            + " threads=1 ! video/x-h264,profile=baseline ! rtph264pay name=pay0 pt=96 config-interval=-1";
    return "( appsrc name=src is-live=true format=time caps=" + caps
        + " ! videoconvert ! video/x-raw,format=I420 ! " + encoder + " )";
}

} // namespace

nlohmann::json RtspServer::describe(const SimOptions& opts, int channel)
{
    nlohmann::json streams = nlohmann::json::object();
    for (const bool main : {true, false}) {
        nlohmann::json s{{"width", main ? kMainWidth : kSubWidth}, {"height", main ? kMainHeight : kSubHeight},
            {"fps", opts.videoFps}};
        for (const char* codec : {"h264", "h265"})
            s[codec] = "rtsp://" + opts.listen + ":" + std::to_string(opts.rtspPort) + "/ch" + std::to_string(channel)
                + "/" + codec + "/" + (main ? "main" : "sub");
        streams[main ? "main" : "sub"] = s;
    }
    return streams;
}

struct RtspServer::Gst {
    GMainContext* context = nullptr;
    GMainLoop* loop = nullptr;
    GstRTSPServer* server = nullptr;
    std::vector<std::unique_ptr<StreamSpec>> formats;  // referenced by the factories' signal handlers

    ~Gst()
    {
        if (server != nullptr)
            g_object_unref(server);
        if (loop != nullptr)
            g_main_loop_unref(loop);
        if (context != nullptr)
            g_main_context_unref(context);
    }
};

RtspServer::RtspServer(SimOptions opts) : m_opts(std::move(opts)) {}

RtspServer::~RtspServer()
{
    stop();
}

bool RtspServer::start(std::string& error)
{
    gst_init(nullptr, nullptr);
    m_gst = std::make_unique<Gst>();
    m_gst->context = g_main_context_new();
    m_gst->loop = g_main_loop_new(m_gst->context, FALSE);
    m_gst->server = gst_rtsp_server_new();
    gst_rtsp_server_set_address(m_gst->server, m_opts.listen.c_str());
    gst_rtsp_server_set_service(m_gst->server, std::to_string(m_opts.rtspPort).c_str());

    GstRTSPAuth* auth = gst_rtsp_auth_new();
    gst_rtsp_auth_set_supported_methods(auth, GST_RTSP_AUTH_DIGEST);
    GstRTSPToken* token = gst_rtsp_token_new(GST_RTSP_TOKEN_MEDIA_FACTORY_ROLE, G_TYPE_STRING, "viewer", nullptr);
    gst_rtsp_auth_add_digest(auth, m_opts.user.c_str(), m_opts.password.c_str(), token);
    gst_rtsp_token_unref(token);
    gst_rtsp_server_set_auth(m_gst->server, auth);
    g_object_unref(auth);

    GstRTSPMountPoints* mounts = gst_rtsp_server_get_mount_points(m_gst->server);
    for (int ch = 1; ch <= m_opts.channels; ++ch) {
        for (const bool main : {true, false}) {
            for (const bool h265 : {false, true}) {
                const int width = main ? kMainWidth : kSubWidth, height = main ? kMainHeight : kSubHeight;
                // Live 1080p H.265 costs the emulator about a core: that one is looped.
                m_gst->formats.push_back(std::make_unique<StreamSpec>(StreamSpec{ch, width, height, m_opts.videoFps,
                    main && h265 ? std::make_shared<SceneClip>(ch, width, height, m_opts.videoFps) : nullptr}));
                GstRTSPMediaFactory* factory = gst_rtsp_media_factory_new();
                gst_rtsp_media_factory_set_launch(factory, Launch(*m_gst->formats.back(), h265).c_str());
                // One encoder for every client of a stream; gone when the last one leaves.
                gst_rtsp_media_factory_set_shared(factory, TRUE);
                gst_rtsp_media_factory_add_role(factory, "viewer", GST_RTSP_PERM_MEDIA_FACTORY_ACCESS, G_TYPE_BOOLEAN,
                    TRUE, GST_RTSP_PERM_MEDIA_FACTORY_CONSTRUCT, G_TYPE_BOOLEAN, TRUE, nullptr);
                g_signal_connect(factory, "media-configure", G_CALLBACK(onMediaConfigure), m_gst->formats.back().get());
                const std::string path = "/ch" + std::to_string(ch) + (h265 ? "/h265/" : "/h264/") + (main ? "main" : "sub");
                gst_rtsp_mount_points_add_factory(mounts, path.c_str(), factory);
            }
        }
    }
    g_object_unref(mounts);
    if (gst_rtsp_server_attach(m_gst->server, m_gst->context) == 0) {
        error = "cannot listen for RTSP on " + m_opts.listen + ":" + std::to_string(m_opts.rtspPort);
        m_gst.reset();
        return false;
    }
    m_port = gst_rtsp_server_get_bound_port(m_gst->server);
    GMainLoop* loop = m_gst->loop;
    m_loop = std::thread([loop] { g_main_loop_run(loop); });
    return true;
}

void RtspServer::stop()
{
    if (!m_gst)
        return;
    // Queued to the loop's own context, so a quit cannot slip in before the loop runs.
    g_main_context_invoke(m_gst->context, [](gpointer loop) -> gboolean {
        g_main_loop_quit(static_cast<GMainLoop*>(loop));
        return G_SOURCE_REMOVE;
    }, m_gst->loop);
    if (m_loop.joinable())
        m_loop.join();
    m_gst.reset();
}

} // namespace devicesim
