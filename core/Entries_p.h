#ifndef CORE_ENTRIES_P_H
#define CORE_ENTRIES_P_H

#include "core/NodeCodes_p.h"
#include "core/NodeView_p.h"

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QXmlStreamAttributes>

class VLMC_XMLNode;
class VLMC_XMLSetting;

// What all stores do with their entries, the root's children that are addressed by the number in
// their "id" attribute. Names come as ASCII byte strings. Everything goes through the store's
// virtual operations, so that an override is honoured, and nothing needs the store to have a root.
namespace vlm
{
// A set of one attribute.
QXmlStreamAttributes oneAttribute(const char *name, const QString &value);

// The parent's first child of this name, or null; null for a null parent. Inline for walks, where
// the compiler then knows the length of the literal.
inline VLMC_XMLNode *childNamed(VLMC_XMLNode *parent, const char *name)
{
    if (!parent) {
        return nullptr;
    }
    const QList<VLMC_XMLNode *> &children = NodeView::children(*parent);
    for (VLMC_XMLNode *const child : children) {
        if (child && NodeView::isNamed(*child, QLatin1String(name))) {
            return child;
        }
    }
    return nullptr;
}

// The position of the first of the entries, some of which may be null, for which ends(entry, field)
// is true, or -1; the field is the entry's first child of this name, or null. Looks for the fields
// of some entries before it asks about the first: while the memory of one is waited for, the next
// ones can be asked for.
template <typename Ends>
int firstEntry(const QList<VLMC_XMLNode *> &entries, const char *fieldName, Ends ends)
{
    const int atOnce = 32;
    VLMC_XMLNode *fields[atOnce];
    const int count = int(entries.size());
    for (int start = 0; start < count; start += atOnce) {
        const int end = qMin(start + atOnce, count);
        for (int i = start; i < end; ++i) {
            fields[i - start] = childNamed(entries.at(i), fieldName);
        }
        for (int i = start; i < end; ++i) {
            if (ends(entries.at(i), fields[i - start])) {
                return i;
            }
        }
    }
    return -1;
}

// The first entry that carries this id, or null.
VLMC_XMLNode *entryById(VLMC_XMLSetting &store, int id);

// The first entry that carries each id from 0 up to count, or null, in one pass.
QList<VLMC_XMLNode *> entriesById(VLMC_XMLSetting &store, int count);

// The number of entries of this name that their ids lead to.
int countEntries(VLMC_XMLSetting &store, const char *name);

// The name of elements that stores add or look for: one string for all nodes, which takes less
// memory and less time in a walk. May be called from any thread.
QString elementName(const char *name);

// Adds an element without attributes to parent. With a null parent the node belongs to the caller.
VLMC_XMLNode *addElement(VLMC_XMLSetting &store, VLMC_XMLNode *parent, const char *name,
                         const QString &text, char textType, char place);

// Releases a new node that has no parent because the store has no root: nobody else owns it.
void releaseUnattached(VLMC_XMLNode *node);

// Gives every entry its position as id.
void numberEntries(VLMC_XMLSetting &store);

// Deletes the entry with this id, if there is one, and renumbers the others in any case.
void removeEntry(VLMC_XMLSetting &store, int id);

// Replaces the entries by those of the file and numbers them.
void loadEntries(VLMC_XMLSetting &store, const QString &directory, const char *fileName);

// Replaces the document by the one in directory + fileName, or writes it there.
void loadFile(VLMC_XMLSetting &store, const QString &directory, const char *fileName);
void saveFile(VLMC_XMLSetting &store, const QString &directory, const char *fileName);

// Names the root, if there is one, and leaves it with the attributes of every root.
void nameRoot(VLMC_XMLSetting &store, const char *name);
} // namespace vlm

#endif
