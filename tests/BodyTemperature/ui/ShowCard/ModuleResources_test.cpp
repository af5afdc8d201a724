// Every picture and style sheet path the module names exists in its
// resources, and every translation key it looks up has an English and a
// Chinese text in its own translation context.
#include <QDirIterator>
#include <QFile>
#include <QLibraryInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTranslator>
#include <QXmlStreamReader>
#include <gtest/gtest.h>
#include <map>
#include <set>

#include "support/TestSupport.h"

namespace {

QString ModuleDir()
{
    return testsupport::sourceDir() + QStringLiteral("/BodyTemperature");
}

QStringList ModuleFiles(const QStringList& patterns)
{
    QStringList files;
    QDirIterator it(ModuleDir(), patterns, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        files << it.next();
    return files;
}

TEST(ModuleResources, EveryNamedResourceExists)
{
    const QRegularExpression path(QStringLiteral("(?:\"|url\\()(:/[A-Za-z0-9_/%.\\-]+\\.(?:png|svg|gif|qss|qm|sql))"));
    std::set<QString> missing;
    int checked = 0;
    for (const QString& file : ModuleFiles({QStringLiteral("*.cpp"), QStringLiteral("*.h"), QStringLiteral("*.qss")})) {
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

TEST(ModuleResources, TranslationsAreEmbeddedForBothLanguages)
{
    for (const char* lang : {"en", "zh_CN"}) {
        QTranslator t;
        EXPECT_TRUE(t.load(QStringLiteral(":/BodyTemperature/i18n/BodyTemperature_%1.qm").arg(QLatin1String(lang))))
            << lang;
    }
}

using Keys = std::map<QString, std::set<QString>>;  // context -> source keys

// Messages of a .ts file; with `translatedOnly`, only those with a finished,
// non-empty translation.
Keys ReadTs(const QString& file, bool translatedOnly)
{
    Keys keys;
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly))
        return keys;
    QXmlStreamReader xml(&f);
    QString context, source, translation;
    bool unfinished = false;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            if (xml.name() == QLatin1String("name"))
                context = xml.readElementText();
            else if (xml.name() == QLatin1String("source"))
                source = xml.readElementText();
            else if (xml.name() == QLatin1String("translation")) {
                unfinished = xml.attributes().value(QLatin1String("type")) == QLatin1String("unfinished");
                translation = xml.readElementText();
            }
        } else if (xml.isEndElement() && xml.name() == QLatin1String("message")) {
            if (!translatedOnly || (!unfinished && !translation.trimmed().isEmpty()))
                keys[context].insert(source);
            source.clear();
            translation.clear();
            unfinished = false;
        }
    }
    return keys;
}

TEST(ModuleTranslations, EveryKeyTheCodeUsesIsTranslated)
{
    // lupdate finds the keys exactly as Qt looks them up at run time: tr() in
    // the namespace-qualified class context, translate() in the given one.
    const QString lupdate = QLibraryInfo::location(QLibraryInfo::BinariesPath) + QStringLiteral("/lupdate");
    ASSERT_TRUE(QFile::exists(lupdate)) << qPrintable(lupdate);
    QTemporaryDir tmp;
    const QString scanned = tmp.filePath(QStringLiteral("scan.ts"));
    QProcess p;
    // Include paths let lupdate see the namespaces the classes are declared in.
    p.start(lupdate, {QStringLiteral("-silent"), QStringLiteral("-locations"), QStringLiteral("none"),
                      QStringLiteral("-I"), ModuleDir(), QStringLiteral("-I"), testsupport::sourceDir() + QStringLiteral("/host"),
                      ModuleDir(), QStringLiteral("-ts"), scanned});
    ASSERT_TRUE(p.waitForFinished(120000));
    ASSERT_EQ(p.exitCode(), 0) << p.readAllStandardError().constData();
    const Keys used = ReadTs(scanned, false);
    ASSERT_FALSE(used.empty());

    for (const char* lang : {"en", "zh_CN"}) {
        const Keys translated =
            ReadTs(ModuleDir() + QStringLiteral("/translations/BodyTemperature_%1.ts").arg(QLatin1String(lang)), true);
        for (const auto& ctx : used)
            for (const QString& key : ctx.second) {
                auto it = translated.find(ctx.first);
                EXPECT_TRUE(it != translated.end() && it->second.count(key))
                    << lang << ": no translation of \"" << qPrintable(key) << "\" in context " << qPrintable(ctx.first);
            }
    }
}

} // namespace
