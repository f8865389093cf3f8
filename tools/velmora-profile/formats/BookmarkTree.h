#ifndef TOOLS_VELMORA_PROFILE_FORMATS_BOOKMARKTREE_H
#define TOOLS_VELMORA_PROFILE_FORMATS_BOOKMARKTREE_H

#include "tools/velmora-profile/formats/Formats.h"

// What the two bookmark formats have in common.
namespace profile
{
// How a bookmark is called where its losses are listed.
QString nameOf(const BookmarkRecord &bookmark);

// Runs of blanks as one and none at the ends, as readers of these formats fold them: their blanks
// are those of ASCII, an ideographic one is a character of the text.
QString folded(const QString &text);

// The beginning of a text that is only named: a file can have one of megabytes, and name it often.
QString excerpt(const QString &text);

// A text as XML and HTML can carry it: folded, without control characters and half surrogates.
QString writable(const QString &text);

// Lists a bookmark whose title or address writable() changes.
void loseUnwritable(const BookmarkRecord &bookmark, QList<Loss> *losses);

// What a reader finds, folder by folder, and what of it has no place in a profile.
class BookmarkTree
{
public:
    explicit BookmarkTree(const char *format);

    // A list without a heading is no folder, and has no name. One of an empty name gets one.
    void openList();
    void openFolder(const QString &name);
    void nameFolder(const QString &name); // the one that is open
    void closeFolder();
    // Takes the bookmark into the open folders; lost names what its entry had besides.
    void add(const QString &title, const QString &url, const QStringList &lost);
    void lose(const QString &entry, const QString &reason);
    // Lists the fields that an entry lost, unless there is none.
    void loseFields(const QString &entry, const QStringList &lost);

    void refuse(const QString &error);
    bool isRefused() const;

    BookmarkImport found() const;

private:
    void open(const QString &name);

    struct Folder {
        QString name;
        bool holdsBookmark;
    };

    BookmarkImport m_import;
    QList<Folder> m_open;
    QStringList m_path; // the names of those that have one
};

// The import of a file that is not read.
BookmarkImport refused(const QString &error);
BookmarkImport unknownEncoding(const QByteArray &encoding);
} // namespace profile

#endif
