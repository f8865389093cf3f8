#ifndef TOOLS_VELMORA_PROFILE_PROFILE_THUMBNAILS_H
#define TOOLS_VELMORA_PROFILE_PROFILE_THUMBNAILS_H

#include <QtCore/QList>
#include <QtCore/QStringList>

namespace profile
{
// A file in the folder of thumbnails, or one that a bookmark names.
struct Thumbnail {
    QString name;
    bool exists;
    QStringList bookmarks; // the titles of those that name it, or their URLs
};

// All of them, by name, for the profile in the directory, which ends with "/".
QList<Thumbnail> thumbnailsOf(const QString &directory);

// Whether the file at the path can be a picture. Opening a FIFO waits for its other end, and
// reading a device may have no end; both can stand in a profile from elsewhere.
bool isPictureFile(const QString &path);
} // namespace profile

#endif
