#pragma once
// The records of one returning person: thumbnails 20 a page with a pager, and
// for the selected capture the scene picture with the face rectangle, camera,
// time and the attributes the opener's mask asks for; the library person when
// the opener knows one. Opened modally by the returning-person card, which
// creates it with its own parent and deletes it before opening the next one.
// Pictures are downloaded by a CHFPDPictureLoader it owns; hiding or closing
// the view cuts its downloads, showing it again reloads the page. GUI thread.
#include <QByteArray>
#include <QDialog>
#include <QMap>
#include <string>

#include "ui/ShowCard/ReCustomer/HFPDRecord.h"

class QFrame;
class QLabel;
class QPushButton;

namespace BodyTemperature {

class CBTPropItem;
class CHFPDPicLabelList;
class CHFPDPictureLoader;
class CPictureWidget;
class CTargetPageController;

class CHFPDShowDetailWid final : public QDialog {
    Q_OBJECT
public:
    explicit CHFPDShowDetailWid(QWidget* parent = nullptr);
    ~CHFPDShowDetailWid() override;

    // Takes the records and shows page 1 (its first capture selected).
    // uAttrMask: which attributes are shown (CHFPDAttributes bits). False
    // when there is no device to download the pictures from.
    bool SetHFPDRecords(const HFPDRecordList& records, const std::string& deviceId, uint32_t uAttrMask,
        const HFPDPersonInfo& person);
    // The same without a copy of the records.
    bool SetHFPDRecords(HFPDRecordsPtr records, const std::string& deviceId, uint32_t uAttrMask,
        const HFPDPersonInfo& person);

signals:
    void SignalHFPDAddFDLibClicked();
    // The add-to-library request of the selected capture: device, its
    // device-API channel, the face picture as downloaded, and the scene
    // picture with the face rectangle (fractions) when no face picture came.
    void SignalAddHFPDFaceToLibrary(const QString& deviceId, const QString& channelId, const QByteArray& facePicture,
        const QByteArray& scenePicture, const QRectF& faceRect);

public slots:
    void OnPictrueClicked(unsigned int uPicLsh);
    void OnChangePage(unsigned int uPage);
    void OnAddFDLibClicked();
    void OnBtnClose();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void buildForm();
    void layoutStrip();
    void showPerson(const HFPDPersonInfo& person);
    void rebuildPropItems();
    void refreshPropItems(const HFPDRecord& record);
    const HFPDRecord* selectedRecord() const;
    void onThumbLoaded(unsigned int uPicLsh, const QImage& image, const QByteArray& bytes);
    void onThumbFailed(unsigned int uPicLsh, bool bDownloadFailed);
    void onPictureDownloaded(const QByteArray& bytes);
    void onPictureFailed();

    HFPDRecordsPtr m_records = std::make_shared<const HFPDRecordList>();
    std::string m_strDeviceId;
    uint32_t m_uAttrMask = 0;
    unsigned int m_uCurrentPage = 1;
    unsigned int m_uSelected = 0;  // PicLsh on the current page; 0: none
    QMap<unsigned int, QByteArray> m_faceBytes;  // current page's downloaded faces
    QByteArray m_sceneBytes;
    bool m_bDownloadsStopped = false;  // hidden: the current page is reloaded when shown

    CHFPDPictureLoader* m_pLoader = nullptr;
    QLabel* m_pTitleLabel = nullptr;
    QPushButton* m_pCloseBtn = nullptr;
    QWidget* m_pStripArea = nullptr;
    CHFPDPicLabelList* m_pPicList = nullptr;
    QLabel* m_pNoDetails = nullptr;
    CTargetPageController* m_pPager = nullptr;
    QFrame* m_pInfoPanel = nullptr;
    CPictureWidget* m_pPicture = nullptr;
    QLabel* m_pCameraLabel = nullptr;
    QLabel* m_pTimeLabel = nullptr;
    QWidget* m_pPropArea = nullptr;
    QList<QPair<int, CBTPropItem*>> m_propItems;  // (CHFPDAttributes::Item, item)
    QFrame* m_pPersonPanel = nullptr;
    QLabel* m_pPersonName = nullptr;
    QLabel* m_pPersonGender = nullptr;
    QLabel* m_pPersonContact = nullptr;
    QPushButton* m_pAddBtn = nullptr;
};

} // namespace BodyTemperature
