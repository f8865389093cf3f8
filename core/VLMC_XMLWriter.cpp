#include "core/VLMC_XMLWriter.h"

#include "core/NodeCodes_p.h"
#include "core/NodeView_p.h"
#include "core/VLMG_Debug.h"
#include "files/DocumentSink_p.h"
#include "files/ReplaceFile_p.h"
#include "text/XmlText_p.h"

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>
#include <QtCore/QVector>

namespace
{
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

// Ends early when the sink, if there is one, has no more room.
bool writeElements(QXmlStreamWriter &writer, VLMC_XMLNode *node, const vlm::DocumentSink *sink)
{
    QVector<OpenElement> open;
    VLMC_XMLNode *next = node;
    for (;;) {
        if (!next) {
            // The text names the reader; log readers know it that way.
            VLMG_DebugPrint(VLMG_LogError, "[VLMC_XMLReader::writeXMLNode] pc_Node NULL !!!.");
            return false;
        }
        if (sink && sink->isTooLarge()) {
            return false;
        }
        writeStart(writer, *next);
        open.append({next, 0});
        while (open.last().nextChild == vlm::NodeView::children(*open.last().node).size()) {
            writer.writeEndElement();
            open.pop_back();
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
    vlm::DocumentSink sink;
    setDevice(&sink);
    writeStartDocument();
    const bool whole = writeElements(*this, root, &sink);
    if (!sink.isTooLarge()) {
        writeEndDocument();
    }
    const bool replaced = !sink.isTooLarge() && file.commit(sink.document());
    if (file.hasKept()) {
        VLMG_DebugPrint(VLMG_LogWarning, "VLMC_XMLWriter::write file not read whole, copy kept!");
    }
    if (!replaced) {
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
