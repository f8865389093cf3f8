#ifndef PREFERENCES_PREFERENCES_P_H
#define PREFERENCES_PREFERENCES_P_H

#include <QtCore/QByteArray>
#include <QtCore/QString>

class VLMC_XMLNode;
class VLMC_XMLSetting;

// The preferences of a document: each is the text of an element in a group element under the root.
// A preference is one row; the functions read, write and complete whatever a row describes. They
// need no root: without one they read the fallback or leave the output alone, and write nothing.
namespace vlm
{
// Which codes turn a switch on.
enum FlagRule { NonZeroIsOn, OnlyOneIsOn };

// A switch with two words in the file and the codes 1 (on) and 0 (off). Its fallback is what a
// missing element reads as and what loading writes for it. Only the other of the two words is
// recognised, so a damaged text also reads as the fallback.
struct FlagEntry {
    const char *group;
    const char *element;
    const char *onWord;
    const char *offWord;
    char fallback;
    FlagRule rule;
};

// What a stored empty text reads as.
enum EmptyText { EmptyIsKept, EmptyIsFallback };

// A text; one that is missing or too long reads as the fallback.
struct TextEntry {
    const char *group;
    const char *element;
    int maxUtf8Bytes;
    const char *fallback;
    EmptyText emptyText;
};

// Bytes, in the file as Base64; missing ones and those over the limit read as none.
struct BytesEntry {
    const char *group;
    const char *element;
    int maxBytes; // before encoding
};

// The element of a preference, or null.
VLMC_XMLNode *storedElement(VLMC_XMLSetting &store, const char *group, const char *element);

// The group element, added when it is missing, its text emptied in any case; null without a root.
VLMC_XMLNode *ensureGroup(VLMC_XMLSetting &store, const char *group);

// Gives the group's element this text, adding it when it is missing; nothing for a null group.
void writeElement(VLMC_XMLSetting &store, VLMC_XMLNode *group, const char *element,
                  const QString &text, char textType);
// The same for a plain word.
void writeWord(VLMC_XMLSetting &store, VLMC_XMLNode *group, const char *element, const char *word);

char readFlag(VLMC_XMLSetting &store, const FlagEntry &entry);
void writeFlag(VLMC_XMLSetting &store, const FlagEntry &entry, char code);
// The same into a group that the caller has ensured.
void writeFlagIn(VLMC_XMLSetting &store, VLMC_XMLNode *group, const FlagEntry &entry, char code);

// A null output is left alone, and so is any output without a root. Writing returns 1, or 0 for a
// value that is too long, which changes nothing, and without a root.
void readText(VLMC_XMLSetting &store, const TextEntry &entry, QString *text);
int writeText(VLMC_XMLSetting &store, const TextEntry &entry, const QString &text);
void readBytes(VLMC_XMLSetting &store, const BytesEntry &entry, QByteArray *bytes);
int writeBytes(VLMC_XMLSetting &store, const BytesEntry &entry, const QByteArray &bytes);

// Loading: gives a root of another name this one, and a missing element its fallback. An element
// that exists is left as it is, whatever it holds.
void claimRoot(VLMC_XMLSetting &store, const char *name);
void complete(VLMC_XMLSetting &store, const FlagEntry &entry);
void complete(VLMC_XMLSetting &store, const TextEntry &entry);
void complete(VLMC_XMLSetting &store, const BytesEntry &entry);
} // namespace vlm

#endif
