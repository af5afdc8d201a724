#include "ui/AddIntoFaceLib/CBTAddFaceWnd.h"

#include <QComboBox>
#include <QEventLoop>
#include <QFile>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>
#include <QTimer>
#include <atomic>
#include <memory>
#include <pthread.h>
#include <stdexcept>
#include <thread>

#include "Base/Base.h"
#include "CThreadHandOff.h"
#include "VantorGUIToolkit/CChaseDialog.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include "VantorGUIToolkit/CSecondarySortFilterModel.h"
#include "VantorGUIToolkit/CValidateLineEdit.h"
#include "VantorGUIToolkit/CYearMonthDayEdit.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "commlayer/CRequestCancel.h"
#include "publicdatacontroller/CDeviceCombinationModel.h"
#include "ui/AddIntoFaceLib/CAddFaceFormRules.h"
#include "ui/AddIntoFaceLib/CBTFaceDataPublic.h"
#include "ui/AddIntoFaceLib/CFaceUploadOutcome.h"
#include "ui/AddIntoFaceLib/FaceLibRequests.h"
#include "ui/AddIntoFaceLib/InpotFaceDataRecordThread.h"
#include "ui/SettingsPageLook.h"
#include "UiDataController/CErrorInfoMgr.h"

namespace BodyTemperature {

namespace {
const char* const kLoadingGif = ":/VantorDesk/Dialog/Images/Public/Control/Dialog/Loading.gif";
const char* const kStyleSheet = ":/BodyTemperature/Qss/BodyTemperature/BodyTemperature.qss";
using DeviceModel = publicdatacontroller::CDeviceCombinationModel;

// The host's text for the error pair of a request that failed, or fallback.
QString failureText(std::pair<int, int> err, const QString& fallback)
{
    const QString text = UiDataController::CErrorInfoMgr::GetErrorInfoByCode(err.first, err.second);
    return text.isEmpty() ? fallback : text;
}

// What the form is prepared from, read on the worker.
struct DeviceLibraries {
    CapabilitySet::FaceDataLibraryCap cap;
    bool capRead = false;
    std::pair<int, int> capError{0, 0};
    CapabilitySet::FaceDataLibraryCfg libraries;
    bool librariesRead = false;
    CapabilitySet::CityCodeCapability cities;
    bool citiesRead = false;
    CapabilitySet::PersonnalInfoExtendListConfig firstLibraryExtend;  // of the library chosen first
};
} // namespace

CBTAddFaceWnd::CBTAddFaceWnd(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("BTAddFaceWnd"));
    setModal(true);
    QFile qss(QString::fromLatin1(kStyleSheet));
    if (qss.open(QIODevice::ReadOnly))
        setStyleSheet(QString::fromUtf8(qss.readAll().constData()));
    buildForm();
}

CBTAddFaceWnd::~CBTAddFaceWnd()
{
    // Deleted with its page while it uploads: the upload's frame below the
    // waiting dialog's loop then ends within milliseconds instead of waiting
    // for the device.
    if (m_pUpload)
        m_pUpload->Abort();
    if (m_pRequests)
        m_pRequests->Cancel();
}

void CBTAddFaceWnd::CloseAllUnder(QObject* root)
{
    if (root == nullptr)
        return;
    for (CBTAddFaceWnd* dlg : root->findChildren<CBTAddFaceWnd*>()) {
        if (dlg->m_pUpload)
            dlg->m_pUpload->Abort();
        if (dlg->m_pRequests)
            dlg->m_pRequests->Cancel();
        dlg->reject();
    }
}

bool CBTAddFaceWnd::OpenForFace(QWidget* parent, const std::string& deviceOrCameraId, const QByteArray& faceJpeg)
{
    QPointer<CBTAddFaceWnd> dlg = new CBTAddFaceWnd(parent);
    bool added = false;
    // Preparing waits for the device under a waiting dialog: the page may be torn down meanwhile.
    if (dlg->SetFacePicture(faceJpeg) && dlg->SetDevice(deviceOrCameraId) && dlg) {
        dlg->exec();
        added = dlg && dlg->IsAdded();
    }
    if (dlg)
        dlg->deleteLater();
    return added;
}

