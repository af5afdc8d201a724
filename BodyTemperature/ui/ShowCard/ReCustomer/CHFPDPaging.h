#pragma once
// Page arithmetic of the frequent-person detail view: 20 captures a page,
// pages and pictures counted from 1. Pure functions, any thread; the pager
// and the view only show what these decide.
#include <cstddef>
#include <cstdint>
#include <QString>

namespace BodyTemperature {

class CHFPDPaging final {
public:
    static constexpr uint32_t kPageSize = 20;

    struct Buttons {
        bool first = false;
        bool prev = false;
        bool next = false;
        bool last = false;
    };

    // Full pages plus one for a remainder (0 records: 0 pages).
    static uint32_t PageCount(size_t records);
    // What the pager shows and allows: never fewer than 1 page.
    static uint32_t PagerPageCount(size_t records);
    // 0-based record of picture k (1-based) of page p (1-based).
    static size_t RecordIndex(uint32_t page, uint32_t picture);
    // Captures shown on page p (0 past the end).
    static uint32_t PictureCount(size_t records, uint32_t page);
    static Buttons ButtonsFor(uint32_t current, uint32_t pageCount);
    // The page the "GoTo" text asks for: false for an empty or unreadable text,
    // one outside 1..pageCount, or the current page.
    static bool JumpTarget(const QString& text, uint32_t current, uint32_t pageCount, uint32_t& target);
};

} // namespace BodyTemperature
