#include "SimStore.h"

#include <chrono>
#include <sqlite3.h>

namespace devicesim {

namespace {
std::string text(sqlite3_stmt* st, int col)
{
    const unsigned char* t = sqlite3_column_text(st, col);
    return t ? std::string(reinterpret_cast<const char*>(t), size_t(sqlite3_column_bytes(st, col))) : std::string();
}
std::string blob(sqlite3_stmt* st, int col)
{
    const void* b = sqlite3_column_blob(st, col);
    return b ? std::string(static_cast<const char*>(b), size_t(sqlite3_column_bytes(st, col))) : std::string();
}
struct Stmt {
    sqlite3_stmt* st = nullptr;
    Stmt(sqlite3* db, const char* sql) { sqlite3_prepare_v2(db, sql, -1, &st, nullptr); }
    ~Stmt() { sqlite3_finalize(st); }
    void bind(int i, const std::string& s) { sqlite3_bind_text(st, i, s.data(), int(s.size()), SQLITE_TRANSIENT); }
    void bindBlob(int i, const std::string& s) { sqlite3_bind_blob(st, i, s.data(), int(s.size()), SQLITE_TRANSIENT); }
    void bind(int i, int64_t v) { sqlite3_bind_int64(st, i, v); }
};
} // namespace

SimStore::~SimStore()
{
    if (m_db)
        sqlite3_close(m_db);
}

bool SimStore::exec(const char* sql)
{
    return sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool SimStore::open(const std::string& path, std::string& error)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (sqlite3_open(path.c_str(), &m_db) != SQLITE_OK) {
        error = m_db ? sqlite3_errmsg(m_db) : "cannot open";
        return false;
    }
    sqlite3_busy_timeout(m_db, 2000);
    if (!exec("CREATE TABLE IF NOT EXISTS libraries(FDID TEXT PRIMARY KEY, name TEXT, type TEXT, capacity INTEGER);"
              "CREATE TABLE IF NOT EXISTS records(PID INTEGER PRIMARY KEY AUTOINCREMENT, FDID TEXT, name TEXT,"
              " xml TEXT, picture BLOB, created INTEGER);")) {
        error = sqlite3_errmsg(m_db);
        return false;
    }
    Stmt count(m_db, "SELECT COUNT(*) FROM libraries");
    if (sqlite3_step(count.st) == SQLITE_ROW && sqlite3_column_int(count.st, 0) == 0) {
        exec("INSERT INTO libraries VALUES('1','Staff','normal',1000);"
             "INSERT INTO libraries VALUES('2','Visitors','normal',100);"
             "INSERT INTO libraries VALUES('3','Strangers','stranger',1000);");
    }
    return true;
}

std::vector<Library> SimStore::libraries()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    std::vector<Library> out;
    Stmt st(m_db, "SELECT l.FDID, l.name, l.type, l.capacity, (SELECT COUNT(*) FROM records r WHERE r.FDID = l.FDID)"
                  " FROM libraries l ORDER BY l.FDID");
    while (sqlite3_step(st.st) == SQLITE_ROW) {
        Library l;
        l.FDID = text(st.st, 0);
        l.name = text(st.st, 1);
        l.type = text(st.st, 2);
        l.capacity = sqlite3_column_int(st.st, 3);
        l.count = sqlite3_column_int(st.st, 4);
        out.push_back(l);
    }
    return out;
}

bool SimStore::library(const std::string& FDID, Library& out)
{
    for (const Library& l : libraries())
        if (l.FDID == FDID) {
            out = l;
            return true;
        }
    return false;
}

void SimStore::putLibrary(const Library& lib)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    Stmt st(m_db, "INSERT OR REPLACE INTO libraries VALUES(?,?,?,?)");
    st.bind(1, lib.FDID);
    st.bind(2, lib.name);
    st.bind(3, lib.type);
    st.bind(4, int64_t(lib.capacity));
    sqlite3_step(st.st);
}

SimStore::AddResult SimStore::addRecord(FaceRecord& rec)
{
    Library lib;
    if (!library(rec.FDID, lib))
        return AddResult::NoLibrary;
    if (lib.count >= lib.capacity)
        return AddResult::Full;
    std::lock_guard<std::mutex> lock(m_mutex);
    Stmt st(m_db, "INSERT INTO records(FDID, name, xml, picture, created) VALUES(?,?,?,?,?)");
    rec.created = std::chrono::duration_cast<std::chrono::seconds>(
        std::chrono::system_clock::now().time_since_epoch()).count();
    st.bind(1, rec.FDID);
    st.bind(2, rec.name);
    st.bind(3, rec.xml);
    st.bindBlob(4, rec.picture);
    st.bind(5, rec.created);
    if (sqlite3_step(st.st) != SQLITE_DONE)
        return AddResult::Error;
    rec.PID = std::to_string(sqlite3_last_insert_rowid(m_db));
    return AddResult::Added;
}

std::vector<FaceRecord> SimStore::records(const std::string& FDID, bool withPictures)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    std::vector<FaceRecord> out;
    Stmt st(m_db, FDID.empty() ? "SELECT PID, FDID, name, xml, picture, created FROM records ORDER BY PID"
                               : "SELECT PID, FDID, name, xml, picture, created FROM records WHERE FDID = ? ORDER BY PID");
    if (!FDID.empty())
        st.bind(1, FDID);
    while (sqlite3_step(st.st) == SQLITE_ROW) {
        FaceRecord r;
        r.PID = text(st.st, 0);
        r.FDID = text(st.st, 1);
        r.name = text(st.st, 2);
        r.xml = text(st.st, 3);
        r.picture = blob(st.st, 4);
        r.pictureSize = r.picture.size();
        if (!withPictures)
            r.picture.clear();
        r.created = sqlite3_column_int64(st.st, 5);
        out.push_back(std::move(r));
    }
    return out;
}

bool SimStore::record(const std::string& FDID, const std::string& PID, FaceRecord& out)
{
    for (FaceRecord& r : records(FDID, true))
        if (r.PID == PID) {
            out = std::move(r);
            return true;
        }
    return false;
}

} // namespace devicesim
