#include "core/VLMC_XMLReader.h"

#include "core/TextKind_p.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMG_Debug.h"

#include <QtCore/QFile>

namespace
{
VLMC_XMLNode *emptyNode() { return new VLMC_XMLNode(nullptr, vlm::AtEnd); }

// A document repeats a handful of element names; nodes share them.
class NamesSeen
{
public:
    template <typename Name>
    QString shared(const Name &name)
    {
        for (const QString &seen : m_names) {
            if (seen == name) {
                return seen;
            }
        }
        m_next = (m_next + 1) % kNames;
        m_names[m_next] = name.toString();
        return m_names[m_next];
    }

private:
    static const int kNames = 8;
    QString m_names[kNames];
    int m_next = 0;
};

VLMC_XMLNode *nodeOfStartTag(const VLMC_XMLReader &reader, VLMC_XMLNode *parent, NamesSeen &names)
{
    VLMC_XMLNode *const node = new VLMC_XMLNode(parent, vlm::AtEnd);
    QXmlStreamAttributes attributes = reader.attributes();
    node->setAttribute(attributes);
    QString name = names.shared(reader.name());
    node->setName(name);
    return node;
}
} // namespace

VLMC_XMLNode *VLMC_XMLReader::read(QString &path)
{
    if (!QFile::exists(path)) {
        VLMG_DebugPrint(VLMG_LogWarning, "VLMC_XMLReader::read file not exist!");
        return emptyNode();
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        VLMG_DebugPrint(VLMG_LogWarning, "VLMC_XMLReader::read file open error!");
        return emptyNode();
    }
    VLMC_XMLNode *const root = read(file);
    return root ? root : emptyNode();
}

VLMC_XMLNode *VLMC_XMLReader::read(QIODevice &device)
{
    setDevice(&device);
    VLMC_XMLNode *root = nullptr;
    while (!atEnd()) {
        const TokenType token = readNext();
        if (token == EndElement) {
            break;
        }
        if (token == StartElement && !root) {
            root = readXMLNode(nullptr);
        }
    }
    return root;
}

VLMC_XMLNode *VLMC_XMLReader::readXMLNode(VLMC_XMLNode *parent)
{
    NamesSeen names;
    VLMC_XMLNode *const element = nodeOfStartTag(*this, parent, names);
    VLMC_XMLNode *open = element;
    while (!atEnd()) {
        const TokenType token = readNext();
        if (token == EndElement) {
            if (open == element) {
                break;
            }
            open = open->getXMLNodeParent();
            continue;
        }
        readText(open);
        if (token == StartElement) {
            open = nodeOfStartTag(*this, open, names);
        }
    }
    return element;
}

void VLMC_XMLReader::readText(VLMC_XMLNode *node)
{
    if (!node || !node->getText().isEmpty() || !isCharacters() || isWhitespace()) {
        return;
    }
    node->setTextType(isCDATA() ? vlm::CDataText : vlm::PlainText);
    QString content = text().toString();
    node->setText(content);
}
