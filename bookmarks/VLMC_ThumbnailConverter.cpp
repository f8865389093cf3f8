#include "bookmarks/VLMC_ThumbnailConverter.h"

#include "core/DocumentRoot_p.h"
#include "core/Entries_p.h"
#include "core/QEXC_TextCodec.h"
#include "core/QtCompat_p.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMG_Debug.h"
#include "files/FolderNames_p.h"
#include "files/RegularFile_p.h"
#include "files/ReplaceFile_p.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSet>

using namespace vlm;

namespace
{
const char kRoot[] = "thumbnail";
const char kImage[] = "image";
const char kSource[] = "src";
const char kPngFiles[] = "*.png";
const char kPngSuffix[] = ".png";

// A thumbnail has some ten thousand.
const qint64 kMaxPictureBytes = qint64(16) * 1024 * 1024;

// A root as a packed file has it. It belongs to the caller.
VLMC_XMLNode *newPackedRoot(VLMC_XMLSetting &store)
{
    QString name = QEXC_TextCodec::fromSJIS(kRoot);
    QString text;
    char textType = PlainText;
    QXmlStreamAttributes attributes = rootAttributes();
    return store.addXMLChild(nullptr, name, text, textType, attributes, AtEnd);
}

bool isPackedImage(VLMC_XMLNode &node)
{
    return node.getName() == QEXC_TextCodec::fromSJIS(kImage) && node.getTextType() == CDataText;
}

// The file of an image. A name that leads out of the directory gives an empty path, which cannot be
// opened: a packed file must not write anywhere else.
QString fileOf(VLMC_XMLNode &image, const QString &directory)
{
    const QString name = image.getAttribute().value(QEXC_TextCodec::fromSJIS(kSource)).toString();
    const bool leadsOut = name.contains(QLatin1Char('/')) || name == QLatin1String(".")
                          || name == QLatin1String("..");
    return leadsOut ? QString() : directory + name;
}

QStringList without(const QStringList &names, const QStringList &others)
{
    QSet<QString> left;
    for (const QString &name : names) {
        left.insert(name);
    }
    for (const QString &other : others) {
        left.remove(other);
    }
    return QStringList(left.values());
}

// QDir gives what it can read of a folder and does not tell that there is more. False when there
// is: one that stands there before and after, and is not in the list.
bool listImages(VLMC_ThumbnailConverter &converter, QString &directory, QStringList *names)
{
    const QString suffix = QLatin1String(kPngSuffix);
    QStringList before;
    if (!namesInFolder(directory, suffix, &before)) {
        return false;
    }
    QStringList filters(QEXC_TextCodec::fromSJIS(kPngFiles));
    *names = converter.getFileList(directory, filters,
                                   QDir::Files | QDir::NoSymLinks | QDir::NoDotAndDotDot,
                                   QDir::Name | QDir::Reversed);
    const QStringList missing = without(before, *names);
    QStringList after;
    return missing.isEmpty()
           || (namesInFolder(directory, suffix, &after)
               && without(missing, after).size() == missing.size());
}

// False for a picture that cannot be read to its end, and for one over the limit.
bool readPicture(const QString &file, QByteArray *bytes)
{
    QFile thumbnail(file);
    if (!thumbnail.open(QIODevice::ReadOnly)) {
        return false;
    }
    *bytes = thumbnail.read(kMaxPictureBytes + 1);
    return bytes->size() <= kMaxPictureBytes && thumbnail.error() == QFile::NoError;
}

bool holdsPicture(const QString &file)
{
    const QFileInfo info(file);
    return info.isFile() && info.size() > 0;
}

void packImages(VLMC_ThumbnailConverter &converter, const QString &directory,
                const QStringList &names, VLMC_XMLNode *root)
{
    for (QString name : names) {
        QString file = directory + name;
        QByteArray bytes;
        converter.encode_base64(file, bytes);
        QString text = fromCString(bytes.constData());
        converter.setThumbnail(text, name, root);
    }
}

void unpackImages(VLMC_ThumbnailConverter &converter, const QString &directory, VLMC_XMLNode *root)
{
    const QList<VLMC_XMLNode *> images = root->getXMLNodeChildren();
    for (VLMC_XMLNode *const image : images) {
        if (!image) {
            VLMG_DebugPrint(VLMG_LogError, "[VLMC_ThumbnailConverter] XMLNode is Null.");
            return;
        }
        if (!isPackedImage(*image)) {
            continue;
        }
        QByteArray text = image->getText().toUtf8();
        QString file = fileOf(*image, directory);
        converter.decode_base64(text, file);
    }
}
} // namespace