QLabel* CBTAddFaceWnd::addRow(const char* labelKey, QWidget* field)
{
    auto* label = new QLabel(tr(labelKey), field->parentWidget());
    label->setProperty("formLabel", true);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    field->setMinimumWidth(240);
    m_pForm->addRow(label, field);
    return label;
}

void CBTAddFaceWnd::buildForm()
{
    const SettingsDialogFrame parts = MakeSettingsDialogFrame(this, QStringLiteral("m_pAddFaceFrame"),
        tr("AddToFacePictureLibrary"), tr("Close"), tr("Confirm"), tr("UndoMerge"));
    QFrame* frame = parts.frame;
    frame->setStyleSheet(frame->styleSheet()
        + QStringLiteral("QLabel[formLabel=\"true\"]{font-size:12px;color:#E6E6E6;}"
                         "QLabel#m_pLabel7{color:rgba(2,255,255,60);font-size:12px;}"
                         "QLabel#m_pLabelTag1{color:rgba(2,255,255,153);font-size:12px;}"
                         "QLabel#m_pFacePicLabel{border:1px solid #24405F;background-color:#13233A;}"));

    auto* body = new QHBoxLayout;
    body->setSpacing(24);
    auto* pictureColumn = new QVBoxLayout;
    m_pFacePicLabel = new QLabel(frame);
    m_pFacePicLabel->setObjectName(QStringLiteral("m_pFacePicLabel"));
    m_pFacePicLabel->setFixedSize(128, 160);
    m_pFacePicLabel->setAlignment(Qt::AlignCenter);
    pictureColumn->addWidget(m_pFacePicLabel);
    auto* tag = new QLabel(tr("FacePicture"), frame);
    tag->setObjectName(QStringLiteral("m_pLabelTag1"));
    tag->setAlignment(Qt::AlignCenter);
    pictureColumn->addWidget(tag);
    auto* hint = new QLabel(tr("FacePictureHint"), frame);
    hint->setObjectName(QStringLiteral("m_pLabel7"));
    hint->setAlignment(Qt::AlignCenter);
    pictureColumn->addWidget(hint);
    pictureColumn->addStretch(1);
    body->addLayout(pictureColumn);

    m_pForm = new QFormLayout;
    m_pForm->setHorizontalSpacing(12);
    m_pForm->setVerticalSpacing(10);
    m_pForm->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    body->addLayout(m_pForm, 1);

    m_pDeviceModel = new DeviceModel(this);
    m_pDeviceProxy = new VantorGUIToolkit::CSecondarySortFilterModel(this);
    m_pDeviceProxy->setSourceModel(m_pDeviceModel);
    m_pDeviceProxy->sort(0);
    m_pDeviceCombo = new QComboBox(frame);
    m_pDeviceCombo->setObjectName(QStringLiteral("m_pDeviceCombo"));
    m_pDeviceCombo->setModel(m_pDeviceProxy);
    m_pDeviceCombo->setCurrentIndex(-1);
    addRow(QT_TR_NOOP("Device"), m_pDeviceCombo);
    m_pFaceLibCombo = new QComboBox(frame);
    m_pFaceLibCombo->setObjectName(QStringLiteral("m_pFaceLibCombo"));
    addRow(QT_TR_NOOP("FacePictureLibrary"), m_pFaceLibCombo);
    m_pNameEdit = new VantorGUIToolkit::CValidateLineEdit(frame);
    m_pNameEdit->setObjectName(QStringLiteral("m_pNameEdit"));
    addRow(QT_TR_NOOP("PersonName"), m_pNameEdit);
    m_pGenderCombo = new QComboBox(frame);
    m_pGenderCombo->setObjectName(QStringLiteral("m_pGenderCombo"));
    addRow(QT_TR_NOOP("Gender"), m_pGenderCombo);
    m_pIDTypeCombo = new QComboBox(frame);
    m_pIDTypeCombo->setObjectName(QStringLiteral("m_pIDTypeCombo"));
    addRow(QT_TR_NOOP("IDType"), m_pIDTypeCombo);
    m_pIDNoEdit = new VantorGUIToolkit::CValidateLineEdit(frame);
    m_pIDNoEdit->setObjectName(QStringLiteral("m_pIDNoEdit"));
    addRow(QT_TR_NOOP("IDNo"), m_pIDNoEdit);
    m_pProvinceCombo = new QComboBox(frame);
    m_pProvinceCombo->setObjectName(QStringLiteral("m_pProvinceCombo"));
    addRow(QT_TR_NOOP("StateProvince"), m_pProvinceCombo);
    m_pCityCombo = new QComboBox(frame);
    m_pCityCombo->setObjectName(QStringLiteral("m_pCityCombo"));
    addRow(QT_TR_NOOP("City"), m_pCityCombo);
    m_pContactEdit = new VantorGUIToolkit::CValidateLineEdit(frame);
    m_pContactEdit->setObjectName(QStringLiteral("m_pContactEdit"));
    addRow(QT_TR_NOOP("Contact"), m_pContactEdit);
    m_pBirthEdit = new VantorGUIToolkit::CYearMonthDayEdit(frame);
    m_pBirthEdit->setObjectName(QStringLiteral("m_pBirthEdit"));
    // Its own sheet: the panel's line-edit rule would otherwise reach the
    // date field's inner editor and leave a native white box.
    m_pBirthEdit->setStyleSheet(QStringLiteral(
        "QDateTimeEdit{background-color:#13233A;color:#E6EDF5;border:1px solid #24405F;border-radius:2px;"
        "padding:2px 4px;min-height:22px;font-size:13px;}QDateTimeEdit:focus{border-color:#06E7FF;}"
        "QDateTimeEdit QLineEdit{background:transparent;color:#E6EDF5;border:none;padding:0;min-height:0;}"));
    addRow(QT_TR_NOOP("DateOfBirthday"), m_pBirthEdit);

    LayOutSettingsDialog(this, parts, body, 8, QSize(560, 520));
    connect(parts.save, &QPushButton::clicked, this, &CBTAddFaceWnd::OnApply);
    connect(parts.cancel, &QPushButton::clicked, this, &CBTAddFaceWnd::close);
    connect(parts.close, &QToolButton::clicked, this, &CBTAddFaceWnd::close);
    connect(m_pDeviceCombo, SIGNAL(currentIndexChanged(int)), this, SLOT(OnComboDeviceChanged(int)));
    connect(m_pFaceLibCombo, SIGNAL(currentIndexChanged(int)), this, SLOT(OnComboFaceLibChanged(int)));
    connect(m_pIDTypeCombo, SIGNAL(currentIndexChanged(int)), this, SLOT(OnComboIDTypeChanged(int)));
    connect(m_pProvinceCombo, SIGNAL(currentIndexChanged(int)), this, SLOT(OnComboProvinceChanged(int)));
    showRows();
}

