#ifndef TESTS_SUPPORT_NODES_H
#define TESTS_SUPPORT_NODES_H

#include "core/VLMC_XMLNode.h"

#include <QtCore/QScopedPointer>
#include <QtCore/QString>
#include <QtCore/QXmlStreamAttributes>

/// A node of this name and text, the last child of parent.
inline VLMC_XMLNode *newNode(VLMC_XMLNode *parent, const char *name, const char *text = "")
{
    VLMC_XMLNode *const node = new VLMC_XMLNode(parent, 0);
    QString nameText = QString::fromUtf8(name);
    QString content = QString::fromUtf8(text);
    node->setName(nameText);
    node->setText(content);
    return node;
}

inline void addAttribute(VLMC_XMLNode *node, const char *name, const char *value)
{
    node->getAttribute().append(QString::fromUtf8(name), QString::fromUtf8(value));
}

/// A chain of this many nested elements named "e".
inline VLMC_XMLNode *newChain(int levels)
{
    VLMC_XMLNode *const root = newNode(nullptr, "e");
    VLMC_XMLNode *last = root;
    for (int level = 1; level < levels; ++level) {
        last = newNode(last, "e");
    }
    return root;
}

inline int depthOf(VLMC_XMLNode *node)
{
    int levels = 1;
    while (!node->getXMLNodeChildren().isEmpty()) {
        node = node->getXMLNodeChildren().first();
        ++levels;
    }
    return levels;
}

/// A tree in one line, for comparison as a whole: name, attributes, type and text, children, as in
/// "r{a=1}0'text'[b 1'cdata']". A type of 0 goes unmentioned where there is no text; a null child
/// shows as "null".
inline QByteArray described(VLMC_XMLNode *node)
{
    if (!node) {
        return "null";
    }
    QByteArray line = node->getName().toUtf8();
    const QXmlStreamAttributes attributes = node->getAttribute();
    for (const QXmlStreamAttribute &attribute : attributes) {
        line += '{' + attribute.qualifiedName().toString().toUtf8() + '='
                + attribute.value().toString().toUtf8() + '}';
    }
    if (!node->getText().isEmpty() || node->getTextType() != 0) {
        line +=
            QByteArray::number(int(node->getTextType())) + '\'' + node->getText().toUtf8() + '\'';
    }
    const QList<VLMC_XMLNode *> children = node->getXMLNodeChildren();
    if (!children.isEmpty()) {
        line += '[';
        for (int i = 0; i < children.size(); ++i) {
            line += (i ? " " : "") + described(children.at(i));
        }
        line += ']';
    }
    return line;
}

#endif
