#include "report/CShiftReportExporter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <chrono>
#include <functional>
#include <pthread.h>
#include <thread>
#include <memory>
#include <unistd.h>
#include <vector>

#include "Base/Log.h"
#include "record/CJournalDatabase.h"
#include "record/CSiteHistorySource.h"
#include "record/HistoryMatch.h"
#include "report/ReportTexts.h"
#include "report/ShiftReportPdf.h"
#include "report/ShiftReportSummary.h"

namespace BodyTemperature {

namespace {

QString csvField(const QString& s)
{
    if (!s.contains(QLatin1Char(',')) && !s.contains(QLatin1Char('"')) && !s.contains(QLatin1Char('\n'))
        && !s.contains(QLatin1Char('\r')))
        return s;
    QString q = s;
    q.replace(QLatin1String("\""), QLatin1String("\"\""));
    return QLatin1Char('"') + q + QLatin1Char('"');
}

// A file written under "<final>.part" and renamed when complete.
class PartFile {
public:
    explicit PartFile(const QString& finalPath) : m_final(finalPath), m_file(finalPath + QStringLiteral(".part")) {}
    ~PartFile()
    {
        if (!m_committed) {
            m_file.close();
            m_file.remove();
        }
    }
    bool open() { return m_file.open(QIODevice::WriteOnly | QIODevice::Truncate); }
    QFile& file() { return m_file; }
    bool write(const QByteArray& bytes)
    {
        return m_file.write(bytes) == bytes.size();
    }
    bool commit()
    {
        if (!m_file.flush() || m_file.error() != QFileDevice::NoError)
            return false;
        if (::fsync(m_file.handle()) != 0)
            return false;
        m_file.close();
        if (m_file.error() != QFileDevice::NoError)
            return false;
        if (std::rename(QFile::encodeName(m_file.fileName()).constData(), QFile::encodeName(m_final).constData()) != 0)
            return false;
        m_committed = true;
        return true;
    }

private:
    QString m_final;
    QFile m_file;
    bool m_committed = false;
};

using Outcome = CShiftReportExporter::Outcome;
using Result = CShiftReportExporter::Result;
using RowFn = std::function<bool(const HistoryRow&)>;

// Where a report's rows come from: the station's own journal, or the site
// record (every station's rows, the filter applied by the server).
class RowSource {
public:
    RowSource(const ShiftReportRequest& request, const std::atomic<bool>& cancel, int64_t from, int64_t to)
        : m_request(request), m_cancel(cancel), m_from(from), m_to(to)
    {
    }

    // False: the journal cannot be opened.
    bool Open()
    {
        if (m_request.site) {
            m_site = std::make_unique<CSiteHistorySource>(*m_request.site);
            return true;
        }
        // No file yet: nothing was recorded, and the report says so with zeros.
        m_recorded = QFileInfo::exists(m_request.journalPath);
        return !m_recorded || m_db.Open(m_request.journalPath, CJournalDatabase::OpenMode::Read);
    }

    bool IsSite() const { return m_site != nullptr; }

    // The rows of the range that the request's filter keeps, oldest first
    // (flaggedOnly: the abnormal and no-mask ones); `take` returns false to
    // stop. False when reading failed (`error` for the log).
    bool ForEach(bool flaggedOnly, const RowFn& take, QString& error)
    {
        if (m_site)
            return forEachSite(flaggedOnly, take, error);
        const HistoryFilter* filter = m_request.filter.get();
        HistoryRow row;
        const auto rows = flaggedOnly ? CJournalDatabase::Rows::Flagged : CJournalDatabase::Rows::All;
        const bool ok = !m_recorded || m_db.Select(m_from, m_to, rows, [&](JournalEvent&& e) {
            if (filter != nullptr && !HistoryMatches(*filter, e))
                return true;
            row.event = std::move(e);
            return take(row);
        });
        if (!ok)
            error = QStringLiteral("reading %1 failed").arg(m_request.journalPath);
        return ok;
    }

private:
    bool forEachSite(bool flaggedOnly, const RowFn& take, QString& error)
    {
        HistoryFilter f = m_request.filter ? *m_request.filter : HistoryFilter();
        f.from = std::max(f.from, m_from);
        f.to = std::min(f.to, m_to);
        f.pageSize = 500;
        const auto keep = [&](HistoryRow&& row) {
            return (flaggedOnly && !row.event.countsAbnormal() && !row.event.countsNoMask()) || take(row);
        };
        // A cancel reaches the statement in flight, not only the next row.
        std::atomic<bool> done{false};
        std::thread watch([&] {
            pthread_setname_np(pthread_self(), "bt-reportstop");
            while (!done) {
                if (m_cancel)
                    m_site->Cancel();
                std::this_thread::sleep_for(std::chrono::milliseconds(20));
            }
        });
        const bool ok = m_site->Scan(f, keep, error) == IHistorySource::Result::Ok;
        done = true;
        watch.join();
        return ok;
    }

