#include "tests/identical/Script.h"

#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLReader.h"
#include "core/VLMC_XMLSetting.h"
#include "core/VLMC_XMLWriter.h"

#include <QtCore/QBuffer>

namespace
{
const char kFile[] = "any.xml";
const char kDocument[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<any docInfo=\"1.0\" xml:lang=\"ja\">\n"
                         "    <entry id=\"000\" title=\"\xE3\x81\x82 &lt;&#10;&quot;\">\n"
                         "        <mixed>text<b>bold</b>tail<!-- c --><i/></mixed>\n"
                         "        <section><![CDATA[a]]]]><![CDATA[>b]]></section>\n"
                         "        <references>&#x3042;&amp;&#233;&lt;</references>\n"
                         "    </entry>\n"
                         "    <entry id=\"001\" xmlns:p=\"urn:p\" p:q=\"r\">\n"
                         "        <p:inner>prefix</p:inner>\n"
                         "        <blank> &#32; </blank>\n"
                         "    </entry>\n"
                         "</any>\n";
const char *const kNames[] = {"a", "entry", "b-c", "_d", "\xE3\x81\x82"};
const char *const kNumbers[] = {"",   "000", "0",   "7",   "007",          " 7",         "7\t",
                                "+7", "-7",  "7.0", "0x7", "000000000007", "4294967296", "abc"};
const int kKept = 20;

VLMC_XMLSetting &store()
{
    static VLMC_XMLSetting instance;
    return instance;
}

void showNode(VLMC_XMLNode *node, QByteArray indent)
{
    QByteArray text = indent + shown(node->getName()) + ' ' + shown(int(node->getTextType())) + ' '
                      + shown(node->getText());
    const QXmlStreamAttributes attributes = node->getAttribute();
    for (const QXmlStreamAttribute &attribute : attributes) {
        text += ' ' + shown(attribute.qualifiedName().toString()) + '='
                + shown(attribute.value().toString());
    }
    line(text);
    // No deeper than a line is wide.
    if (indent.size() > 40) {
        return;
    }
    const QList<VLMC_XMLNode *> children = node->getXMLNodeChildren();
    for (VLMC_XMLNode *const child : children) {
        showNode(child, indent + "  ");
    }
}

void loadAndSave(QString &folder)
{
    QString file = folder + utf8(kFile);
    store().load(file);
    showNode(store().getXMLRootNode(), QByteArray());
    QString name = utf8("any");
    store().getXMLRootNode()->setName(name);
    store().save(file);
}

QXmlStreamAttributes attributes(Draw &draw)
{
    QXmlStreamAttributes attributes;
    if (draw.oneIn(2)) {
        attributes.append(utf8("id"), utf8(draw.oneOf(kNumbers)));
    }
    if (draw.oneIn(3)) {
        attributes.append(utf8("title"), draw.text());
    }
    return attributes;
}

void add(Draw &draw, VLMC_XMLNode *parent)
{
    QString name = utf8(draw.oneOf(kNames));
    QString text = draw.text();
    char type = char(draw.below(3));
    QXmlStreamAttributes given = attributes(draw);
    store().addXMLChild(parent, name, text, type, given, char(draw.below(2) * 200));
}

void change(Draw &draw)
{
    QString id = utf8("id");
    VLMC_XMLNode *const root = store().getXMLRootNode();
    VLMC_XMLNode *const child = root->getXMLNodeChildByID(draw.id(kKept), id);
    switch (draw.below(6)) {
    case 0:
        return store().setIDforChildren(id);
    case 1:
        return store().deleteXMLNodeByID(draw.id(kKept), id);
    case 2:
        return add(draw, child ? child : root);
    case 3: {
        const QString name = utf8(draw.oneOf(kNames));
        const QString text = draw.text();
        store().setElement(root, name, text, attributes(draw), 0, 0);
        return;
    }
    default:
        return add(draw, root);
    }
}

void takeStep(Draw &draw)
{
    if (store().getXMLNodeCnt() > kKept) {
        store().deleteAllSetting();
    }
    change(draw);
    QString id = utf8("id");
    QString name = utf8(draw.oneOf(kNames));
    line("children", store().getXMLNodeCnt());
    line("of this name", store().getXMLRootNodeChildCntByName(id, name));
    VLMC_XMLNode *const root = store().getXMLRootNode();
    int index = draw.below(kKept);
    VLMC_XMLNode *const named = root->getChildByName(name, index);
    line("first at " + shown(index) + (named ? ": " + shown(named->getText()) : ": none"));
    line("all", int(root->getXMLNodeChildrenByName(name).size()));
    VLMC_XMLNode *const numbered = root->getXMLNodeChildByID(draw.id(kKept), id);
    line("numbered", numbered ? numbered->getText() : utf8("none"));
}

void playWriter()
{
    Draw draw(14);
    for (int i = 0; i < 60; ++i) {
        const Part part("writer, tree " + shown(i + 1));
        VLMC_XMLNode root(nullptr, 0);
        QString name = utf8("root");
        root.setName(name);
        for (int j = draw.below(4); j >= 0; --j) {
            add(draw, &root);
        }
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        VLMC_XMLWriter writer;
        line("written", writer.write(buffer, &root));
        line("bytes", buffer.data());
    }
}

void playRefused()
{
    const Part part("base store, what is refused");
    VLMC_XMLSetting unloaded;
    QString empty;
    QString id = utf8("id");
    const QString folder = newFolder();
    QString file = folder + utf8(kFile);
    QString missing = utf8("missing/") + file;
    QString directory = folder;
    line("children", unloaded.getXMLNodeCnt());
    line("of this name", unloaded.getXMLRootNodeChildCntByName(id, id));
    unloaded.deleteXMLNodeByID(0, id);
    unloaded.setIDforChildren(id);
    unloaded.deleteAllXMLNode();
    unloaded.deleteAllSetting();
    unloaded.save(file);
    unloaded.load(empty);
    unloaded.save(empty);
    unloaded.load(missing);
    unloaded.save(missing);
    unloaded.load(directory);
    unloaded.save(directory);
    line("element", unloaded.setElement(nullptr, id, id, QXmlStreamAttributes(), 0, 0) != nullptr);
    unloaded.deleteAllXMLNode();
    line("children", unloaded.getXMLNodeCnt());
    showFolder(folder);
    showLog();
}
} // namespace

void playNodes()
{
    playRefused();
    playDocuments(kFile, kDocument, loadAndSave);
    playWriter();
    Draw draw(15);
    playSteps(
        "base store", 16, [&] { takeStep(draw); },
        [](QString &folder) {
            QString file = folder + utf8(kFile);
            store().save(file);
            store().load(file);
            showNode(store().getXMLRootNode(), QByteArray());
        });
}
