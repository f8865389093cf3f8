#ifndef TOOLS_VELMORA_PROFILE_PROFILE_DOCUMENTTYPE_H
#define TOOLS_VELMORA_PROFILE_PROFILE_DOCUMENTTYPE_H

#include "bookmarks/BookmarkElements_p.h"
#include "core/Numbering_p.h"
#include "core/VLMC_XMLSetting.h"

#include <QtCore/QList>
#include <QtCore/QString>

namespace profile
{
// Entries that the library numbers; it cannot reach those behind them.
const int kMaxEntries = vlm::kMaxNumbered;

// The folder of the running command, for the stores.
const char kProfileFolder[] = "./";
using vlm::bookmarks::kThumbnailFolder;
// The library is told its path.
const char kCookieXml[] = "cookie.xml";

enum DocumentKind {
    CommonPreferences,
    UserPreferences,
    Bookmarks,
    History,
    Credentials,
    Fonts,
    CookieDocument
};

// A field by which the entries of two profiles are compared.
struct ComparedField {
    enum Form { Plain, Encoded, Picture };

    const char *name;
    const char *element;
    Form form;
    bool isSecret;
};

// A document: its form, its entries, its store.
struct DocumentType {
    DocumentKind kind;
    const char *fileName;
    const char *rootName;
    const char *entryName; // null, as all below about entries: a document of groups
    VLMC_XMLSetting *(*store)();
    void (*load)(QString *folder); // null: no command loads it
    void (*save)(QString *folder);
    void (*prepare)();                     // what a save does to the entries first; may be null
    QString (*label)(VLMC_XMLNode *entry); // what an entry is called in messages
    QString (*key)(VLMC_XMLNode *entry);   // what it is known by in another profile
    QList<ComparedField> compared;
};

// In the order of their kinds.
const QList<DocumentType> &documentTypes();
const DocumentType &documentType(DocumentKind kind);
} // namespace profile

#endif
