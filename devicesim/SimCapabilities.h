#pragma once
// What the emulated device says its face libraries support. Tests replace
// the answer through the control API to see how clients adapt their forms:
//   POST /control/capabilities {"faceLibrary":"<FaceDataLibraryCap>...</FaceDataLibraryCap>"}
//   DELETE /control/capabilities   (back to the default)
// Any server thread; guarded by its own mutex.
#include <mutex>
#include <string>

namespace httplib {
class Server;
}

namespace devicesim {

class SimCapabilities final {
public:
    // Registers GET /DVAPI/Intelligent/FDLib/capabilities and the control
    // requests; call before the other routes so these take precedence.
    void route(httplib::Server& server);

    std::string faceLibrary() const;
    static std::string defaultFaceLibrary();

private:
    mutable std::mutex m_mutex;
    std::string m_faceLibrary;  // empty: the default
};

} // namespace devicesim
