#include "tests/differential/Hostile.h"

#include "core/NodeView_p.h"

using vlm::NodeView;

QXmlStreamAttributes attributesOf(const PlainAttributes &attributes)
{
    QXmlStreamAttributes made;
    for (const QPair<QString, QString> &attribute : attributes) {
        made.append(attribute.first, attribute.second);
    }
    return made;
}

Hostile::Hostile(VLMC_XMLSetting &store, PlainStore &plain, Random &random, bool lends,
                 std::function<void()> compare)
    : m_store(store),
      m_plain(plain),
      m_random(random),
      m_lends(lends),
      m_compare(compare),
      m_holder(m_other.createXMLRootNode()),
      m_plainHolder(new Element)
{
    m_plainOther.root = m_plainHolder;
}

QByteArray Hostile::act()
{
    if (!root()) {
        return "nothing to do harm to";
    }
    const Child child = anyChild();
    if (m_lends && m_random.oneIn(15)) {
        if (m_random.oneIn(3)) {
            lendChildren();
            return "lend the children";
        }
        lendAttributes(child);
        return "lend attributes";
    }
    switch (m_random.below(18)) {
    case 0:
        addForeign();
        return "add a foreign element";
    case 1:
        addPrepared();
        return "add elements that have their ids already";
    case 2:
        move(child);
        return "move an entry";
    case 3:
        remove(child);
        return "remove an entry";
    case 4:
        removeByAnother(child);
        return "remove an entry by another parent";
    case 5:
        destroy(child);
        return "destroy an entry";
    case 6:
        hold(child);
        return "give an entry to another parent";
    case 7:
    case 8:
        giveBack();
        return "take an entry from another parent";
    case 9:
        listTwice(child);
        return "list an entry twice";
    case 10:
        listElsewhere(child);
        return "list an entry elsewhere, too";
    case 11:
        changeField(child);
        return "change a field";
    case 12:
        dropField(child);
        return "drop a field";
    case 13:
        useLentAttributes();
        return "use lent attributes";
    case 14:
        useLentChildren();
        return "use the lent children";
    default:
        setAttributes(child);
        return "set attributes";
    }
}

VLMC_XMLNode *Hostile::root() { return m_store.getXMLRootNode(); }

PlainAttributes Hostile::attributes()
{
    const QString value = m_random.idValue(m_plain.childCount());
    PlainAttributes made;
    switch (m_random.below(6)) {
    case 0:
        return made;
    case 1:
        made = oneAttribute("id", value);
        return made + oneAttribute("id", m_random.idValue(m_plain.childCount()));
    case 2:
        return oneAttribute("x", textOf("7")) + oneAttribute("id", value);
    case 3:
        return oneAttribute("ID", value) + oneAttribute("no", value);
    default:
        return oneAttribute("id", value);
    }
}

Hostile::Child Hostile::anyChild()
{
    if (m_plain.childCount() == 0) {
        return Child{nullptr, ElementPointer()};
    }
    const int index = m_random.below(m_plain.childCount());
    return Child{NodeView::children(*root()).at(index), m_plain.root->children.at(index)};
}

bool Hostile::belongsToRoot(const Child &child)
{
    return child.element && child.element->parent == m_plain.root.data();
}

void Hostile::setAttributes(const Child &child)
{
    if (!child.element) {
        return;
    }
    const PlainAttributes made = attributes();
    QXmlStreamAttributes set = attributesOf(made);
    child.node->setAttribute(set);
    child.element->attributes = made;
}

void Hostile::addForeign()
{
    static const char *const names[] = {"foreign",  "pageInfo", "bookmark",
                                        "authInfo", "font",     "webSiteInfo"};
    QString name = textOf(m_random.oneOf(names));
    QString text = m_random.word();
    const bool atFront = m_random.oneIn(2);
    VLMC_XMLNode *const node = new VLMC_XMLNode(root(), char(atFront));
    node->setName(name);
    node->setText(text);
    const ElementPointer element(new Element);
    element->name = name;
    element->text = text;
    attach(*m_plain.root, element, atFront);
    setAttributes(Child{node, element});
}

// Only adding them tells the root of them.
void Hostile::addPrepared()
{
    for (int i = m_random.below(4); i >= 0; --i) {
        const PlainAttributes made = oneAttribute("id", QString::number(m_random.below(3)));
        QXmlStreamAttributes set = attributesOf(made);
        VLMC_XMLNode *const node = new VLMC_XMLNode(nullptr, 0);
        node->setAttribute(set);
        char atFront = char(!m_random.oneIn(4));
        root()->addXMLNode(node, atFront);
        const ElementPointer element(new Element);
        element->attributes = made;
        attach(*m_plain.root, element, atFront != 0);
    }
}

void Hostile::move(const Child &child)
{
    if (!belongsToRoot(child)) {
        return;
    }
    char atFront = char(m_random.below(2));
    root()->addXMLNode(child.node, atFront);
    attach(*m_plain.root, child.element, atFront);
}

void Hostile::remove(const Child &child)
{
    if (!child.element) {
        root()->removeXMLNode(nullptr);
        return;
    }
    root()->removeXMLNode(child.node);
    child.node->deleteLater();
    detach(*m_plain.root, child.element);
}

// It stays listed and has no parent any more.
void Hostile::removeByAnother(const Child &child)
{
    if (!child.element) {
        return;
    }
    m_holder->removeXMLNode(child.node);
    detach(*m_plainHolder, child.element);
}

void Hostile::destroy(const Child &child)
{
    if (!belongsToRoot(child)) {
        return;
    }
    delete child.node;
    detach(*m_plain.root, child.element);
}

