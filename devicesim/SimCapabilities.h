#pragma once
// What the emulated device says its face libraries support. Tests replace
// the answer through the control API (SimCapabilityRoutes.cpp) to see how
// clients adapt their forms. Thread-safe itself.
#include <mutex>
#include <string>

namespace devicesim {

class SimCapabilities final {
public:
    std::string faceLibrary() const;
    // Empty text: back to the default answer.
    void setFaceLibrary(const std::string& xml);
    static std::string defaultFaceLibrary();

private:
    mutable std::mutex m_mutex;
    std::string m_faceLibrary;  // empty: the default
};

} // namespace devicesim
