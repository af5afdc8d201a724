#include "ui/ShowCard/ReCustomer/CHFPDPictureLoader.h"

#include "CThreadHandOff.h"
#include "commlayer/CDeviceDownloadsComm.h"
#include "commlayer/CRequestCancel.h"

namespace BodyTemperature {

namespace {
// Downloads are mostly waiting on the device: more than the cores.
constexpr int kThreads = 6;
constexpr int kTimeoutMs = 30000;
} // namespace

CHFPDPictureLoader::CHFPDPictureLoader(QObject* parent) : QObject(parent)
{
    m_pool.setMaxThreadCount(kThreads);
}

CHFPDPictureLoader::~CHFPDPictureLoader()
{
    Stop();
    m_pool.waitForDone();
}

void CHFPDPictureLoader::Stop()
{
    if (m_thumbsCancelled)
        m_thumbsCancelled->Cancel();
    if (m_pictureCancelled)
        m_pictureCancelled->Cancel();
    m_pool.clear();
}

CHFPDPictureLoader::Flag CHFPDPictureLoader::renew(Flag& current)
{
    if (current)
        current->Cancel();
    current = std::make_shared<commlayer::CRequestCancel>();
    return current;
}

void CHFPDPictureLoader::LoadThumbs(const std::string& deviceId, const std::vector<Thumb>& thumbs, const QSize& size)
{
    const Flag cancelled = renew(m_thumbsCancelled);
    for (const Thumb& thumb : thumbs) {
        handoff::Run(&m_pool, nullptr, [this, cancelled, deviceId, thumb, size] {
            if (cancelled->IsCancelled())
                return;
            QByteArray bytes;
            const bool downloaded = commlayer::CDeviceDownloadsComm::request(
                thumb.reference, deviceId, bytes, kTimeoutMs, cancelled.get());
            QImage image;
            if (downloaded && image.loadFromData(bytes))
                image = image.scaled(size, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
            // The destructor waits for this task, so the loader is still there.
            handoff::Post(this, [this, cancelled, thumb, image, bytes, downloaded] {
                if (cancelled->IsCancelled())
                    return;
                if (image.isNull())
                    emit SignalThumbFailed(thumb.uPicLsh, !downloaded);
                else
                    emit SignalThumbLoaded(thumb.uPicLsh, image, bytes);
            });
        });
    }
}

void CHFPDPictureLoader::LoadPicture(const std::string& deviceId, const std::string& reference)
{
    const Flag cancelled = renew(m_pictureCancelled);
    handoff::Run(&m_pool, nullptr, [this, cancelled, deviceId, reference] {
        if (cancelled->IsCancelled())
            return;
        QByteArray bytes;
        const bool downloaded
            = commlayer::CDeviceDownloadsComm::request(reference, deviceId, bytes, kTimeoutMs, cancelled.get());
        handoff::Post(this, [this, cancelled, bytes, downloaded] {
            if (cancelled->IsCancelled())
                return;
            if (downloaded)
                emit SignalPictureDownloaded(bytes);
            else
                emit SignalPictureFailed();
        });
    });
}

void CHFPDPictureLoader::customEvent(QEvent* event)
{
    if (!handoff::Deliver(event))
        QObject::customEvent(event);
}

} // namespace BodyTemperature
