#include "tests/identical/Script.h"

#include "bookmarks/VLMC_BookmarksSetting.h"
#include "bookmarks/VLMC_ThumbnailConverter.h"

#include <QtCore/QDir>
#include <QtGui/QImage>

namespace
{
const char kFile[] = "thumbnails.xml";
const char kDocument[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<thumbnail docInfo=\"1.0\">\n"
    "    <image src=\"000002.PNG\"><![CDATA[aGFuYWtv]]></image>\n"
    "    <image src=\"000001.PNG\"><![CDATA[c2Ft cGxl*\xE3\x81\x82]]></image>\n"
    "    <image src=\"000003.PNG\">c2FtcGxl</image>\n"
    "    <image src=\"../out.PNG\"><![CDATA[c2FtcGxl]]></image>\n"
    "    <image src=\"\"><![CDATA[c2FtcGxl]]></image>\n"
    "    <image src=\"000004.PNG\"><![CDATA[]]></image>\n"
    "    <image><![CDATA[c2FtcGxl]]></image>\n"
    "    <other src=\"000005.PNG\"><![CDATA[c2FtcGxl]]></other>\n"
    "</thumbnail>\n";

const QImage::Format kFormats[] = {QImage::Format_Mono, QImage::Format_Indexed8,
                                   QImage::Format_RGB32, QImage::Format_ARGB32,
                                   QImage::Format_RGB16};

VLMC_ThumbnailConverter &converter() { return *VLMC_ThumbnailConverter::getInstance(); }
VLMC_BookmarksSetting &bookmarks() { return *VLMC_BookmarksSetting::getInstance(); }

QImage drawn(Draw &draw, QImage::Format format)
{
    QImage image(5, 3, QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int grey = draw.below(256);
            const int alpha = format == QImage::Format_ARGB32 ? draw.below(2) * 255 : 255;
            image.setPixel(x, y, qRgba(grey, 255 - grey, draw.oneIn(2) ? 255 : 0, alpha));
        }
    }
    return format == QImage::Format_ARGB32 ? image : image.convertToFormat(format);
}

void showPixels(const QImage &image)
{
    line("size " + shown(image.width()) + " x " + shown(image.height()));
    for (int y = 0; y < image.height(); ++y) {
        QByteArray row;
        for (int x = 0; x < image.width(); ++x) {
            row += QByteArray::number(image.pixel(x, y), 16) + ' ';
        }
        line(row.trimmed());
    }
}

// PNG bytes differ between Qt's versions, the pixels do not.
void playImages()
{
    Draw draw(9);
    int number = 41;
    const QString folder = newFolder();
    for (const QImage::Format format : kFormats) {
        const Part part("thumbnails, image of format " + shown(int(format)));
        QImage image = drawn(draw, format);
        QString path = folder;
        line("saved", bookmarks().setThumbnail(&image, &path, number));
        line("path", path);
        line("number", number);
        QImage loaded;
        line("loaded", bookmarks().getThumbnail(&loaded, &path));
        showPixels(loaded);
        line("removed", bookmarks().deleteThumbnail(&path));
        line("removed", bookmarks().deleteThumbnail(&path));
        showFolder(folder);
        showLog();
    }
}

void playRefusedImages()
{
    const Part part("thumbnails, images that are refused");
    QImage none;
    QImage image(1, 1, QImage::Format_RGB32);
    image.fill(0xFF123456);
    QString folder = newFolder();
    QString path = folder;
    QString missing = folder + utf8("missing/");
    int number = 2147483647;
    line("saved", bookmarks().setThumbnail(nullptr, &path, number));
    line("saved", bookmarks().setThumbnail(&image, nullptr, number));
    line("saved", bookmarks().setThumbnail(&none, &path, number));
    line("saved", bookmarks().setThumbnail(&image, &missing, number));
    line("paths", QStringList() << path << missing);
    line("number", number);
    line("loaded", bookmarks().getThumbnail(nullptr, &path));
    line("loaded", bookmarks().getThumbnail(&image, nullptr));
    line("loaded", bookmarks().getThumbnail(&image, &missing));
    line("loaded", bookmarks().getThumbnail(&image, &folder));
    QString text = folder + utf8("text.PNG");
    writeFile(text, "no image");
    line("loaded", bookmarks().getThumbnail(&image, &text));
    line("removed", bookmarks().deleteThumbnail(nullptr));
    showPixels(image);
    showFolder(folder);
    showLog();
}

void fill(const QString &folder, Draw &draw)
{
    for (int i = 0; i < 6; ++i) {
        const QString number = QString::number(draw.below(1000000));
        const QString suffix = utf8(draw.oneIn(2) ? ".PNG" : ".png");
        writeFile(folder + number + suffix, draw.bytes());
    }
    writeFile(folder + utf8("empty.PNG"), QByteArray());
    writeFile(folder + utf8(".hidden.png"), "x");
    writeFile(folder + utf8("other.jpg"), "x");
    writeFile(folder + utf8("a&b \"c\".Png"), "x");
    writeFile(folder + utf8("\xE3\x81\x82.png"), "x");
    QDir().mkpath(folder + utf8("folder.png"));
}

void playPacking()
{
    Draw draw(10);
    for (int i = 0; i < 12; ++i) {
        const Part part("thumbnails, packed folder " + shown(i));
        const QString packed = newFolder();
        const QString folder = newFolder();
        const QString again = newFolder();
        fill(folder, draw);
        QByteArray from = folder.toLatin1();
        QByteArray file = (packed + utf8(kFile)).toLatin1();
        QByteArray to = again.toLatin1();
        converter().convertThumbnailPngToXML(from.data(), file.data());
        converter().convertThumbnailXMLToPng(file.data(), to.data());
        showFolder(packed);
        showFolder(again);
        showLog();
    }
}

void playRefusedPacking()
{
    const Part part("thumbnails, what is refused");
    QByteArray folder = newFolder().toLatin1();
    QByteArray file = folder + kFile;
    char empty[] = "";
    char missing[] = "missing/";
    converter().convertThumbnailPngToXML(nullptr, file.data());
    converter().convertThumbnailPngToXML(folder.data(), nullptr);
    converter().convertThumbnailXMLToPng(nullptr, folder.data());
    converter().convertThumbnailXMLToPng(file.data(), nullptr);
    converter().convertThumbnailXMLToPng(empty, folder.data());
    converter().convertThumbnailXMLToPng(file.data(), folder.data());
    converter().convertThumbnailPngToXML(missing, file.data());
    QString path = QString::fromLatin1(missing);
    QByteArray text = "kept";
    converter().encode_base64(path, text);
    line("text", text);
    line("decoded", converter().decode_base64(text, path));
    text = "";
    line("decoded", converter().decode_base64(text, path));
    converter().setThumbnail(path, path, nullptr);
    showFolder(QString::fromLatin1(folder.constData()));
    showLog();
}
} // namespace

void playThumbnails()
{
    playImages();
    playRefusedImages();
    playPacking();
    playRefusedPacking();
    playDocuments(kFile, kDocument, [](QString &folder) {
        QByteArray file = (folder + utf8(kFile)).toLatin1();
        QByteArray directory = folder.toLatin1();
        converter().convertThumbnailXMLToPng(file.data(), directory.data());
    });
}