bool CBTAddFaceWnd::SetFacePicture(const QByteArray& jpeg)
{
    m_picture = CAddFaceFormRules::FitPicture(jpeg);
    if (m_picture.isEmpty())
        return false;
    QPixmap face;
    if (face.loadFromData(m_picture))
        m_pFacePicLabel->setPixmap(
            face.scaled(m_pFacePicLabel->size() - QSize(4, 4), Qt::KeepAspectRatio, Qt::SmoothTransformation));
    return true;
}

bool CBTAddFaceWnd::SetDevice(const std::string& deviceOrCameraId)
{
    const std::string deviceId = DeviceModel::ResolveDevice(deviceOrCameraId);
    const int sourceRow = m_pDeviceModel->RowOfDevice(deviceId);
    int row = sourceRow < 0 ? 0 : m_pDeviceProxy->mapFromSource(m_pDeviceModel->index(sourceRow, 0)).row();
    if (m_pDeviceCombo->count() == 0)
        row = -1;
    // Prepared here rather than from the combo's signal: the dialog may be
    // deleted while the device answers, which the combo must not be inside.
    m_pDeviceCombo->blockSignals(true);
    m_pDeviceCombo->setCurrentIndex(row);
    m_pDeviceCombo->blockSignals(false);
    const QPointer<CBTAddFaceWnd> self(this);
    changeDevice(row);
    return self && m_bUsable;
}

void CBTAddFaceWnd::OnComboDeviceChanged(int index)
{
    prepareLater(m_pDeviceCombo, index, &CBTAddFaceWnd::changeDevice);
}

