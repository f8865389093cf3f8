#ifndef VLMC_XMLWRITER_H
#define VLMC_XMLWRITER_H

#include "core/VLM_Export.h"

#include <QtCore/QXmlStreamWriter>

class QIODevice;
class VLMC_XMLNode;

/**
 * Writes a tree of nodes as an XML document in UTF-8, one element per line, four blanks per level,
 * an element's text before its children. What XML cannot carry is left out or replaced on the way:
 * control characters and unpaired surrogates vanish, non-characters become "?"; the tree keeps
 * them. One object serves one document. Elements may nest to any depth: nothing recurses.
 */
class VLM_EXPORT VLMC_XMLWriter : public QXmlStreamWriter
{
public:
    VLMC_XMLWriter();

    /// Replaces the content of the file at path by the document under root; true on success. A
    /// crash, a power cut or a full disk at any moment leaves the old content or the new one, never
    /// a part. A file that was not read whole at its last load is first kept as path + ".damaged",
    /// or not replaced. A document of more than 256 MiB is refused and the file left alone: no
    /// settings are that large, but elements nested thousands deep are, by their indentation. Only
    /// a file that cannot be replaced (a device, one with several names, one in a folder that takes
    /// no new files) is written in place, where a failure leaves a part. A null root gives false
    /// and leaves the file alone; with a null node among the children the part before it is
    /// written, and the result is false.
    bool write(QString &path, VLMC_XMLNode *root);
    /// Writes the document under root to an open device, whatever its size; true on success.
    bool write(QIODevice &device, VLMC_XMLNode *root);
    /// Writes one element with all it contains. At a null node, here or among the children, writing
    /// stops with the tags around it left open, and the result is false.
    bool writeXMLNode(VLMC_XMLNode *node);
};

#endif
