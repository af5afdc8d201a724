// The shift report against a real journal file, read back (CSV, and the PDF
// through poppler) in both languages; failures leave nothing under the final names.
#include <QDir>
#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

#include "record/CEventJournal.h"
#include "report/CShiftReportExporter.h"
#include "support/TestSupport.h"

using namespace BodyTemperature;

namespace {

QString run(const QString& program, const QStringList& args)
{
    QProcess p;
    p.start(program, args);
    p.waitForFinished(60000);
    return QString::fromUtf8(p.readAllStandardOutput());
}

class ShiftReportTest : public testsupport::TempDirTest {
protected:
    void SetUp() override
    {
        TempDirTest::SetUp();
        m_journal = path(QStringLiteral("journal.db"));
        m_from = QDateTime::currentDateTime().addSecs(-6 * 3600);
        CEventJournal journal({m_journal, 0, nullptr});
        const QImage face = QImage::fromData(testsupport::makeJpeg(120, 160), "JPEG");
        // 60 events over six hours; every third abnormal, every fifth without mask.
        for (int i = 0; i < 60; ++i) {
            JournalEvent e;
            e.time = m_from.toSecsSinceEpoch() + 60 + i * 350;
            e.deviceId = "TEST0001";
            e.deviceName = "Gate, north";  // a comma: quoted in the CSV
            e.cameraId = "TEST0001-CH1";
            e.cameraName = i % 2 ? "Camera 1" : "入口 2";
            e.eventCode = i % 4 == 0 ? 100103 : 100119;
            e.kind = i % 4 == 0 ? 0 : 4;
            e.temperatureMeasured = true;
            e.temperature = i % 3 == 0 ? 38.1 : 36.6;
            e.temperatureType = i % 3 == 0 ? 0 : 2;
            e.mask = i % 5 == 0 ? 1 : 2;
            e.maskType = i % 5 == 0 ? (i % 3 == 0 ? 0 : 1) : 2;
            e.personName = i % 4 == 0 ? "王小明" : "";
            e.similarity = i % 4 == 0 ? 0.9 : 0.0;
            e.faceJpeg = CEventJournal::EncodeFace(face);
            journal.Append(std::move(e));
        }
        ASSERT_TRUE(journal.Flush());
    }

    // The folder is made first.
    ShiftReportRequest request(int language, const QString& folder) const
    {
        QDir().mkpath(folder);
        ShiftReportRequest r;
        r.journalPath = m_journal;
        r.from = m_from;
        r.to = QDateTime::currentDateTime().addSecs(60);
        r.folder = folder;
        r.language = language;
        return r;
    }
    // A finished report has reported all its progress.
    static CShiftReportExporter::Result exportReport(const ShiftReportRequest& request, bool cancelled = false)
    {
        std::atomic<bool> cancel{cancelled};
        std::atomic<int> progress{0};
        const auto result = CShiftReportExporter::Run(request, cancel, progress);
        EXPECT_EQ(progress.load() == 1000, result.outcome == CShiftReportExporter::Outcome::Written);
        return result;
    }

