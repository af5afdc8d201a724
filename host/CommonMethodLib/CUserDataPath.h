#pragma once
// The per-user component folder where host components keep their own files
// (databases, state). Process-wide; any thread. The folder lies under the
// XDG data location and is created when missing. componentPath() ends with a
// separator, so callers append a file name directly.
#include <mutex>
#include <string>

class CUserDataPath {
public:
    static CUserDataPath* Instance();

    std::string componentPath();
    // Points the folder somewhere else (host option, tests). Empty restores the default.
    void setComponentPath(const std::string& folder);

private:
    CUserDataPath() = default;
    std::mutex m_mutex;
    std::string m_override;
};
