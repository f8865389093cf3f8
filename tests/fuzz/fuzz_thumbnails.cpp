// Any bytes as a file of packed thumbnails: nothing is written outside the directory, and what was
// unpacked can be packed and unpacked again.

#include "bookmarks/VLMC_ThumbnailConverter.h"
#include "tests/fuzz/Fuzz.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QMap>
#include <QtCore/QStringList>

namespace
{
// What entities of the document may add.
const int kMaxExpandedBytes = 3 * 4096;

typedef QMap<QString, QByteArray> Files;

Files filesIn(const QString &directory)
{
    Files files;
    const QStringList names = QDir(directory).entryList(QDir::AllEntries | QDir::Hidden
                                                        | QDir::System | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        require(QFileInfo(directory + name).isFile(), "only files are unpacked");
        files.insert(name, bytesOfFile(directory + name));
    }
    return files;
}

bool isPrintable(const QString &name)
{
    for (const QChar character : name) {
        if (character.unicode() < 0x20 || character.unicode() > 0x7E) {
            return false;
        }
    }
    return true;
}

// Those that packing takes up, which leaves out hidden ones; an empty one is packed as empty, and
// unpacked not at all. A name of other characters need not come back from the file system as it
// went there.
Files packable(const Files &files)
{
    Files taken;
    for (Files::const_iterator file = files.constBegin(); file != files.constEnd(); ++file) {
        if (file.key().endsWith(QLatin1String(".png"), Qt::CaseInsensitive)
            && !file.key().startsWith(QLatin1Char('.')) && isPrintable(file.key())
            && !file.value().isEmpty()) {
            taken.insert(file.key(), file.value());
        }
    }
    return taken;
}

void unpack(const QString &file, const QString &directory)
{
    QByteArray fileName = file.toLatin1();
    QByteArray directoryName = directory.toLatin1();
    VLMC_ThumbnailConverter().convertThumbnailXMLToPng(fileName.data(), directoryName.data());
}

void pack(const QString &directory, const QString &file)
{
    QByteArray fileName = file.toLatin1();
    QByteArray directoryName = directory.toLatin1();
    VLMC_ThumbnailConverter().convertThumbnailPngToXML(directoryName.data(), fileName.data());
}

qint64 bytesIn(const Files &files)
{
    qint64 bytes = 0;
    for (const QByteArray &content : files) {
        bytes += content.size();
    }
    return bytes;
}
} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QString startDirectory = QDir::currentPath();
    const QByteArray input(reinterpret_cast<const char *>(data), int(size));
    const InputDirectory directory;
    const DeferredDeletes deferred;
    const QString packed = directory.file("packed.xml");
    const QString unpacked = directory.newDirectory("unpacked");
    const QString current = directory.newDirectory("current");
    require(QDir::setCurrent(current), "the current directory can be changed");
    writeToFile(packed, input);

    unpack(packed, unpacked);
    QDir(current).refresh();
    require(filesIn(current).isEmpty(), "nothing is unpacked into the current directory");
    require(QDir(directory.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)
                == QStringList({QString::fromLatin1("current"), QString::fromLatin1("packed.xml"),
                                QString::fromLatin1("unpacked")}),
            "nothing is unpacked outside the directory");
    require(bytesOfFile(packed) == input, "the packed file stays as it is");
    const Files files = filesIn(unpacked);
    require(bytesIn(files) <= input.size() + kMaxExpandedBytes,
            "no more than was packed comes out");

    const QString again = directory.file("again.xml");
    const QString second = directory.newDirectory("second");
    pack(unpacked, again);
    require(filesIn(unpacked) == files, "packing leaves the files alone");
    unpack(again, second);
    require(packable(filesIn(second)) == packable(files), "what is packed is unpacked");
    QDir::setCurrent(startDirectory);
    return 0;
}