    const ShiftReportRequest& m_request;
    const std::atomic<bool>& m_cancel;
    const int64_t m_from;
    const int64_t m_to;
    CJournalDatabase m_db;
    bool m_recorded = false;
    std::unique_ptr<CSiteHistorySource> m_site;
};

// One export, step by step: the CSV with the summary gathered on the way,
// then the PDF from a second pass over the flagged rows.
class ExportRun {
public:
    ExportRun(const ShiftReportRequest& request, const std::atomic<bool>& cancel, std::atomic<int>& progress)
        : m_request(request), m_cancel(cancel), m_progress(progress), m_texts(request.language),
          m_from(request.from.toSecsSinceEpoch()), m_to(request.to.toSecsSinceEpoch()),
          m_source(request, cancel, m_from, m_to), m_summary(request.from, request.to)
    {
        const QDir dir(request.folder);
        m_csvPath = dir.filePath(CShiftReportExporter::FileName(request, QStringLiteral("csv")));
        m_pdfPath = dir.filePath(CShiftReportExporter::FileName(request, QStringLiteral("pdf")));
    }

    Result Run()
    {
        m_progress = 0;
        const QFileInfo folder(m_request.folder);
        if (m_request.folder.isEmpty() || !folder.isDir() || !folder.isWritable())
            return failed(m_texts("ReportFolderNotWritable").arg(QDir::toNativeSeparators(m_request.folder)));
        if (!m_source.Open())
            return failed(m_texts("ReportJournalUnavailable"));
        if (!writeCsvAndSummary() || !writePdf())
            return m_result;
        m_progress = 1000;
        m_result.outcome = Outcome::Written;
        return m_result;
    }

private:
    Result failed(const QString& error)
    {
        m_result.error = error;
        return m_result;
    }
    bool writeFailed(const QString& path)
    {
        failed(m_texts("ReportWriteFailed").arg(QDir::toNativeSeparators(path)));
        BASE_LOG_WARN("shift report: writing %s failed", qUtf8Printable(path));
        return false;
    }
    // After a pass: cancelled, or the rows could not be read.
    bool passEnded(bool read, const QString& error)
    {
        if (m_cancel) {
            m_result.outcome = Outcome::Cancelled;
            return false;
        }
        if (read)
            return true;
        BASE_LOG_WARN("shift report: %s", qUtf8Printable(error));
        failed(m_texts(m_source.IsSite() ? "ReportSiteUnavailable" : "ReportJournalUnavailable"));
        return false;
    }
    // How far an oldest-first pass has come, by the time of the row it reached.
    int reached(int64_t time, int from, int share) const
    {
        const int64_t span = std::max<int64_t>(1, m_to - m_from);
        return from + int(std::clamp<int64_t>(time - m_from, 0, span) * share / span);
    }

    QByteArray csvHeader() const
    {
        QStringList header;
        for (const char* key : {"ReportColTime", "ReportColStation", "ReportColDevice", "ReportColCamera",
                 "ReportColEventCode", "ReportColKind", "ReportColTemperature", "ReportColTemperatureState",
                 "ReportColMask", "ReportColPerson", "ReportColLibrary", "ReportColSimilarity"}) {
            // The station column only when the rows come from several stations.
            if (!m_source.IsSite() && std::strcmp(key, "ReportColStation") == 0)
                continue;
            header << csvField(m_texts(key));
        }
        return QByteArray("\xEF\xBB\xBF") + header.join(QLatin1Char(',')).toUtf8() + "\r\n";
    }