    QString m_journal;
    QDateTime m_from;
};

TEST_F(ShiftReportTest, CsvAndPdfInBothLanguages)
{
    const struct { int language; const char *timeColumn, *title, *page, *abnormal; } rows[] = {
        {2, "Time", "Shift report", "Page 1 of ", "Abnormal"},
        {1, "时间", "班次报告", "第 1 页", "异常"},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.language);
        const QString folder = path(QStringLiteral("out-%1").arg(r.language));
        const auto result = exportReport(request(r.language, folder));
        ASSERT_EQ(result.outcome, CShiftReportExporter::Outcome::Written) << qPrintable(result.error);
        ASSERT_EQ(result.files.size(), 2);
        EXPECT_EQ(QDir(folder).entryList(QDir::Files).size(), 2);  // no temporary files left

        QFile csv(result.files[0]);
        ASSERT_TRUE(csv.open(QIODevice::ReadOnly));
        const QByteArray bytes = csv.readAll();
        ASSERT_TRUE(bytes.startsWith("\xEF\xBB\xBF"));
        const QStringList lines = QString::fromUtf8(bytes.mid(3)).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
        ASSERT_EQ(lines.size(), 61);
        EXPECT_TRUE(lines[0].startsWith(QString::fromUtf8(r.timeColumn)));
        EXPECT_EQ(lines[0].split(QLatin1Char(',')).size(), 11);
        for (const char* part : {"\"Gate, north\"", "王小明", "入口 2", "38.1 \u00b0C", "90%"})
            EXPECT_TRUE(lines[1].contains(QString::fromUtf8(part))) << part;
        EXPECT_TRUE(lines[2].contains(QStringLiteral("Camera 1")));

        const QString info = run(QStringLiteral("pdfinfo"), {result.files[1]});
        const int pages = info.section(QStringLiteral("Pages:"), 1).trimmed().section(QLatin1Char('\n'), 0, 0).toInt();
        // 20 abnormal and 12 no-mask rows, 4 of them both: 28 table rows, 7 on the first page.
        EXPECT_EQ(pages, 3) << qPrintable(info);
        const QString text = run(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), result.files[1], QStringLiteral("-")});
        EXPECT_TRUE(text.contains(QString::fromUtf8(r.abnormal)) || r.language == 2);
        // With the counters of the range: all 60, abnormal 20, no mask 12, normal 40.
        for (const char* part : {r.title, r.page, "王小明", "38.1", "60", "20", "12", "40"})
            EXPECT_TRUE(text.contains(QString::fromUtf8(part))) << part << qPrintable(text.left(400));
        if (!qEnvironmentVariableIsEmpty("BT_REPORT_PNG"))
            run(QStringLiteral("pdftoppm"), {QStringLiteral("-png"), QStringLiteral("-r"), QStringLiteral("60"),
                result.files[1], qEnvironmentVariable("BT_REPORT_PNG") + QString::number(r.language)});
    }
}

TEST_F(ShiftReportTest, TheHistoryFilterKeepsOnlyItsRows)
{
    // Abnormal (every third) and matched to 王小明 (every fourth): every twelfth.
    HistoryFilter filter;
    filter.kinds = HistoryFilter::KindAbnormal;
    filter.text = "王小明";
    ShiftReportRequest r = request(2, path(QStringLiteral("filtered")));
    r.filter = std::make_shared<const HistoryFilter>(filter);
    const auto result = exportReport(r);
    ASSERT_EQ(result.outcome, CShiftReportExporter::Outcome::Written) << qPrintable(result.error);
    QFile csv(result.files.value(0));
    ASSERT_TRUE(csv.open(QIODevice::ReadOnly));
    EXPECT_EQ(csv.readAll().count("\r\n"), 1 + 5);
    const QString text = run(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), result.files.value(1), QStringLiteral("-")});
    EXPECT_EQ(text.count(QStringLiteral("王小明")), 5) << qPrintable(text.left(600));
}

TEST_F(ShiftReportTest, NothingIsLeftUnderTheFinalNameWhenWritingFails)
{
    // (A folder that does not exist: ShiftReportDialog_test.)
    // Not cancelled: the disk is full.
    const struct { const char* name; bool cancelled; CShiftReportExporter::Outcome outcome; } rows[] = {
        {"full disk", false, CShiftReportExporter::Outcome::Failed},
        {"cancelled", true, CShiftReportExporter::Outcome::Cancelled},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.name);
        const QString folder = path(QString::fromLatin1(r.name).replace(QLatin1Char(' '), QLatin1Char('_')));
        const ShiftReportRequest req = request(2, folder);
        std::unique_ptr<testsupport::SmallDisk> disk;
        if (!r.cancelled) {
            disk = std::make_unique<testsupport::SmallDisk>(folder, "4k");
            if (!disk->mounted()) {
                std::printf("[  SKIPPED ] full disk: mounting a small file system is not permitted here\n");
                continue;
            }
        }
        const auto result = exportReport(req, r.cancelled);
        EXPECT_EQ(result.outcome, r.outcome);
        if (r.outcome == CShiftReportExporter::Outcome::Failed) {
            EXPECT_TRUE(result.error.contains(QDir::toNativeSeparators(folder))) << qPrintable(result.error);
        }
        EXPECT_TRUE(result.files.isEmpty());
        EXPECT_TRUE(QDir(folder).entryList(QDir::Files).isEmpty())
            << qPrintable(QDir(folder).entryList(QDir::Files).join(QLatin1Char(' ')));
    }
}

} // namespace
