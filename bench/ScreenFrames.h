#pragma once
// Counts the pictures that reach the screen in each of a few rectangles, from
// the X server's damage reports on the top-level windows: a player's (or the
// host's) put of a picture damages its window's rectangle. Reports for one
// rectangle closer together than a picture interval are one picture. Owns its
// own connection to $DISPLAY; the bench's GUI thread reads it.
#include <QPoint>
#include <QRect>
#include <map>
#include <vector>

class ScreenFrames final {
public:
    explicit ScreenFrames(std::vector<QRect> cells);
    ~ScreenFrames();
    ScreenFrames(const ScreenFrames&) = delete;
    ScreenFrames& operator=(const ScreenFrames&) = delete;

    // False when the X server has no damage extension (nothing is counted).
    bool Valid() const { return m_valid; }
    // The connection's socket, readable when reports wait.
    int Socket() const;
    // Takes the reports that came (and watches windows that appeared).
    void Read();
    void Reset();
    // Pictures shown per rectangle since the last Reset().
    const std::vector<int>& Counts() const { return m_counts; }

private:
    void Track();
    void Watch(unsigned long window);

    std::vector<QRect> m_cells;
    std::vector<int> m_counts;
    std::vector<unsigned long> m_last;  // X server time of each rectangle's last picture
    struct _XDisplay* m_display = nullptr;
    bool m_valid = false;
    int m_eventBase = 0;
    std::map<unsigned long, QPoint> m_windows;  // watched top-level windows and their places
};
