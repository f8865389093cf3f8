#include "tools/velmora-profile/profile/Thumbnails.h"

#include "tools/velmora-profile/output/Text.h"
#include "tools/velmora-profile/profile/Document.h"
#include "tools/velmora-profile/profile/Entry.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QMap>

namespace
{
// The files that the library packs: no links, whatever the letters' case.
QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList({profile::text("*.png")}, QDir::Files | QDir::NoSymLinks,
                                  QDir::Name);
}
} // namespace

QList<profile::Thumbnail> profile::thumbnailsOf(const QString &directory)
{
    const QString folder = directory + text(kThumbnailFolder);
    QMap<QString, Thumbnail> byName;
    const QStringList files = filesIn(folder);
    for (const QString &name : files) {
        byName.insert(name, {name, true, QStringList()});
    }
    const Document document(Bookmarks, directory);
    const QList<VLMC_XMLNode *> &bookmarks = document.children();
    for (VLMC_XMLNode *const bookmark : bookmarks) {
        const QString name = thumbnailName(fieldText(bookmark, vlm::bookmarks::kThumbnail));
        if (name.isEmpty()) {
            continue;
        }
        Thumbnail &thumbnail = byName[name];
        thumbnail.name = name;
        thumbnail.exists = QFile::exists(folder + name);
        thumbnail.bookmarks.append(titleOf(bookmark));
    }
    return byName.values();
}

bool profile::isPictureFile(const QString &path) { return QFileInfo(path).isFile(); }
