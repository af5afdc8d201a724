#include "ui/ShowCard/ReCustomer/CHFPDPaging.h"

#include <algorithm>

namespace BodyTemperature {

uint32_t CHFPDPaging::PageCount(size_t records)
{
    return uint32_t(records / kPageSize + (records % kPageSize != 0 ? 1 : 0));
}

uint32_t CHFPDPaging::PagerPageCount(size_t records)
{
    return std::max<uint32_t>(1, PageCount(records));
}

size_t CHFPDPaging::RecordIndex(uint32_t page, uint32_t picture)
{
    return size_t(page - 1) * kPageSize + picture - 1;
}

uint32_t CHFPDPaging::PictureCount(size_t records, uint32_t page)
{
    if (page == 0)
        return 0;
    const size_t first = size_t(page - 1) * kPageSize;
    if (first >= records)
        return 0;
    return uint32_t(std::min<size_t>(kPageSize, records - first));
}

CHFPDPaging::Buttons CHFPDPaging::ButtonsFor(uint32_t current, uint32_t pageCount)
{
    Buttons b;
    b.first = b.prev = current != 1;
    b.next = b.last = current != pageCount;
    return b;
}

bool CHFPDPaging::JumpTarget(const QString& text, uint32_t current, uint32_t pageCount, uint32_t& target)
{
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return false;
    bool ok = false;
    const uint page = trimmed.toUInt(&ok);
    if (!ok || page < 1 || page > pageCount || page == current)
        return false;
    target = page;
    return true;
}

} // namespace BodyTemperature
