#include "tests/differential/SideBySide.h"

#include "core/NodeView_p.h"
#include "core/VLMC_XMLSetting.h"
#include "tests/support/LogRecorder.h"

#include <QtCore/QFile>

using vlm::NodeView;

namespace
{
int operations = 0;
int sequences = 0;

// In longer trees only so many ids are looked up after an operation.
const int kIdsLookedUp = 24;
const int kMaxNumbered = 999;
const char *const kNames[] = {"foreign", "pageInfo", "bookmark", "authInfo",
                              "font",    "title",    "url",      "webSiteInfo"};
const char *const kAttributeNames[] = {"id", "id", "id", "no", "x"};

QByteArray escaped(const QString &text)
{
    QByteArray bytes = text.toUtf8();
    return bytes.replace('&', "&amp;")
        .replace('<', "&lt;")
        .replace('>', "&gt;")
        .replace('"', "&quot;");
}

// Each "0x1A2B" as "0x*".
QByteArray withoutAddresses(const QByteArray &log)
{
    QByteArray text;
    int start = 0;
    for (int at = int(log.indexOf("0x")); at >= 0; at = int(log.indexOf("0x", start))) {
        text += log.mid(start, at - start) + "0x*";
        start = at + 2;
        while (start < log.size() && isxdigit(uchar(log.at(start)))) {
            ++start;
        }
    }
    return text + log.mid(start);
}

// The plain models keep no copies of files that were not read whole: tst_PartialLoads does that.
QByteArray withoutKeptCopies(QByteArray log)
{
    return log.replace("2 VLMC_XMLWriter::write file not read whole, copy kept!\n", QByteArray());
}

bool sameAttributes(const QXmlStreamAttributes &attributes, const PlainAttributes &plain)
{
    if (int(attributes.size()) != int(plain.size())) {
        return false;
    }
    for (int i = 0; i < plain.size(); ++i) {
        if (attributes.at(i).qualifiedName() != plain.at(i).first
            || attributes.at(i).value() != plain.at(i).second) {
            return false;
        }
    }
    return true;
}

bool sameTrees(VLMC_XMLNode *node, const ElementPointer &element)
{
    if (!node || !element) {
        return !node && !element;
    }
    const QList<VLMC_XMLNode *> &children = NodeView::children(*node);
    if (node->getName() != element->name || node->getText() != element->text
        || node->getTextType() != element->textType
        || !sameAttributes(NodeView::attributes(*node), element->attributes)
        || children.size() != element->children.size()) {
        return false;
    }
    for (int i = 0; i < children.size(); ++i) {
        VLMC_XMLNode *const child = children.at(i);
        const ElementPointer plainChild = element->children.at(i);
        if (!sameTrees(child, plainChild)
            || (child
                && (child->getXMLNodeParent() == node) != (plainChild->parent == element.data()))) {
            return false;
        }
    }
    return true;
}

QByteArray line(const QString &name, const QString &text, char textType, const QByteArray &rest)
{
    return '<' + name.toUtf8() + rest + "> " + QByteArray::number(int(textType)) + " '"
           + text.toUtf8() + '\'';
}

QByteArray described(VLMC_XMLNode *node, VLMC_XMLNode *parent, const QByteArray &indent)
{
    if (!node) {
        return indent + "null\n";
    }
    QByteArray attributes;
    for (const QXmlStreamAttribute &attribute : NodeView::attributes(*node)) {
        attributes += ' ' + attribute.qualifiedName().toString().toUtf8() + "='"
                      + attribute.value().toString().toUtf8() + '\'';
    }
    QByteArray text = indent
                      + line(node->getName(), node->getText(), node->getTextType(), attributes)
                      + (node->getXMLNodeParent() == parent ? "\n" : " (of another parent)\n");
    for (VLMC_XMLNode *const child : NodeView::children(*node)) {
        text += described(child, node, indent + "  ");
    }
    return text;
}

QByteArray described(const ElementPointer &element, Element *parent, const QByteArray &indent)
{
    if (!element) {
        return indent + "null\n";
    }
    QByteArray attributes;
    for (int i = 0; i < element->attributes.size(); ++i) {
        attributes += ' ' + element->attributes.at(i).first.toUtf8() + "='"
                      + element->attributes.at(i).second.toUtf8() + '\'';
    }
    QByteArray text = indent + line(element->name, element->text, element->textType, attributes)
                      + (element->parent == parent ? "\n" : " (of another parent)\n");
    for (int i = 0; i < element->children.size(); ++i) {
        text += described(element->children.at(i), element.data(), indent + "  ");
    }
    return text;
}

// The lines from a little before the first difference on.
QByteArray aroundDifference(const QByteArray &text, const QByteArray &other)
{
    int at = 0;
    while (at < text.size() && at < other.size() && text.at(at) == other.at(at)) {
        ++at;
    }
    const int start = qMax(0, int(text.lastIndexOf('\n', qMax(0, at - 200))) + 1);
    return text.mid(start, 1200);
}
} // namespace

