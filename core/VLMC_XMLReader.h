#ifndef VLMC_XMLREADER_H
#define VLMC_XMLREADER_H

#include "core/VLM_Export.h"

#include <QtCore/QXmlStreamReader>

class QIODevice;
class VLMC_XMLNode;

/**
 * Reads an XML document into a tree of nodes. It keeps elements, attributes and the first text of
 * each element that is more than white space; it drops comments, processing instructions and later
 * texts. A malformed document is read up to its error. One object serves one read. Elements may
 * nest to any depth: nothing recurses. The document ends early where the entities that it declares
 * itself, or the attributes that it declares for elements without them, exceed 4,096 characters,
 * and where the file ended when it was opened.
 */
class VLM_EXPORT VLMC_XMLReader : public QXmlStreamReader
{
public:
    /// The document in the file at path. Never null: a file that is missing, cannot be opened, is
    /// not a regular file or has no element gives an empty node without a name. The tree belongs to
    /// the caller.
    VLMC_XMLNode *read(QString &path);
    /// The document that an open device yields, or null without an element. The tree belongs to
    /// the caller.
    VLMC_XMLNode *read(QIODevice &device);
    /// Reads the element whose start tag was read last, with all it contains, into a new last
    /// child of parent, and returns that. With a null parent the node belongs to the caller.
    VLMC_XMLNode *readXMLNode(VLMC_XMLNode *parent);
    /// Makes the current token node's text, if it is text of more than white space and node has
    /// none yet.
    void readText(VLMC_XMLNode *node);
};

#endif
