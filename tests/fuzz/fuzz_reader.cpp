// Any bytes as a document: what was read can be written, and what was written is read as the same.

#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLReader.h"
#include "core/VLMC_XMLWriter.h"
#include "tests/fuzz/Fuzz.h"

#include <QtCore/QBuffer>
#include <QtCore/QList>

#include <memory>

namespace
{
typedef std::unique_ptr<VLMC_XMLNode> Tree;

Tree treeOf(const QByteArray &bytes)
{
    QBuffer device;
    device.setData(bytes);
    device.open(QIODevice::ReadOnly);
    VLMC_XMLReader reader;
    return Tree(reader.read(device));
}

Tree treeOfFile(const QByteArray &bytes)
{
    const InputDirectory directory;
    QString path = directory.file("document.xml");
    writeToFile(path, bytes);
    VLMC_XMLReader reader;
    return Tree(reader.read(path));
}

QByteArray documentOf(VLMC_XMLNode *root)
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    VLMC_XMLWriter writer;
    require(writer.write(device, root), "every tree that was read can be written");
    return device.data();
}

bool isNameStart(QChar character) { return character.isLetter() || character == QLatin1Char('_'); }

// True for names that are valid in any document. The reader lets others through: zero bytes in a
// name, and a digit after the prefix, which the tree leaves out. Names are written as they are.
bool isName(const QString &text)
{
    if (text.isEmpty() || !isNameStart(text.at(0))) {
        return false;
    }
    for (const QChar character : text) {
        if (!isNameStart(character) && !character.isDigit() && character != QLatin1Char('-')
            && character != QLatin1Char('.')) {
            return false;
        }
    }
    return true;
}

bool hasNames(VLMC_XMLNode *node)
{
    const QXmlStreamAttributes attributes = node->getAttribute();
    for (const QXmlStreamAttribute &attribute : attributes) {
        if (!isName(attribute.name().toString())) {
            return false;
        }
    }
    return isName(node->getName());
}

struct Elements {
    int count;
    bool haveNames;
};

Elements elementsOf(VLMC_XMLNode *root)
{
    Elements elements = {0, true};
    QList<VLMC_XMLNode *> open;
    open.append(root);
    while (!open.isEmpty()) {
        VLMC_XMLNode *const node = open.takeLast();
        ++elements.count;
        elements.haveNames = elements.haveNames && hasNames(node);
        const QList<VLMC_XMLNode *> children = node->getXMLNodeChildren();
        for (VLMC_XMLNode *const child : children) {
            require(child && child->getXMLNodeParent() == node, "a child knows its parent");
            open.append(child);
        }
    }
    return elements;
}
} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), int(size));
    const Tree read = treeOf(input);
    const Tree readFromFile = treeOfFile(input);
    require(readFromFile.get(), "a file gives a tree, whatever it holds");
    if (!read) {
        require(readFromFile->getName().isEmpty(), "a file without element gives an empty node");
        return 0;
    }
    const QByteArray written = documentOf(read.get());
    require(documentOf(readFromFile.get()) == written, "a file is read as a device is");

    const Elements elements = elementsOf(read.get());
    if (!elements.haveNames) {
        return 0;
    }
    const Tree second = treeOf(written);
    require(second.get(), "what was written has an element");
    require(elementsOf(second.get()).count == elements.count, "no element is lost");
    const QByteArray rewritten = documentOf(second.get());
    require(documentOf(treeOf(rewritten).get()) == rewritten, "writing and reading is stable");
    return 0;
}