Answer &Answer::operator<<(const QByteArray &text)
{
    lines += text + '\n';
    return *this;
}

Answer &Answer::operator<<(const QString &text) { return *this << '"' + text.toUtf8() + '"'; }

Answer &Answer::operator<<(int number) { return *this << QByteArray::number(number); }

Answer &Answer::operator<<(bool truth) { return *this << QByteArray(truth ? "true" : "false"); }

Answer &Answer::operator<<(const QDateTime &time)
{
    return *this << (time.isValid() ? time.toString(Qt::ISODate) : QString());
}

SideBySide::SideBySide(VLMC_XMLSetting &store, PlainStore &plain, const Sequence &sequence)
    : random(sequence.seed),
      m_store(store),
      m_plain(plain),
      m_sequence(sequence),
      m_hostile(store, plain, random, sequence.seed % 2 == 0, [this]() { compare(); })
{
}

SideBySide::~SideBySide() {}

int SideBySide::operationsPlayed() { return operations; }

int SideBySide::sequencesPlayed() { return sequences; }

QByteArray SideBySide::play()
{
    takeLog();
    ++sequences;
    for (int i = 0; i < m_sequence.operations && m_difference.isEmpty(); ++i) {
        ++operations;
        const int kind = random.below(10);
        if (kind < 4) {
            did(m_hostile.act());
        } else if (kind < 6) {
            operateBase();
        } else {
            operate();
        }
        compare();
        if (random.oneIn(8)) {
            runDeferredDeletes();
        }
    }
    return m_difference;
}

void SideBySide::did(const QByteArray &operation) { m_history += "   " + operation + '\n'; }

void SideBySide::agree(const Answer &store, const Answer &plain)
{
    if (store.lines != plain.lines) {
        differ("the results", store.lines, plain.lines);
    }
}

void SideBySide::differ(const QByteArray &what, const QByteArray &store, const QByteArray &plain)
{
    if (m_difference.isEmpty()) {
        m_difference = "seed " + QByteArray::number(m_sequence.seed) + ", after\n"
                       + m_history.right(1500) + "differ " + what + "; the store:\n"
                       + aroundDifference(store, plain) + "the plain rules:\n"
                       + aroundDifference(plain, store);
    }
}

void SideBySide::compare()
{
    const QByteArray log = withoutKeptCopies(withoutAddresses(loggedText()));
    const QByteArray plainLog = m_plain.takeLog();
    if (log != plainLog) {
        differ("the logs", log, plainLog);
    }
    compareTrees();
    compareIds(m_store, m_plain);
    compareIds(m_hostile.other(), m_hostile.plainOther());
}

void SideBySide::compareTrees()
{
    if (!sameTrees(m_store.getXMLRootNode(), m_plain.root)) {
        differ("the documents", described(m_store.getXMLRootNode(), nullptr, ""),
               described(m_plain.root, nullptr, ""));
    }
}