void CBTAddFaceWnd::prepareLater(QComboBox* combo, int index, void (CBTAddFaceWnd::*prepare)(int))
{
    // The operator's choice is prepared from the event loop, once the combo has
    // left its signal: the page may be torn down (and the dialog with its combo
    // deleted) while the device answers. Meanwhile nothing can be confirmed.
    setUsable(false);
    QMetaObject::invokeMethod(this, [this, combo, index, prepare] {
        if (combo->currentIndex() == index)
            (this->*prepare)(index);
    }, Qt::QueuedConnection);
}

void CBTAddFaceWnd::setUsable(bool usable)
{
    m_bUsable = usable;
    if (auto* confirm = findChild<QPushButton*>(QStringLiteral("m_pSaveBtn")))
        confirm->setEnabled(usable);
}

void CBTAddFaceWnd::changeDevice(int index)
{
    m_strDeviceId = index < 0
        ? std::string()
        : m_pDeviceCombo->itemData(index, DeviceModel::DeviceIDRole).toString().toStdString();
    const QPointer<CBTAddFaceWnd> self(this);
    const bool usable = !m_strDeviceId.empty() && prepareForm();
    if (self)
        setUsable(usable);
}

bool CBTAddFaceWnd::prepareForm()
{
    m_libraryExtend.clear();
    m_pFaceLibCombo->blockSignals(true);
    m_pFaceLibCombo->clear();
    m_pFaceLibCombo->blockSignals(false);
    const auto read = std::make_shared<DeviceLibraries>();
    const std::string deviceId = m_strDeviceId;
    const int regionMode = clientcommonlogical::CConfigMgr::Instance()->GetRegionMode();
    const bool done = runRequests([read, deviceId, regionMode](commlayer::CRequestCancel* cancel) {
        uint32_t err = 0;
        read->capRead = GetFaceDataLibraryCapability(read->cap, err, deviceId, cancel);
        if (!read->capRead) {
            read->capError = Base::Error::GetLastError();
            return;
        }
        if (!read->cap.bSupport)
            return;
        read->librariesRead = GetFaceDataLibraryCfg(read->libraries, err, deviceId, cancel);
        if (!read->librariesRead)
            return;
        for (const CapabilitySet::FDLibBaseCfg& lib : read->libraries.libraries)
            if (lib.type != "stranger") {
                GetPersonnalInfoExtendListCfg(read->firstLibraryExtend, err, deviceId, lib.FDID, cancel);
                break;
            }
        if (CAddFaceFormRules::RowsFor(read->cap, regionMode, {}).region)
            read->citiesRead = GetCityCodeCapability(read->cities, err, deviceId, cancel);
    });
    if (!done)
        return false;  // cancelled (the reason is the operator's) or the dialog is gone
    m_cap = read->cap;
    m_libraries = read->libraries;
    if (!read->capRead) {
        showMessage(failureText(read->capError, tr("GettingFacePictureLibraryFailed")));
        return false;
    }
    if (!m_cap.bSupport) {
        showMessage(tr("FacePictureLibraryIsNotSupported"));
        return false;
    }
    if (!read->librariesRead) {
        showMessage(tr("GettingFacePictureLibraryFailed"));
        return false;
    }
    fillLibraries();
    if (m_pFaceLibCombo->count() == 0) {
        showMessage(tr("NoFacePictureLibrary"));
        return false;
    }

    m_pNameEdit->SetRegExp(m_cap.bNameRule ? QString::fromStdString(m_cap.strNameRule) : QString());
    m_pNameEdit->clear();
    m_pNameEdit->setFocus();
    m_pContactEdit->SetRegExp(CAddFaceFormRules::ContactPattern(m_cap.iContactMaxLen));
    m_pContactEdit->clear();
    m_pIDNoEdit->SetRegExp(CAddFaceFormRules::IDNumberPattern(m_cap.iIDNumberMaxLen));
    m_pIDNoEdit->setToolTip(tr("TheCertificateNumberCanOnlyBeLower-caseLettersA-zLettersA-Znumbers0-9"));
    m_pIDNoEdit->clear();
    CBTFaceDataPublic::FillGenderCombo(m_pGenderCombo, {"male", "female"});
    CBTFaceDataPublic::FillIDTypeCombo(m_pIDTypeCombo, m_cap.idTypeList);
    m_pBirthEdit->SetLatest(QDateTime::currentDateTime());
    m_pBirthEdit->setDateTime(QDateTime(QDate(2000, 1, 1), QTime(0, 0, 0)));
    fillRegion(read->citiesRead ? read->cities : CapabilitySet::CityCodeCapability());
    // The first library's extended fields came with the rest.
    m_libraryExtend = read->firstLibraryExtend.items;
    showRows();
    return true;
}

