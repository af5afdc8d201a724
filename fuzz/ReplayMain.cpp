// Replay driver for a fuzz target built without libFuzzer: runs the target once
// on every file of the given folders (default: its corpus), so crashers stay fixed.
#include <QDir>
#include <QFile>
#include <cstdint>
#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int main(int argc, char** argv)
{
    QStringList dirs;
    for (int i = 1; i < argc; ++i)
        dirs << QString::fromLocal8Bit(argv[i]);
    if (dirs.isEmpty())
        dirs << QStringLiteral(BT_FUZZ_CORPUS);
    int runs = 0;
    for (const QString& d : dirs) {
        const QFileInfoList files = QDir(d).entryInfoList(QDir::Files, QDir::Name);
        if (files.isEmpty()) {
            std::fprintf(stderr, "no inputs in %s\n", qPrintable(d));
            return 1;
        }
        for (const QFileInfo& file : files) {
            QFile f(file.filePath());
            if (!f.open(QIODevice::ReadOnly)) {
                std::fprintf(stderr, "cannot read %s\n", qPrintable(file.filePath()));
                return 1;
            }
            const QByteArray bytes = f.readAll();
            LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.constData()), size_t(bytes.size()));
            ++runs;
        }
    }
    std::printf("%s: %d inputs, no crash\n", argv[0], runs);
    return 0;
}
