#ifndef DOCUMENTS_H
#define DOCUMENTS_H

#include <QtCore/QByteArray>
#include <QtCore/QList>

/// A file that a store may find, and what is odd about it.
struct Document {
    QByteArray name;
    QByteArray bytes;
};

/// What others, older versions, editors and bad disks make of a document as its store writes it: in
/// several encodings, with elements missing, doubled, emptied, foreign or in CDATA, with other
/// numbers, with damaged bytes, and cut off.
QList<Document> variantsOf(const QByteArray &document);

#endif