void CBTAddFaceWnd::fillLibraries()
{
    m_pFaceLibCombo->blockSignals(true);
    m_pFaceLibCombo->clear();
    for (const CapabilitySet::FDLibBaseCfg& lib : m_libraries.libraries)
        if (lib.type != "stranger")
            m_pFaceLibCombo->addItem(QString::fromStdString(lib.name), QString::fromStdString(lib.FDID));
    m_pFaceLibCombo->setCurrentIndex(m_pFaceLibCombo->count() > 0 ? 0 : -1);
    m_pFaceLibCombo->blockSignals(false);
    m_strFDID = m_pFaceLibCombo->currentData().toString().toStdString();
}

void CBTAddFaceWnd::fillRegion(const CapabilitySet::CityCodeCapability& cities)
{
    m_cities = CapabilitySet::CityCodeCapability();
    if (!CAddFaceFormRules::RowsFor(m_cap, clientcommonlogical::CConfigMgr::Instance()->GetRegionMode(), {}).region)
        return;
    m_cities = cities;
    m_pProvinceCombo->blockSignals(true);
    bool fromDevice = !m_cities.provinces.empty();
    if (fromDevice) {
        try {
            CBTFaceDataPublic::FillProvinceCombo(m_pProvinceCombo, m_cities);
        } catch (const std::exception&) {
            // A device table with codes that are not numbers: the built-in one is used.
            fromDevice = false;
            m_cities = CapabilitySet::CityCodeCapability();
        }
    }
    if (!fromDevice)
        CBTFaceDataPublic::FillProvinceCombo(m_pProvinceCombo);
    m_pProvinceCombo->setCurrentIndex(0);
    m_pProvinceCombo->blockSignals(false);
    OnComboProvinceChanged(0);
}

void CBTAddFaceWnd::OnComboFaceLibChanged(int index)
{
    prepareLater(m_pFaceLibCombo, index, &CBTAddFaceWnd::changeLibrary);
}

void CBTAddFaceWnd::changeLibrary(int index)
{
    const std::string FDID = index < 0 ? std::string() : m_pFaceLibCombo->itemData(index).toString().toStdString();
    const std::string deviceId = m_strDeviceId;
    m_strFDID = FDID;
    m_libraryExtend.clear();
    if (!FDID.empty()) {
        const auto ext = std::make_shared<CapabilitySet::PersonnalInfoExtendListConfig>();
        const QPointer<CBTAddFaceWnd> self(this);
        const bool read = runRequests([ext, deviceId, FDID](commlayer::CRequestCancel* cancel) {
            uint32_t err = 0;
            GetPersonnalInfoExtendListCfg(*ext, err, deviceId, FDID, cancel);
        });
        if (!self)
            return;
        // Cancelled, the library stays chosen without its own fields; a device
        // chosen meanwhile has prepared the form for itself.
        if (read && m_strDeviceId == deviceId && m_strFDID == FDID)
            m_libraryExtend = ext->items;
    }
    showRows();
    // Only a prepared device lists libraries.
    setUsable(m_pFaceLibCombo->count() > 0);
}

void CBTAddFaceWnd::OnComboIDTypeChanged(int)
{
    // The devices apply one number rule to every ID type, so a number already
    // typed stays valid; the type is read when the form is confirmed.
}

void CBTAddFaceWnd::OnComboProvinceChanged(int index)
{
    if (index < 0)
        return;
    const int code = m_pProvinceCombo->itemData(index).toInt();
    try {
        if (m_cities.provinces.empty())
            CBTFaceDataPublic::FillCityCombo(m_pCityCombo, code);
        else
            CBTFaceDataPublic::FillCityCombo(m_pCityCombo, m_cities, code);
    } catch (const std::exception&) {
        CBTFaceDataPublic::FillCityCombo(m_pCityCombo, code);
    }
}

