#pragma once
// The emulator's persistent state in its own SQLite file: face libraries
// (with a capacity each) and the face records uploaded into them. All
// operations are serialised by one mutex; any server thread may call them.
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

struct sqlite3;

namespace devicesim {

struct Library {
    std::string FDID;
    std::string name;
    std::string type;  // "normal" or "stranger"
    int capacity = 0;
    int count = 0;
};

struct FaceRecord {
    std::string PID;
    std::string FDID;
    std::string name;
    std::string xml;      // person document as uploaded
    std::string picture;  // JPEG bytes (empty when listed without pictures)
    size_t pictureSize = 0;
    int64_t created = 0;
};

class SimStore final {
public:
    SimStore() = default;
    ~SimStore();
    SimStore(const SimStore&) = delete;
    SimStore& operator=(const SimStore&) = delete;

    // Opens (creating when needed) and seeds the default libraries once.
    bool open(const std::string& path, std::string& error);

    std::vector<Library> libraries();
    bool library(const std::string& FDID, Library& out);
    void putLibrary(const Library& lib);
    // Returns the new record's PID; an empty PID when the library is full or unknown.
    enum class AddResult { Added, Full, NoLibrary, Error };
    AddResult addRecord(FaceRecord& rec);
    std::vector<FaceRecord> records(const std::string& FDID, bool withPictures);
    bool record(const std::string& FDID, const std::string& PID, FaceRecord& out);

private:
    bool exec(const char* sql);
    std::mutex m_mutex;
    sqlite3* m_db = nullptr;
};

} // namespace devicesim
