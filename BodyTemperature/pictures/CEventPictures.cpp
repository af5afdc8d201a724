#include "pictures/CEventPictures.h"

#include <deque>

#include "pictures/PictureDecoder.h"

namespace BodyTemperature {

namespace {

bool SameRect(const protocol::PictureRect& a, const protocol::PictureRect& b)
{
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}

std::mutex g_recentMutex;
std::deque<std::weak_ptr<CEventPictures>> g_recent;

} // namespace

PictureSource CEventPictures::FaceSourceOf(const protocol::IntelAlarmFaceInfo& block)
{
    PictureSource source;
    if (block.SubPic.isEmpty() || block.bNoSubPic) {
        source.bytes = block.bkPic;
        if (!block.faceRects.empty() && !block.faceRects.front().isWhole()) {
            source.crop = block.faceRects.front();
            source.cropped = true;
        }
    } else {
        source.bytes = block.SubPic;
    }
    return source;
}

PictureSource CEventPictures::ReturningFaceSourceOf(const protocol::IntelAlarmFaceInfo& block)
{
    PictureSource source;
    if (!block.SubPic.isEmpty()) {
        source.bytes = block.SubPic;
    } else if (!block.bkPic.isEmpty() && !block.faceRects.empty()) {
        source.bytes = block.bkPic;
        if (!block.faceRects.front().isWhole()) {
            source.crop = block.faceRects.front();
            source.cropped = true;
        }
    }
    return source;
}

CEventPictures::Entry& CEventPictures::EntryFor(const PictureSource& source)
{
    for (Entry& e : m_entries) {
        if (e.bytes.constData() == source.bytes.constData() && e.bytes.size() == source.bytes.size()
            && e.cropped == source.cropped && (!e.cropped || SameRect(e.crop, source.crop)))
            return e;
    }
    Entry e;
    e.bytes = source.bytes;
    e.crop = source.crop;
    e.cropped = source.cropped;
    m_entries.push_back(std::move(e));
    return m_entries.back();
}

void CEventPictures::DecodeInto(Entry& entry)
{
    ++m_iDecodeCount;
    entry.decoded = true;
    if (!entry.cropped) {
        entry.image = PictureDecoder::Decode(entry.bytes);
    } else {
        const QSize size = PictureDecoder::DeclaredSize(entry.bytes);
        const QRect rect = PictureDecoder::CropRectFor(size, entry.crop);
        // An empty rectangle keeps the whole picture, as a pixmap copy would.
        entry.image = rect.isEmpty() ? PictureDecoder::Decode(entry.bytes)
                                     : PictureDecoder::DecodeRegion(entry.bytes, rect);
    }
    entry.failed = entry.image.isNull();
}

QImage CEventPictures::Image(const PictureSource& source)
{
    if (source.isEmpty())
        return QImage();
    QImage result;
    bool fresh = false;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        Entry& entry = EntryFor(source);
        if (!entry.failed && entry.image.isNull()) {
            DecodeInto(entry);
            fresh = !entry.failed;
        }
        result = entry.image;
    }
    if (fresh)
        NoteRecentlyDecoded();
    return result;
}

QImage CEventPictures::CachedImage(const PictureSource& source)
{
    if (source.isEmpty())
        return QImage();
    // The GUI thread asks while a worker may be decoding this very picture.
    std::unique_lock<std::mutex> lock(m_mutex, std::try_to_lock);
    if (!lock.owns_lock())
        return QImage();
    for (const Entry& e : m_entries) {
        if (e.bytes.constData() == source.bytes.constData() && e.bytes.size() == source.bytes.size()
            && e.cropped == source.cropped && (!e.cropped || SameRect(e.crop, source.crop)))
            return e.image;
    }
    return QImage();
}

QImage CEventPictures::LargestCard(const PictureSource& source, const QImage& image)
{
    if (image.width() <= kLargestCard.width() || image.height() <= kLargestCard.height())
        return QImage();
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        const QImage made = EntryFor(source).largestCard;
        if (!made.isNull())
            return made;
    }
    const QImage largest = image.scaled(kLargestCard, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    std::lock_guard<std::mutex> lock(m_mutex);
    EntryFor(source).largestCard = largest;
    return largest;
}

void CEventPictures::Prepare(const PictureSource& source)
{
    if (source.isEmpty())
        return;
    const QImage image = Image(source);
    if (!image.isNull())
        LargestCard(source, image);
}

QPixmap CEventPictures::Scaled(const PictureSource& source, const QSize& size)
{
    if (source.isEmpty())
        return QPixmap();
    const bool fromLargest = size == kLargestCard
        || (size.width() < kLargestCard.width() && size.height() < kLargestCard.height());
    QImage largest;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        Entry& entry = EntryFor(source);
        if (entry.failed)
            return QPixmap();
        for (const auto& s : entry.scaled)
            if (s.first == size)
                return s.second;
        if (fromLargest)
            largest = entry.largestCard;
    }
    const auto smooth = [](const QImage& from, const QSize& to) {
        return from.scaled(to, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    };
    QImage image;
    if (largest.isNull()) {  // not prepared; once prepared the decode may be released already
        image = Image(source);
        if (image.isNull())
            return QPixmap();
        if (fromLargest)
            largest = LargestCard(source, image);
    }
    QImage scaled = largest.isNull() ? smooth(image, size) : size == kLargestCard ? largest : smooth(largest, size);
    const QPixmap pixmap = QPixmap::fromImage(std::move(scaled));
    std::lock_guard<std::mutex> lock(m_mutex);
    EntryFor(source).scaled.emplace_back(size, pixmap);
    return pixmap;
}

int CEventPictures::DecodeCount() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_iDecodeCount;
}

void CEventPictures::ReleaseImages()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    for (Entry& e : m_entries)
        e.image = QImage();
}

void CEventPictures::NoteRecentlyDecoded()
{
    std::weak_ptr<CEventPictures> self = weak_from_this();
    if (self.expired())
        return;  // not shared by records: nothing to bound
    std::shared_ptr<CEventPictures> evicted;
    {
        std::lock_guard<std::mutex> lock(g_recentMutex);
        for (auto it = g_recent.begin(); it != g_recent.end();) {
            auto p = it->lock();
            if (!p || p.get() == this)
                it = g_recent.erase(it);
            else
                ++it;
        }
        g_recent.push_back(self);
        if (static_cast<int>(g_recent.size()) > kKeptEvents) {
            evicted = g_recent.front().lock();
            g_recent.pop_front();
        }
    }
    if (evicted)
        evicted->ReleaseImages();
}

} // namespace BodyTemperature