// All ids and those around them, or some of them where there are many.
void SideBySide::compareIds(VLMC_XMLSetting &store, PlainStore &plain)
{
    VLMC_XMLNode *const root = store.getXMLRootNode();
    if (!root || !m_difference.isEmpty()) {
        return;
    }
    const int ids = plain.childCount() + 3;
    const char *const name = random.oneOf(kAttributeNames);
    for (int i = 0; i < qMin(ids, kIdsLookedUp); ++i) {
        const int id = ids <= kIdsLookedUp ? i - 1 : idToLookUp(plain.childCount());
        QString attributeName = textOf(name);
        const QByteArray place = placeIn(root, root->getXMLNodeChildByID(id, attributeName));
        const QByteArray plainPlace = placeIn(plain.root, plain.byId(id, name));
        if (place != plainPlace) {
            differ("where id " + QByteArray::number(id) + " of \"" + name + "\" leads to", place,
                   plainPlace + "\nin\n" + described(plain.root, nullptr, ""));
        }
    }
}

// Often one behind the numbered entries.
int SideBySide::idToLookUp(int entries)
{
    return entries > kMaxNumbered && random.oneIn(2)
               ? kMaxNumbered + random.below(entries - kMaxNumbered)
               : random.id(entries);
}

QByteArray SideBySide::placeOf(VLMC_XMLNode *node)
{
    return placeIn(m_store.getXMLRootNode(), node);
}

QByteArray SideBySide::placeOf(const ElementPointer &element)
{
    return placeIn(m_plain.root, element);
}

QByteArray SideBySide::placeIn(VLMC_XMLNode *root, VLMC_XMLNode *node)
{
    if (!node) {
        return "none";
    }
    return QByteArray::number(root ? int(NodeView::children(*root).indexOf(node)) : -1);
}

QByteArray SideBySide::placeIn(const ElementPointer &root, const ElementPointer &element)
{
    if (!element) {
        return "none";
    }
    return QByteArray::number(root ? int(root->children.indexOf(element)) : -1);
}

void SideBySide::operateBase()
{
    switch (random.below(8)) {
    case 0:
    case 1:
        loadOrSave();
        break;
    case 2:
        deleteAll();
        break;
    case 3:
    case 4:
        readTree();
        break;
    default:
        changeTree();
    }
}

void SideBySide::changeTree()
{
    VLMC_XMLNode *const root = m_store.getXMLRootNode();
    const char *const attribute = random.oneOf(kAttributeNames);
    QString attributeName = textOf(attribute);
    const int operation = random.below(4);
    if (operation == 0) {
        did("setIDforChildren " + QByteArray(attribute));
        m_store.setIDforChildren(attributeName);
        m_plain.setIds(attribute);
        return;
    }
    if (operation == 1) {
        const int id = anyId();
        did("deleteXMLNodeByID " + QByteArray::number(id));
        m_store.deleteXMLNodeByID(id, attributeName);
        m_plain.deleteById(id, attribute);
        return;
    }
    const int index = random.below(m_plain.childCount() + 2) - 2;
    VLMC_XMLNode *parent = root;
    ElementPointer plainParent = m_plain.root;
    if (index == -2) {
        parent = nullptr;
        plainParent = ElementPointer();
    } else if (index >= 0) {
        parent = NodeView::children(*root).at(index);
        plainParent = m_plain.root->children.at(index);
    }
    const char *const name = random.oneOf(kNames);
    QString nodeName = textOf(name);
    QString text = random.word();
    char textType = char(random.below(2));
    const PlainAttributes plainAttributes =
        oneAttribute("id", random.idValue(m_plain.childCount()));
    QXmlStreamAttributes attributes = attributesOf(plainAttributes);
    const char atFront = char(random.below(2));
    VLMC_XMLNode *node = nullptr;
    ElementPointer element;
    if (operation == 2) {
        did("addXMLChild");
        node = m_store.addXMLChild(parent, nodeName, text, textType, attributes, atFront);
        element = m_plain.addChild(plainParent, name, text, textType, plainAttributes, atFront);
    } else {
        did("setElement");
        node = m_store.setElement(parent, nodeName, text, attributes, textType, atFront);
        element = m_plain.setElement(plainParent, name, text, textType, plainAttributes, atFront);
    }
    agree(Answer() << placeOf(node), Answer() << placeOf(element));
    if (node && !sameTrees(node, element)) {
        differ("the elements", described(node, nullptr, ""), described(element, nullptr, ""));
    }
    if (!parent) {
        delete node;
    }
}

