#ifndef TESTS_SUPPORT_NODES_H
#define TESTS_SUPPORT_NODES_H

#include "core/VLMC_XMLNode.h"

#include <QtCore/QScopedPointer>
#include <QtCore/QString>
#include <QtCore/QXmlStreamAttributes>

#include <cctype>
#include <cstring>

typedef QScopedPointer<VLMC_XMLNode> Tree;

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

/// Reads one element of a line, up to what follows it.
inline VLMC_XMLNode *readTree(const char *&at, VLMC_XMLNode *parent)
{
    const auto upTo = [&at](const char *ends) {
        const size_t size = strcspn(at, ends);
        at += size;
        return QByteArray(at - size, int(size));
    };
    const QByteArray name = upTo("0123456789{[] ");
    if (name == "null") {
        parent->getXMLNodeChildren().append(static_cast<VLMC_XMLNode *>(nullptr));
        return nullptr;
    }
    VLMC_XMLNode *const node = newNode(parent, name.constData());
    QXmlStreamAttributes attributes;
    for (; *at == '{'; ++at) {
        const QByteArray attribute = upTo("=").mid(1);
        attributes.append(QString::fromUtf8(attribute), QString::fromUtf8(upTo("}").mid(1)));
    }
    node->setAttribute(attributes);
    if (isdigit(static_cast<unsigned char>(*at))) {
        node->setTextType(char(*at - '0'));
        at += 2;
        QString text = QString::fromUtf8(upTo("'"));
        node->setText(text);
        ++at;
    }
    if (*at == '[') {
        do {
            ++at;
            readTree(at, node);
        } while (*at == ' ');
        ++at;
    }
    return node;
}

/// The tree that described() gives in this line, the last child of parent. Its names have no
/// digits, its texts no apostrophes.
inline VLMC_XMLNode *newTree(const char *line, VLMC_XMLNode *parent = nullptr)
{
    const char *at = line;
    return readTree(at, parent);
}

inline VLMC_XMLNode *childAt(const Tree &tree, int index)
{
    return tree->getXMLNodeChildren().at(index);
}

#endif
