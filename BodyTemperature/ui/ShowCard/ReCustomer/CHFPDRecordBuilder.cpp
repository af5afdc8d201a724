#include "ui/ShowCard/ReCustomer/CHFPDRecordBuilder.h"

#include <stdexcept>

#include "Base/Base.h"

namespace BodyTemperature {

std::string CHFPDRecordBuilder::RewriteCaptureTime(const std::string& deviceText)
{
    std::string text = deviceText;
    for (char& c : text)
        if (c == 'T')
            c = ' ';
    std::string out;
    out.reserve(text.size());
    for (char c : text)
        if (c != 'Z')
            out.push_back(c);
    const size_t plus = out.find('+');
    if (plus != std::string::npos)
        out.erase(plus);
    return out;
}

HFPDRecord CHFPDRecordBuilder::Build(const CapabilitySet::HFPDFaceResultItem& item)
{
    HFPDRecord r(item);
    r.captureTime = RewriteCaptureTime(item.captureTime);
    r.captureSeconds = Base::TimeUtil::StrDatetime2TimeT(r.captureTime);
    return r;
}

bool CHFPDRecordBuilder::ParseChannel(const std::string& text, int& channel, std::string& error)
{
    try {
        channel = std::stoi(text);
        return true;
    } catch (const std::invalid_argument&) {
        error = "invalid stoi argument";
    } catch (const std::out_of_range&) {
        error = "stoi argument out of range";
    }
    return false;
}

} // namespace BodyTemperature
