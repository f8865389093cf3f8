#include "core/VLMC_XMLNode.h"

#include "core/Numbering_p.h"
#include "core/ReleasedNodes_p.h"

#include <QtCore/QVector>

#include <algorithm>

namespace
{
// Room for the fields of most entries, in one allocation.
const int kUsualChildren = 3;

// Not null. Never destroyed: nodes may be made while the process exits.
const QString &emptyText()
{
    static const QString *const empty = new QString(QString::fromLatin1(""));
    return *empty;
}

bool carriesNumber(const QXmlStreamAttributes &attributes, const QString &name, int wanted)
{
    int number = 0;
    return vlm::readNumber(attributes, name, &number) && number == wanted;
}
} // namespace

VLMC_XMLNode::VLMC_XMLNode(VLMC_XMLNode *parent, char prepend)
    : m_textType(0),
      m_attributesLent(false),
      m_childrenLent(false),
      m_numbered(false),
      m_parent(nullptr),
      m_name(emptyText()),
      m_text(emptyText())
{
    if (parent) {
        parent->addXMLNode(this, prepend);
    }
}

// Children are destroyed before their parents, in document order. Descendants wait for their turn
// on a list and not on the call stack, so depth costs no stack.
VLMC_XMLNode::~VLMC_XMLNode()
{
    if (m_parent) {
        m_parent->removeXMLNode(this);
    }
    QList<VLMC_XMLNode *> waiting = takeChildren();
    std::reverse(waiting.begin(), waiting.end());
    while (!waiting.isEmpty()) {
        VLMC_XMLNode *const node = waiting.last();
        if (node->m_children.isEmpty()) {
            waiting.removeLast();
            delete node;
            continue;
        }
        QList<VLMC_XMLNode *> children = node->takeChildren();
        std::reverse(children.begin(), children.end());
        waiting += children;
    }
}

QList<VLMC_XMLNode *> VLMC_XMLNode::takeChildren()
{
    QList<VLMC_XMLNode *> taken;
    taken.swap(m_children);
    m_numbered = false;
    taken.removeAll(static_cast<VLMC_XMLNode *>(nullptr));
    const QList<VLMC_XMLNode *> &children = taken;
    for (VLMC_XMLNode *const child : children) {
        if (child->m_parent == this) {
            child->m_parent = nullptr;
        }
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
    m_numbered = false;
    if (m_children.isEmpty()) {
        m_children.reserve(kUsualChildren);
    }
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
    if (child->m_parent && child->m_parent != this) {
        // It stays in its parent's list without knowing it, and may get there twice.
        child->distrustNumber();
        child->m_parent->m_childrenLent = true;
    }
    child->m_parent = nullptr;
    m_numbered = m_numbered && isLastNumbered(child);
    m_children.removeAll(child);
}

// True when the numbers of the other children are right without this one too.
bool VLMC_XMLNode::isLastNumbered(const VLMC_XMLNode *child) const
{
    return !m_children.isEmpty() && m_children.last() == child
           && m_children.size() <= vlm::kMaxNumbered;
}

// The list is given up whole: taking children out one by one would look through it for each.
int VLMC_XMLNode::releaseChildren()
{
    const QList<VLMC_XMLNode *> children = m_children;
    m_children.clear();
    m_numbered = false;
    vlm::ReleasedNodes *const released = new vlm::ReleasedNodes;
    released->deleteLater();
    released->reserve(int(children.size()));
    for (VLMC_XMLNode *const child : children) {
        if (!child) {
            m_children.append(child);
            continue;
        }
        child->distrustNumber();
        child->m_parent = nullptr;
        released->add(child);
    }
    return int(m_children.size());
}

int VLMC_XMLNode::numberChildren(const QString &attributeName)
{
    if (isNumbered(attributeName)) {
        return 0;
    }
    const int count = qMin(int(m_children.size()), vlm::kMaxNumbered);
    const QVector<QXmlStreamAttributes> numbers = vlm::numberSets(attributeName, count);
    int nulls = 0;
    bool trusted = !m_childrenLent;
    for (int i = 0; i < count; ++i) {
        VLMC_XMLNode *const child = m_children.at(i);
        if (!child) {
            ++nulls;
            continue;
        }
        child->takeNumber(numbers.at(i), i + 1 < count ? m_children.at(i + 1) : nullptr);
        trusted = trusted && !child->m_attributesLent;
    }
    m_numbered = trusted && nulls == 0;
    return nulls;
}

bool VLMC_XMLNode::isNumbered(const QString &attributeName) const
{
    return m_numbered && !m_children.isEmpty()
           && carriesNumber(m_children.first()->m_attributes, attributeName, 0);
}

// Leaves this node with the number as its only attribute. After an insertion at the front the next
// child has that number and will get another one anyway: swapping them touches no reference count.
void VLMC_XMLNode::takeNumber(const QXmlStreamAttributes &number, VLMC_XMLNode *next)
{
    if (m_attributes.constData() == number.constData()) {
        return;
    }
    if (next && next->m_attributes.constData() == number.constData()) {
        m_attributes.swap(next->m_attributes);
    } else {
        m_attributes = number;
    }
}

// To be called before this node's attributes or its place change.
void VLMC_XMLNode::distrustNumber()
{
    if (m_parent) {
        m_parent->m_numbered = false;
    }
}

QList<VLMC_XMLNode *> VLMC_XMLNode::nullNodes(int count)
{
    QList<VLMC_XMLNode *> nodes;
    nodes.reserve(qMax(count, 0));
    for (int i = 0; i < count; ++i) {
        nodes.append(nullptr);
    }
    return nodes;
}

QList<VLMC_XMLNode *> VLMC_XMLNode::childrenByNumber(const QString &attributeName, int count) const
{
    const QList<VLMC_XMLNode *> &children = m_children;
    if (count == children.size() && count <= vlm::kMaxNumbered && isNumbered(attributeName)) {
        return children;
    }
    QList<VLMC_XMLNode *> found = nullNodes(count);
    for (VLMC_XMLNode *const child : children) {
        int number = 0;
        if (child && vlm::readNumber(child->m_attributes, attributeName, &number) && number >= 0
            && number < count && !found.at(number)) {
            found[number] = child;
        }
    }
    return found;
}

VLMC_XMLNode *VLMC_XMLNode::getXMLNodeParent() { return m_parent; }

QList<VLMC_XMLNode *> &VLMC_XMLNode::getXMLNodeChildren()
{
    m_childrenLent = true;
    m_numbered = false;
    return m_children;
}

QXmlStreamAttributes &VLMC_XMLNode::getAttribute()
{
    m_attributesLent = true;
    distrustNumber();
    return m_attributes;
}

void VLMC_XMLNode::setAttribute(QXmlStreamAttributes &attributes)
{
    distrustNumber();
    m_attributes = attributes;
}

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

// Children that are known to carry their positions need no search: the one at position id carries
// it, and no other one does.
VLMC_XMLNode *VLMC_XMLNode::getXMLNodeChildByID(int id, QString &attributeName)
{
    if (id >= 0 && id < qMin(int(m_children.size()), vlm::kMaxNumbered)
        && isNumbered(attributeName)) {
        return m_children.at(id);
    }
    const QList<VLMC_XMLNode *> &children = m_children;
    for (VLMC_XMLNode *const child : children) {
        if (child && carriesNumber(child->m_attributes, attributeName, id)) {
            return child;
        }
    }
    return nullptr;
}
