#ifndef CORE_NODEVIEW_P_H
#define CORE_NODEVIEW_P_H

#include "core/VLMC_XMLNode.h"

#include <algorithm>

namespace vlm
{
// How the library itself reads a node. The node's own accessors lend references, which callers may
// keep and change things through; a node that has lent one can no longer vouch for its children's
// numbers. These functions lend nothing.
class NodeView
{
public:
    static const QList<VLMC_XMLNode *> &children(const VLMC_XMLNode &node)
    {
        return node.m_children;
    }

    static const QString &name(const VLMC_XMLNode &node) { return node.m_name; }

    // Names are ASCII and thus the same in Latin-1, which compares without a conversion. Lengths
    // tell most names apart, and names are too short to be worth a call of Qt's comparison.
    static bool isNamed(const VLMC_XMLNode &node, QLatin1String name)
    {
        const QString &ofNode = node.m_name;
        const char *const chars = name.latin1();
        const int size = int(qstrlen(chars));
        return int(ofNode.size()) == size
               && std::equal(chars, chars + size, ofNode.constData(),
                             [](char left, QChar right) { return QLatin1Char(left) == right; });
    }

    static const QXmlStreamAttributes &attributes(const VLMC_XMLNode &node)
    {
        return node.m_attributes;
    }

    // Like the setters, but without a copy: afterwards the argument has what the node had.
    static void takeName(VLMC_XMLNode &node, QString &name) { node.m_name.swap(name); }
    static void takeText(VLMC_XMLNode &node, QString &text) { node.m_text.swap(text); }
    static void takeAttributes(VLMC_XMLNode &node, QXmlStreamAttributes &attributes)
    {
        node.m_attributes.swap(attributes);
    }

    // True when each of the first kMaxNumbered children is known to carry its position under this
    // name. False says nothing.
    static bool isNumbered(const VLMC_XMLNode &node, const QString &attributeName)
    {
        return node.isNumbered(attributeName);
    }

    // Leaves each of the first kMaxNumbered children with this one attribute, its position. Skips
    // null children and returns how many there are.
    static int numberChildren(VLMC_XMLNode &node, const QString &attributeName)
    {
        return node.numberChildren(attributeName);
    }

    // For each number from 0 up to count the first child with that number, or null: what a search
    // for each would find, in one pass.
    static QList<VLMC_XMLNode *> childrenByNumber(const VLMC_XMLNode &node,
                                                  const QString &attributeName, int count)
    {
        return node.childrenByNumber(attributeName, count);
    }

    // The same for a node without children: this many nulls; an empty list for a negative count.
    static QList<VLMC_XMLNode *> nullNodes(int count) { return VLMC_XMLNode::nullNodes(count); }

    // Takes all children out. Those that are not null belong to the caller, in document order.
    static QList<VLMC_XMLNode *> takeChildren(VLMC_XMLNode &node) { return node.takeChildren(); }

    // Releases every child that is not null with deleteLater(). Null children stay; returns how
    // many there are.
    static int releaseChildren(VLMC_XMLNode &node) { return node.releaseChildren(); }
};
} // namespace vlm

#endif
