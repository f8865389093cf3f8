#ifndef VLMC_XMLSETTING_H
#define VLMC_XMLSETTING_H

#include "core/VLM_Export.h"

#include <QtCore/QString>
#include <QtCore/QXmlStreamAttributes>

class VLMC_XMLNode;

/**
 * The base of every store: one XML document in memory as a tree of nodes, read from a file and
 * written back on request. The store owns the tree. It has no document until load or
 * createXMLRootNode; operations that "require a root" do not test for it.
 *
 * Nodes that leave the tree are released with deleteLater(), so the one thread that uses a store
 * has to run an event loop. Errors are logged and swallowed. QString & parameters are only read.
 *
 * The virtual operations are in the order of their slots, and the destructor is not virtual: both
 * are part of the library's binary interface. Derived stores live until the process exits.
 */
class VLM_EXPORT VLMC_XMLSetting
{
public:
    VLMC_XMLSetting();
    ~VLMC_XMLSetting();

    /// Replaces the document by the one in the file at path; the old one is destroyed at once. A
    /// file that is missing or cannot be read gives an empty root without a name. An empty path
    /// changes nothing. The library remembers a file that was not read whole.
    virtual void load(QString &path);
    /// Writes the document to the file at path. Without a root no file is touched. A file that was
    /// not read whole at its last load is first kept as path + ".damaged"; a document that was
    /// loaded from there and then emptied by deleteAllSetting or deleteAllXMLNode is not, and what
    /// was kept earlier is removed.
    virtual void save(QString &path);
    /// How many children of the root with this name are found by the numbers from 0 up to the
    /// number of all its children; 0 without a root.
    virtual int getXMLRootNodeChildCntByName(QString &attributeName, QString &name);
    /// Numbers the root's first 999 children by position: each is left with this one attribute,
    /// "000" to "998". The others keep theirs.
    virtual void setIDforChildren(QString &attributeName);
    /// Releases the first child of the root with this number, if any. The others keep theirs.
    virtual void deleteXMLNodeByID(int id, QString &attributeName);
    /// Releases the document and starts an empty one without a name. Does nothing without a root.
    virtual void deleteAllXMLNode();
    /// Releases the root's children; the root keeps its name and attributes.
    virtual void deleteAllSetting();
    /// Adds a child to parent, at the end of its children (prepend 0) or at their front, and
    /// returns it. With a null parent the new node belongs to the caller.
    virtual VLMC_XMLNode *addXMLChild(VLMC_XMLNode *parent, QString &name, QString &text,
                                      char &textType, QXmlStreamAttributes &attributes,
                                      char prepend);

    /// Releases the document, if there is one, and starts an empty one without a name.
    VLMC_XMLNode *createXMLRootNode();
    /// The root, or null. The store owns it.
    VLMC_XMLNode *getXMLRootNode();
    /// The number of the root's children; 0 without a root.
    int getXMLNodeCnt();
    /// The root's first child of this name, or null. Requires a root.
    VLMC_XMLNode *getChildNode(QString name);
    /// The first child named grandchildName of the root's first child named childName, or null.
    /// Requires a root.
    VLMC_XMLNode *getGrandchildNode(QString childName, QString grandchildName);
    /// Gives parent's first child of this name the text and text type, or adds one as addXMLChild
    /// does if there is none; returns it. An update leaves attributes alone. Null for a null
    /// parent.
    VLMC_XMLNode *setElement(VLMC_XMLNode *parent, QString name, QString text,
                             QXmlStreamAttributes attributes, char textType, char prepend);

protected:
    /// The document, or null: the store's own.
    VLMC_XMLNode *root;

private:
    Q_DISABLE_COPY(VLMC_XMLSetting)
};

#endif
