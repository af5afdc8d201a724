#pragma once
// Uploads one face picture with its person record into a face library of a
// device (the add-to-library dialog's confirm step). The dialog owns one
// object per confirmation, sets it up on the GUI thread, starts it, runs a
// modal waiting dialog until SignalStop and then waits for the thread; the
// results are read after that wait. OnCancelThread is called on the GUI
// thread while run() works: it cuts the device call in flight. When the cut
// (or a time-out) came after the upload reached the device, run() asks the
// device whether the face was stored (StoredCheck()); the same record sent
// again later is first looked for, never stored twice. Abort() (the owner
// goes away) also cuts that question, so the thread ends within milliseconds.
// Before sending, it notes which records like this one the library holds.
#include <QThread>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "CapabilitySet/FaceDataRecordCfg.h"
#include "protocol/DevicePassThrough.h"
#include "ui/AddIntoFaceLib/CFaceUploadCheck.h"

namespace commlayer {
class CRequestCancel;
}

namespace BodyTemperature {

class CInportFaceDataRecordThread final : public QThread {
    Q_OBJECT
public:
    explicit CInportFaceDataRecordThread(QObject* parent = nullptr);
    ~CInportFaceDataRecordThread() override;

    void SetTarget(const std::string& deviceId, const std::string& FDID, bool overwrite);
    // Copies the bytes; nothing happens when data is null or length is 0.
    void SetPicture(const char* data, uint32_t length);
    void SetPersonRecord(const CapabilitySet::FaceDataRecordCfg& record);

    // The 388-byte little-endian condition record of the upload batch.
    static std::string BuildCondition(const std::string& FDID, bool overwrite);

    bool IsSuccess() const { return m_bSuccess; }
    bool IsCancelled() const { return m_bCancelled; }
    bool IsStopped() const { return m_bStop; }
    bool IsLibraryFull() const { return m_bLibraryFull; }
    uint32_t UploadState() const { return m_uUploadState; }
    std::pair<int, int> ErrorPair() const { return {m_iFirstCode, m_iSecondCode}; }
    // What the device said, when asked, about an upload whose answer was not heard.
    CFaceUploadCheck::Stored StoredCheck() const { return m_eStored; }

    // Time allowed for asking whether an unheard upload was stored.
    static constexpr int32_t kCheckTimeoutMs = 10000;

    // The owner goes: cuts the upload and any question about it. Any thread.
    void Abort();

signals:
    // false at the end of run(); true when the user cancelled.
    void SignalStop(bool cancelled);

public slots:
    void OnCancelThread();

protected:
    void run() override;

private:
    bool upload();
    // The library's records like the uploaded one (CFaceUploadCheck::Matches); false when the search failed.
    bool findMatches(std::vector<std::string>& matches, commlayer::CRequestCancel* cancel);
    void checkStored(const std::vector<std::string>& before);

    std::string m_strDeviceId;
    std::string m_strFDID;
    bool m_bOverwrite = false;
    CapabilitySet::FaceDataRecordCfg m_record;
    std::vector<char> m_picture;
    uint32_t m_uPictureLen = 0;

    std::atomic<bool> m_bStop{false};
    std::atomic<bool> m_bCancelled{false};
    std::atomic<bool> m_bLibraryFull{false};
    std::atomic<bool> m_bSuccess{false};
    std::atomic<uint32_t> m_uUploadState{0};
    std::atomic<int> m_iFirstCode{0};
    std::atomic<int> m_iSecondCode{0};
    std::vector<protocol::UploadResult> m_results;
    std::atomic<CFaceUploadCheck::Stored> m_eStored{CFaceUploadCheck::Stored::NotAsked};
    bool m_bUnheard = false;  // worker only: the upload failed after reaching the device
    const std::shared_ptr<commlayer::CRequestCancel> m_pCancel;  // the operator's cancel: cuts the upload
    const std::shared_ptr<commlayer::CRequestCancel> m_pAbort;   // the owner's: cuts the question too
};

} // namespace BodyTemperature
