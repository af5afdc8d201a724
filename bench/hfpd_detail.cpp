// The returning-person detail view against the emulator.
//
//   bench_hfpd_detail gallery OUTDIR   renders a view of 41 records, page 1 and page 3,
//                                      in English and Chinese on a 1920 x 1080 page:
//                                      hfpd_<lang>_page<N>.png
//   bench_hfpd_detail bench            200 records: time from the end of the fetch to
//                                      the first page painted with all 20 thumbnails,
//                                      time per page and the longest GUI stall while
//                                      paging through all pages, against the time the
//                                      same 20 thumbnails take to download in sequence
//                                      (pictures drawn by the emulator beforehand).
//
//   xvfb-run -a -s "-screen 0 1920x1080x24 -nolisten tcp" bin/bench_hfpd_detail gallery OUTDIR
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QPushButton>
#include <QTimer>
#include <QTranslator>
#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "commlayer/CDeviceDownloadsComm.h"
#include "support/DeviceSim.h"
#include "ui/ShowCard/ReCustomer/CHFPDAttributes.h"
#include "ui/ShowCard/ReCustomer/CHFPDPicLabel.h"
#include "ui/ShowCard/ReCustomer/CHFPDSearchManager.h"
#include "ui/ShowCard/ReCustomer/CHFPDShowDetailWid.h"

using namespace BodyTemperature;

