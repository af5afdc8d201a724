// Texts that come from devices (person, library and camera names) are shown
// as typed: a name that looks like markup must not load a local file or
// change the card's look.
#include <QApplication>
#include <QLabel>
#include <functional>
#include <gtest/gtest.h>

#include "VantorGUIToolkit/CInformationDlg.h"
#include "support/TestSupport.h"
#include "ui/ShowCard/CAlarmUnit.h"
#include "ui/ShowCard/CPopUpUnit.h"
#include "ui/ShowCard/ReCustomer/CFrequenterUnit.h"

using namespace BodyTemperature;

namespace {

const QString kMarkup[] = {
    QStringLiteral("<img src=/etc/hostname>"),
    QStringLiteral("<b>Bold</b> <a href=\"file:///etc\">link</a>"),
    QStringLiteral("<table><tr><td>x</td></tr></table>"),
};

// Every label of w that holds the text shows it verbatim, as plain text.
void expectShownAsTyped(QWidget* w, const QString& text)
{
    int holders = 0;
    for (QLabel* l : w->findChildren<QLabel*>()) {
        if (!l->text().contains(text))
            continue;
        ++holders;
        EXPECT_EQ(l->textFormat(), Qt::PlainText) << qPrintable(l->objectName());
    }
    EXPECT_GE(holders, 1);
}

} // namespace

TEST(MarkupFromTheWire, CardsShowDeviceTextsAsTyped)
{
    struct Row {
        const char* name;
        EventKind kind;
        std::function<void(AlarmShowInfo&, const QString&)> put;
    };
    const Row rows[] = {
        {"person name", EventKind::Comparison, [](AlarmShowInfo& i, const QString& t) { i.alarmInfo.comparison.people.name = t.toStdString(); }},
        {"stranger label", EventKind::Stranger, [](AlarmShowInfo& i, const QString& t) {
             i.alarmInfo.comparison.people.alternativeName = t.toStdString(); }},
        {"camera name", EventKind::TemperatureCapture, [](AlarmShowInfo& i, const QString& t) { i.cameraName = t.toStdString(); }},
        {"library name", EventKind::Returning, [](AlarmShowInfo& i, const QString& t) {
             i.alarmInfo.comparison.people.libraryName = t.toStdString(); }},
    };
    const QByteArray scene = testsupport::makeJpeg(320, 180);
    for (const Row& row : rows) {
        for (const QString& text : kMarkup) {
            SCOPED_TRACE(std::string(row.name) + ": " + text.toStdString());
            AlarmShowInfo info;
            info.kind = row.kind;
            info.popType = PopUpType::AbnormalTemperature;
            protocol::IntelAlarmFaceInfo face;
            face.bkPic = scene;
            face.bNoSubPic = true;
            face.faceRects.push_back({0.25, 0.25, 0.5, 0.5});
            info.faceInfo = face;
            info.faceInfoList.push_back(face);
            row.put(info, text);
            if (row.kind == EventKind::Returning) {
                CFrequenterUnit card;
                card.SetFrequenterInfo(info);
                expectShownAsTyped(&card, text);
                continue;
            }
            CAlarmUnit card;
            card.SetAlarmInfo(info, false);
            expectShownAsTyped(&card, text);
            CPopUpUnit popUp;
            popUp.SetAlarmInfo(info, true);
            expectShownAsTyped(&popUp, text);
        }
    }
}

TEST(MarkupFromTheWire, MessagesAtTheBottomRightAreShownAsTyped)
{
    VantorGUIToolkit::CInformationDlg::ShowInformationAtScreenRightBottom(kMarkup[0]);
    bool seen = false;
    for (QWidget* top : QApplication::topLevelWidgets()) {
        for (QLabel* l : top->findChildren<QLabel*>(QStringLiteral("InformationText"))) {
            if (l->text() != kMarkup[0])
                continue;
            seen = true;
            EXPECT_EQ(l->textFormat(), Qt::PlainText);
        }
    }
    EXPECT_TRUE(seen);
}