void Hostile::hold(const Child &child)
{
    if (!belongsToRoot(child)) {
        return;
    }
    char atEnd = 0;
    m_holder->addXMLNode(child.node, atEnd);
    attach(*m_plainHolder, child.element, false);
}

void Hostile::giveBack()
{
    if (m_plainHolder->children.isEmpty()) {
        return;
    }
    char atFront = char(m_random.below(2));
    root()->addXMLNode(NodeView::children(*m_holder).first(), atFront);
    attach(*m_plain.root, m_plainHolder->children.first(), atFront);
}

// An entry without a parent is added to the list that holds it. Taken out, it leaves both places.
void Hostile::listTwice(const Child &child)
{
    if (!child.element) {
        return;
    }
    removeByAnother(child);
    char atFront = char(m_random.below(2));
    root()->addXMLNode(child.node, atFront);
    attach(*m_plain.root, child.element, atFront);
    m_compare();
    if (m_random.oneIn(2)) {
        QString id = textOf("id");
        m_store.setIDforChildren(id);
        m_plain.setIds();
        m_compare();
    }
    if (m_random.oneIn(2)) {
        setAttributes(child);
        m_compare();
    }
    root()->removeXMLNode(child.node);
    detach(*m_plain.root, child.element);
    m_compare();
    root()->addXMLNode(child.node, atFront);
    attach(*m_plain.root, child.element, atFront);
}

// An entry without a parent is added to another parent, too, which then hears of its changes.
void Hostile::listElsewhere(const Child &child)
{
    if (!child.element) {
        return;
    }
    removeByAnother(child);
    char atFront = char(m_random.below(2));
    m_holder->addXMLNode(child.node, atFront);
    attach(*m_plainHolder, child.element, atFront != 0);
    QString id = textOf("id");
    m_store.setIDforChildren(id);
    m_plain.setIds();
    if (m_random.oneIn(2)) {
        m_other.setIDforChildren(id);
        m_plainOther.setIds();
    }
    m_compare();
    leaveEitherWay(child);
    m_compare();
    setAttributes(child);
    m_compare();
    m_holder->removeXMLNode(child.node);
    detach(*m_plainHolder, child.element);
}

// An entry that two lists hold leaves the root's, or stays.
void Hostile::leaveEitherWay(const Child &child)
{
    switch (m_random.below(4)) {
    case 0:
        root()->removeXMLNode(child.node);
        child.node->deleteLater();
        detach(*m_plain.root, child.element);
        break;
    case 1: {
        const int number = int(m_plain.root->children.indexOf(child.element));
        QString id = textOf("id");
        m_store.deleteXMLNodeByID(number, id);
        m_plain.deleteById(number);
        break;
    }
    case 2:
        m_store.deleteAllSetting();
        m_plain.deleteAllSetting();
        break;
    default:
        break;
    }
}

void Hostile::changeField(const Child &child)
{
    if (!child.element || child.element->children.isEmpty()) {
        return;
    }
    const int index = m_random.below(int(child.element->children.size()));
    VLMC_XMLNode *const field = NodeView::children(*child.node).at(index);
    const ElementPointer plainField = child.element->children.at(index);
    QString text = m_random.oneIn(2) ? m_random.timeText() : m_random.word();
    field->setText(text);
    plainField->text = text;
    field->setTextType(char(m_random.below(3)));
    plainField->textType = field->getTextType();
}

void Hostile::dropField(const Child &child)
{
    if (!child.element || child.element->children.isEmpty()) {
        return;
    }
    const int index = m_random.below(int(child.element->children.size()));
    delete NodeView::children(*child.node).at(index);
    detach(*child.element, child.element->children.at(index));
}

void Hostile::lendAttributes(const Child &child)
{
    if (!child.element) {
        return;
    }
    // Often of an entry whose number the root has just come to trust.
    if (m_random.oneIn(2)) {
        QString id = textOf("id");
        m_store.setIDforChildren(id);
        m_plain.setIds();
    }
    m_lentAttributes = &child.node->getAttribute();
    m_lender = child.node;
    m_lenderNode = child.node;
    m_plainLender = child.element;
    if (m_random.oneIn(2)) {
        useLentAttributes();
    }
}

void Hostile::useLentAttributes()
{
    const int index = m_lentAttributes && m_lender && m_plain.root
                          ? int(m_plain.root->children.indexOf(m_plainLender))
                          : -1;
    if (index < 0 || NodeView::children(*root()).at(index) != m_lenderNode) {
        return;
    }
    const PlainAttributes made = attributes();
    *m_lentAttributes = attributesOf(made);
    m_plainLender->attributes = made;
}

void Hostile::lendChildren()
{
    m_lentChildren = &root()->getXMLNodeChildren();
    m_listLender = root();
    if (m_random.oneIn(2)) {
        useLentChildren();
    }
}

// Exchanges two entries, or puts a null one among them.
void Hostile::useLentChildren()
{
    if (!m_listLender || m_listLender.data() != root() || m_plain.childCount() == 0) {
        return;
    }
    const int index = m_random.below(m_plain.childCount());
    if (m_random.oneIn(4)) {
        m_lentChildren->insert(index, nullptr);
        m_plain.root->children.insert(index, ElementPointer());
        return;
    }
    const int other = m_random.below(m_plain.childCount());
    VLMC_XMLNode *const node = m_lentChildren->at(index);
    (*m_lentChildren)[index] = m_lentChildren->at(other);
    (*m_lentChildren)[other] = node;
    const ElementPointer element = m_plain.root->children.at(index);
    m_plain.root->children[index] = m_plain.root->children.at(other);
    m_plain.root->children[other] = element;
}
