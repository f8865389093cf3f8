#include "core/VLMC_XMLWriter.h"

#include "core/NodeView_p.h"
#include "core/ReplaceFile_p.h"
#include "core/TextKind_p.h"
#include "core/VLMG_Debug.h"
#include "core/XmlText_p.h"

#include <QtCore/QBuffer>
#include <QtCore/QVector>

namespace
{
// More than any settings document comes to, and little enough to be held in memory. Indentation
// lets a document grow with the square of its depth: without a bound a file of 175 KB, read and
// saved again, takes all the memory there is.
const qint64 kMaxDocumentBytes = qint64(256) * 1024 * 1024;

// A document on its way to a file.
class DocumentBuffer : public QBuffer
{
public:
    DocumentBuffer() : m_room(kMaxDocumentBytes) { open(QIODevice::WriteOnly); }

    bool isTooLarge() const { return m_room < 0; }

protected:
    qint64 writeData(const char *data, qint64 bytes) override
    {
        m_room -= bytes;
        return isTooLarge() ? -1 : QBuffer::writeData(data, bytes);
    }

private:
    qint64 m_room;
};

// An element whose start tag is written and whose end tag is not.
struct OpenElement {
    VLMC_XMLNode *node;
    int nextChild;
};

// The stream writer puts the name of a namespace into its declaration without escaping it.
QString namespaceText(const QString &name)
{
    QString text = vlm::xmlText(name);
    text.replace(QLatin1Char('&'), QLatin1String("&amp;"));
    text.replace(QLatin1Char('<'), QLatin1String("&lt;"));
    text.replace(QLatin1Char('"'), QLatin1String("&quot;"));
    return text;
}

void writeAttribute(QXmlStreamWriter &writer, const QXmlStreamAttribute &attribute)
{
    const QString value = vlm::xmlText(attribute.value().toString());
    if (attribute.namespaceUri().isEmpty()) {
        writer.writeAttribute(vlm::xmlText(attribute.qualifiedName().toString()), value);
    } else {
        writer.writeAttribute(namespaceText(attribute.namespaceUri().toString()),
                              vlm::xmlText(attribute.name().toString()), value);
    }
}

void writeStart(QXmlStreamWriter &writer, VLMC_XMLNode &node)
{
    writer.writeStartElement(vlm::xmlText(node.getName()));
    const QXmlStreamAttributes &attributes = vlm::NodeView::attributes(node);
    for (const QXmlStreamAttribute &attribute : attributes) {
        writeAttribute(writer, attribute);
    }
    if (node.getText().isEmpty()) {
        return;
    }
    if (node.getTextType() == vlm::PlainText) {
        writer.writeCharacters(vlm::xmlText(node.getText()));
    } else if (node.getTextType() == vlm::CDataText) {
        writer.writeCDATA(vlm::xmlText(node.getText()));
    }
}

// Ends early when the buffer, if there is one, has no more room.
bool writeElements(QXmlStreamWriter &writer, VLMC_XMLNode *node, const DocumentBuffer *buffer)
{
    QVector<OpenElement> open;
    VLMC_XMLNode *next = node;
    for (;;) {
        if (!next) {
            // The text names the reader; log readers know it so.
            VLMG_DebugPrint(VLMG_LogError, "[VLMC_XMLReader::writeXMLNode] pc_Node NULL !!!.");
            return false;
        }
        if (buffer && buffer->isTooLarge()) {
            return false;
        }
        writeStart(writer, *next);
        open.append({next, 0});
        while (open.last().nextChild == vlm::NodeView::children(*open.last().node).size()) {
            writer.writeEndElement();
            open.removeLast();
            if (open.isEmpty()) {
                return true;
            }
        }
        OpenElement &parent = open.last();
        next = vlm::NodeView::children(*parent.node).at(parent.nextChild++);
    }
}
} // namespace

VLMC_XMLWriter::VLMC_XMLWriter() { setAutoFormatting(true); }

bool VLMC_XMLWriter::write(QString &path, VLMC_XMLNode *root)
{
    if (!root) {
        return false;
    }
    vlm::ReplaceFile file;
    if (!file.open(path)) {
        VLMG_DebugPrint(VLMG_LogWarning, "VLMC_XMLWriter::write file open error!");
        return false;
    }
    DocumentBuffer document;
    setDevice(&document);
    writeStartDocument();
    const bool whole = writeElements(*this, root, &document);
    if (!document.isTooLarge()) {
        writeEndDocument();
    }
    if (document.isTooLarge() || !file.commit(document.data())) {
        VLMG_DebugPrint(VLMG_LogWarning, "VLMC_XMLWriter::write file write error!");
        return false;
    }
    return whole;
}

bool VLMC_XMLWriter::write(QIODevice &device, VLMC_XMLNode *root)
{
    if (!root) {
        return false;
    }
    setDevice(&device);
    writeStartDocument();
    const bool written = writeXMLNode(root);
    writeEndDocument();
    return written;
}

bool VLMC_XMLWriter::writeXMLNode(VLMC_XMLNode *node)
{
    return writeElements(*this, node, nullptr);
}
