#pragma once
// The size a decoded picture is converted to for its window: the largest of
// its aspect that fits the area, with an even width and height, because the
// colour converter's fast paths take only even sizes (an odd width costs
// about five times as much); or the picture's own size when that is within
// 1% of the area (drawn 1:1, centred, losing or leaving at most 1% at the
// edges: conversion without scaling costs a fifth of a scaled one at
// 1080p). Pure arithmetic; any thread.
#include <QSize>

namespace playwindow {

class CPictureFit final {
public:
    static QSize Shown(const QSize& picture, const QSize& area);
};

} // namespace playwindow
