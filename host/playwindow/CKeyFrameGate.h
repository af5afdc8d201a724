#pragma once
// Which decoded pictures of a live stream are shown: only whole ones. From a
// key frame on; after a decode error or a gap in the stream, none until a
// key frame decodes cleanly (what came between builds on lost data: smears
// and grey blocks); and none built on a key frame that never came. H.264
// holds back pictures itself until it has recovered (recovery points
// included) when joined between key frames; other decoders hand out
// pictures built on references they never had. A key frame is overdue once
// the pictures since the last one are twice the longest run between two key
// frames the stream has shown, and kWaitMs have passed: long or varying
// groups of pictures, periodic intra refresh and a stream that pauses are
// left alone; one that showed a single key frame is never held back. One
// per decode session, used on its decode thread; times are the caller's clock.
#include <cstdint>

namespace playwindow {

class CKeyFrameGate final {
public:
    // How long packets may come without a picture to show before the window
    // is told, and the least wait for an overdue key frame.
    static constexpr int64_t kWaitMs = 3000;

    CKeyFrameGate(bool decoderRecovers, int64_t nowMs);

    // A decoded picture, damaged ones too (they still carry the chain on):
    // whether to show it.
    bool Admit(bool key, bool damaged, int64_t nowMs);
    // Data was lost (a packet the decoder refused, a gap in the stream):
    // nothing is shown until a key frame decodes cleanly. quiet: the wait
    // is not said (pictures were skipped on purpose).
    void Damaged(bool quiet = false);
    // Called per packet: true once per wait, at once after damage or when a
    // key frame has become overdue, otherwise when nothing could be shown for
    // a while; so the window says why its picture stands still.
    bool SayWaiting(int64_t nowMs);

private:
    const bool m_decoderRecovers;
    bool m_showing = false;
    bool m_shownOnce = false;
    bool m_broken = false;       // a key frame is needed before anything is shown
    bool m_waitingSaid = false;
    int64_t m_waitSinceMs;
    int64_t m_lastKeyMs = -1;
    int64_t m_sinceKey = 0;     // pictures since the last key frame
    int64_t m_longestRun = 0;   // the most pictures seen from one key frame to the next
};

} // namespace playwindow
