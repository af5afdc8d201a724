// The add-to-library dialog against the emulator: rows offered, what reaches
// the device, failures, cancel, and the card that opened it held while it runs.
#include <QComboBox>
#include <QDateTimeEdit>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>
#include <QToolTip>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "../DashboardRecords.h"
#include "CapabilitySet/FaceDataRecordCfg.h"
#include "VantorGUIToolkit/CChaseDialog.h"
#include "VantorGUIToolkit/CInformationDlg.h"
#include "support/DeviceSim.h"
#include "ui/AddIntoFaceLib/CBTAddFaceWnd.h"
#include "ui/CBottomWidget.h"
#include "ui/ShowCard/CSnapUnit.h"

using namespace BodyTemperature;
using VantorGUIToolkit::CInformationDlg;
using testsupport::child;

namespace {

const char* const kEverything = "";  // the emulator's own answer
const char* const kNothing = "<FaceDataLibraryCap><supported>true</supported></FaceDataLibraryCap>";
const char* const kNoIDType =
    "<FaceDataLibraryCap><supported>true</supported><contact><enabled>true</enabled><maxLen>0</maxLen></contact>"
    "<certificateNumber><enabled>true</enabled><minLen>8</minLen><maxLen>18</maxLen></certificateNumber>"
    "<bornTime><enabled>true</enabled></bornTime><region><enabled>true</enabled></region>"
    "<sex><enabled>true</enabled><opt>male</opt><opt>female</opt></sex></FaceDataLibraryCap>";
const char* const kNoNameRule =
    "<FaceDataLibraryCap><supported>true</supported><contact><enabled>true</enabled><maxLen>64</maxLen></contact>"
    "<PersonInfoExtendList><PersonInfoExtend><id>1</id><enable>true</enable><name>Department</name><value/>"
    "</PersonInfoExtend></PersonInfoExtendList></FaceDataLibraryCap>";

// Types text as key presses (QTest::keyClicks takes Latin-1 only), so the
// field's validator sees every character.
void typeText(QWidget* w, const QString& text)
{
    for (const QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(w, &press);
        QKeyEvent release(QEvent::KeyRelease, 0, Qt::NoModifier, QString(c));
        QApplication::sendEvent(w, &release);
    }
}

class AddFaceWndTest : public testsupport::SimTest {
protected:
    static void SetUpTestSuite()
    {
        startSim();
        auto closed = s_sim->device("CLOSED");
        closed.port = 1;
        clientcommonlogical::CConfigMgr::Instance()->SetDevices(
            {s_sim->device(), s_sim->device("WRONGPW", "not-the-password"), closed});
        s_face = testsupport::makeJpeg(160, 200);
    }
    void SetUp() override
    {
        clientcommonlogical::CConfigMgr::Instance()->SetRegionMode(1);
        CInformationDlg::ClearShownMessages();
    }
    void TearDown() override
    {
        SimTest::TearDown();
        s_sim->control("DELETE", "/control/capabilities");
    }

    static void setCaps(const char* xml)
    {
        if (*xml)
            s_sim->control("POST", "/control/capabilities", QByteArray::fromStdString(nlohmann::json{{"faceLibrary", xml}}.dump()));
        else
            s_sim->control("DELETE", "/control/capabilities");
    }
    static void fault(const char* path, const char* what)
    {
        s_sim->control("POST", "/control/fault", QByteArray(R"({"path":")") + path + "\"," + what + "}");
    }
    static void confirm(QWidget* dlg) { child<QPushButton>(dlg, "m_pSaveBtn")->click(); }
    static nlohmann::json uploads(const std::string& fdid)
    {
        return nlohmann::json::parse(s_sim->control("GET", ("/control/uploads?FDID=" + fdid).c_str()).toStdString())["records"];
    }
    static QString lastMessage()
    {
        const QStringList shown = CInformationDlg::ShownMessages();
        return shown.isEmpty() ? QString() : shown.last();
    }

