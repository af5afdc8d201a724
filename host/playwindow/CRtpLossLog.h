#pragma once
// Counts the RTP packets FFmpeg's RTSP reader finds missing, per stream.
// FFmpeg says so only in its log ("RTP: missed N packets", from the reorder
// queue, which RTSP over TCP gets when it is given a size), so this installs
// a log callback for the process that picks that line out and passes every
// line on to FFmpeg's own logger (which keeps its level). A stream's decode
// thread watches its format context from open to close and takes the count
// before each packet it decodes; the callback runs on the thread that logs.
#include <mutex>

namespace playwindow {

class CRtpLossLog final {
public:
    // Starts counting for this format context (installs the callback once).
    explicit CRtpLossLog(const void* formatContext);
    ~CRtpLossLog();
    CRtpLossLog(const CRtpLossLog&) = delete;
    CRtpLossLog& operator=(const CRtpLossLog&) = delete;

    // Packets found missing since the last call.
    int Take();

private:
    const void* m_context;
};

} // namespace playwindow
