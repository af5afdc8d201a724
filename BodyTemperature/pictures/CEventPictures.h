#pragma once
// The decoded pictures of one event, shared by every card made from it.
//
// The information display builds one AlarmShowInfo per alarm; each card keeps
// a copy, and all copies point to the same CEventPictures. So the capture
// card, the alarm card and the pop-up of one event decode its pictures once:
// a worker prepares them (decodes only the face rectangle of a scene, cut
// while decoding, and scales it to the largest card) before the cards are
// built; the cards take that picture and scale it to their own size.
//
// Decoded pictures are released process-wide beyond the few most recent
// events (kKeptEvents); the picture of the largest card and the scaled
// pixmaps stay as long as the cards, which show them anyway. Image(),
// CachedImage() and Prepare() may be called from any thread; Scaled() makes
// QPixmaps and so belongs to the GUI thread.
#include <QByteArray>
#include <QImage>
#include <QPixmap>
#include <QSize>
#include <memory>
#include <mutex>
#include <vector>

#include "protocol/IntelAlarmInfo.h"

namespace BodyTemperature {

// An encoded picture and, optionally, the face rectangle to cut out of it.
struct PictureSource {
    QByteArray bytes;
    protocol::PictureRect crop;  // fractions of the picture's size
    bool cropped = false;        // false: the whole picture

    bool isEmpty() const { return bytes.isEmpty(); }
};

class CEventPictures final : public std::enable_shared_from_this<CEventPictures> {
public:
    static constexpr int kKeptEvents = 4;
    // The face picture of the pop-up card, the largest an event shows.
    static constexpr QSize kLargestCard{182, 242};

    CEventPictures() = default;
    CEventPictures(const CEventPictures&) = delete;
    CEventPictures& operator=(const CEventPictures&) = delete;

    // The face of a face block as the event cards show it: the separate face
    // picture, or -- when there is none or the block says so -- the scene
    // picture cut to the first face rectangle (not cut when that rectangle is
    // the whole picture or there is none).
    static PictureSource FaceSourceOf(const protocol::IntelAlarmFaceInfo& block);
    // The face of a returning person's card: the face picture, else the scene
    // cut to the first face rectangle; empty when there is neither.
    static PictureSource ReturningFaceSourceOf(const protocol::IntelAlarmFaceInfo& block);

    // The decoded (and cut) picture; a null image when it cannot be decoded
    // or is refused for its size.
    QImage Image(const PictureSource& source);
    // The picture if it was decoded already and is still kept; never decodes
    // and never waits for a decode in progress (a null image then).
    QImage CachedImage(const PictureSource& source);
    // What Scaled() needs before it can scale: the decode, and the picture
    // of kLargestCard for a big one. For a worker, ahead of the cards.
    void Prepare(const PictureSource& source);
    // Image() scaled to exactly `size`, aspect ratio ignored, smooth. When the
    // picture is larger than kLargestCard both ways, a smaller card's picture
    // is scaled from the kLargestCard one, scaled once per picture: the big
    // decode is then scaled once per event, not once per card.
    QPixmap Scaled(const PictureSource& source, const QSize& size);

    // Number of decodes done so far (diagnostics and tests).
    int DecodeCount() const;
    void ReleaseImages();

private:
    struct Entry {
        QByteArray bytes;  // kept so the key's data cannot be freed and reused
        protocol::PictureRect crop;
        bool cropped = false;
        bool decoded = false;
        bool failed = false;
        QImage image;
        QImage largestCard;  // image scaled to kLargestCard, the base of smaller cards
        std::vector<std::pair<QSize, QPixmap>> scaled;
    };

    Entry& EntryFor(const PictureSource& source);  // lock held
    void DecodeInto(Entry& entry);                  // lock held
    // The kLargestCard picture of a big image, made once; null for a small one.
    QImage LargestCard(const PictureSource& source, const QImage& image);
    void NoteRecentlyDecoded();

    mutable std::mutex m_mutex;
    std::vector<Entry> m_entries;
    int m_iDecodeCount = 0;
};

} // namespace BodyTemperature