    static inline QByteArray s_face;
    QWidget m_page;
};

TEST_F(AddFaceWndTest, RowsFollowTheDeviceAndTheRegionMode)
{
    // extend: one row per item the library lists, enabled or not
    const struct { const char* name; const char* caps; int regionMode; bool gender, idType, idNumber, region, contact, birth;
                   int extend; bool libraryListFails; } rows[] = {
        {"everything", kEverything, 1, true, true, true, true, true, true, 3, false},
        {"everything, other region mode", kEverything, 0, true, true, true, false, true, true, 3, false},
        {"nothing", kNothing, 1, false, false, false, false, false, false, 3, false},
        {"no ID type", kNoIDType, 1, true, false, true, true, true, true, 3, false},
        // The capability's own list does not stand in for the library's.
        {"library lists nothing", kNoNameRule, 1, false, false, false, false, true, false, 0, true},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.name);
        setCaps(r.caps);
        s_sim->control("DELETE", "/control/fault");
        if (r.libraryListFails)
            fault("/DVAPI/Intelligent/faceContrast/personInfoExtend/FDID/", R"("status":500)");
        clientcommonlogical::CConfigMgr::Instance()->SetRegionMode(r.regionMode);
        auto* dlg = new CBTAddFaceWnd(&m_page);
        ASSERT_TRUE(dlg->SetFacePicture(s_face));
        ASSERT_TRUE(dlg->SetDevice("TEST0001-CH2"));  // a camera of the device
        EXPECT_EQ(child<QComboBox>(dlg, "m_pDeviceCombo")->currentText(), QStringLiteral("Emulated camera"));
        const std::pair<const char*, bool> expected[] = {{"m_pGenderCombo", r.gender}, {"m_pIDTypeCombo", r.idType},
            {"m_pIDNoEdit", r.idNumber}, {"m_pProvinceCombo", r.region}, {"m_pCityCombo", r.region},
            {"m_pContactEdit", r.contact}, {"m_pBirthEdit", r.birth}, {"m_pNameEdit", true}, {"m_pFaceLibCombo", true}};
        for (const auto& e : expected)
            EXPECT_EQ(child<QWidget>(dlg, e.first)->isVisibleTo(dlg), e.second) << e.first;
        int extend = 0;
        for (int i = 1; i <= 4; ++i)
            if (auto* edit = dlg->findChild<QWidget*>(QStringLiteral("m_pExtendEdit%1").arg(i)))
                extend += edit->isVisibleTo(dlg) ? 1 : 0;
        EXPECT_EQ(extend, r.extend);
        dlg->deleteLater();
    }
}

