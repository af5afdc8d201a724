#pragma once
// Reads the alarm-display settings for the information display and keeps a
// failed read from ever turning into a save the user did not ask for.
//
// When the store answers, the record is loaded and, if all three voice paths
// are empty (first use), the shipped voice files are filled in and saved.
// When it does not (a file locked by another process, say), the display goes
// on with the defaults and the shipped voice files in memory only, nothing is
// saved, and the read is retried in the background (back-off 0.5 s to 10 s)
// until it succeeds; signalLoaded then hands over the stored record.
//
// GUI thread. Owned by the information display (QObject child). Retries run on
// the global thread pool one at a time and report through a QFutureWatcher;
// the destructor waits for a running one (at most the store's busy time-out).
#include <QFutureWatcher>
#include <QObject>
#include <utility>

#include "AlarmDisplayConfig.h"
#include "CThreadHandOff.h"

class QTimer;

namespace BodyTemperature {

class CSettingsLoader final : public QObject {
    Q_OBJECT
public:
    static constexpr int kFirstRetryMs = 500;
    static constexpr int kLongestRetryMs = 10000;

    explicit CSettingsLoader(QObject* parent);
    ~CSettingsLoader() override;

    // The first read, at start-up. True when the store answered.
    bool Load(AlarmDisplayConfig& config);
    // Before a save the user asked for: while the settings were never read,
    // try once more now so that the save starts from the stored record.
    void ReadIfPending(AlarmDisplayConfig& config);
    bool IsLoaded() const { return m_bLoaded; }

signals:
    void signalLoaded(const BodyTemperature::AlarmDisplayConfig& config);

private:
    using Result = std::pair<bool, AlarmDisplayConfig>;
    bool readNow(AlarmDisplayConfig& config);
    void completeLoad(AlarmDisplayConfig& config);
    void scheduleRetry();
    void startRetry();
    void onRetryFinished();

    bool m_bLoaded = false;
    int m_iAttempts = 0;
    int m_iRetryMs = kFirstRetryMs;
    QTimer* m_pTimer = nullptr;
    QFutureWatcher<Result>* m_pWatcher = nullptr;
    handoff::Token m_token;  // the attempt in flight
};

} // namespace BodyTemperature
