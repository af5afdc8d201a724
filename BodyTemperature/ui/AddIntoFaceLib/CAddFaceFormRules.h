#pragma once
// The decisions of the add-to-library form that need no widget: which rows a
// device's capability (and the host's region mode) offers, the input rules
// derived from it, the escaping of typed text for the person document and
// the face picture size a device takes. Plain values; any thread.
#include <QByteArray>
#include <QString>
#include <vector>

#include "CapabilitySet/FaceDataLibraryCap.h"

namespace BodyTemperature {

class CAddFaceFormRules final {
public:
    // Largest face picture the devices accept, in bytes.
    static constexpr int kMaxPictureBytes = 200 * 1024;

    struct Rows {
        bool gender = false;
        bool idType = false;
        bool idNumber = false;
        bool region = false;  // province and city
        bool contact = false;
        bool birthDate = false;
        std::vector<CapabilitySet::PersonInfoExtendCfg> extend;
    };

    // Rows for a capability; extend is the chosen library's list of extended
    // items, one row each as the device lists them.
    static Rows RowsFor(const CapabilitySet::FaceDataLibraryCap& cap, int regionMode,
        const std::vector<CapabilitySet::PersonInfoExtendCfg>& extend);

    // "[^<range>]{n}": the range U+4E00..U+9FA5 written in the two-byte
    // national code page but read as UTF-8, as devices of this family expect.
    static QString ContactPattern(int maxLen);
    static QString IDNumberPattern(int maxLen);

    // "&" first, so an escaped text is never escaped twice.
    static QString EscapeXml(const QString& text);

    // jpeg unchanged when it fits limit, else re-encoded at falling quality
    // (and, if still too large, smaller); empty when it does not decode.
    static QByteArray FitPicture(const QByteArray& jpeg, int limit = kMaxPictureBytes);
};

} // namespace BodyTemperature
