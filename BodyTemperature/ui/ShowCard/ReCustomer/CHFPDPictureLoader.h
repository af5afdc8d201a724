#pragma once
// Downloads the pictures of the frequent-person detail view on its own small
// thread pool, so a page of thumbnails never blocks the view. Thumbnails are
// decoded there too; the one large picture is handed over as downloaded.
// A new page (or a new large picture) abandons what the previous one still
// had queued or in flight (its requests are cut at once); results of
// abandoned requests are dropped. Results arrive as signals on the GUI
// thread. Owned by the detail view, which stops it when hidden; the
// destructor cuts every download it started and waits for the tasks, which
// then end within milliseconds.
#include <QByteArray>
#include <QImage>
#include <QObject>
#include <QSize>
#include <QThreadPool>
#include <atomic>
#include <memory>
#include <string>
#include <vector>

namespace commlayer {
class CRequestCancel;
}

namespace BodyTemperature {

class CHFPDPictureLoader final : public QObject {
    Q_OBJECT
public:
    struct Thumb {
        unsigned int uPicLsh = 0;
        std::string reference;
    };

    explicit CHFPDPictureLoader(QObject* parent = nullptr);
    ~CHFPDPictureLoader() override;

    // Thumbnails are scaled to cover size (aspect kept) on the worker.
    void LoadThumbs(const std::string& deviceId, const std::vector<Thumb>& thumbs, const QSize& size);
    void LoadPicture(const std::string& deviceId, const std::string& reference);
    // Abandons every download (queued or in flight).
    void Stop();

signals:
    // bytes: the picture as downloaded (kept for adding the face to a library).
    void SignalThumbLoaded(unsigned int uPicLsh, const QImage& image, const QByteArray& bytes);
    void SignalThumbFailed(unsigned int uPicLsh, bool bDownloadFailed);
    void SignalPictureDownloaded(const QByteArray& bytes);
    void SignalPictureFailed();

protected:
    // Delivers the downloads' results (posted from the pool).
    void customEvent(QEvent* event) override;

private:
    using Flag = std::shared_ptr<commlayer::CRequestCancel>;
    static Flag renew(Flag& current);

    QThreadPool m_pool;
    Flag m_thumbsCancelled;
    Flag m_pictureCancelled;
};

} // namespace BodyTemperature
