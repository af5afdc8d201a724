#pragma once
// The card of a returning-person (frequent visitor) event: captured face,
// "RegularCustomer", library name, time and camera. Created and filled once by
// the information display, owned by its list (GUI thread).
//
// Its details search the device's records of the person on a pool task while
// the waiting dialog runs, then open CHFPDShowDetailWid modally. The task
// works on copies and a shared cancel token; cancelling the waiting dialog,
// StopDetails() (page left) and the destructor cancel it, which cuts the
// device request in flight, so the task ends within milliseconds; StopDetails
// and the destructor then wait for it, so no task outlives the card (or the
// module's code).
#include <QFuture>
#include <QPointer>
#include <memory>
#include <vector>

#include "ui/ShowCard/CRightUnitBase.h"
#include "ui/ShowCard/ReCustomer/HFPDRecord.h"

namespace commlayer {
class CRequestCancel;
}

namespace BodyTemperature {

class CHFPDShowDetailWid;
class CWaitShowWid;

class CFrequenterUnit final : public CRightUnitBase {
    Q_OBJECT
public:
    explicit CFrequenterUnit(QWidget* parent = nullptr);
    ~CFrequenterUnit() override;

    const AlarmShowInfo& info() const { return m_info; }

    // What a search task hands back.
    struct FetchResult {
        HFPDRecordsPtr records;
        bool bFailed = false;
    };

    // Stops a running search and closes its waiting dialog or the detail view,
    // then waits for the search task (its request is cut, so the wait is
    // short). For every card under root.
    static void StopAllDetails(QObject* root);

public slots:
    void SetAlarmInfo(const AlarmShowInfo& info, bool bLarge) override;
    void SetFrequenterInfo(const AlarmShowInfo& info) override;
    void ShowDetails() override;
    void StopDetails();

private:
    static FetchResult FetchRecords(std::string deviceId, std::string taskId, std::shared_ptr<commlayer::CRequestCancel> cancel);
    void waitForFetches();
    HFPDPersonInfo personInfo() const;

    AlarmShowInfo m_info;
    // Kept with the records they were fetched with.
    HFPDRecordsPtr m_records;
    std::string m_strSearchDevice;
    std::string m_strSearchTask;
    bool m_bFetchFailed = false;
    std::shared_ptr<commlayer::CRequestCancel> m_pCancel;
    struct Fetch {
        QFuture<FetchResult> future;
        std::shared_ptr<const void> token;  // what the task and this card share for the hand-off
    };
    std::vector<Fetch> m_fetches;  // running or abandoned search tasks
    QPointer<CWaitShowWid> m_pWaitWid;
    QPointer<CHFPDShowDetailWid> m_pDetailWid;
    QLabel* m_pReCustomer = nullptr;
    QLabel* m_pFacelibName = nullptr;
};

} // namespace BodyTemperature
