// The host's form pieces: integer validator, waiting dialog, device list model
// and the texts of device errors.
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>
#include <QXmlStreamReader>
#include <QtTest>
#include <gtest/gtest.h>

#include "UiDataController/CErrorInfoMgr.h"
#include "VantorGUIToolkit/CChaseDialog.h"
#include "VantorGUIToolkit/CIntValidator.h"
#include "VantorGUIToolkit/CSecondarySortFilterModel.h"
#include "clientcommonlogical/CConfigMgr.h"
#include "publicdatacontroller/CDeviceCombinationModel.h"
#include "support/TestSupport.h"

using namespace VantorGUIToolkit;

namespace {

TEST(IntValidator, RefusesPastTheTopAndClamps)
{
    const CIntValidator v(10, 250);
    const struct {
        const char* text;
        QValidator::State state;
        const char* fixed;
    } rows[] = {
        {"", QValidator::Intermediate, "10"},
        {"2", QValidator::Intermediate, "10"},
        {"10", QValidator::Acceptable, "10"},
        {"250", QValidator::Acceptable, "250"},
        {"251", QValidator::Invalid, "250"},
        {"9999999999999", QValidator::Invalid, "250"},
        {"-1", QValidator::Invalid, "10"},
        {"1a", QValidator::Invalid, "10"},
    };
    for (const auto& r : rows) {
        QString s = QString::fromUtf8(r.text);
        int pos = s.size();
        EXPECT_EQ(v.validate(s, pos), r.state) << r.text;
        v.fixup(s);
        EXPECT_EQ(s, QLatin1String(r.fixed)) << r.text;
    }
}

TEST(ChaseDialog, CancelIsAskedOnceAndTheWorkerEndsIt)
{
    QWidget owner;
    auto* chase = new CChaseDialog(QStringLiteral(":/none.gif"), "Processing", &owner);
    QSignalSpy cancel(chase, &CChaseDialog::SignalCancel);
    int ticks = 0;
    QTimer ticker;
    QObject::connect(&ticker, &QTimer::timeout, chase, [&] { ++ticks; });
    ticker.start(10);
    QTimer::singleShot(50, chase, [chase] {
        testsupport::child<QPushButton>(chase, "m_pCancelBtn")->click();
        QTest::keyClick(chase, Qt::Key_Escape);  // Esc while waiting for the worker
    });
    QTimer::singleShot(150, chase, &CChaseDialog::OnImmediatelyStopChase);
    EXPECT_EQ(chase->ExecChase(), QDialog::Accepted);
    EXPECT_EQ(cancel.count(), 1);
    EXPECT_GE(ticks, 5);  // the event loop kept turning
    EXPECT_EQ(testsupport::child<QLabel>(chase, "m_pTextLabel")->text(), QStringLiteral("Processing"));
    // A worker that ended before the dialog ran: no dialog at all.
    auto* quick = new CChaseDialog(QStringLiteral(":/none.gif"), "Processing", &owner);
    quick->OnImmediatelyStopChase();
    EXPECT_EQ(quick->ExecChase(), QDialog::Accepted);
}

TEST(DeviceCombinationModel, ListsTheHostDevicesSorted)
{
    clientcommonlogical::DeviceConfig a, b;
    a.id = "SN-B";
    a.name = "Gate";
    a.channels.push_back({1, "SN-B-CH1", "Door", "Lobby", ""});
    b.id = "SN-A";
    b.name = "Entrance";
    clientcommonlogical::CConfigMgr::Instance()->SetDevices({a, b});
    publicdatacontroller::CDeviceCombinationModel model;
    CSecondarySortFilterModel proxy;
    proxy.setSourceModel(&model);
    proxy.sort(0);
    ASSERT_EQ(proxy.rowCount(), 2);
    EXPECT_EQ(proxy.index(0, 0).data().toString(), QStringLiteral("Entrance"));
    EXPECT_EQ(proxy.index(1, 0).data(publicdatacontroller::CDeviceCombinationModel::DeviceIDRole).toString(),
        QStringLiteral("SN-B"));
    EXPECT_EQ(model.RowOfDevice("SN-A"), 1);
    EXPECT_EQ(model.RowOfDevice("nope"), -1);
    EXPECT_EQ(publicdatacontroller::CDeviceCombinationModel::ResolveDevice("SN-B-CH1"), "SN-B");
    EXPECT_EQ(publicdatacontroller::CDeviceCombinationModel::ResolveDevice("SN-A"), "SN-A");
    EXPECT_EQ(publicdatacontroller::CDeviceCombinationModel::ResolveDevice("other"), "");
    clientcommonlogical::CConfigMgr::Instance()->SetDevices({});
}

TEST(ErrorInfoMgr, EveryTextExistsInBothLanguages)
{
    EXPECT_TRUE(UiDataController::CErrorInfoMgr::GetErrorInfoByCode(0, 0).isEmpty());
    EXPECT_EQ(UiDataController::CErrorInfoMgr::GetErrorInfoByCode(13, 503), QStringLiteral("TheDeviceHadAnInternalError"));
    EXPECT_EQ(UiDataController::CErrorInfoMgr::GetErrorInfoByCode(12, 13),
        QStringLiteral("TheUserHasNoPermissionOnTheDevice"));
    for (const char* lang : {"en", "zh_CN"}) {
        QFile f(testsupport::sourceDir() + QStringLiteral("/host/app/translations/vantordesk_%1.ts").arg(QLatin1String(lang)));
        ASSERT_TRUE(f.open(QIODevice::ReadOnly));
        // Keys with a non-empty translation in the error context.
        QStringList translated;
        QXmlStreamReader xml(&f);
        QString context, source;
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement)
                continue;
            if (xml.name() == QLatin1String("name"))
                context = xml.readElementText();
            else if (xml.name() == QLatin1String("source"))
                source = xml.readElementText();
            else if (xml.name() == QLatin1String("translation") && !xml.readElementText().isEmpty()
                && context == QLatin1String("UiDataController::CErrorInfoMgr"))
                translated << source;
        }
        for (const QString& key : UiDataController::CErrorInfoMgr::AllKeys())
            EXPECT_TRUE(translated.contains(key)) << lang << " " << qPrintable(key);
    }
}

} // namespace