VLMC_ThumbnailConverter *VLMC_ThumbnailConverter::getInstance()
{
    static VLMC_ThumbnailConverter instance;
    return &instance;
}

VLMC_ThumbnailConverter::VLMC_ThumbnailConverter() {}

void VLMC_ThumbnailConverter::convertThumbnailPngToXML(char *pngDir, char *xmlFile)
{
    if (!pngDir || !xmlFile) {
        VLMG_DebugPrint(VLMG_LogError,
                        "[VLMC_ThumbnailConverter::convertThumbnailPngToXML] Invalid Parameter.");
        return;
    }
    VLMC_XMLNode *const packed = newPackedRoot(*this);
    if (!packed) {
        return;
    }
    if (root) {
        root->deleteLater();
    }
    root = packed;
    QString directory = fromCString(pngDir);
    QStringList names;
    if (listImages(*this, directory, &names)) {
        packImages(*this, directory, names, root);
        QString path = fromCString(xmlFile);
        save(path);
    } else {
        VLMG_DebugPrint(VLMG_LogWarning, "[VLMC_ThumbnailConverter::convertThumbnailPngToXML] "
                                         "Couldn't read the directory.");
    }
    deleteAllXMLNode();
}

void VLMC_ThumbnailConverter::convertThumbnailXMLToPng(char *xmlFile, char *pngDir)
{
    if (!xmlFile || !pngDir) {
        VLMG_DebugPrint(VLMG_LogError,
                        "[VLMC_ThumbnailConverter::convertThumbnailXMLToPng] Invalid Parameter.");
        return;
    }
    QString path = fromCString(xmlFile);
    load(path);
    if (!root) {
        return;
    }
    unpackImages(*this, fromCString(pngDir), root);
    deleteAllXMLNode();
}

QStringList VLMC_ThumbnailConverter::getFileList(QString &dir, QStringList &nameFilters,
                                                 QDir::Filters filters, QDir::SortFlags sort)
{
    return QDir(dir).entryList(nameFilters, filters, sort);
}

void VLMC_ThumbnailConverter::encode_base64(QString &file, QByteArray &out)
{
    QByteArray bytes;
    if (!isFileOrFree(file) || !readPicture(file, &bytes)) {
        VLMG_DebugPrint(VLMG_LogError,
                        "[VLMC_ThumbnailConverter] Couldn't open thumbnail for reading.");
        return;
    }
    out = bytes.toBase64();
}

bool VLMC_ThumbnailConverter::decode_base64(QByteArray &text, QString &file)
{
    if (text.isEmpty()) {
        VLMG_DebugPrint(VLMG_LogError, "[VLMC_ThumbnailConverter] thumbnail is empty.");
        return false;
    }
    const QByteArray bytes = QByteArray::fromBase64(text);
    if (bytes.isEmpty() && holdsPicture(file)) {
        VLMG_DebugPrint(VLMG_LogError, "[VLMC_ThumbnailConverter] thumbnail is empty.");
        return false;
    }
    ReplaceFile thumbnail;
    if (!isFileOrFree(file) || !thumbnail.open(file, ReplaceFile::RefuseLinks)) {
        VLMG_DebugPrint(VLMG_LogError,
                        "[VLMC_ThumbnailConverter] Couldn't open thumbnail for writing.");
        return false;
    }
    if (!thumbnail.commit(bytes)) {
        VLMG_DebugPrint(VLMG_LogError, "[VLMC_ThumbnailConverter] Couldn't write thumbnail.");
        return false;
    }
    return true;
}

void VLMC_ThumbnailConverter::setThumbnail(QString &text, QString &src, VLMC_XMLNode *parent)
{
    if (!parent) {
        VLMG_DebugPrint(VLMG_LogError,
                        "[VLMC_ThumbnailConverter::setThumbnail] pc_XMLRootNode is Null.");
        return;
    }
    QString name = QEXC_TextCodec::fromSJIS(kImage);
    char textType = CDataText;
    QXmlStreamAttributes attributes = oneAttribute(kSource, src);
    addXMLChild(parent, name, text, textType, attributes, AtEnd);
}