void CBTAddFaceWnd::showRows()
{
    const auto rows = CAddFaceFormRules::RowsFor(
        m_cap, clientcommonlogical::CConfigMgr::Instance()->GetRegionMode(), m_libraryExtend);
    const std::pair<QWidget*, bool> fields[] = {{m_pGenderCombo, rows.gender}, {m_pIDTypeCombo, rows.idType},
        {m_pIDNoEdit, rows.idNumber}, {m_pProvinceCombo, rows.region}, {m_pCityCombo, rows.region},
        {m_pContactEdit, rows.contact}, {m_pBirthEdit, rows.birthDate}};
    for (const auto& f : fields) {
        f.first->setVisible(f.second);
        if (QWidget* label = m_pForm->labelForField(f.first))
            label->setVisible(f.second);
    }
    rebuildExtendRows(rows.extend);
}

void CBTAddFaceWnd::rebuildExtendRows(const std::vector<CapabilitySet::PersonInfoExtendCfg>& items)
{
    for (ExtendRow& row : m_extendRows) {
        const QFormLayout::TakeRowResult taken = m_pForm->takeRow(row.edit);
        delete taken.labelItem;
        delete taken.fieldItem;
        row.label->hide();
        row.edit->hide();
        row.label->deleteLater();
        row.edit->deleteLater();
    }
    m_extendRows.clear();
    QWidget* frame = m_pNameEdit->parentWidget();
    for (const CapabilitySet::PersonInfoExtendCfg& item : items) {
        auto* edit = new QLineEdit(frame);
        edit->setObjectName(QStringLiteral("m_pExtendEdit%1").arg(m_extendRows.size() + 1));
        auto* label = new QLabel(QString::fromStdString(item.name), frame);
        label->setProperty("formLabel", true);
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        m_pForm->addRow(label, edit);
        m_extendRows.push_back({item, label, edit});
    }
}

void CBTAddFaceWnd::OnApply()
{
    if (!m_bUsable)
        return;
    const auto rows = CAddFaceFormRules::RowsFor(
        m_cap, clientcommonlogical::CConfigMgr::Instance()->GetRegionMode(), m_libraryExtend);
    CapabilitySet::FaceDataRecordCfg record;
    record.bTextEscaped = true;

    const QString name = m_pNameEdit->text().trimmed();
    if (name.isEmpty()) {
        m_pNameEdit->ShowTip(tr("InputName"));
        return;
    }
    record.name = CAddFaceFormRules::EscapeXml(name).toStdString();

    if (rows.idNumber) {
        const QString number = m_pIDNoEdit->text();
        if (!number.isEmpty() && number.size() < m_cap.iIDNumberMinLen) {
            m_pIDNoEdit->ShowTip(tr("InputAnIDNumberLongerThan%1Characters").arg(m_cap.iIDNumberMinLen));
            return;
        }
        record.idNumber = number.toStdString();
        record.bIDNumberSet = !number.isEmpty();
    }
    record.FDID = m_pFaceLibCombo->currentData().toString().toStdString();
    if (rows.contact) {
        // An offered contact counts as given, also when left empty.
        record.contact = m_pContactEdit->text().toStdString();
        record.bContactSet = true;
    }
    if (rows.region) {
        record.province = CBTFaceDataPublic::GetRegionCode(m_pProvinceCombo);
        record.city = record.province.empty() ? std::string() : CBTFaceDataPublic::GetRegionCode(m_pCityCombo);
    }
    if (rows.gender)
        record.gender = CBTFaceDataPublic::GetGenderFromCombo(m_pGenderCombo);
    if (rows.idType)
        record.idType = CBTFaceDataPublic::GetIDTypeFromCombo(m_pIDTypeCombo);
    if (rows.birthDate)
        record.birthDate = m_pBirthEdit->IsoText().toStdString();
    for (size_t i = 0; i < m_extendRows.size(); ++i) {
        CapabilitySet::PersonInfoExtendCfg item;
        item.id = int(i + 1);
        item.enable = true;
        item.name = CAddFaceFormRules::EscapeXml(QString::fromStdString(m_extendRows[i].item.name)).toStdString();
        item.value = CAddFaceFormRules::EscapeXml(m_extendRows[i].edit->text()).toStdString();
        record.extendList.push_back(item);
    }

    if (m_picture.isEmpty()) {
        showMessage(CFaceUploadOutcome::Translate("FailedToAddPicture"));
    } else {
        const QPointer<CBTAddFaceWnd> self(this);
        const bool added = runUpload(record);
        if (!self)
            return;  // deleted with its page while it uploaded
        m_bAdded = added;
    }
    close();
}

