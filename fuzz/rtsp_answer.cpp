// Fuzz entry: the reader of a device's RTSP answers as the RTSP guard runs it
// (the head's length, the head, its length header and its challenges).
#include <QByteArray>
#include <QList>
#include <cstddef>
#include <cstdint>

#include "playwindow/CRtspAnswer.h"
#include "playwindow/CRtspDigest.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), int(size));
    const int length = playwindow::CRtspAnswer::HeadLength(bytes.constData(), bytes.size());
    if (length > bytes.size())
        __builtin_trap();
    playwindow::CRtspAnswer answer;
    if (!playwindow::CRtspAnswer::Parse(length > 0 ? bytes.left(length) : bytes, answer))
        return 0;
    (void)answer.ContentLength();
    QList<playwindow::RtspChallenge> challenges;
    if (answer.Challenges(challenges))
        for (const auto& c : challenges)
            (void)playwindow::CRtspDigest::Authorization(c, "user", "password", "DESCRIBE", "rtsp://d/x", 1, "c");
    return 0;
}