void SideBySide::readTree()
{
    did("read the tree");
    const char *const name = random.oneOf(kNames);
    const char *const attribute = random.oneOf(kAttributeNames);
    QString nodeName = textOf(name);
    QString attributeName = textOf(attribute);
    agree(Answer() << m_store.getXMLNodeCnt()
                   << m_store.getXMLRootNodeChildCntByName(attributeName, nodeName),
          Answer() << m_plain.childCount() << m_plain.count(name, attribute));
    VLMC_XMLNode *const root = m_store.getXMLRootNode();
    if (!root) {
        return;
    }
    const char *const field = random.oneOf(kNames);
    VLMC_XMLNode *const grandchild = m_store.getGrandchildNode(nodeName, textOf(field));
    const ElementPointer plainGrandchild = childOf(childOf(m_plain.root, name), field);
    agree(Answer() << placeOf(m_store.getChildNode(nodeName)) << bool(grandchild)
                   << (grandchild ? grandchild->getText() : QString()),
          Answer() << placeOf(childOf(m_plain.root, name)) << bool(plainGrandchild)
                   << (plainGrandchild ? plainGrandchild->text : QString()));
    Answer places;
    Answer plainPlaces;
    const QList<VLMC_XMLNode *> named = root->getXMLNodeChildrenByName(nodeName);
    for (VLMC_XMLNode *const node : named) {
        places << placeOf(node) << node->isAttribute(attributeName);
    }
    for (int i = 0; i < m_plain.childCount(); ++i) {
        const ElementPointer element = m_plain.root->children.at(i);
        if (!element || element->name != nodeName) {
            continue;
        }
        bool hasAttribute = false;
        for (int k = 0; k < element->attributes.size(); ++k) {
            hasAttribute = hasAttribute || element->attributes.at(k).first == attributeName;
        }
        plainPlaces << placeOf(element) << hasAttribute;
    }
    agree(places, plainPlaces);
}

void SideBySide::loadOrSave()
{
    QString path = random.oneIn(10) ? QString() : m_directory.file("any.xml");
    if (random.oneIn(2)) {
        did("save");
        m_store.save(path);
        m_plain.save(path);
        agreeOnFile(path);
        return;
    }
    if (random.oneIn(2)) {
        m_plain.files[m_directory.file("any.xml")] = document();
        writeFile(m_directory.file("any.xml"), m_plain.files.value(m_directory.file("any.xml")));
    }
    did("load");
    m_store.load(path);
    m_plain.load(path);
}

void SideBySide::deleteAll()
{
    switch (random.below(6)) {
    case 0:
        did("createXMLRootNode");
        m_store.createXMLRootNode();
        m_plain.createRoot();
        break;
    case 1:
        did("deleteAllXMLNode");
        m_store.deleteAllXMLNode();
        m_plain.deleteAllNodes();
        break;
    case 2:
        did("deleteAllSetting");
        m_store.deleteAllSetting();
        m_plain.deleteAllSetting();
        break;
    default:
        did("setIDforChildren");
        QString attributeName = textOf("id");
        m_store.setIDforChildren(attributeName);
        m_plain.setIds();
    }
}

QString SideBySide::file(const char *name) const { return m_directory.file(name); }

QString SideBySide::anyDirectory()
{
    switch (random.below(12)) {
    case 0:
        return QString();
    case 1:
        return m_directory.file("missing/");
    default:
        return m_directory.path();
    }
}

QString SideBySide::directoryToLoad(const char *fileName)
{
    const QString path = m_directory.file(fileName);
    const int before = random.below(10);
    if (before == 0) {
        QFile::remove(path);
        m_plain.files.remove(path);
    } else if (before < 6) {
        m_plain.files[path] = document();
        writeFile(path, m_plain.files.value(path));
    }
    return anyDirectory();
}

