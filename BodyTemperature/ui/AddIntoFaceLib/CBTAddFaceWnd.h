#pragma once
// The modal dialog in which the operator adds a face to a face picture
// library of a device: it reads what the device's libraries support, shows
// only those fields, checks the input and uploads the face with the person
// record (CInportFaceDataRecordThread) while a waiting dialog runs.
//
// Open it from anywhere with OpenForFace(parent, device or camera id, JPEG):
// it returns when the dialog is closed. The device requests that prepare the
// form and the upload run on a worker while a waiting dialog turns (the
// calls still return only when they are done); its cancel, CloseAllUnder()
// (the page left) or the dialog's deletion cut the request in flight at once. GUI thread; created with new and a parent, deleted by its
// opener (or with its parent, also while it uploads).
#include <QByteArray>
#include <QDialog>
#include <QPointer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "CapabilitySet/CityCodeCapability.h"
#include "CapabilitySet/FaceDataLibraryCap.h"
#include "CapabilitySet/FaceDataLibraryCfg.h"
#include "CapabilitySet/FaceDataRecordCfg.h"

class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;

namespace publicdatacontroller {
class CDeviceCombinationModel;
}
namespace VantorGUIToolkit {
class CSecondarySortFilterModel;
class CValidateLineEdit;
class CYearMonthDayEdit;
} // namespace VantorGUIToolkit

namespace commlayer {
class CRequestCancel;
}

namespace BodyTemperature {

class CInportFaceDataRecordThread;

class CBTAddFaceWnd final : public QDialog {
    Q_OBJECT
public:
    explicit CBTAddFaceWnd(QWidget* parent);
    ~CBTAddFaceWnd() override;

    // Opens the dialog modally for a face picture (JPEG) with the device, or
    // the device of the camera, preselected. Returns true when the face was
    // added. Nothing opens when there is no picture or the device's face
    // libraries cannot be used (the reason is shown at the bottom right).
    static bool OpenForFace(QWidget* parent, const std::string& deviceOrCameraId, const QByteArray& faceJpeg);

    // Takes the face (re-encoded when larger than a device takes). False when empty.
    bool SetFacePicture(const QByteArray& jpeg);
    // Selects the device and prepares the form for it. False when not usable.
    bool SetDevice(const std::string& deviceOrCameraId);
    bool IsAdded() const { return m_bAdded; }

    // Cuts the upload of every add-to-library dialog under root and closes them.
    static void CloseAllUnder(QObject* root);

public slots:
    void OnComboDeviceChanged(int index);
    void OnComboFaceLibChanged(int index);
    void OnComboIDTypeChanged(int index);
    void OnComboProvinceChanged(int index);
    void OnApply();

private:
    void buildForm();
    // Takes the device of the combo's row and prepares the form for it.
    void changeDevice(int index);
    // Takes the library of the combo's row and shows the fields it lists.
    void changeLibrary(int index);
    // Runs prepare(index) from the event loop if the combo still shows index.
    void prepareLater(QComboBox* combo, int index, void (CBTAddFaceWnd::*prepare)(int));
    void setUsable(bool usable);
    bool prepareForm();
    void fillLibraries();
    void fillRegion(const CapabilitySet::CityCodeCapability& cities);
    void rebuildExtendRows(const std::vector<CapabilitySet::PersonInfoExtendCfg>& items);
    void showRows();
    bool runUpload(const CapabilitySet::FaceDataRecordCfg& record);
    // Runs work (device requests with the given cancel) on a worker while a
    // waiting dialog turns. False when cancelled or when the dialog was
    // deleted meanwhile (then the caller must not touch it).
    bool runRequests(const std::function<void(commlayer::CRequestCancel*)>& work);
    QLabel* addRow(const char* labelKey, QWidget* field);
    static void showMessage(const QString& text);

    std::string m_strDeviceId;
    QByteArray m_picture;
    CapabilitySet::FaceDataLibraryCap m_cap;
    CapabilitySet::FaceDataLibraryCfg m_libraries;
    CapabilitySet::CityCodeCapability m_cities;
    std::string m_strFDID;
    bool m_bUsable = false;
    bool m_bAdded = false;
    QPointer<CInportFaceDataRecordThread> m_pUpload;  // while runUpload() runs
    std::shared_ptr<commlayer::CRequestCancel> m_pRequests;  // while runRequests() runs

    publicdatacontroller::CDeviceCombinationModel* m_pDeviceModel = nullptr;
    VantorGUIToolkit::CSecondarySortFilterModel* m_pDeviceProxy = nullptr;
    QFormLayout* m_pForm = nullptr;
    QLabel* m_pFacePicLabel = nullptr;
    QComboBox* m_pDeviceCombo = nullptr;
    QComboBox* m_pFaceLibCombo = nullptr;
    VantorGUIToolkit::CValidateLineEdit* m_pNameEdit = nullptr;
    QComboBox* m_pGenderCombo = nullptr;
    QComboBox* m_pIDTypeCombo = nullptr;
    VantorGUIToolkit::CValidateLineEdit* m_pIDNoEdit = nullptr;
    QComboBox* m_pProvinceCombo = nullptr;
    QComboBox* m_pCityCombo = nullptr;
    VantorGUIToolkit::CValidateLineEdit* m_pContactEdit = nullptr;
    VantorGUIToolkit::CYearMonthDayEdit* m_pBirthEdit = nullptr;
    struct ExtendRow {
        CapabilitySet::PersonInfoExtendCfg item;
        QLabel* label;
        QLineEdit* edit;
    };
    std::vector<ExtendRow> m_extendRows;
    std::vector<CapabilitySet::PersonInfoExtendCfg> m_libraryExtend;
};

} // namespace BodyTemperature
