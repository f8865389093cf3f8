#ifndef TESTS_DURABILITY_SAVEDSTORES_H
#define TESTS_DURABILITY_SAVEDSTORES_H

#include <QtCore/QString>

/// A store, or a conversion, that saves a document, reduced to one text: everything that the
/// library saves through VLMC_XMLWriter is in the table.
struct SavedStore {
    const char *name;
    const char *fileName;
    /// The mode, less the umask, of a new file.
    int mode;
    /// Saves a document with this text and no other into the directory, under fileName. The system
    /// calls of the save are watched, and nothing else.
    void (*save)(QString directory, const QString &text);
    /// The text, as the store itself loads it from there; null when there is none.
    QString (*load)(QString directory);
};

extern const SavedStore kStores[];
const int kStoreCount = 8;

#endif
