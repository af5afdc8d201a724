#include "CSettingsLoader.h"

#include <QTimer>
#include <algorithm>

#include "Base/Log.h"
#include "CBTConfigDB.h"
#include "clientcommonlogical/CConfigMgr.h"

namespace BodyTemperature {

CSettingsLoader::CSettingsLoader(QObject* parent) : QObject(parent)
{
    m_pTimer = new QTimer(this);
    m_pTimer->setSingleShot(true);
    connect(m_pTimer, &QTimer::timeout, this, &CSettingsLoader::startRetry);
    m_pWatcher = new QFutureWatcher<Result>(this);
    connect(m_pWatcher, &QFutureWatcher<Result>::finished, this, &CSettingsLoader::onRetryFinished);
}

CSettingsLoader::~CSettingsLoader()
{
    m_pTimer->stop();
    m_pWatcher->disconnect(this);
    m_pWatcher->waitForFinished();
}

bool CSettingsLoader::Load(AlarmDisplayConfig& config)
{
    if (readNow(config))
        return true;
    BASE_LOG_WARN("settings could not be read: the defaults are in use and nothing is saved until they can be "
                  "read; retrying");
    // Voice prompts work meanwhile; the paths are not written anywhere.
    FillDefaultVoicePaths(config, clientcommonlogical::CConfigMgr::Instance()->GetLanguage());
    scheduleRetry();
    return false;
}

void CSettingsLoader::ReadIfPending(AlarmDisplayConfig& config)
{
    if (m_bLoaded)
        return;
    if (m_pWatcher->isRunning()) {
        // A background read is under way: its answer is the freshest one.
        m_pWatcher->waitForFinished();
        Result result = m_pWatcher->result();
        if (result.first) {
            m_pTimer->stop();
            completeLoad(result.second);
            config = result.second;
            return;
        }
    }
    AlarmDisplayConfig stored;
    if (readNow(stored)) {
        m_pTimer->stop();
        config = stored;
    }
}

bool CSettingsLoader::readNow(AlarmDisplayConfig& config)
{
    ++m_iAttempts;
    AlarmDisplayConfig stored;
    if (!CBTConfigDB::Instance()->LoadAlarmDisplayConfig(stored))
        return false;
    completeLoad(stored);
    config = stored;
    return true;
}

void CSettingsLoader::completeLoad(AlarmDisplayConfig& config)
{
    if (m_iAttempts > 1)
        BASE_LOG_INFO("settings read at attempt %d", m_iAttempts);
    m_bLoaded = true;
    if (FillDefaultVoicePaths(config, clientcommonlogical::CConfigMgr::Instance()->GetLanguage()))
        CBTConfigDB::Instance()->SaveAlarmDisplayConfig(config);
}

void CSettingsLoader::scheduleRetry()
{
    m_pTimer->start(m_iRetryMs);
    m_iRetryMs = std::min(m_iRetryMs * 2, kLongestRetryMs);
}

void CSettingsLoader::startRetry()
{
    if (m_bLoaded || m_pWatcher->isRunning())
        return;
    ++m_iAttempts;
    m_token = handoff::NewToken();
    m_pWatcher->setFuture(handoff::Run(QThreadPool::globalInstance(), m_token, []() {
        AlarmDisplayConfig stored;
        const bool ok = CBTConfigDB::Instance()->LoadAlarmDisplayConfig(stored);
        return Result(ok, stored);
    }));
}

void CSettingsLoader::onRetryFinished()
{
    handoff::Acquire(m_token.get());
    if (m_bLoaded)
        return;
    Result result = m_pWatcher->result();
    if (!result.first) {
        scheduleRetry();
        return;
    }
    completeLoad(result.second);
    emit signalLoaded(result.second);
}

} // namespace BodyTemperature
