#include "core/VLMC_XMLNode.h"

#include "core/Identifier_p.h"

#include <QtCore/QStringList>

VLMC_XMLNode::VLMC_XMLNode(VLMC_XMLNode *parent, char prepend)
    : m_textType(0),
      m_parent(nullptr),
      m_name(QString::fromLatin1("")),
      m_text(QString::fromLatin1(""))
{
    if (parent) {
        parent->addXMLNode(this, prepend);
    }
}

// Children are destroyed before their parents, in document order. The descendants that wait for
// their turn stand on a list and not on the call stack, so that depth costs no stack.
VLMC_XMLNode::~VLMC_XMLNode()
{
    if (m_parent) {
        m_parent->removeXMLNode(this);
    }
    QList<VLMC_XMLNode *> waiting = takeChildren();
    while (!waiting.isEmpty()) {
        VLMC_XMLNode *const node = waiting.last();
        if (node->m_children.isEmpty()) {
            waiting.removeLast();
            delete node;
        } else {
            waiting += node->takeChildren();
        }
    }
}

// The children that are not null, last one first, cut loose from this node.
QList<VLMC_XMLNode *> VLMC_XMLNode::takeChildren()
{
    QList<VLMC_XMLNode *> children;
    children.swap(m_children);
    QList<VLMC_XMLNode *> taken;
    taken.reserve(children.size());
    for (int i = int(children.size()) - 1; i >= 0; --i) {
        VLMC_XMLNode *const child = children.at(i);
        if (!child) {
            continue;
        }
        if (child->m_parent == this) {
            child->m_parent = nullptr;
        }
        taken.append(child);
    }
    return taken;
}

void VLMC_XMLNode::addXMLNode(VLMC_XMLNode *child, char &prepend)
{
    if (!child) {
        return;
    }
    if (child->m_parent) {
        child->m_parent->removeXMLNode(child);
    }
    child->m_parent = this;
    if (prepend == 0) {
        m_children.append(child);
    } else {
        m_children.prepend(child);
    }
}

void VLMC_XMLNode::removeXMLNode(VLMC_XMLNode *child)
{
    if (!child) {
        return;
    }
    child->m_parent = nullptr;
    m_children.removeAll(child);
}

VLMC_XMLNode *VLMC_XMLNode::getXMLNodeParent() { return m_parent; }

QList<VLMC_XMLNode *> &VLMC_XMLNode::getXMLNodeChildren() { return m_children; }

QXmlStreamAttributes &VLMC_XMLNode::getAttribute() { return m_attributes; }

void VLMC_XMLNode::setAttribute(QXmlStreamAttributes &attributes) { m_attributes = attributes; }

bool VLMC_XMLNode::isAttribute(QString name) { return !m_attributes.value(name).isNull(); }

void VLMC_XMLNode::setName(QString &name) { m_name = name; }

QString &VLMC_XMLNode::getName() { return m_name; }

void VLMC_XMLNode::setText(QString &text) { m_text = text; }

QString &VLMC_XMLNode::getText() { return m_text; }

void VLMC_XMLNode::setTextType(char type) { m_textType = type; }

char VLMC_XMLNode::getTextType() { return m_textType; }

VLMC_XMLNode *VLMC_XMLNode::getChildByName(QString &name, int &index)
{
    const int count = int(m_children.size());
    for (; index < count; ++index) {
        VLMC_XMLNode *const child = m_children.at(index);
        if (child && child->m_name == name) {
            return child;
        }
    }
    return nullptr;
}

VLMC_XMLNode *VLMC_XMLNode::getXMLNodeChildByName(QString &name)
{
    int index = 0;
    return getChildByName(name, index);
}

QList<VLMC_XMLNode *> VLMC_XMLNode::getXMLNodeChildrenByName(QString &name)
{
    QList<VLMC_XMLNode *> found;
    int index = 0;
    while (VLMC_XMLNode *const child = getChildByName(name, index)) {
        found.append(child);
        ++index;
    }
    return found;
}

VLMC_XMLNode *VLMC_XMLNode::getXMLNodeChildByID(int id, QString &attributeName)
{
    const QList<VLMC_XMLNode *> &children = m_children;
    for (VLMC_XMLNode *const child : children) {
        int number = 0;
        if (child && vlm::readIdentifier(child->m_attributes, attributeName, &number)
            && number == id) {
            return child;
        }
    }
    return nullptr;
}