TEST_F(AddFaceWndTest, TypedTextReachesTheDeviceExactly)
{
    const QString longValue = QString::fromUtf8("\"<&>' \xe4\xba\x8c\xe9\x83\xa8 ").repeated(20).left(200);
    // idTyped: when the device offers the ID number
    const struct { const char* name; const char* caps; QString person, contact, extend; const char *idTyped, *idSent; } rows[] = {
        {"device rules", kEverything, QString::fromUtf8("O'Neil & \xe5\xbc\xa0\xe4\xb8\x89 &amp;"),
            QStringLiteral("\"q\" <a&b>"), longValue, "AB12-3456", "AB123456"},  // "-" refused
        {"no name rule", kNoNameRule, QString(longValue).replace(QLatin1Char(' '), QLatin1Char('x')),
            QStringLiteral("'<>&\"").repeated(10), QString::fromUtf8("\xe7\xa0\x94\xe5\x8f\x91 R&D <1>"), "", ""},
        // An offered contact is sent even when empty; an empty ID number is not.
        {"empty contact and number", kEverything, QStringLiteral("Li"), QString(), QStringLiteral("x"), "", ""},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.name);
        setCaps(r.caps);
        auto* dlg = new CBTAddFaceWnd(&m_page);
        ASSERT_TRUE(dlg->SetFacePicture(s_face));
        ASSERT_TRUE(dlg->SetDevice("TEST0001"));
        dlg->show();
        // Every character passes the fields' validators: the device stores the texts as typed.
        typeText(child<QLineEdit>(dlg, "m_pNameEdit"), r.person);
        typeText(child<QLineEdit>(dlg, "m_pContactEdit"), r.contact);
        typeText(child<QLineEdit>(dlg, "m_pExtendEdit1"), r.extend);
        const bool full = *r.caps == '\0';
        if (full) {
            child<QComboBox>(dlg, "m_pGenderCombo")->setCurrentIndex(1);
            child<QComboBox>(dlg, "m_pIDTypeCombo")->setCurrentIndex(2);
            typeText(child<QLineEdit>(dlg, "m_pIDNoEdit"), QLatin1String(r.idTyped));
            auto* province = child<QComboBox>(dlg, "m_pProvinceCombo");
            province->setCurrentIndex(province->findData(44));  // from the device's city table
            auto* city = child<QComboBox>(dlg, "m_pCityCombo");
            city->setCurrentIndex(city->findData(3));
        }
        const std::string fdid = child<QComboBox>(dlg, "m_pFaceLibCombo")->currentData().toString().toStdString();
        const size_t before = uploads(fdid).size();
        confirm(dlg);
        EXPECT_EQ(lastMessage(), QStringLiteral("AddSuccess"));
        EXPECT_TRUE(dlg->IsAdded());
        EXPECT_FALSE(dlg->isVisible());

        const auto recs = uploads(fdid);
        ASSERT_EQ(recs.size(), before + 1);
        CapabilitySet::FaceDataRecordCfg stored(recs.back()["xml"].get<std::string>());
        ASSERT_TRUE(stored.bValid) << recs.back()["xml"].get<std::string>();
        EXPECT_EQ(QString::fromStdString(stored.name), r.person);
        EXPECT_EQ(QString::fromStdString(stored.contact), r.contact);
        EXPECT_TRUE(stored.bContactSet);
        EXPECT_EQ(stored.bIDNumberSet, *r.idSent != '\0');
        ASSERT_FALSE(stored.extendList.empty());
        EXPECT_EQ(QString::fromStdString(stored.extendList[0].value), r.extend);
        EXPECT_EQ(stored.extendList[0].name, "Department");
        if (full) {
            EXPECT_EQ((std::vector<std::string>{stored.gender, stored.idType, stored.idNumber, stored.province, stored.city, stored.birthDate}),
                (std::vector<std::string>{"female", "passportID", r.idSent, "44", "03", "2000-01-01T00:00:00"}));
        }
        std::string image;
        ASSERT_TRUE(testsupport::dvapi(
            "TEST0001", "GET /DVAPI/Intelligent/FDLib/" + fdid + "/picture/" + recs.back()["PID"].get<std::string>() + "/image\r\n", image));
        EXPECT_EQ(QByteArray::fromStdString(image), s_face);
        dlg->deleteLater();
    }
}

TEST_F(AddFaceWndTest, InputErrorsKeepTheDialogOpen)
{
    auto* dlg = new CBTAddFaceWnd(&m_page);
    ASSERT_TRUE(dlg->SetFacePicture(s_face));
    ASSERT_TRUE(dlg->SetDevice("TEST0001"));
    dlg->show();
    const size_t before = uploads("1").size();
    typeText(child<QLineEdit>(dlg, "m_pNameEdit"), QStringLiteral("   "));
    confirm(dlg);
    EXPECT_EQ(QToolTip::text(), QStringLiteral("InputName"));
    EXPECT_TRUE(dlg->isVisible());
    typeText(child<QLineEdit>(dlg, "m_pNameEdit"), QStringLiteral("Li"));
    typeText(child<QLineEdit>(dlg, "m_pIDNoEdit"), QStringLiteral("1234567"));
    confirm(dlg);
    EXPECT_EQ(QToolTip::text(), QStringLiteral("InputAnIDNumberLongerThan8Characters"));
    EXPECT_TRUE(dlg->isVisible());
    EXPECT_EQ(uploads("1").size(), before);
    EXPECT_TRUE(CInformationDlg::ShownMessages().isEmpty());
    // The birth date cannot be later than the moment the form was prepared.
    auto* birth = child<QDateTimeEdit>(dlg, "m_pBirthEdit");
    birth->setDateTime(QDateTime::currentDateTime().addDays(3));
    EXPECT_LE(birth->dateTime(), QDateTime::currentDateTime());
    QToolTip::hideText();
    dlg->deleteLater();
}

