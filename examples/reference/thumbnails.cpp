#include "bookmarks/VLMC_ThumbnailConverter.h"
#include "examples/reference/Reference.h"

#include <QtCore/QFile>
#include <QtGui/QImage>

namespace
{
void pack(const QString &directory)
{
    //! [thumbnails: pack]
    // Paths come as Latin-1, in buffers that are only read.
    QByteArray images = (directory + QString::fromUtf8("thumbnail/")).toLatin1();
    QByteArray packed = (directory + QString::fromUtf8("thumbnails.xml")).toLatin1();
    VLMC_ThumbnailConverter::getInstance()->convertThumbnailPngToXML(images.data(), packed.data());
    //! [thumbnails: pack]
}

void unpack(const QString &directory)
{
    //! [thumbnails: unpack]
    QByteArray packed = (directory + QString::fromUtf8("thumbnails.xml")).toLatin1();
    QByteArray images = (directory + QString::fromUtf8("thumbnail/")).toLatin1();
    VLMC_ThumbnailConverter::getInstance()->convertThumbnailXMLToPng(packed.data(), images.data());
    //! [thumbnails: unpack]
}

QByteArray packOne(QString file)
{
    //! [thumbnails: one file]
    QByteArray text; // stays empty if the file cannot be read
    VLMC_ThumbnailConverter::getInstance()->encode_base64(file, text);
    //! [thumbnails: one file]
    return text;
}
} // namespace

void exampleOfThumbnails(QString directory)
{
    const QString file = directory + utf8("thumbnail/000001.PNG"); // from the bookmarks
    const QByteArray text = packOne(file);
    EXPECT(!text.isEmpty());
    pack(directory);
    EXPECT(QFile::remove(file));
    EXPECT(packOne(file).isEmpty());
    unpack(directory);
    EXPECT(packOne(file) == text && !QImage(file).isNull());
}
