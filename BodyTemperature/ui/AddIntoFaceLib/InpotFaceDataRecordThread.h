#pragma once
// Uploads one face picture with its person record into a face library of a
// device (the add-to-library dialog's confirm step). The dialog owns one
// object per confirmation, sets it up on the GUI thread, starts it, runs a
// modal waiting dialog until SignalStop and then waits for the thread; the
// results are read after that wait. OnCancelThread is called on the GUI
// thread while run() works; the worker sees it at its next device call.
#include <QThread>
#include <atomic>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "CapabilitySet/FaceDataRecordCfg.h"
#include "protocol/DevicePassThrough.h"

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

signals:
    // false at the end of run(); true when the user cancelled.
    void SignalStop(bool cancelled);

public slots:
    void OnCancelThread();

protected:
    void run() override;

private:
    bool upload();

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
};

} // namespace BodyTemperature
