#include "examples/demo/demo.h"

#include "bookmarks/VLMC_ThumbnailConverter.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtGui/QImage>

namespace
{
void compare(const QString &name, const QString &packed, const QString &unpacked)
{
    const QImage before(packed + name);
    const QImage after(unpacked + name);
    expect(!before.isNull() && before == after, "the picture is the same after unpacking");
    say(text("%1: the same picture in both folders").arg(name));
}
} // namespace

void showThumbnails(const QString &directory)
{
    heading("Thumbnails: all images packed into one XML file, and unpacked elsewhere");
    const QString source = directory + text("thumbnail/");
    const QString target = directory + text("unpacked/");
    const QString packed = directory + text("thumbnails.xml");
    expect(QDir(directory).mkpath(text("unpacked")), "the folder to unpack into is there");

    // The converter takes its paths as Latin-1.
    QByteArray sourceArgument = source.toLatin1();
    QByteArray targetArgument = target.toLatin1();
    QByteArray packedArgument = packed.toLatin1();
    VLMC_ThumbnailConverter *const converter = VLMC_ThumbnailConverter::getInstance();
    converter->convertThumbnailPngToXML(sourceArgument.data(), packedArgument.data());
    expect(QFile::exists(packed), "the packed thumbnails are written");
    printFile(packed);

    converter->convertThumbnailXMLToPng(packedArgument.data(), targetArgument.data());
    const QStringList names = QDir(source).entryList(QStringList(text("*.PNG")), QDir::Files);
    expect(!names.isEmpty(), "there are thumbnails");
    for (const QString &name : names) {
        compare(name, source, target);
    }
}
