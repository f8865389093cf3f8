#ifndef PROFILE_DOCUMENT_H
#define PROFILE_DOCUMENT_H

#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLSetting.h"

#include <QtCore/QList>
#include <QtCore/QScopedPointer>
#include <QtCore/QString>

// The documents of a profile as they stand in their files, without a store in between: stores hide
// what is over a limit, complete, sort and renumber.
namespace profile
{
// Entries that the library numbers; it cannot reach those behind them.
const int kMaxEntries = 999;

// The folder of the running command, for the stores.
const char kHere[] = "./";
const char kThumbnailFolder[] = "thumbnail/";

enum DocumentKind {
    CommonPreferences,
    UserPreferences,
    Bookmarks,
    History,
    Credentials,
    Fonts,
    CookieDocument
};

struct DocumentType {
    DocumentKind kind;
    const char *fileName;
    const char *rootName;
    const char *entryName; // null: a document of groups, not of entries
};

QList<DocumentType> documentTypes();
DocumentType documentType(DocumentKind kind);

struct Damage {
    qint64 line;
    qint64 column;
    QString reason;
    int entriesBefore; // whole ones
};

class Document
{
public:
    enum State { Missing, Unreadable, Empty, Damaged, Whole };

    // Reads the document in the directory, which ends with "/".
    Document(DocumentKind kind, const QString &directory);
    // Reads it from a file of another name.
    Document(const DocumentType &type, const QString &path);
    // Takes it from bytes that were read there: those of a pipe can be read only once.
    Document(const DocumentType &type, const QString &path, const QByteArray &content);
    Document(const Document &) = delete;
    Document &operator=(const Document &) = delete;

    const DocumentType &type() const;
    QString path() const;
    State state() const;
    const Damage &damage() const;
    QByteArray content() const;
    QString rootName() const;
    // The root's whole children: those before the damage in a damaged document. They are this
    // object's.
    QList<VLMC_XMLNode *> children() const;
    // Those of them that carry the name of an entry, or all preferences in their groups.
    QList<VLMC_XMLNode *> entries() const;

private:
    void read();
    void parse();

    DocumentType m_type;
    QString m_path;
    State m_state;
    Damage m_damage;
    QByteArray m_content;
    QScopedPointer<VLMC_XMLNode> m_root;
};

QString stateName(Document::State state);

// "damaged at line 3, column 7: Expected ..., 2 entries before it".
QString damageText(const Damage &damage);

// The element of this name in an entry, or null, and its text.
VLMC_XMLNode *fieldOf(VLMC_XMLNode *entry, const char *name);
QString fieldText(VLMC_XMLNode *entry, const char *name);
QString idOf(VLMC_XMLNode *entry);

// Whether a field of an entry can be said aloud: it has a text that is neither encoded nor secret.
bool isLabel(VLMC_XMLNode *field);

// The file name at the end of a thumbnail path; empty when the path names none.
QString thumbnailName(const QString &path);

// Refuses to write over a document that a store cannot hold whole: says so and gives the exit
// status for it, Done when it can be written.
int refuseToRewrite(const Document &document);

// Refuses to take a document for all of it that has more in its file: Failed for one that is
// damaged or cannot be read, and said so.
int refuseToRead(const Document &document);

// Says that a file of the profile cannot be read, and gives the exit status for it.
int failUnreadable(const QString &path);

// Says that a document is damaged, if it is, so that nobody takes what stands before the damage for
// all. Failed for one that cannot be read, and said so: that is not an empty one.
int warnOfDamage(const Document &document);

// Names the root of a store, with the attribute that all roots get: some saves do not.
void nameRoot(VLMC_XMLSetting *store, const DocumentType &type);

// What a save of the store writes; empty for more than it writes at most.
QByteArray contentOf(VLMC_XMLSetting *store);

// Whether the file holds this and nothing else after a save; otherwise says so. The library's saves
// report nothing.
bool isSaved(DocumentKind kind, const QByteArray &content);
} // namespace profile

#endif