void SideBySide::agreeOnFile(const QString &path)
{
    if (exists(path) != m_plain.files.contains(path)) {
        differ("whether there is a file", exists(path) ? "yes\n" : "no\n",
               m_plain.files.contains(path) ? "yes\n" : "no\n");
        return;
    }
    if (exists(path) && readFile(path) != m_plain.files.value(path)) {
        differ("the files", readFile(path), m_plain.files.value(path));
    }
}

int SideBySide::anyMax()
{
    switch (random.below(12)) {
    case 0:
        return 0;
    case 1:
        return -1 - random.below(3);
    case 2:
        return 999;
    default:
        return 1 + random.below(12);
    }
}

int SideBySide::anyId() { return random.id(m_plain.childCount()); }

QByteArray SideBySide::documentOf(const char *rootName, const char *entryName,
                                  const QList<QByteArray> &fieldNames, int maxEntries)
{
    const int entries = m_sequence.isLong ? 985 + random.below(120) : random.below(maxEntries + 1);
    QByteArray text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<";
    const QByteArray name = random.oneIn(4) ? "other" : rootName;
    text += name + (random.oneIn(2) ? " docInfo=\"1.0\">\n" : " a=\"b\" c=\"d\">\n");
    for (int i = 0; i < entries; ++i) {
        text += entryOf(random.oneIn(8) ? "foreign" : entryName, fieldNames, idInFile(i, entries));
    }
    text += "</" + name + ">\n";
    return random.oneIn(12) ? text.left(random.below(int(text.size()))) : text;
}

// Behind the numbered entries mostly their positions, or those of the next ones.
QString SideBySide::idInFile(int index, int entries)
{
    if (index >= kMaxNumbered && !random.oneIn(6)) {
        return QString::number(index + random.below(3));
    }
    return random.idValue(entries);
}

QByteArray SideBySide::entryOf(const QByteArray &name, const QList<QByteArray> &fieldNames,
                               const QString &id)
{
    QByteArray text = "    <" + name;
    const int attributes = random.below(6);
    if (attributes > 0) {
        text += " id=\"" + escaped(id) + '"';
    }
    if (attributes > 4) {
        text += " x=\"7\"";
    }
    text += '>';
    if (fieldNames.isEmpty() || random.oneIn(20)) {
        text += random.oneIn(2) ? escaped(random.word()) : QByteArray("<![CDATA[]]>");
    }
    const bool isOdd = random.oneIn(4);
    const int fields = isOdd ? random.below(6) : int(fieldNames.size());
    for (int i = 0; i < fields; ++i) {
        const int index = isOdd ? random.below(int(fieldNames.size()) + 1) : i;
        text += fieldOf(index < int(fieldNames.size()) ? fieldNames.at(index) : "odd");
    }
    if (random.oneIn(20)) {
        text += "<!-- x -->" + escaped(random.word());
    }
    return text + "</" + name + ">\n";
}

QByteArray SideBySide::fieldOf(const QByteArray &name)
{
    const QString content = fieldText(name);
    QByteArray text = '<' + name;
    if (random.oneIn(20)) {
        text += " id=\"1\"";
    }
    text += '>';
    if (random.oneIn(5)) {
        text += "<![CDATA[" + content.toUtf8() + "]]>";
    } else {
        text += escaped(content);
    }
    if (random.oneIn(20)) {
        text += "<deep>1</deep>";
    }
    return text + "</" + name + ">\n";
}

QString SideBySide::fieldText(const QByteArray &) { return random.word(); }

void addSequences()
{
    QTest::addColumn<int>("firstSeed");
    QTest::addColumn<int>("sequences");
    QTest::addColumn<int>("operations");
    QTest::addColumn<bool>("isLong");
    for (int first = 1; first < 1000; first += 100) {
        QTest::newRow(("seeds from " + QByteArray::number(first)).constData())
            << first << 100 << 60 << false;
    }
    QTest::newRow("999 entries, more or less") << 10001 << 10 << 15 << true;
}

void reportSequences()
{
    qInfo("%d sequences, %d operations", SideBySide::sequencesPlayed(),
          SideBySide::operationsPlayed());
}