    QByteArray csvLine(const HistoryRow& row) const
    {
        const JournalEvent& e = row.event;
        QStringList cells{ReportTexts::time(e.time)};
        if (m_source.IsSite())
            cells << csvField(QString::fromStdString(row.station));
        cells << csvField(QString::fromStdString(e.deviceName.empty() ? e.deviceId : e.deviceName))
              << csvField(QString::fromStdString(e.cameraName.empty() ? e.cameraId : e.cameraName))
              << QString::number(e.eventCode) << m_texts.kind(e.kind) << ReportTexts::temperature(e)
              << m_texts.temperatureState(e) << m_texts.mask(e) << csvField(QString::fromStdString(e.personName))
              << csvField(QString::fromStdString(e.library))
              << (e.kind <= 2 ? QString::number(int(e.similarity * 100 + 0.5)) + QLatin1Char('%') : QString());
        return cells.join(QLatin1Char(',')).toUtf8() + "\r\n";
    }

    // The first pass: every kept row counted, and written to the CSV if asked.
    bool writeCsvAndSummary()
    {
        std::unique_ptr<PartFile> csv;
        if (m_request.csv) {
            csv = std::make_unique<PartFile>(m_csvPath);
            if (!csv->open() || !csv->write(csvHeader()))
                return writeFailed(m_csvPath);
        }
        const int share = m_request.pdf ? 500 : 1000;
        bool writeOk = true;
        QByteArray chunk;
        QString error;
        const bool read = m_source.ForEach(false, [&](const HistoryRow& row) {
            if (m_cancel)
                return false;
            m_progress = reached(row.event.time, 0, share);
            m_summary.Add(row.event);
            if (!csv)
                return true;
            chunk += csvLine(row);
            if (chunk.size() > 256 * 1024) {
                writeOk = csv->write(chunk);
                chunk.clear();
            }
            return writeOk;
        }, error);
        if (!passEnded(read || !writeOk, error))
            return false;
        if (!csv)
            return true;
        if (!writeOk || !csv->write(chunk) || !csv->commit())
            return writeFailed(m_csvPath);
        m_result.files << m_csvPath;
        return true;
    }

    // The second pass: the flagged rows with their faces into the PDF.
    bool writePdf()
    {
        if (!m_request.pdf)
            return true;
        PartFile pdf(m_pdfPath);
        if (!pdf.open())
            return writeFailed(m_pdfPath);
        ShiftReportPdf writer(pdf.file(), m_texts, m_summary, m_source.IsSite());
        int64_t seen = 0;
        const int64_t total = std::max<int64_t>(1, m_summary.flagged);
        QString error;
        const bool read = m_source.ForEach(true, [&](const HistoryRow& row) {
            if (m_cancel)
                return false;
            writer.AddFlagged(row.event, QString::fromStdString(row.station));
            m_progress = int(500 + ++seen * 500 / total);
            return true;
        }, error);
        if (!passEnded(read, error))
            return false;
        if (!writer.Finish() || !pdf.commit())
            return writeFailed(m_pdfPath);
        m_result.files << m_pdfPath;
        return true;
    }

    const ShiftReportRequest& m_request;
    const std::atomic<bool>& m_cancel;
    std::atomic<int>& m_progress;
    const ReportTexts m_texts;
    const int64_t m_from;
    const int64_t m_to;
    RowSource m_source;
    ShiftReportSummary m_summary;
    QString m_csvPath;
    QString m_pdfPath;
    Result m_result;
};

} // namespace

QString CShiftReportExporter::FileName(const ShiftReportRequest& request, const QString& suffix)
{
    const QString f = QStringLiteral("yyyyMMdd-hhmm");
    return QStringLiteral("ShiftReport_%1_%2.%3").arg(request.from.toString(f), request.to.toString(f), suffix);
}

CShiftReportExporter::Result CShiftReportExporter::Run(
    const ShiftReportRequest& request, const std::atomic<bool>& cancel, std::atomic<int>& progress)
{
    return ExportRun(request, cancel, progress).Run();
}

} // namespace BodyTemperature