TEST_F(AddFaceWndTest, DeviceFailuresWhilePreparing)
{
    const struct { const char *name, *device, *path, *fault, *key; } rows[] = {
        {"wrong password", "WRONGPW", "", "", "UserNameOrPasswordIsIncorrect"},
        {"connection refused", "CLOSED", "", "", "FailedToConnectToTheDevice"},
        {"server error", "TEST0001", "/DVAPI/Intelligent/FDLib/capabilities", R"("status":503)", "TheDeviceHadAnInternalError"},
        {"malformed answer", "TEST0001", "/DVAPI/Intelligent/FDLib/capabilities", R"("malformed":true)",
            "TheDeviceAnswerCannotBeRead"},
        {"dropped answer", "TEST0001", "/DVAPI/Intelligent/FDLib/capabilities", R"("drop":true)",
            "TheConnectionToTheDeviceWasLost"},
        {"library list fails", "TEST0001", "/DVAPI/Intelligent/FDLib", R"("status":500,"subStatus":23)",
            "GettingFacePictureLibraryFailed"},
        {"no face library", "TEST0001", "", "", "FacePictureLibraryIsNotSupported"},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.name);
        CInformationDlg::ClearShownMessages();
        s_sim->control("DELETE", "/control/fault");
        if (*r.path) {
            fault(r.path, r.fault);
            if (std::string(r.path) == "/DVAPI/Intelligent/FDLib")
                fault("/DVAPI/Intelligent/FDLib/capabilities", R"("delayMs":0)");  // longest prefix: untouched
        }
        setCaps(std::string(r.key) == "FacePictureLibraryIsNotSupported"
                ? "<FaceDataLibraryCap><supported>false</supported></FaceDataLibraryCap>"
                : kEverything);
        EXPECT_FALSE(CBTAddFaceWnd::OpenForFace(&m_page, r.device, s_face));
        EXPECT_EQ(lastMessage(), QString::fromLatin1(r.key));
    }
    // Libraries of unknown faces are not offered: with only those, nothing to add to.
    CInformationDlg::ClearShownMessages();
    s_sim->control("DELETE", "/control/fault");
    setCaps(kEverything);
    s_sim->control("POST", "/control/library", R"({"FDID":"1","name":"Staff","type":"stranger"})");
    s_sim->control("POST", "/control/library", R"({"FDID":"2","name":"Visitors","type":"stranger"})");
    s_sim->control("POST", "/control/library", R"({"FDID":"9","name":"Tiny","type":"stranger"})");
    auto* dlg = new CBTAddFaceWnd(&m_page);
    EXPECT_FALSE(dlg->SetDevice("TEST0001"));
    EXPECT_EQ(lastMessage(), QStringLiteral("NoFacePictureLibrary"));
    s_sim->control("POST", "/control/library", R"({"FDID":"1","name":"Staff","type":"normal"})");
    s_sim->control("POST", "/control/library", R"({"FDID":"2","name":"Visitors","type":"normal","capacity":100})");
    s_sim->control("POST", "/control/library", R"({"FDID":"9","name":"Tiny","type":"normal","capacity":1})");
    dlg->deleteLater();
    // No picture: the dialog does not open.
    EXPECT_FALSE(CBTAddFaceWnd::OpenForFace(&m_page, "TEST0001", QByteArray()));
}

