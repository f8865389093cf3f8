// Gives a target the inputs in the files and folders that it is called with.

#include "tests/fuzz/Fuzz.h"

#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QStringList>

#include <cstdio>

namespace
{
QStringList filesAt(const QString &path)
{
    if (QFileInfo(path).isFile()) {
        return QStringList(path);
    }
    QStringList files;
    QDirIterator entries(path, QDir::Files, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        files.append(entries.next());
    }
    files.sort();
    return files;
}

bool replay(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        fprintf(stderr, "cannot read %s\n", qPrintable(path));
        return false;
    }
    printf("%s\n", qPrintable(path));
    fflush(stdout);
    const QByteArray bytes = file.readAll();
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.constData()),
                           size_t(bytes.size()));
    return true;
}
} // namespace

int main(int argc, char **argv)
{
    LLVMFuzzerInitialize(&argc, &argv);
    int replayed = 0;
    for (int i = 1; i < argc; ++i) {
        const QStringList files = filesAt(QFile::decodeName(argv[i]));
        for (const QString &file : files) {
            if (!replay(file)) {
                return 1;
            }
            ++replayed;
        }
    }
    printf("%d inputs\n", replayed);
    return replayed > 0 ? 0 : 1;
}
