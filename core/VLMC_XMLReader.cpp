#include "core/VLMC_XMLReader.h"

#include "core/NodeCodes_p.h"
#include "core/NodeView_p.h"
#include "core/Numbering_p.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMG_Debug.h"
#include "files/DocumentSource_p.h"
#include "files/PartialLoads_p.h"
#include "files/RegularFile_p.h"

#include <QtCore/QFile>

namespace
{
VLMC_XMLNode *emptyNode() { return new VLMC_XMLNode(nullptr, vlm::AtEnd); }

// What the nodes of a document share, which spares memory and time.
class SharedParts
{
public:
    // A document repeats a handful of element names, mostly in the same order.
    template <typename Name>
    QString name(const Name &name)
    {
        for (int i = 0; i < m_count; ++i) {
            m_last = m_last + 1 < m_count ? m_last + 1 : 0;
            if (m_names[m_last] == name) {
                return m_names[m_last];
            }
        }
        m_last = m_count < kNames ? m_count++ : (m_last + 1) % kNames;
        m_names[m_last] = name.toString();
        return m_names[m_last];
    }

    // The entries of a saved store carry their positions, the same ones in every store. Other sets
    // only lose the spare room that the reader's set has.
    void share(QXmlStreamAttributes &attributes, int position)
    {
        if (!vlm::isNumberSet(attributes, position)) {
            attributes.squeeze();
            return;
        }
        if (position >= m_numbers.size()) {
            m_numbers = vlm::numberSets(vlm::idName(), position + 1);
        }
        attributes = m_numbers.at(position);
    }

private:
    static const int kNames = 8;
    QString m_names[kNames];
    int m_count = 0;
    int m_last = -1;
    QVector<QXmlStreamAttributes> m_numbers;
};

// Leaves attributes empty: whoever keeps the reader's set makes it allocate another one for the
// next tag.
VLMC_XMLNode *nodeOfStartTag(const VLMC_XMLReader &reader, QXmlStreamAttributes &attributes,
                             VLMC_XMLNode *parent, SharedParts &shared)
{
    VLMC_XMLNode *const node = new VLMC_XMLNode(parent, vlm::AtEnd);
    if (!attributes.isEmpty()) {
        const int position = parent ? int(vlm::NodeView::children(*parent).size()) - 1 : 0;
        shared.share(attributes, position);
        vlm::NodeView::takeAttributes(*node, attributes);
    }
    attributes = QXmlStreamAttributes();
    QString name = shared.name(reader.name());
    vlm::NodeView::takeName(*node, name);
    return node;
}
} // namespace

VLMC_XMLNode *VLMC_XMLReader::read(QString &path)
{
    if (vlm::isMissing(path)) {
        vlm::PartialLoads::remove(path);
        VLMG_DebugPrint(VLMG_LogWarning, "VLMC_XMLReader::read file not exist!");
        return emptyNode();
    }
    QFile file(path);
    if (!vlm::openRegular(file)) {
        vlm::PartialLoads::add(path);
        VLMG_DebugPrint(VLMG_LogWarning, "VLMC_XMLReader::read file open error!");
        return emptyNode();
    }
    VLMC_XMLNode *const root = read(file);
    // Not hasError(): where a device fails, Qt 4 waits for more to come.
    if (tokenType() == EndDocument) {
        vlm::PartialLoads::remove(path);
    } else {
        vlm::PartialLoads::add(path);
    }
    return root ? root : emptyNode();
}

VLMC_XMLNode *VLMC_XMLReader::read(QIODevice &device)
{
    vlm::DocumentSource *const source = new vlm::DocumentSource(&device);
    setDevice(source);
    VLMC_XMLNode *root = nullptr;
    bool utf8 = true;
    while (!atEnd()) {
        const TokenType token = readNext();
        if (token == EndElement) {
            break;
        }
        if (token == StartDocument) {
            // The encoding is known only from this token on.
            utf8 = vlm::isUtf8(*this);
        }
        if (token == DTD) {
            source->declare(entityDeclarations(), utf8);
        }
        if (token == StartElement && !root) {
            source->endProlog();
            root = readXMLNode(nullptr);
        }
    }
    return root;
}

VLMC_XMLNode *VLMC_XMLReader::readXMLNode(VLMC_XMLNode *parent)
{
    SharedParts shared;
    QXmlStreamAttributes first = attributes();
    VLMC_XMLNode *const element = nodeOfStartTag(*this, first, parent, shared);
    VLMC_XMLNode *open = element;
    int defaulted = 0;
    while (!atEnd()) {
        const TokenType token = readNext();
        if (token == EndElement) {
            if (open == element) {
                break;
            }
            open = open->getXMLNodeParent();
            continue;
        }
        if (token == Characters) {
            readText(open);
        }
        if (token == StartElement) {
            QXmlStreamAttributes attributes = this->attributes();
            defaulted += vlm::defaultedSize(attributes);
            if (defaulted > vlm::kMaxDefaulted) {
                raiseError();
                break;
            }
            open = nodeOfStartTag(*this, attributes, open, shared);
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
    // A copy of its own: text().toString() may share the reader's buffer, with room for much more.
    QString content(text().data(), int(text().size()));
    vlm::NodeView::takeText(*node, content);
}