TEST_F(AddFaceWndTest, UploadFailuresAndCancel)
{
    s_sim->control("POST", "/control/library", R"({"FDID":"9","name":"Tiny","type":"normal","capacity":1})");
    // fault: on the upload batch
    const struct { const char *name, *fdid, *fault; bool cancel; const char* key; } rows[] = {
        {"fills the tiny library", "9", "", false, "AddSuccess"},
        {"library full during the upload", "9", "", false, "NoMoreFacePicturesCanBeAdded"},
        // Failures and their texts are FaceImport_test's; one shows it reaches the operator.
        {"870", "1", R"("status":500,"subStatus":870)", false, "AnalysisEngineIsImportingPicturesToLibrary"},
        {"cancel", "1", R"("delayMs":700,"count":1)", true, "FailedToAddPicture"},
        {"works again", "1", "", false, "AddSuccess"},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.name);
        CInformationDlg::ClearShownMessages();
        s_sim->control("DELETE", "/control/fault");
        auto* dlg = new CBTAddFaceWnd(&m_page);
        ASSERT_TRUE(dlg->SetFacePicture(s_face));
        ASSERT_TRUE(dlg->SetDevice("TEST0001"));
        auto* libs = child<QComboBox>(dlg, "m_pFaceLibCombo");
        libs->setCurrentIndex(libs->findData(QString::fromLatin1(r.fdid)));
        // Another library is prepared from the event loop; confirming waits for it.
        ASSERT_TRUE(testsupport::waitUntil([dlg] { return child<QPushButton>(dlg, "m_pSaveBtn")->isEnabled(); }));
        dlg->show();
        typeText(child<QLineEdit>(dlg, "m_pNameEdit"), QStringLiteral("Wang Wu"));
        if (*r.fault)
            fault("/DVAPI/SDK/batch", r.fault);
        int ticks = 0;
        bool chaseSeen = false;
        QTimer ticker;
        QObject::connect(&ticker, &QTimer::timeout, dlg, [&] {
            ++ticks;
            auto* chase = dlg->findChild<VantorGUIToolkit::CChaseDialog*>(QStringLiteral("m_pChaseDialog"));
            if (chase && chase->isVisible()) {
                chaseSeen = true;
                if (r.cancel && ticks > 10)
                    child<QPushButton>(chase, "m_pCancelBtn")->click();
            }
        });
        ticker.start(10);
        confirm(dlg);
        ticker.stop();
        EXPECT_EQ(CInformationDlg::ShownMessages(), QStringList{QString::fromLatin1(r.key)});
        EXPECT_EQ(dlg->IsAdded(), std::string(r.key) == "AddSuccess");
        EXPECT_TRUE(!r.cancel || chaseSeen);  // cancelled from the waiting dialog while the upload ran
        dlg->deleteLater();
    }
}

TEST_F(AddFaceWndTest, CaptureCardOpensTheDialogAndIsHeldWhileItRuns)
{
    CBottomWidget strip;
    auto info = AlarmShowInfo::FromRecord(dashtest::record(dashtest::kCapture, dashtest::face(0, 0, 2), "E1", "TEST0001-CH3"));
    info.kind = EventKind::Capture;
    strip.AddSnapInfo(info);
    QPointer<CSnapUnit> card = strip.findChild<CSnapUnit*>();
    ASSERT_TRUE(card);
    fault("/DVAPI/SDK/batch", R"("delayMs":400,"count":1)");
    QSignalSpy ready(&strip, &CBottomWidget::SignalFaceReady);
    bool done = false;
    int ticks = 0;
    QTimer ticker;
    QObject::connect(&ticker, &QTimer::timeout, &strip, [&] { ++ticks; });
    ticker.start(10);
    QTimer::singleShot(100, &strip, [&] {
        auto* dlg = strip.findChild<CBTAddFaceWnd*>();
        ASSERT_TRUE(dlg && dlg->isVisible());
        // Captures keep arriving under the modal dialog and push the card out of the strip.
        for (int i = 0; i < CBottomWidget::kMaxCards + 2; ++i) {
            auto more = info;
            more.eventID = "M" + std::to_string(i);
            strip.AddSnapInfo(more);
        }
        EXPECT_TRUE(card);  // held, only hidden
        typeText(dlg->findChild<QLineEdit*>(QStringLiteral("m_pNameEdit")), QStringLiteral("From card"));
        dlg->findChild<QPushButton*>(QStringLiteral("m_pSaveBtn"))->click();
        EXPECT_TRUE(card);
        done = true;
    });
    card->findChild<QPushButton*>(QStringLiteral("m_pAddToLibBtn"))->click();
    EXPECT_TRUE(done);
    EXPECT_EQ(lastMessage(), QStringLiteral("AddSuccess"));
    EXPECT_GT(ticks, 30);  // the upload did not block the event loop
    ASSERT_EQ(ready.count(), 1);
    EXPECT_EQ(ready.at(0).at(0).toByteArray(), QByteArray(info.faceBlock()->bkPic));  // no rectangle: as captured
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(card.isNull());  // deleted once released
    EXPECT_EQ(strip.findChildren<CSnapUnit*>().size(), CBottomWidget::kMaxCards);
}

} // namespace
