#include "CBTConfigDB.h"

#include <QFile>
#include <boost/thread/locks.hpp>
#include <boost/thread/mutex.hpp>
#include <atomic>
#include <cstdio>
#include <memory>

#include "Base/Base.h"
#include "Base/Log.h"
#include "CommonMethodLib/CUserDataPath.h"

namespace BodyTemperature {
namespace {

std::atomic<CBTConfigDB*> g_instance{nullptr};
boost::mutex g_instanceMutex;

struct InstanceCleanup {
    ~InstanceCleanup() { delete g_instance.exchange(nullptr); }
};

// The page's own limits; -1: the pop-up never closes by itself.
bool durationAllowed(int32_t seconds)
{
    return seconds == -1 || (seconds >= 1 && seconds <= 1800);
}

} // namespace

CBTConfigDB* CBTConfigDB::Instance()
{
    CBTConfigDB* p = g_instance.load(std::memory_order_acquire);
    if (p == nullptr) {
        boost::unique_lock<boost::mutex> lock(g_instanceMutex);
        p = g_instance.load(std::memory_order_relaxed);
        if (p == nullptr) {
            p = new CBTConfigDB(DatabasePath());
            g_instance.store(p, std::memory_order_release);
            static InstanceCleanup cleanup;
            (void)cleanup;
        }
    }
    return p;
}

std::string CBTConfigDB::DatabasePath()
{
    return CUserDataPath::Instance()->componentPath() + "BodyTemperature";
}

bool CBTConfigDB::Provision(const std::string& utf8Path)
{
    // The schema ships with the module; it runs only on a fresh install.
    QFile schema(QStringLiteral(":/BodyTemperature/Sql/BodyTemperature.sql"));
    if (!schema.open(QIODevice::ReadOnly))
        return false;
    return CSQLite3Conn::ProvisionFromScript(utf8Path, schema.readAll().toStdString());
}

CBTConfigDB::CBTConfigDB(const std::string& localPath)
{
    PRT_Guard guard(m_mutex);
    const std::string utf8 = Base::LocalToUTF8(localPath);
    Provision(utf8);
    try {
        m_conn.Open(utf8, true);
    } catch (const CSQlite3Error& e) {
        // Stays unopened: every later statement fails and returns false.
        BASE_LOG_ERROR("settings store cannot be opened: %s", e.what());
    }
}

CBTConfigDB::~CBTConfigDB() = default;

bool CBTConfigDB::Execute(const std::string& sql)
{
    PRT_Guard guard(m_mutex);
    try {
        m_conn.Execute(sql);
        return true;
    } catch (const CSQlite3Error&) {
        return false;
    }
}

bool CBTConfigDB::Execute(const std::string& sql, CSQLite3Recordset& recordset)
{
    PRT_Guard guard(m_mutex);
    try {
        m_conn.Execute(sql, recordset);
        return true;
    } catch (const CSQlite3Error&) {
        return false;
    }
}

bool CBTConfigDB::BeginTransaction()
{
    PRT_Guard guard(m_mutex);
    try {
        m_conn.Begin();
        return true;
    } catch (const CSQlite3Error&) {
        return false;
    }
}

bool CBTConfigDB::CommitTransaction()
{
    PRT_Guard guard(m_mutex);
    try {
        m_conn.Commit();
        return true;
    } catch (const CSQlite3Error&) {
        return false;
    }
}


bool CBTConfigDB::LoadAlarmDisplayConfig(AlarmDisplayConfig& config)
{
    CSQLite3Recordset rs;
    if (!Execute("SELECT * FROM TemperatureConfigure", rs))
        return false;
    if (!rs.IsEOF()) {
        config.bFaceTemperatureCapture = rs.GetInt(0) != 0;
        config.bFaceCapture = rs.GetInt(1) != 0;
        config.bFacePictureComparison = rs.GetInt(2) != 0;
        config.bPopNoMask = rs.GetInt(3) != 0;
        config.bPopAbnormal = rs.GetInt(4) != 0;
        config.bPopAutoClose = rs.GetInt(5) != 0;
        const long long duration = rs.GetInt64(6);
        if (durationAllowed(static_cast<int32_t>(duration)) && duration == static_cast<int32_t>(duration)) {
            config.iPopDuration = static_cast<int32_t>(duration);
        } else {
            BASE_LOG_WARN("settings store: pop-up duration %lld outside -1 and 1..1800, read as %d", duration,
                AlarmDisplayConfig().iPopDuration);
            config.iPopDuration = AlarmDisplayConfig().iPopDuration;
        }
        config.strNoMaskVoice = QString::fromUtf8(rs.GetString(7).c_str());
        config.strNormalVoice = QString::fromUtf8(rs.GetString(8).c_str());
        config.strAbnormalVoice = QString::fromUtf8(rs.GetString(9).c_str());
        config.bSoundNoMask = rs.GetInt(10) != 0;
        config.bSoundNormal = rs.GetInt(11) != 0;
        config.bSoundAbnormal = rs.GetInt(12) != 0;
    }
    return true;
}

bool CBTConfigDB::SaveAlarmDisplayConfig(const AlarmDisplayConfig& config)
{
    // Held across both statements so that two savers can never leave two rows.
    PRT_Guard guard(m_mutex);

    char deleteSql[120] = {0};
    std::snprintf(deleteSql, sizeof(deleteSql), "DELETE FROM TemperatureConfigure;");
    Execute(deleteSql);

    const std::string noMask = config.strNoMaskVoice.toUtf8().toStdString();
    const std::string normal = config.strNormalVoice.toUtf8().toStdString();
    const std::string abnormal = config.strAbnormalVoice.toUtf8().toStdString();

    char insertSql[2096] = {0};
    const int n = std::snprintf(insertSql, sizeof(insertSql),
        "INSERT INTO TemperatureConfigure (FaceThermSnap,FaceSnap, FaceContrast, NoMask, TemAbnormal, "
        "Dispeared,DispearedTime,SaveNoMaskPath,SaveTemNormalPath,SaveTemAbnormalPath,OpenNoMaskSound,"
        "OpenTempNormal,OpenTempAbnormal) VALUES "
        "('%d','%d','%d','%d','%d','%d','%d','%s','%s','%s','%d','%d','%d');",
        config.bFaceTemperatureCapture ? 1 : 0, config.bFaceCapture ? 1 : 0,
        config.bFacePictureComparison ? 1 : 0, config.bPopNoMask ? 1 : 0, config.bPopAbnormal ? 1 : 0,
        config.bPopAutoClose ? 1 : 0, config.iPopDuration, noMask.c_str(), normal.c_str(), abnormal.c_str(),
        config.bSoundNoMask ? 1 : 0, config.bSoundNormal ? 1 : 0, config.bSoundAbnormal ? 1 : 0);
    if (n < 0 || n >= static_cast<int>(sizeof(insertSql)))
        return false;  // the statement must fit whole; a cut one would insert wrong paths
    for (const std::string* path : {&noMask, &normal, &abnormal}) {
        if (path->find('\0') != std::string::npos)
            return false;  // the path would end early in the statement: a wrong path stored
    }
    return Execute(insertSql);
}

} // namespace BodyTemperature
