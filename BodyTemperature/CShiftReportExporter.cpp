#include "CShiftReportExporter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdio>
#include <memory>
#include <unistd.h>
#include <vector>

#include "Base/Log.h"
#include "CJournalDatabase.h"
#include "record/HistoryMatch.h"
#include "ReportTexts.h"
#include "ShiftReportPdf.h"
#include "ShiftReportSummary.h"

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

} // namespace

QString CShiftReportExporter::FileName(const ShiftReportRequest& request, const QString& suffix)
{
    const QString f = QStringLiteral("yyyyMMdd-hhmm");
    return QStringLiteral("ShiftReport_%1_%2.%3").arg(request.from.toString(f), request.to.toString(f), suffix);
}

CShiftReportExporter::Result CShiftReportExporter::Run(
    const ShiftReportRequest& request, const std::atomic<bool>& cancel, std::atomic<int>& progress)
{
    Result result;
    const ReportTexts texts(request.language);
    progress = 0;
    const QFileInfo folder(request.folder);
    if (request.folder.isEmpty() || !folder.isDir() || !folder.isWritable()) {
        result.error = texts("ReportFolderNotWritable").arg(QDir::toNativeSeparators(request.folder));
        return result;
    }
    CJournalDatabase db;
    // No file yet: nothing was recorded, and the report says so with zeros.
    const bool recorded = QFileInfo::exists(request.journalPath);
    if (recorded && !db.Open(request.journalPath, CJournalDatabase::OpenMode::Read)) {
        result.error = texts("ReportJournalUnavailable");
        return result;
    }
    const int64_t from = request.from.toSecsSinceEpoch();
    const int64_t to = request.to.toSecsSinceEpoch();
    const int64_t total = std::max<int64_t>(1, recorded ? db.Count(from, to) : 0);
    const QDir dir(request.folder);
    const QString csvPath = dir.filePath(FileName(request, QStringLiteral("csv")));
    const QString pdfPath = dir.filePath(FileName(request, QStringLiteral("pdf")));
    auto writeFailed = [&](const QString& path) {
        result.error = texts("ReportWriteFailed").arg(QDir::toNativeSeparators(path));
        BASE_LOG_WARN("shift report: writing %s failed", qUtf8Printable(path));
        return result;
    };

    std::unique_ptr<PartFile> csv;
    if (request.csv) {
        csv = std::make_unique<PartFile>(csvPath);
        if (!csv->open())
            return writeFailed(csvPath);
        QStringList header;
        for (const char* key : {"ReportColTime", "ReportColDevice", "ReportColCamera", "ReportColEventCode",
                 "ReportColKind", "ReportColTemperature", "ReportColTemperatureState", "ReportColMask",
                 "ReportColPerson", "ReportColLibrary", "ReportColSimilarity"})
            header << csvField(texts(key));
        if (!csv->write(QByteArray("\xEF\xBB\xBF") + header.join(QLatin1Char(',')).toUtf8() + "\r\n"))
            return writeFailed(csvPath);
    }

    ShiftReportSummary summary(request.from, request.to);
    const int passShare = request.pdf ? 500 : 1000;
    int64_t seen = 0;
    bool writeOk = true;
    QByteArray chunk;
    const bool selected = !recorded || db.Select(from, to, CJournalDatabase::Rows::All, [&](JournalEvent&& e) {
        if (cancel)
            return false;
        ++seen;
        progress = int(seen * passShare / total);
        if (request.filter && !HistoryMatches(*request.filter, e))
            return true;
        summary.Add(e);
        if (csv) {
            const QStringList cells{ReportTexts::time(e.time), csvField(QString::fromStdString(e.deviceName.empty() ? e.deviceId : e.deviceName)),
                csvField(QString::fromStdString(e.cameraName.empty() ? e.cameraId : e.cameraName)),
                QString::number(e.eventCode), texts.kind(e.kind), ReportTexts::temperature(e),
                texts.temperatureState(e), texts.mask(e), csvField(QString::fromStdString(e.personName)),
                csvField(QString::fromStdString(e.library)),
                e.kind <= 2 ? QString::number(int(e.similarity * 100 + 0.5)) + QLatin1Char('%') : QString()};
            chunk += cells.join(QLatin1Char(',')).toUtf8();
            chunk += "\r\n";
            if (chunk.size() > 256 * 1024) {
                writeOk = csv->write(chunk);
                chunk.clear();
                if (!writeOk)
                    return false;
            }
        }
        return true;
    });
    if (cancel) {
        result.outcome = Outcome::Cancelled;
        return result;
    }
    if (!selected) {
        result.error = texts("ReportJournalUnavailable");
        return result;
    }
    if (csv) {
        if (!writeOk || !csv->write(chunk) || !csv->commit())
            return writeFailed(csvPath);
        result.files << csvPath;
    }

    if (request.pdf) {
        PartFile pdf(pdfPath);
        if (!pdf.open())
            return writeFailed(pdfPath);
        ShiftReportPdf writer(pdf.file(), texts, summary);
        int64_t flaggedSeen = 0;
        const int64_t flaggedTotal = std::max<int64_t>(1, summary.flagged);
        const bool ok = !recorded || db.Select(from, to, CJournalDatabase::Rows::Flagged, [&](JournalEvent&& e) {
            if (cancel)
                return false;
            if (request.filter && !HistoryMatches(*request.filter, e))
                return true;
            writer.AddFlagged(e);
            ++flaggedSeen;
            progress = int(500 + flaggedSeen * 500 / flaggedTotal);
            return true;
        });
        if (cancel) {
            result.outcome = Outcome::Cancelled;
            return result;
        }
        if (!ok) {
            result.error = texts("ReportJournalUnavailable");
            return result;
        }
        if (!writer.Finish() || !pdf.commit())
            return writeFailed(pdfPath);
        result.files << pdfPath;
    }
    progress = 1000;
    result.outcome = Outcome::Written;
    return result;
}

} // namespace BodyTemperature
