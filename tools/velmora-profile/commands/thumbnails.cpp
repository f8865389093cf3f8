// thumbnails: the PNG files beside the bookmarks.

#include "tools/velmora-profile/profile/Thumbnails.h"
#include "bookmarks/VLMC_ThumbnailConverter.h"
#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/commands/Losses.h"
#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/output/Files.h"
#include "tools/velmora-profile/output/Guards.h"
#include "tools/velmora-profile/output/Listing.h"
#include "tools/velmora-profile/profile/Refusals.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtGui/QImageReader>

namespace
{
using namespace profile;

VLMC_ThumbnailConverter &converter() { return *VLMC_ThumbnailConverter::getInstance(); }

QString folder() { return text(kProfileFolder) + text(kThumbnailFolder); }

QString sizeOf(const Thumbnail &thumbnail)
{
    if (!thumbnail.exists) {
        return text("missing");
    }
    const QString path = folder() + thumbnail.name;
    const QSize size = isPictureFile(path) ? QImageReader(path).size() : QSize();
    return size.isValid() ? text("%1x%2").arg(size.width()).arg(size.height()) : text("no image");
}

// The images of a packed file that can become files: an image of another kind is skipped by the
// library, and a name with a folder in it would lead out of the profile.
bool isImage(VLMC_XMLNode *node, const QString &name)
{
    return node->getName() == text("image") && node->getTextType() == 1
           && !node->getText().isEmpty() && !name.isEmpty() && name != text(".")
           && name != text("..") && !name.contains(QLatin1Char('/'));
}

DocumentType packedType()
{
    DocumentType type = documentType(Bookmarks);
    type.rootName = "thumbnail";
    type.entryName = "image";
    return type;
}

// Unpacks into a folder of the tool's own and has each file replace its namesake as a whole.
int unpackInto(const QString &target, VLMC_XMLNode *image, bool dryRun)
{
    const QString name = image->getAttribute().value(QLatin1String("src")).toString();
    if (!isImage(image, name)) {
        sayLosses({{name.isEmpty() ? image->getName() : name,
                    text("it is not a packed image with a file name of its own")}});
        return Done;
    }
    // An interruption waits until the folder is gone.
    const Uninterrupted uninterrupted;
    const QTemporaryDir scratch;
    QByteArray base64 = image->getText().toUtf8();
    QString file = scratch.path() + text("/image.png");
    QByteArray content;
    if (!converter().decode_base64(base64, file) || !readFile(file, &content)) {
        return Failed;
    }
    say(printable(name));
    return dryRun || replaceFile(target + name, content) ? Done : Failed;
}

// The library takes local paths of Latin-1 alone, and those of the tool's own folder are. An
// interruption waits until that is gone.
bool pack(QByteArray *content)
{
    const Uninterrupted uninterrupted;
    const QTemporaryDir scratch;
    const QString packed = scratch.path() + text("/packed.xml");
    QByteArray from = folder().toLatin1();
    QByteArray into = packed.toLatin1();
    converter().convertThumbnailPngToXML(from.data(), into.data());
    return readFile(packed, content);
}

int listThumbnails(const Call &call)
{
    if (warnOfDamage(Document(Bookmarks, text(kProfileFolder))) != Done) {
        return Failed;
    }
    Listing listing(
        {{"file", "File"}, {"exists", nullptr}, {"size", "Size"}, {"bookmarks", "Bookmark"}});
    const QList<Thumbnail> thumbnails = thumbnailsOf(text(kProfileFolder));
    for (const Thumbnail &thumbnail : thumbnails) {
        listing.add({thumbnail.name, thumbnail.exists, sizeOf(thumbnail),
                     QJsonArray::fromStringList(thumbnail.bookmarks)});
    }
    return listing.say(call.has("json"));
}

int packThumbnails(const Call &call)
{
    if (!QDir(folder()).exists()) {
        return fail(
            text("'%1' has no thumbnail folder; there is nothing to pack").arg(call.directory));
    }
    QByteArray content;
    return pack(&content) && writeFile(call.path(call.operands.at(0)), content) ? Done : Failed;
}

int unpackThumbnails(const Call &call)
{
    const QString path = call.path(call.operands.at(0));
    QByteArray content;
    if (!readFile(path, &content)) {
        return Failed;
    }
    const Document packed(packedType(), path, content);
    if (packed.rootName() != text(packed.type().rootName)) {
        return fail(
            text("'%1' holds no packed thumbnails; nothing was changed").arg(call.operands.at(0)));
    }
    if (packed.state() == Document::Damaged) {
        warn(text("'%1' is %2; the rest is not unpacked")
                 .arg(call.operands.at(0), damageText(packed.damage())));
    }
    const bool dryRun = call.has("dry-run");
    if (!dryRun && !QDir().mkpath(folder())) {
        return fail(text("the thumbnail folder cannot be created; check the permissions"));
    }
    const QList<VLMC_XMLNode *> &images = packed.children();
    Progress progress("thumbnail", images.size());
    for (VLMC_XMLNode *const image : images) {
        if (unpackInto(folder(), image, dryRun) != Done) {
            return Failed;
        }
        progress.step();
    }
    return Done;
}

int cleanThumbnails(const Call &call)
{
    const Document document(Bookmarks, text(kProfileFolder));
    // Without all bookmarks nothing says which files are in use.
    if (document.state() != Document::Whole) {
        return refuseToRead(document) == Done
                   ? fail(text("bookmark.xml is %1: nothing says which files are in use, and "
                               "nothing was changed")
                              .arg(stateName(document.state())))
                   : int(Failed);
    }
    const QList<Thumbnail> thumbnails = thumbnailsOf(text(kProfileFolder));
    for (const Thumbnail &thumbnail : thumbnails) {
        if (!thumbnail.bookmarks.isEmpty()) {
            continue;
        }
        if (!call.has("dry-run") && !QFile::remove(folder() + thumbnail.name)) {
            return fail(text("thumbnail/%1 cannot be removed; check the folder's permissions")
                            .arg(thumbnail.name));
        }
        say(printable(thumbnail.name));
    }
    return Done;
}
} // namespace

namespace profile
{
QList<Command> thumbnailsCommands()
{
    return {
        {"thumbnails", "list", "DIR", 0, 0, "json", "thumbnail files and their bookmarks", Reads,
         listThumbnails},
        {"thumbnails", "pack", "DIR FILE", 1, 1, "", "write all thumbnails into one XML file",
         Reads, packThumbnails},
        {"thumbnails", "unpack", "DIR FILE", 1, 1, "dry-run", "take thumbnails out of such a file",
         Writes, unpackThumbnails},
        {"thumbnails", "clean", "DIR", 0, 0, "dry-run", "remove files that no bookmark names",
         Writes, cleanThumbnails},
    };
}
} // namespace profile
