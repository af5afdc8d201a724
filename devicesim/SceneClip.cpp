// GStreamer first: its headers use names that Qt defines as macros.
#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>
#include <gst/gst.h>

#include "SceneClip.h"

#include <QDateTime>
#include <QImage>
#include <QString>
#include <string>

#include "PictureFactory.h"

namespace devicesim {

SceneClip::SceneClip(int channel, int width, int height, int fps, bool h265)
    : m_channel(channel), m_width(width), m_height(height), m_fps(std::max(1, fps)), m_h265(h265)
{
}

SceneClip::~SceneClip()
{
    m_stop = true;
    if (m_worker.joinable())
        m_worker.join();
}

bool SceneClip::Frame(long long n, std::vector<uint8_t>& unit)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!m_worker.joinable() && !m_done)
        m_worker = std::thread(&SceneClip::Encode, this);
    m_cv.wait(lock, [&] { return m_done || static_cast<long long>(m_units.size()) > n; });
    if (m_units.empty())
        return false;
    unit = m_units[static_cast<size_t>(n % static_cast<long long>(m_units.size()))];
    return true;
}

void SceneClip::Encode()
{
    const int count = 2 * m_fps;
    // A camera's encoder and rate; one group of pictures per loop, so
    // that each loop starts on a key frame.
    const std::string gop = std::to_string(count);
    const std::string kbps = std::to_string(m_width >= 1280 ? 4000 : 600);
    // Parameter sets with every key frame, as cameras send them.
    const std::string encoder = m_h265
        ? "x265enc tune=zerolatency speed-preset=ultrafast key-int-max=" + gop + " bitrate=" + kbps
            + " option-string=repeat-headers=1 ! video/x-h265,profile=main,stream-format=byte-stream,alignment=au"
        : "x264enc tune=zerolatency speed-preset=ultrafast key-int-max=" + gop + " bitrate=" + kbps
            + " threads=1 ! video/x-h264,profile=baseline,stream-format=byte-stream,alignment=au";
    const std::string launch = "appsrc name=src format=time block=true caps=video/x-raw,format=BGRx,width="
        + std::to_string(m_width) + ",height=" + std::to_string(m_height) + ",framerate=" + std::to_string(m_fps)
        + "/1 ! videoconvert ! video/x-raw,format=I420 ! " + encoder + " ! appsink name=sink sync=false";
    GError* error = nullptr;
    GstElement* pipeline = gst_parse_launch(launch.c_str(), &error);
    g_clear_error(&error);
    GstElement* src = pipeline != nullptr ? gst_bin_get_by_name(GST_BIN(pipeline), "src") : nullptr;
    GstElement* sink = pipeline != nullptr ? gst_bin_get_by_name(GST_BIN(pipeline), "sink") : nullptr;
    const auto publish = [this](GstSample* sample) {
        GstBuffer* buffer = gst_sample_get_buffer(sample);
        GstMapInfo map;
        if (buffer != nullptr && gst_buffer_map(buffer, &map, GST_MAP_READ)) {
            {
                std::lock_guard<std::mutex> lock(m_mutex);
                m_units.emplace_back(map.data, map.data + map.size);
            }
            m_cv.notify_all();
            gst_buffer_unmap(buffer, &map);
        }
        gst_sample_unref(sample);
    };
    if (src != nullptr && sink != nullptr && gst_element_set_state(pipeline, GST_STATE_PLAYING) != GST_STATE_CHANGE_FAILURE) {
        const qint64 t0 = QDateTime::currentMSecsSinceEpoch();
        const GstClockTime duration = GST_SECOND / guint64(m_fps);
        for (int i = 0; i < count && !m_stop; ++i) {
            const QImage img = PictureFactory::frameImage(m_channel, QStringLiteral("Channel %1").arg(m_channel),
                t0 + 1000LL * i / m_fps, m_width, m_height);
            GstBuffer* buffer = gst_buffer_new_memdup(img.constBits(), gsize(img.sizeInBytes()));
            GST_BUFFER_PTS(buffer) = GstClockTime(i) * duration;
            GST_BUFFER_DURATION(buffer) = duration;
            if (gst_app_src_push_buffer(GST_APP_SRC(src), buffer) != GST_FLOW_OK)
                break;
            while (GstSample* sample = gst_app_sink_try_pull_sample(GST_APP_SINK(sink), 0))
                publish(sample);
        }
        gst_app_src_end_of_stream(GST_APP_SRC(src));
        // The rest, until the end of the clip or an encoder error.
        GstBus* bus = gst_element_get_bus(pipeline);
        while (!m_stop) {
            if (GstSample* sample = gst_app_sink_try_pull_sample(GST_APP_SINK(sink), 100 * GST_MSECOND)) {
                publish(sample);
                continue;
            }
            if (gst_app_sink_is_eos(GST_APP_SINK(sink)))
                break;
            if (GstMessage* message = gst_bus_pop_filtered(bus, GST_MESSAGE_ERROR)) {
                gst_message_unref(message);
                break;
            }
        }
        gst_object_unref(bus);
    }
    if (pipeline != nullptr)
        gst_element_set_state(pipeline, GST_STATE_NULL);
    if (src != nullptr)
        gst_object_unref(src);
    if (sink != nullptr)
        gst_object_unref(sink);
    if (pipeline != nullptr)
        gst_object_unref(pipeline);
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_done = true;
    }
    m_cv.notify_all();
}

} // namespace devicesim