namespace {

const char* const kDevice = "TEST0001";

HFPDRecordList Fetch(testsupport::DeviceSim& sim, const std::string& task, int count)
{
    const nlohmann::json script{{"taskID", task}, {"polls", 1}, {"count", count}};
    sim.control("POST", "/control/hfpd", QByteArray::fromStdString(script.dump()));
    HFPDRecordList records;
    if (!CHFPDSearchManager::Instance()->SearchRecords(kDevice, task, records))
        std::fprintf(stderr, "search of %s failed\n", task.c_str());
    return records;
}

bool PageLoaded(const QWidget& view)
{
    const auto labels = view.findChildren<CHFPDPicLabel*>();
    return std::all_of(labels.begin(), labels.end(), [](const CHFPDPicLabel* l) {
        return !l->isVisible() || l->property("thumbState").toString() != QLatin1String("loading");
    });
}

int VisibleThumbs(const QWidget& view)
{
    int n = 0;
    for (const CHFPDPicLabel* l : view.findChildren<CHFPDPicLabel*>())
        n += l->isVisible() ? 1 : 0;
    return n;
}

int Gallery(testsupport::DeviceSim& sim, const QString& outDir)
{
    const HFPDRecordList records = Fetch(sim, "gallery41", 41);
    HFPDPersonInfo person;
    person.valid = true;
    person.name = "Wang Lei";
    person.gender = 1;
    person.contact = "138 0013 8000";
    for (const QString& lang : {QStringLiteral("en"), QStringLiteral("zh_CN")}) {
        QTranslator translator;
        translator.load(QStringLiteral(":/BodyTemperature/i18n/BodyTemperature_%1.qm").arg(lang));
        QCoreApplication::installTranslator(&translator);
        QWidget page;
        page.setObjectName(QStringLiteral("galleryPage"));
        page.setStyleSheet(QStringLiteral("QWidget#galleryPage{background-color:#09111c;}"));
        page.setGeometry(0, 0, 1920, 1080);
        auto* view = new CHFPDShowDetailWid(&page);
        view->setObjectName(QStringLiteral("ReCustomerDetailsDlg"));
        view->setWindowFlags(Qt::Widget);
        view->move((1920 - view->width()) / 2, (1080 - view->height()) / 2);
        view->SetHFPDRecords(records, kDevice, CHFPDAttributes::kReturningPersonMask, person);
        page.show();
        for (int pageNo : {1, 3}) {
            if (pageNo == 3)
                view->findChild<QPushButton*>(QStringLiteral("pLastPageBtn"))->click();
            testsupport::waitUntil([&] { return PageLoaded(*view); }, 10000);
            testsupport::pump(600);  // the large picture
            page.grab().save(QDir(outDir).filePath(QStringLiteral("hfpd_%1_page%2.png").arg(lang).arg(pageNo)));
        }
        QCoreApplication::removeTranslator(&translator);
    }
    std::printf("written to %s\n", qUtf8Printable(outDir));
    return 0;
}

int Bench(testsupport::DeviceSim& sim)
{
    const HFPDRecordList records = Fetch(sim, "bench200", 200);
    std::printf("records fetched: %zu\n", records.size());

    // The emulator draws each picture once and caches it; a camera only sends
    // it. Drawing is taken out of the figures by asking for everything once.
    for (const HFPDRecord& r : records) {
        QByteArray bytes;
        commlayer::CDeviceDownloadsComm::request(r.facePicUrl, kDevice, bytes);
        commlayer::CDeviceDownloadsComm::request(r.picUrl, kDevice, bytes);
    }

    // Baseline: the first page's face pictures downloaded one after the other.
    QElapsedTimer clock;
    clock.start();
    for (size_t i = 0; i < 20 && i < records.size(); ++i) {
        QByteArray bytes;
        commlayer::CDeviceDownloadsComm::request(records[i].facePicUrl, kDevice, bytes);
    }
    const double baseline = clock.nsecsElapsed() / 1e6;

    CHFPDShowDetailWid view;
    view.move(160, 90);
    clock.restart();
    view.SetHFPDRecords(records, kDevice, CHFPDAttributes::kReturningPersonMask, HFPDPersonInfo());
    view.show();
    view.repaint();
    const double shown = clock.nsecsElapsed() / 1e6;
    testsupport::waitUntil([&] { return PageLoaded(view) && VisibleThumbs(view) == 20; }, 30000);
    view.repaint();
    const double firstPage = clock.nsecsElapsed() / 1e6;

    // Page through everything while a 1 ms ticker notes the longest gap.
    QElapsedTimer sinceTick;
    double longestStall = 0;
    QTimer ticker;
    ticker.setTimerType(Qt::PreciseTimer);
    QObject::connect(&ticker, &QTimer::timeout, &view, [&] {
        longestStall = std::max(longestStall, sinceTick.nsecsElapsed() / 1e6);
        sinceTick.restart();
    });
    auto* next = view.findChild<QPushButton*>(QStringLiteral("pNextBtn"));
    QEventLoop loop;
    QTimer driver;
    double slowestPage = 0, pagesTotal = 0, slowestClick = 0;
    int pages = 1;
    QElapsedTimer pageClock;
    bool waiting = false;
    QObject::connect(&driver, &QTimer::timeout, &view, [&] {
        if (waiting) {
            if (!PageLoaded(view))
                return;
            const double ms = pageClock.nsecsElapsed() / 1e6;
            slowestPage = std::max(slowestPage, ms);
            pagesTotal += ms;
            waiting = false;
        }
        if (!next->isEnabled()) {
            loop.quit();
            return;
        }
        pageClock.restart();
        QElapsedTimer handler;
        handler.start();
        next->click();
        slowestClick = std::max(slowestClick, handler.nsecsElapsed() / 1e6);
        ++pages;
        waiting = true;
    });
    sinceTick.start();
    ticker.start(1);
    driver.start(5);
    loop.exec();
    ticker.stop();

    std::printf("baseline: 20 face pictures downloaded in sequence: %.1f ms\n", baseline);
    std::printf("first page painted with all 20 thumbnails after the fetch: %.1f ms (%.2f x baseline; "
                "view filled and painted once without pictures: %.1f ms)\n",
        firstPage, firstPage / baseline, shown);
    std::printf("paging through %d pages: %.1f ms a page on average, slowest %.1f ms (%.2f x baseline)\n", pages,
        pagesTotal / std::max(1, pages - 1), slowestPage, slowestPage / baseline);
    std::printf("longest GUI stall while paging: %.1f ms (page switch itself at most %.1f ms)\n", longestStall,
        slowestClick);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const QString mode = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("bench");
    testsupport::DeviceSim sim({QStringLiteral("--scene"), QStringLiteral("1920x1080")});
    if (!sim.start()) {
        std::fprintf(stderr, "the emulator did not start\n");
        return 1;
    }
    clientcommonlogical::CConfigMgr::Instance()->SetDevices({sim.device()});
    if (mode == QLatin1String("gallery")) {
        const QString outDir = argc > 2 ? QString::fromLocal8Bit(argv[2]) : QDir::currentPath();
        QDir().mkpath(outDir);
        return Gallery(sim, outDir);
    }
    return Bench(sim);
}
