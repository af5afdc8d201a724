#pragma once
// Whether a live stream loses too many of its pictures to be called a good
// signal: the share of pictures lost (damaged, or missing from the stream)
// over the last kSpanMs. Poor above kPoorShare, good again below half of it,
// so the verdict does not flicker at the edge; no verdict on fewer than
// kLeastPictures. One per decode session, on its decode thread; times are
// the caller's clock.
#include <cstdint>
#include <climits>
#include <deque>

namespace playwindow {

class CSignalQuality final {
public:
    static constexpr int64_t kSpanMs = 4000;
    static constexpr double kPoorShare = 0.2;
    static constexpr int kLeastPictures = 20;

    // count pictures came (lost: damaged) or were found missing (lost too).
    // True when the verdict changed; Poor() tells which way.
    bool Pictures(int count, bool lost, int64_t nowMs);
    bool Poor() const { return m_poor; }
    // How many pictures went missing before one with this time stamp: a
    // step well past the stream's usual one between pictures. Streams whose
    // time stamps go back (reordered pictures) are not judged this way.
    int MissingBefore(int64_t pts);

private:
    struct Entry {
        int64_t ms;
        int count;
        bool lost;
    };
    std::deque<Entry> m_entries;
    int m_total = 0;
    int m_lost = 0;
    bool m_poor = false;
    int64_t m_lastPts = INT64_MIN;
    int64_t m_step = 0;        // the least step between two pictures seen
    bool m_reordered = false;
};

} // namespace playwindow
