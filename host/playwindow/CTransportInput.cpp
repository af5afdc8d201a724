#include "playwindow/CTransportInput.h"

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/mem.h>
}

#include "commlayer/CDeviceStream.h"

namespace playwindow {
namespace {
constexpr int kIoBufferSize = 64 * 1024;
constexpr int kSliceMs = 40;
} // namespace

CTransportInput::CTransportInput(clientcommonlogical::DeviceConfig device, std::string path,
    std::function<bool()> interrupted)
    : m_stream(std::make_unique<commlayer::CDeviceStream>(std::move(device), std::move(path)))
    , m_interrupted(std::move(interrupted))
{
}

CTransportInput::~CTransportInput()
{
    if (m_io != nullptr)
        av_freep(&m_io->buffer);
    avio_context_free(&m_io);
    m_stream->Stop();
}

CTransportInput::Outcome CTransportInput::Open()
{
    m_stream->Start();
    for (;;) {
        const auto status = m_stream->WaitOpen(kSliceMs);
        if (status == commlayer::CDeviceStream::Status::Failed)
            return Outcome::Failed;
        if (status == commlayer::CDeviceStream::Status::Open)
            break;
        if (m_interrupted())
            return Outcome::Interrupted;
    }
    auto* buffer = static_cast<unsigned char*>(av_malloc(kIoBufferSize));
    if (buffer == nullptr)
        return Outcome::Failed;
    m_io = avio_alloc_context(buffer, kIoBufferSize, 0, this, &CTransportInput::ReadPacket, nullptr, nullptr);
    if (m_io == nullptr) {
        av_free(buffer);
        return Outcome::Failed;
    }
    m_io->seekable = 0;
    return Outcome::Open;
}

std::pair<int, int> CTransportInput::Error() const
{
    return m_stream->Error();
}

const AVInputFormat* CTransportInput::Format() const
{
    // A camera's MJPEG stream: the demuxer takes the boundary from the first part.
    if (m_stream->ContentType().find("multipart/x-mixed-replace") != std::string::npos)
        return av_find_input_format("mpjpeg");
    return nullptr;
}

int CTransportInput::ReadPacket(void* opaque, uint8_t* buf, int size)
{
    auto* self = static_cast<CTransportInput*>(opaque);
    for (;;) {
        const int n = self->m_stream->Read(buf, size, kSliceMs);
        if (n > 0)
            return n;
        if (n == 0)
            return AVERROR_EOF;
        if (self->m_interrupted())
            return AVERROR_EXIT;
    }
}

} // namespace playwindow
