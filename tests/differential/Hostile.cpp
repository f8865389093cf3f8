#include "tests/differential/Hostile.h"

#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLSetting.h"

QString Random::word()
{
    static const char *const words[] = {
        "",    "a",  "http://a.example/", "b",    "\xe3\x81\x82", "http://b.example/?q=1&r=2",
        "]]>", "  ", "\xf0\x9f\x98\x80",  "a\nb", "<tag>",        "x"};
    return QString::fromUtf8(words[below(int(sizeof words / sizeof *words))]);
}

namespace
{
// Values as a caller or an edited file may hold them.
QString idValue(Random &random, int entries)
{
    const QString number = QString::number(random.below(entries + 2));
    switch (random.below(10)) {
    case 0:
        return QString();
    case 1:
        return textOf("abc");
    case 2:
        return textOf("-1");
    case 3:
        return textOf(" ") + number;
    case 4:
        return number + textOf("\t");
    case 5:
        return textOf("+") + number;
    case 6:
        return textOf("00000000000000") + number;
    case 7:
        return textOf("99999999999");
    case 8:
        return number + textOf(".0");
    default:
        return number.rightJustified(3, QLatin1Char('0'));
    }
}
} // namespace

Hostile::Hostile(VLMC_XMLSetting &store, PlainStore &plain, Random &random)
    : m_store(store), m_plain(plain), m_random(random)
{
}

void Hostile::act()
{
    VLMC_XMLNode *const root = m_store.getXMLRootNode();
    if (!root) {
        return;
    }
    const int entries = m_store.getXMLNodeCnt();
    if (entries == 0 || m_random.oneIn(8)) {
        addForeign(root);
        return;
    }
    const int index = m_random.below(entries);
    switch (m_random.below(6)) {
    case 0:
        move(root, index);
        break;
    case 1:
        remove(root, index);
        break;
    case 2:
        swap(root, index);
        break;
    case 3:
        useKept();
        break;
    default:
        changeAttributes(root->getXMLNodeChildren().at(index), m_plain.root->children.at(index));
    }
}

void Hostile::changeAttributes(VLMC_XMLNode *node, const ElementPointer &element)
{
    const QString value = idValue(m_random, m_plain.childCount());
    switch (m_random.below(4)) {
    case 0: {
        QXmlStreamAttributes none;
        node->setAttribute(none);
        element->attributes.clear();
        break;
    }
    case 1:
        node->getAttribute().append(textOf("id"), value);
        element->attributes.append(qMakePair(textOf("id"), value));
        break;
    case 2: {
        QXmlStreamAttributes attributes;
        attributes.append(textOf("x"), textOf("7"));
        attributes.append(textOf("id"), value);
        node->setAttribute(attributes);
        element->attributes.clear();
        element->attributes.append(qMakePair(textOf("x"), textOf("7")));
        element->attributes.append(qMakePair(textOf("id"), value));
        break;
    }
    default:
        m_kept = &node->getAttribute();
        m_keptNode = node;
        m_keptElement = element;
    }
}

void Hostile::useKept()
{
    // The entry may have left the tree since, and its memory with it.
    const int index = int(m_plain.root->children.indexOf(m_keptElement));
    if (!m_kept || index < 0
        || m_store.getXMLRootNode()->getXMLNodeChildren().at(index) != m_keptNode) {
        return;
    }
    const QString value = idValue(m_random, m_plain.childCount());
    m_kept->clear();
    m_kept->append(textOf("id"), value);
    m_keptElement->attributes.clear();
    m_keptElement->attributes.append(qMakePair(textOf("id"), value));
}

void Hostile::addForeign(VLMC_XMLNode *root)
{
    static const char *const names[] = {"foreign", "pageInfo", "bookmark", "font", "authInfo"};
    const char *const name = names[m_random.below(int(sizeof names / sizeof *names))];
    const bool atFront = m_random.oneIn(2);
    VLMC_XMLNode *const node = new VLMC_XMLNode(root, char(atFront));
    QString nodeName = textOf(name);
    QString nodeText = m_random.word();
    node->setName(nodeName);
    node->setText(nodeText);
    const ElementPointer element = m_plain.add(m_plain.root, name, nodeText, 0, atFront);
    changeAttributes(node, element);
}

void Hostile::move(VLMC_XMLNode *root, int index)
{
    char atFront = char(m_random.below(2));
    VLMC_XMLNode *const node = root->getXMLNodeChildren().at(index);
    root->addXMLNode(node, atFront);
    const ElementPointer element = m_plain.root->children.takeAt(index);
    m_plain.root->children.insert(atFront ? 0 : m_plain.root->children.size(), element);
}

void Hostile::remove(VLMC_XMLNode *root, int index)
{
    VLMC_XMLNode *const node = root->getXMLNodeChildren().at(index);
    root->removeXMLNode(node);
    node->deleteLater();
    m_plain.root->children.removeAt(index);
}

void Hostile::swap(VLMC_XMLNode *root, int index)
{
    const int other = m_random.below(m_plain.childCount());
    QList<VLMC_XMLNode *> &children = root->getXMLNodeChildren();
    VLMC_XMLNode *const node = children.at(index);
    children[index] = children.at(other);
    children[other] = node;
    const ElementPointer element = m_plain.root->children.at(index);
    m_plain.root->children[index] = m_plain.root->children.at(other);
    m_plain.root->children[other] = element;
}
