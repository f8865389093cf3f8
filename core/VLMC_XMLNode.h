#ifndef VLMC_XMLNODE_H
#define VLMC_XMLNODE_H

#include "core/VLM_Export.h"

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QXmlStreamAttributes>

namespace vlm
{
class NodeView;
}

/**
 * One element of an XML document in memory: its name, attributes, one text, and its children,
 * which it owns. Nodes live on the heap and are destroyed with delete or deleteLater(); destroying
 * a node destroys its whole subtree, however deep, without recursion. A node that is taken out of
 * its parent belongs to whoever took it out.
 *
 * QObject is a base only for deleteLater(): Qt's own object tree plays no part, and the thread that
 * uses a tree has to run an event loop for deferred deletions to happen. A tree is used from one
 * thread at a time.
 *
 * References handed out are to the node's own fields. QString & parameters are only read.
 */
class VLM_EXPORT VLMC_XMLNode : public QObject
{
public:
    /// A node without name, text and attributes. With a parent it becomes the parent's last child
    /// (prepend 0) or its first (any other value).
    VLMC_XMLNode(VLMC_XMLNode *parent, char prepend);
    virtual ~VLMC_XMLNode();

    /// Makes child this node's last child (prepend 0) or its first (any other value), after taking
    /// it out of its old parent, which may be this node. Null is ignored.
    void addXMLNode(VLMC_XMLNode *child, char &prepend);
    /// Takes child out of this node without destroying it. Its parent is null afterwards, even if
    /// it was not a child of this node. Null is ignored.
    void removeXMLNode(VLMC_XMLNode *child);

    /// The parent, or null.
    VLMC_XMLNode *getXMLNodeParent();
    /// The children in document order. Whoever adds nodes to the list, or takes some out, is
    /// responsible for their parents.
    QList<VLMC_XMLNode *> &getXMLNodeChildren();

    /// The attributes, in their order.
    QXmlStreamAttributes &getAttribute();
    /// Replaces all attributes by a copy of the given ones.
    void setAttribute(QXmlStreamAttributes &attributes);
    /// True when an attribute has this qualified name and a value that is not a null string.
    bool isAttribute(QString name);

    /// The element's name; empty at first, and to be set before the node is written.
    void setName(QString &name);
    QString &getName();
    /// The text before the first child; empty for none.
    void setText(QString &text);
    QString &getText();
    /// 0: plain text, 1: CDATA section; a text of any other type is not written.
    void setTextType(char type);
    char getTextType();

    /// The first child with this name at position index or after it; index becomes its position. If
    /// there is none, the result is null and index becomes the number of children. An index after
    /// the last child gives null and stays as it is.
    VLMC_XMLNode *getChildByName(QString &name, int &index);
    /// The first child with this name, or null.
    VLMC_XMLNode *getXMLNodeChildByName(QString &name);
    /// All children with this name, in document order.
    QList<VLMC_XMLNode *> getXMLNodeChildrenByName(QString &name);
    /// The first child whose attribute of this name reads as the decimal integer id, or null. A
    /// value that is not a number matches nothing, not even 0.
    VLMC_XMLNode *getXMLNodeChildByID(int id, QString &attributeName);

private:
    Q_DISABLE_COPY(VLMC_XMLNode)
    friend class vlm::NodeView;

    VLM_HIDDEN QList<VLMC_XMLNode *> takeChildren();
    VLM_HIDDEN int releaseChildren();
    VLM_HIDDEN int numberChildren(const QString &attributeName);
    VLM_HIDDEN void takeNumber(const QXmlStreamAttributes &number, VLMC_XMLNode *next);
    VLM_HIDDEN bool isNumbered(const QString &attributeName) const;
    VLM_HIDDEN bool isLastNumbered(const VLMC_XMLNode *child) const;
    VLM_HIDDEN static QList<VLMC_XMLNode *> nullNodes(int count);
    VLM_HIDDEN QList<VLMC_XMLNode *> childrenByNumber(const QString &attributeName,
                                                      int count) const;
    VLM_HIDDEN void distrustNumber();

    char m_textType;
    // A caller may still have a reference to m_attributes or m_children, or has otherwise put a
    // node into the list that does not point back.
    bool m_attributesLent;
    bool m_childrenLent;
    // Nothing has happened to the children and their attributes since numberChildren numbered them
    // all. Never true while a lent reference could change them unnoticed.
    bool m_numbered;
    VLMC_XMLNode *m_parent;
    QList<VLMC_XMLNode *> m_children;
    QXmlStreamAttributes m_attributes;
    QString m_name;
    QString m_text;
};

#endif
