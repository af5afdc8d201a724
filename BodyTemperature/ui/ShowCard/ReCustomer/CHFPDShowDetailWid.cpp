#include "ui/ShowCard/ReCustomer/CHFPDShowDetailWid.h"

#include <QDateTime>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "Base/Log.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include "ui/ShowCard/ReCustomer/CBTPropItem.h"
#include "ui/ShowCard/ReCustomer/CHFPDAttributes.h"
#include "ui/ShowCard/ReCustomer/CHFPDPaging.h"
#include "ui/ShowCard/ReCustomer/CHFPDPicLabel.h"
#include "ui/ShowCard/ReCustomer/CHFPDPicLabelList.h"
#include "ui/ShowCard/ReCustomer/CHFPDPictureLoader.h"
#include "ui/ShowCard/ReCustomer/CPictureWidget.h"
#include "ui/ShowCard/ReCustomer/CTargetPageController.h"

namespace BodyTemperature {

namespace {

const QSize kViewSize(1600, 900);
constexpr int kMargin = 16;
constexpr int kStripSpacing = 4;
constexpr int kTitleHeight = 44;

const char* const kStyle = R"(
#ReCustomerDetailWid, #ReCustomerDetailsDlg { background-color: #0d1726; }
QFrame#m_pTitleBar { background-color: #132238; border-bottom: 1px solid #22405f; }
QLabel#m_pTitleLabel { color: #ffffff; font-size: 18px; font-weight: bold; }
QPushButton#m_pCloseBtn { color: #cccccc; background: transparent; border: none; font-size: 20px; }
QPushButton#m_pCloseBtn:hover { color: #ffffff; background-color: #c0392b; }
QFrame#m_pInfoPanel, QFrame#m_pPersonPanel { background-color: #111e31; border: 1px solid #22405f; }
QLabel { color: #cccccc; font-size: 14px; }
QLabel#m_pLabelTitleSel { color: #ffffff; font-size: 15px; }
QLabel#m_pCameraLabel { color: #ffffff; font-size: 16px; font-weight: bold; }
QLabel#m_pSectionLabel { color: #06e7ff; font-size: 14px; font-weight: bold; }
QLabel#m_pNoDetails { color: #8a96a8; font-size: 18px; }
QPushButton { color: #e6e6e6; background-color: #1b2e48; border: 1px solid #2c4c74; border-radius: 3px; font-size: 14px; }
QPushButton:hover { background-color: #24406a; }
QPushButton:disabled { color: #5a6575; background-color: #142235; border-color: #1e3048; }
QPushButton#pPreviousBtn, QPushButton#pNextBtn { padding: 0 10px; }
QPushButton#m_pAddBtn { background-color: #0a7fb8; border-color: #0a7fb8; min-height: 34px; font-weight: bold; }
QPushButton#m_pAddBtn:hover { background-color: #1297d6; }
QLineEdit { color: #ffffff; background-color: #0b1420; border: 1px solid #2c4c74; border-radius: 3px; font-size: 14px; }
)";

QString timeOnThumb(const HFPDRecord& r)
{
    if (r.captureSeconds < 0)
        return QString::fromStdString(r.captureTime);
    return QDateTime::fromSecsSinceEpoch(r.captureSeconds).toString(QStringLiteral("MM/dd hh:mm:ss"));
}

QLabel* newLabel(QWidget* parent, const char* name, const QString& text = QString())
{
    auto* l = new QLabel(text, parent);
    l->setObjectName(QLatin1String(name));
    return l;
}

} // namespace

CHFPDShowDetailWid::CHFPDShowDetailWid(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("ReCustomerDetailWid"));
    setWindowTitle(tr("RegularCustomerDetails"));
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_StyledBackground);
    setFixedSize(kViewSize);
    setStyleSheet(QLatin1String(kStyle));
    m_pLoader = new CHFPDPictureLoader(this);
    connect(m_pLoader, &CHFPDPictureLoader::SignalThumbLoaded, this, &CHFPDShowDetailWid::onThumbLoaded);
    connect(m_pLoader, &CHFPDPictureLoader::SignalThumbFailed, this, &CHFPDShowDetailWid::onThumbFailed);
    connect(m_pLoader, &CHFPDPictureLoader::SignalPictureDownloaded, this, &CHFPDShowDetailWid::onPictureDownloaded);
    connect(m_pLoader, &CHFPDPictureLoader::SignalPictureFailed, this, &CHFPDShowDetailWid::onPictureFailed);
    buildForm();
}

CHFPDShowDetailWid::~CHFPDShowDetailWid() = default;

void CHFPDShowDetailWid::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (m_bDownloadsStopped) {
        m_bDownloadsStopped = false;
        OnChangePage(m_uCurrentPage);
    }
}

void CHFPDShowDetailWid::hideEvent(QHideEvent* event)
{
    // A closed view downloads nothing more, and its owner may delete it at once.
    m_pLoader->Stop();
    m_bDownloadsStopped = true;
    QDialog::hideEvent(event);
}

void CHFPDShowDetailWid::buildForm()
{
    auto* root = new QVBoxLayout(this);
    root->setContentsMargins(0, 0, 0, 0);
    root->setSpacing(0);

    auto* titleBar = new QFrame(this);
    titleBar->setObjectName(QStringLiteral("m_pTitleBar"));
    titleBar->setFixedHeight(kTitleHeight);
    auto* titleRow = new QHBoxLayout(titleBar);
    titleRow->setContentsMargins(kMargin, 0, 8, 0);
    m_pTitleLabel = newLabel(titleBar, "m_pTitleLabel", tr("RegularCustomerDetails"));
    titleRow->addWidget(m_pTitleLabel);
    titleRow->addStretch(1);
    m_pCloseBtn = new QPushButton(QStringLiteral("\u2715"), titleBar);
    m_pCloseBtn->setObjectName(QStringLiteral("m_pCloseBtn"));
    m_pCloseBtn->setToolTip(tr("Close"));
    m_pCloseBtn->setFixedSize(36, 32);
    titleRow->addWidget(m_pCloseBtn);
    connect(m_pCloseBtn, &QPushButton::clicked, this, &CHFPDShowDetailWid::OnBtnClose);
    root->addWidget(titleBar);

    auto* body = new QHBoxLayout;
    body->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    body->setSpacing(kMargin);
    root->addLayout(body, 1);

    auto* left = new QVBoxLayout;
    left->setSpacing(10);
    m_pStripArea = new QWidget(this);
    m_pStripArea->setObjectName(QStringLiteral("m_pStripArea"));
    auto* stripLayout = new QGridLayout(m_pStripArea);
    stripLayout->setContentsMargins(0, 0, 0, 0);
    m_pPicList = new CHFPDPicLabelList(m_pStripArea);
    stripLayout->addWidget(m_pPicList, 0, 0);
    m_pNoDetails = newLabel(m_pStripArea, "m_pNoDetails", tr("NoDetails"));
    m_pNoDetails->setAlignment(Qt::AlignCenter);
    m_pNoDetails->hide();
    stripLayout->addWidget(m_pNoDetails, 0, 0);
    left->addWidget(m_pStripArea);
    m_pPager = new CTargetPageController(this);
    left->addWidget(m_pPager);
    left->addStretch(1);
    body->addLayout(left, 1);
    connect(m_pPicList, &CHFPDPicLabelList::SignalPicLabelClickedWithLsh, this, &CHFPDShowDetailWid::OnPictrueClicked);

    m_pInfoPanel = new QFrame(this);
    m_pInfoPanel->setObjectName(QStringLiteral("m_pInfoPanel"));
    auto* info = new QVBoxLayout(m_pInfoPanel);
    info->setContentsMargins(12, 12, 12, 12);
    info->setSpacing(8);
    m_pPicture = new CPictureWidget(m_pInfoPanel);
    info->addWidget(m_pPicture);
    m_pCameraLabel = newLabel(m_pInfoPanel, "m_pCameraLabel");
    m_pTimeLabel = newLabel(m_pInfoPanel, "m_pTimeLabel");
    info->addWidget(m_pCameraLabel);
    info->addWidget(m_pTimeLabel);
    info->addWidget(newLabel(m_pInfoPanel, "m_pSectionLabel", tr("TargetAttributes")));
    m_pPropArea = new QWidget(m_pInfoPanel);
    m_pPropArea->setObjectName(QStringLiteral("m_pPropArea"));
    auto* props = new QGridLayout(m_pPropArea);
    props->setContentsMargins(0, 0, 0, 0);
    props->setSpacing(8);
    info->addWidget(m_pPropArea);

    m_pPersonPanel = new QFrame(m_pInfoPanel);
    m_pPersonPanel->setObjectName(QStringLiteral("m_pPersonPanel"));
    auto* person = new QGridLayout(m_pPersonPanel);
    person->setContentsMargins(10, 8, 10, 8);
    person->setHorizontalSpacing(12);
    person->addWidget(newLabel(m_pPersonPanel, "m_pSectionLabel", tr("PersonInLibrary")), 0, 0, 1, 2);
    person->addWidget(newLabel(m_pPersonPanel, "m_pNameTitle", tr("TheName")), 1, 0);
    m_pPersonName = newLabel(m_pPersonPanel, "m_pPersonName");
    person->addWidget(m_pPersonName, 1, 1);
    person->addWidget(newLabel(m_pPersonPanel, "m_pGenderTitle", tr("Gender")), 2, 0);
    m_pPersonGender = newLabel(m_pPersonPanel, "m_pPersonGender");
    person->addWidget(m_pPersonGender, 2, 1);
    person->addWidget(newLabel(m_pPersonPanel, "m_pContactTitle", tr("Contact")), 3, 0);
    m_pPersonContact = newLabel(m_pPersonPanel, "m_pPersonContact");
    person->addWidget(m_pPersonContact, 3, 1);
    person->setColumnStretch(1, 1);
    m_pPersonPanel->hide();
    info->addWidget(m_pPersonPanel);
    info->addStretch(1);

    m_pAddBtn = new QPushButton(tr("AddToFacePictureLibrary"), m_pInfoPanel);
    m_pAddBtn->setObjectName(QStringLiteral("m_pAddBtn"));
    m_pAddBtn->setToolTip(tr("AddToFacePictureLibrary"));
    m_pAddBtn->setCursor(Qt::PointingHandCursor);
    info->addWidget(m_pAddBtn);
    connect(m_pAddBtn, &QPushButton::clicked, this, &CHFPDShowDetailWid::SignalHFPDAddFDLibClicked);
    connect(this, &CHFPDShowDetailWid::SignalHFPDAddFDLibClicked, this, &CHFPDShowDetailWid::OnAddFDLibClicked);
    body->addWidget(m_pInfoPanel);
    layoutStrip();
}

void CHFPDShowDetailWid::layoutStrip()
{
    // Proportions of the view the thumbnail strip was designed for.
    const QSize thumb(int(width() * 0.10548523), int(height() * 0.22324967));
    const int stripHeight = int(height() * 0.8322325) - 2;
    const int rows = qMax(1, (stripHeight + kStripSpacing) / (thumb.height() + kStripSpacing));
    const int columns = int((CHFPDPaging::kPageSize + rows - 1) / rows);
    m_pPicList->SetGeometryOfLabels(thumb, kStripSpacing, columns);
    const int stripWidth = columns * thumb.width() + (columns - 1) * kStripSpacing;
    m_pStripArea->setFixedSize(stripWidth, stripHeight);
    m_pPager->setFixedWidth(stripWidth);
    const int panelWidth = width() - stripWidth - 3 * kMargin;
    m_pInfoPanel->setFixedWidth(panelWidth);
    const int pictureWidth = panelWidth - 24;
    m_pPicture->setFixedSize(pictureWidth, pictureWidth * 9 / 16);
}

bool CHFPDShowDetailWid::SetHFPDRecords(const HFPDRecordList& records, const std::string& deviceId,
    uint32_t uAttrMask, const HFPDPersonInfo& person)
{
    return SetHFPDRecords(std::make_shared<const HFPDRecordList>(records), deviceId, uAttrMask, person);
}

bool CHFPDShowDetailWid::SetHFPDRecords(HFPDRecordsPtr records, const std::string& deviceId, uint32_t uAttrMask,
    const HFPDPersonInfo& person)
{
    m_records = records ? std::move(records) : std::make_shared<const HFPDRecordList>();
    m_strDeviceId = deviceId;
    m_uAttrMask = uAttrMask;
    showPerson(person);
    rebuildPropItems();

    disconnect(m_pPager, &CTargetPageController::SignalPageChanged, this, &CHFPDShowDetailWid::OnChangePage);
    m_pPicList->ClearPicLabels();
    m_pPicture->Clear();
    m_pPager->SetPageInfo(CHFPDPaging::PagerPageCount(m_records->size()), unsigned(m_records->size()));
    connect(m_pPager, &CTargetPageController::SignalPageChanged, this, &CHFPDShowDetailWid::OnChangePage);
    layoutStrip();
    OnChangePage(1);
    return !m_strDeviceId.empty();
}

void CHFPDShowDetailWid::OnChangePage(unsigned int uPage)
{
    m_uCurrentPage = uPage;
    m_uSelected = 0;
    m_faceBytes.clear();
    m_pPicList->ClearPicLabels();
    const uint32_t count = CHFPDPaging::PictureCount(m_records->size(), uPage);
    m_pNoDetails->setVisible(m_records->empty());
    m_pAddBtn->setEnabled(count > 0);
    std::vector<CHFPDPictureLoader::Thumb> thumbs;
    for (uint32_t k = 1; k <= count; ++k) {
        const HFPDRecord& r = (*m_records)[CHFPDPaging::RecordIndex(uPage, k)];
        m_pPicList->AddPicLabel(k, timeOnThumb(r));
        const std::string& face = r.facePicUrl.empty() ? r.picUrl : r.facePicUrl;
        thumbs.push_back({k, face});
    }
    const QSize thumbSize(int(width() * 0.10548523), int(height() * 0.22324967) - 26);
    m_pLoader->LoadThumbs(m_strDeviceId, thumbs, thumbSize);
    if (count > 0) {
        OnPictrueClicked(1);
    } else {
        m_pPicture->Clear();
        m_pCameraLabel->clear();
        m_pTimeLabel->clear();
    }
}

void CHFPDShowDetailWid::OnPictrueClicked(unsigned int uPicLsh)
{
    if (uPicLsh == 0 || uPicLsh > CHFPDPaging::PictureCount(m_records->size(), m_uCurrentPage))
        return;
    if (!m_pPicList->SelectPicLabel(uPicLsh))
        return;
    m_uSelected = uPicLsh;
    const HFPDRecord& r = (*m_records)[CHFPDPaging::RecordIndex(m_uCurrentPage, uPicLsh)];
    m_sceneBytes.clear();
    m_pPicture->Clear();
    m_pPicture->SetMessage(tr("Loading"));
    // Camera, time and attributes change with the picture, once it has arrived.
    m_pLoader->LoadPicture(m_strDeviceId, r.picUrl);
}

void CHFPDShowDetailWid::OnAddFDLibClicked()
{
    const HFPDRecord* r = selectedRecord();
    if (r == nullptr)
        return;
    emit SignalAddHFPDFaceToLibrary(QString::fromStdString(m_strDeviceId), QString::fromStdString(r->channelID),
        m_faceBytes.value(m_uSelected), m_sceneBytes, QRectF(r->x, r->y, r->width, r->height));
}

void CHFPDShowDetailWid::OnBtnClose()
{
    reject();
}

const HFPDRecord* CHFPDShowDetailWid::selectedRecord() const
{
    if (m_uSelected == 0)
        return nullptr;
    const size_t index = CHFPDPaging::RecordIndex(m_uCurrentPage, m_uSelected);
    return index < m_records->size() ? &(*m_records)[index] : nullptr;
}

void CHFPDShowDetailWid::showPerson(const HFPDPersonInfo& person)
{
    m_pPersonPanel->setVisible(person.valid);
    if (!person.valid)
        return;
    m_pPersonName->setText(person.name.empty() ? QStringLiteral("/") : QString::fromStdString(person.name));
    m_pPersonGender->setText(person.gender == 1 ? tr("Male") : person.gender == 2 ? tr("Female") : tr("Unknown"));
    m_pPersonContact->setText(person.contact.empty() ? QStringLiteral("/") : QString::fromStdString(person.contact));
}

void CHFPDShowDetailWid::rebuildPropItems()
{
    for (const auto& item : m_propItems)
        item.second->deleteLater();
    m_propItems.clear();
    auto* grid = static_cast<QGridLayout*>(m_pPropArea->layout());
    int n = 0;
    for (CHFPDAttributes::Item kind : CHFPDAttributes::ShownItems(m_uAttrMask)) {
        auto* item = new CBTPropItem(m_pPropArea);
        item->setFixedHeight(54);
        switch (kind) {
        case CHFPDAttributes::Item::Gender: item->SetTitle(tr("Gender")); break;
        case CHFPDAttributes::Item::AgeGroup: item->SetTitle(tr("AgeGroup")); break;
        case CHFPDAttributes::Item::Glasses: item->SetTitle(tr("Glasses")); break;
        case CHFPDAttributes::Item::Mask: item->SetTitle(tr("Mask")); break;
        case CHFPDAttributes::Item::Hat: item->SetTitle(tr("Hat")); break;
        }
        grid->addWidget(item, n / 2, n % 2);
        m_propItems.append({int(kind), item});
        ++n;
    }
}

void CHFPDShowDetailWid::refreshPropItems(const HFPDRecord& r)
{
    for (const auto& entry : m_propItems) {
        CHFPDAttributes::Look look{"", "Unknown"};
        switch (CHFPDAttributes::Item(entry.first)) {
        case CHFPDAttributes::Item::Gender: look = CHFPDAttributes::GenderLook(CHFPDAttributes::GenderCode(r.gender)); break;
        case CHFPDAttributes::Item::AgeGroup:
            look = CHFPDAttributes::AgeGroupLook(CHFPDAttributes::AgeGroupCode(r.ageGroup));
            break;
        case CHFPDAttributes::Item::Glasses: look = CHFPDAttributes::GlassesLook(CHFPDAttributes::GlassesCode(r.glass)); break;
        case CHFPDAttributes::Item::Mask: look = CHFPDAttributes::MaskLook(r.mask); break;
        case CHFPDAttributes::Item::Hat: look = CHFPDAttributes::HatLook(r.hat); break;
        }
        entry.second->SetValue(tr(look.key), QString::fromLatin1(look.icon));
        entry.second->SetSelected(look.icon[0] != '\0' && QByteArray(look.icon).contains("_sel"));
    }
}

void CHFPDShowDetailWid::onThumbLoaded(unsigned int uPicLsh, const QImage& image, const QByteArray& bytes)
{
    CHFPDPicLabel* label = m_pPicList->FindPicLabel(uPicLsh);
    if (label == nullptr)
        return;
    m_faceBytes.insert(uPicLsh, bytes);
    label->SetPicture(QPixmap::fromImage(image));
}

void CHFPDShowDetailWid::onThumbFailed(unsigned int uPicLsh, bool bDownloadFailed)
{
    CHFPDPicLabel* label = m_pPicList->FindPicLabel(uPicLsh);
    if (label != nullptr)
        label->SetFailed(bDownloadFailed ? tr("PictureDownloadFailed") : tr("PictureDamaged"));
}

void CHFPDShowDetailWid::onPictureDownloaded(const QByteArray& bytes)
{
    const HFPDRecord* r = selectedRecord();
    if (r == nullptr)
        return;
    if (m_pPicture->ShowPictureByBuffer(bytes)) {
        m_sceneBytes = bytes;
        m_pPicture->SetFaceRect(QRectF(r->x, r->y, r->width, r->height));
    } else {
        m_pPicture->SetMessage(tr("PictureDamaged"));
        BASE_LOG_DEBUG("Failed to load image");
    }
    m_pCameraLabel->setText(QString::fromStdString(r->cameraName));
    m_pTimeLabel->setText(QString::fromStdString(r->captureTime));
    refreshPropItems(*r);
}

void CHFPDShowDetailWid::onPictureFailed()
{
    m_pPicture->SetMessage(tr("PictureDownloadFailed"));
    VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(
        tr("IncorrectPortNoPleaseChangeNATInRemoteConfiguration"));
}

} // namespace BodyTemperature
