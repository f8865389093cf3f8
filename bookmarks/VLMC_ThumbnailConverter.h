#ifndef VLMC_THUMBNAILCONVERTER_H
#define VLMC_THUMBNAILCONVERTER_H

#include "core/VLMC_XMLSetting.h"

#include <QtCore/QByteArray>
#include <QtCore/QDir>
#include <QtCore/QStringList>

/**
 * Packs the PNG files of a directory into one XML file, each as Base64 text with its file name, and
 * unpacks such a file again. It keeps nothing between two conversions. Directories end with "/" and
 * have to exist. Paths come as Latin-1, or on Qt 4 in the codec that the application has set for C
 * strings. Failures go to the log as errors. Used from one thread, which runs an event loop.
 */
class VLM_EXPORT VLMC_ThumbnailConverter : public VLMC_XMLSetting
{
public:
    /// The one converter of the process, created on the first call and destroyed at exit.
    static VLMC_ThumbnailConverter *getInstance();

    VLMC_ThumbnailConverter();

    /// Packs all files of pngDir named "*.png", in any letter case and without symbolic links, into
    /// xmlFile, in descending order of their names. One that cannot be read, or is larger than
    /// 16 MiB, is packed as empty. When the directory itself cannot be read, xmlFile stays.
    void convertThumbnailPngToXML(char *pngDir, char *xmlFile);
    /// Writes the images packed in xmlFile into pngDir, replacing files of the same names. A name
    /// that leads out of the directory is refused as if it could not be opened.
    void convertThumbnailXMLToPng(char *xmlFile, char *pngDir);
    /// The names that QDir lists in dir with these settings.
    QStringList getFileList(QString &dir, QStringList &nameFilters, QDir::Filters filters,
                            QDir::SortFlags sort);
    /// The whole file as Base64. When it cannot be read, is no regular file, or is larger than
    /// 16 MiB, out stays as it is.
    void encode_base64(QString &file, QByteArray &out);
    /// Replaces the file, whole or not at all, by what text says in Base64. False when text is
    /// empty, or decodes to nothing where a picture stands, and when the file cannot be written, is
    /// no regular file or is a symbolic link.
    bool decode_base64(QByteArray &text, QString &file);
    /// Appends an image element with this text and file name to parent.
    void setThumbnail(QString &text, QString &src, VLMC_XMLNode *parent);
};

#endif
