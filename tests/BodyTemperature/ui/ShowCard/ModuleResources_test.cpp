// Every resource path the module names exists; lupdate over the module and the
// host keeps every entry and finds every key translated in English and Chinese.
#include <QDirIterator>
#include <QFile>
#include <QLibraryInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <gtest/gtest.h>
#include <set>

#include "support/TestSupport.h"

namespace {

QString ModuleDir()
{
    return testsupport::sourceDir() + QStringLiteral("/BodyTemperature");
}

TEST(ModuleResources, EveryNamedResourceExists)
{
    const QRegularExpression path(QStringLiteral("(?:\"|url\\()(:/[A-Za-z0-9_/%.\\-]+\\.(?:png|svg|gif|qss|qm|sql))"));
    std::set<QString> missing;
    int checked = 0;
    QDirIterator files(ModuleDir(), {QStringLiteral("*.cpp"), QStringLiteral("*.h"), QStringLiteral("*.qss")}, QDir::Files,
        QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString file = files.next();
        QFile f(file);
        ASSERT_TRUE(f.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(f.readAll());
        auto matches = path.globalMatch(text);
        while (matches.hasNext()) {
            QString resource = matches.next().captured(1);
            if (resource.contains(QLatin1String("/i18n/")))
                continue;  // chosen at run time by language
            // Button picture patterns: one picture per state.
            const QStringList variants = resource.contains(QLatin1String("%1"))
                ? QStringList{resource.arg(0), resource.arg(1), resource.arg(2), resource.arg(3)}
                : QStringList{resource};
            for (const QString& v : variants) {
                ++checked;
                if (!QFile::exists(v))
                    missing.insert(v + QStringLiteral("  (named in ") + QFileInfo(file).fileName() + QLatin1Char(')'));
            }
        }
    }
    EXPECT_GT(checked, 20);
    for (const QString& m : missing)
        ADD_FAILURE() << "missing resource " << qPrintable(m);
}

// What lupdate would do to a translation file: entries it would drop (no
// longer found in the code) and keys without a finished translation (new in
// the code, or never translated).
struct TsFindings { QStringList dropped, untranslated; };

TsFindings ReadUpdatedTs(const QString& file)
{
    TsFindings found;
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly))
        return found;
    QXmlStreamReader xml(&f);
    QString context, source, translation, type;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            if (xml.name() == QLatin1String("name"))
                context = xml.readElementText();
            else if (xml.name() == QLatin1String("source"))
                source = xml.readElementText();
            else if (xml.name() == QLatin1String("translation")) {
                type = xml.attributes().value(QLatin1String("type")).toString();
                translation = xml.readElementText();
            }
        } else if (xml.isEndElement() && xml.name() == QLatin1String("message")) {
            const QString entry = context + QStringLiteral(": \"") + source + QLatin1Char('"');
            if (type == QLatin1String("obsolete") || type == QLatin1String("vanished"))
                found.dropped << entry;
            else if (type == QLatin1String("unfinished") || translation.trimmed().isEmpty())
                found.untranslated << entry;
            type.clear();
            translation.clear();
        }
    }
    EXPECT_FALSE(xml.hasError()) << qPrintable(file);
    return found;
}

TEST(Translations, LupdateKeepsEveryEntryAndFindsEveryKeyTranslated)
{
    // lupdate runs on copies, as the project's own update (which drops
    // obsolete entries) would run on the files: tr() in the namespace-qualified
    // class context, translate() and QT_TRANSLATE_NOOP in the given one.
    const QString lupdate = QLibraryInfo::location(QLibraryInfo::BinariesPath) + QStringLiteral("/lupdate");
    ASSERT_TRUE(QFile::exists(lupdate)) << qPrintable(lupdate);
    const QString source = testsupport::sourceDir();
    const struct { const char* name; QString scanned; QStringList tsFiles; } rows[] = {
        {"module", ModuleDir(),
            {ModuleDir() + QStringLiteral("/translations/BodyTemperature_en.ts"),
                ModuleDir() + QStringLiteral("/translations/BodyTemperature_zh_CN.ts")}},
        {"host", source + QStringLiteral("/host"),
            {source + QStringLiteral("/host/app/translations/vantordesk_en.ts"),
                source + QStringLiteral("/host/app/translations/vantordesk_zh_CN.ts")}},
    };
    for (const auto& r : rows) {
        SCOPED_TRACE(r.name);
        QTemporaryDir tmp;
        QStringList copies;
        for (const QString& ts : r.tsFiles) {
            copies << tmp.filePath(QFileInfo(ts).fileName());
            ASSERT_TRUE(QFile::copy(ts, copies.last())) << qPrintable(ts);
        }
        QProcess p;
        // Include paths let lupdate see the namespaces the classes are declared in.
        p.start(lupdate, QStringList{QStringLiteral("-silent"), QStringLiteral("-locations"), QStringLiteral("none"),
                             QStringLiteral("-I"), ModuleDir(), QStringLiteral("-I"), source + QStringLiteral("/host"),
                             r.scanned, QStringLiteral("-ts")}
                + copies);
        ASSERT_TRUE(p.waitForFinished(120000));
        ASSERT_EQ(p.exitCode(), 0) << p.readAllStandardError().constData();
        for (const QString& copy : copies) {
            const TsFindings found = ReadUpdatedTs(copy);
            for (const QString& e : found.dropped)
                ADD_FAILURE() << qPrintable(QFileInfo(copy).fileName()) << ": lupdate would drop " << qPrintable(e)
                              << " (no longer marked in the code)";
            for (const QString& e : found.untranslated)
                ADD_FAILURE() << qPrintable(QFileInfo(copy).fileName()) << ": no finished translation of "
                              << qPrintable(e);
        }
    }
}

} // namespace