bool CBTAddFaceWnd::runUpload(const CapabilitySet::FaceDataRecordCfg& record)
{
    auto thread = std::make_unique<CInportFaceDataRecordThread>();
    thread->SetTarget(m_strDeviceId, record.FDID, false);
    thread->SetPicture(m_picture.constData(), uint32_t(m_picture.size()));
    thread->SetPersonRecord(record);

    const QPointer<CBTAddFaceWnd> self(this);
    m_pUpload = thread.get();
    const QPointer<VantorGUIToolkit::CChaseDialog> chase
        = new VantorGUIToolkit::CChaseDialog(QString::fromLatin1(kLoadingGif), "Processing", this);
    chase->setObjectName(QStringLiteral("m_pChaseDialog"));
    connect(chase, &VantorGUIToolkit::CChaseDialog::SignalCancel, thread.get(),
        &CInportFaceDataRecordThread::OnCancelThread);
    connect(thread.get(), &CInportFaceDataRecordThread::SignalStop, chase,
        &VantorGUIToolkit::CChaseDialog::OnImmediatelyStopChase);
    thread->start(QThread::InheritPriority);
    chase->ExecChase();
    if (chase)
        chase->deleteLater();
    if (self && !thread->isFinished()) {
        // Cancelled: the worker's request is cut; it may still ask the device
        // whether the face was stored. Alarms keep arriving meanwhile; the
        // form takes no input until then.
        setEnabled(false);
        QEventLoop waitForWorker;
        connect(thread.get(), &QThread::finished, &waitForWorker, &QEventLoop::quit);
        if (!thread->isFinished())
            waitForWorker.exec();
        if (self)
            setEnabled(true);
    }
    if (!self) {
        // Deleted meanwhile (its destructor cut the upload): nothing to show it in.
        thread->Abort();
        thread->wait();
        return false;
    }
    m_pUpload = nullptr;
    thread->wait();
    handoff::Acquire(thread.get());

    const auto outcome = CFaceUploadOutcome::Evaluate(thread->IsSuccess(), thread->IsCancelled(),
        thread->UploadState(), thread->ErrorPair(), thread->StoredCheck());
    showMessage(outcome.text);
    return outcome.success;
}

bool CBTAddFaceWnd::runRequests(const std::function<void(commlayer::CRequestCancel*)>& work)
{
    const auto cancel = std::make_shared<commlayer::CRequestCancel>();
    const auto done = std::make_shared<std::atomic<bool>>(false);
    m_pRequests = cancel;
    std::thread worker([work, cancel, done] {
        pthread_setname_np(pthread_self(), "bt-facelib-req");
        work(cancel.get());
        done->store(true);
    });
    const QPointer<CBTAddFaceWnd> self(this);
    const QPointer<VantorGUIToolkit::CChaseDialog> chase
        = new VantorGUIToolkit::CChaseDialog(QString::fromLatin1(kLoadingGif), "Processing", this);
    chase->setObjectName(QStringLiteral("m_pRequestChase"));
    connect(chase, &VantorGUIToolkit::CChaseDialog::SignalCancel, chase, [cancel] { cancel->Cancel(); });
    // The worker touches no widget: its end is noticed here.
    auto* poll = new QTimer(chase);
    connect(poll, &QTimer::timeout, chase, [done, chase] {
        if (done->load() && chase)
            chase->OnImmediatelyStopChase();
    });
    poll->start(10);
    // Most devices answer within a blink: no waiting dialog flashes up for them.
    for (int i = 0; i < 5 && !done->load(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    if (done->load())
        chase->OnImmediatelyStopChase();
    chase->ExecChase();
    if (chase)
        chase->deleteLater();
    // Ended, or cancelled (also by the dialog's deletion): the request in flight was cut.
    worker.join();
    if (!self)
        return false;
    m_pRequests = nullptr;
    return !cancel->IsCancelled();
}

void CBTAddFaceWnd::showMessage(const QString& text)
{
    VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(text);
}

} // namespace BodyTemperature
