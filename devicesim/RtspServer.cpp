// GStreamer first: its headers use names that Qt defines as macros.
#include <gst/app/gstappsrc.h>
#include <gst/gst.h>
#include <gst/rtsp-server/rtsp-server.h>

#include "RtspServer.h"

#include <chrono>
#include <random>

#include "SceneClip.h"
#include "RtspControl.h"

namespace devicesim {

namespace {

struct StreamSpec {
    int channel;
    int width;
    int height;
    int fps;
    std::shared_ptr<SceneClip> clip;  // the scene at the stream's own size, looped
    std::string path;       // the mount, which names the stream's faults
    RtspControl* control;
    bool h265;
};

// One playing media: its own frame clock, and the clip (of the size) it sends now.
struct Playing {
    StreamSpec format;
    std::shared_ptr<SceneClip> clip = format.clip;  // the one sent now (another size after a switch)
    long long clipStart = 0;                        // frame number at which it started
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    long long frameNo = 0;
    std::minstd_rand lossDice{std::minstd_rand::default_seed};  // pay0's streaming thread only
};

// A switched size: a clip of the new size from its key frame on, with its own
// parameter sets, as a camera starts over when its resolution is changed.
void followSize(Playing& p)
{
    const RtspFault f = p.format.control->fault(p.format.path);
    const int w = f.width > 0 ? f.width : p.format.width;
    const int h = f.height > 0 ? f.height : p.format.height;
    if (w == p.clip->width() && h == p.clip->height())
        return;
    p.clip = w == p.format.width && h == p.format.height
        ? p.format.clip
        : std::make_shared<SceneClip>(p.format.channel, w, h, p.format.fps, p.format.h265);
    p.clipStart = p.frameNo;
}

// The next access unit of the clip. Late frames (while the clip is still being
// encoded) move the clock instead of coming in a burst afterwards.
void onNeedData(GstElement* appsrc, guint, gpointer user)
{
    auto* p = static_cast<Playing*>(user);
    followSize(*p);
    const int fps = std::max(1, p->format.fps);
    const auto frame = std::chrono::microseconds(1000000LL / fps);
    const auto now = std::chrono::steady_clock::now();
    if (now > p->start + p->frameNo * frame + frame)
        p->start = now - p->frameNo * frame;
    std::this_thread::sleep_until(p->start + p->frameNo * frame);
    std::vector<uint8_t> unit;
    if (!p->clip->Frame(p->frameNo - p->clipStart, unit)) {
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

GstPadProbeReturn onEncodedFrame(GstPad*, GstPadProbeInfo* info, gpointer user)
{
    const auto* p = static_cast<const Playing*>(user);
    GstBuffer* buffer = GST_PAD_PROBE_INFO_BUFFER(info);
    if (buffer != nullptr && !GST_BUFFER_FLAG_IS_SET(buffer, GST_BUFFER_FLAG_DELTA_UNIT)
        && p->format.control->fault(p->format.path).dropKeyFrames)
        return GST_PAD_PROBE_DROP;
    return GST_PAD_PROBE_OK;
}

GstPadProbeReturn onRtpPackets(GstPad*, GstPadProbeInfo* info, gpointer user)
{
    auto* p = static_cast<Playing*>(user);
    const double loss = p->format.control->fault(p->format.path).loss;
    if (loss <= 0)
        return GST_PAD_PROBE_OK;
    std::uniform_real_distribution<double> dice(0.0, 1.0);
    if ((GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_BUFFER) != 0)
        return dice(p->lossDice) < loss ? GST_PAD_PROBE_DROP : GST_PAD_PROBE_OK;
    GstBufferList* list = gst_buffer_list_make_writable(GST_PAD_PROBE_INFO_BUFFER_LIST(info));
    for (guint i = gst_buffer_list_length(list); i-- > 0;) {
        if (dice(p->lossDice) < loss)
            gst_buffer_list_remove(list, i, 1);
    }
    GST_PAD_PROBE_INFO_DATA(info) = list;
    return gst_buffer_list_length(list) == 0 ? GST_PAD_PROBE_DROP : GST_PAD_PROBE_OK;
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
    GstElement* pay = gst_bin_get_by_name_recurse_up(GST_BIN(element), "pay0");
    GstPad* in = gst_element_get_static_pad(pay, "sink");
    gst_pad_add_probe(in, GST_PAD_PROBE_TYPE_BUFFER, onEncodedFrame, playing, nullptr);
    gst_object_unref(in);
    GstPad* out = gst_element_get_static_pad(pay, "src");
    gst_pad_add_probe(out, GstPadProbeType(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_BUFFER_LIST), onRtpPackets,
        playing, nullptr);
    gst_object_unref(out);
    gst_object_unref(pay);
    gst_object_unref(element);
}

std::string Launch(bool h265)
{
    const std::string codec = h265 ? "h265" : "h264";
    return "( appsrc name=src is-live=true format=time caps=video/x-" + codec
        + ",stream-format=byte-stream,alignment=au ! " + codec + "parse ! rtp" + codec
        + "pay name=pay0 pt=96 config-interval=-1 )";
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

RtspServer::RtspServer(SimOptions opts, RtspControl& control) : m_opts(std::move(opts)), m_control(control) {}

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

    g_signal_connect(m_gst->server, "client-connected", G_CALLBACK(+[](GstRTSPServer*, GstRTSPClient*, gpointer c) {
        static_cast<RtspControl*>(c)->countConnection();
    }), &m_control);

    GstRTSPMountPoints* mounts = gst_rtsp_server_get_mount_points(m_gst->server);
    const auto mount = [&](const std::string& path, const std::string& launch) {
        GstRTSPMediaFactory* factory = gst_rtsp_media_factory_new();
        gst_rtsp_media_factory_set_launch(factory, launch.c_str());
        // One encoder for every client of a stream; gone when the last one leaves.
        gst_rtsp_media_factory_set_shared(factory, TRUE);
        gst_rtsp_media_factory_add_role(factory, "viewer", GST_RTSP_PERM_MEDIA_FACTORY_ACCESS, G_TYPE_BOOLEAN,
            TRUE, GST_RTSP_PERM_MEDIA_FACTORY_CONSTRUCT, G_TYPE_BOOLEAN, TRUE, nullptr);
        gst_rtsp_mount_points_add_factory(mounts, path.c_str(), factory);
        return factory;
    };
    for (int ch = 1; ch <= m_opts.channels; ++ch) {
        for (const bool main : {true, false}) {
            for (const bool h265 : {false, true}) {
                const std::string path = "/ch" + std::to_string(ch) + (h265 ? "/h265/" : "/h264/") + (main ? "main" : "sub");
                const int width = main ? kMainWidth : kSubWidth, height = main ? kMainHeight : kSubHeight;
                m_gst->formats.push_back(std::make_unique<StreamSpec>(StreamSpec{ch, width, height, m_opts.videoFps,
                    std::make_shared<SceneClip>(ch, width, height, m_opts.videoFps, h265), path, &m_control, h265}));
                GstRTSPMediaFactory* factory = mount(path, Launch(h265));
                g_signal_connect(factory, "media-configure", G_CALLBACK(onMediaConfigure), m_gst->formats.back().get());
            }
        }
        // The channel's microphone alone: a stream without any video.
        mount("/ch" + std::to_string(ch) + "/audio",
            "( audiotestsrc is-live=true wave=sine ! audio/x-raw,rate=8000,channels=1 ! alawenc ! rtppcmapay name=pay0 pt=8 )");
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
