#include "tools/velmora-profile/profile/Document.h"

#include "core/VLMC_XMLReader.h"
#include "files/DocumentSource_p.h"
#include "tools/velmora-profile/output/Text.h"

#include <QtCore/QBuffer>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

namespace
{
using namespace profile;

// What one pass over the tokens tells: the error, and how much was whole before it.
struct Outline {
    QXmlStreamReader::Error error;
    Damage damage;
    int children; // of the root, whole
    int entries;  // those that count: children of the entry's name, or the children's children
};

void count(const QXmlStreamReader &reader, const DocumentType &type, int depth, Outline *outline)
{
    if (depth == 1) {
        ++outline->children;
    }
    const bool isEntry =
        type.entryName ? depth == 1 && reader.name() == QLatin1String(type.entryName) : depth == 2;
    if (isEntry) {
        ++outline->entries;
    }
}

// Reads with the library's bounds: a few declared entities can come to more than memory holds, and
// what the library does not read is not there for the browser either.
void readOutline(QXmlStreamReader &reader, vlm::DocumentSource &source, const DocumentType &type,
                 Outline *outline)
{
    bool utf8 = true;
    int depth = 0;
    int defaulted = 0;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::StartDocument) {
            // The encoding is known only from this token on.
            utf8 = vlm::isUtf8(reader);
        } else if (token == QXmlStreamReader::DTD) {
            source.declare(reader.entityDeclarations(), utf8);
        } else if (token == QXmlStreamReader::StartElement) {
            source.endProlog();
            // The library reads the root's attributes whatever they come to.
            defaulted += depth++ > 0 ? vlm::defaultedSize(reader.attributes()) : 0;
            if (defaulted > vlm::kMaxDefaulted) {
                reader.raiseError(text("Too many attributes out of declarations."));
            }
        } else if (token == QXmlStreamReader::EndElement) {
            count(reader, type, --depth, outline);
        }
    }
}

Outline outlineOf(QByteArray content, const DocumentType &type)
{
    Outline outline = {QXmlStreamReader::NoError, {0, 0, QString(), 0}, 0, 0};
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    vlm::DocumentSource source(&buffer);
    QXmlStreamReader reader(&source);
    readOutline(reader, source, type, &outline);
    outline.error = reader.error();
    outline.damage.line = reader.lineNumber();
    outline.damage.column = reader.columnNumber();
    outline.damage.reason = reader.errorString();
    outline.damage.entriesBefore = outline.entries;
    return outline;
}

VLMC_XMLNode *treeOf(QByteArray content)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    VLMC_XMLReader reader;
    return reader.read(buffer);
}

// A damaged document's last child is the one that the damage is in.
void dropBehind(VLMC_XMLNode *root, int whole)
{
    while (root && root->getXMLNodeChildren().size() > whole) {
        delete root->getXMLNodeChildren().last();
    }
}
} // namespace

profile::Document::Document(DocumentKind kind, const QString &directory)
    : Document(documentType(kind), directory + text(documentType(kind).fileName))
{
}

profile::Document::Document(const DocumentType &type, const QString &path)
    : m_type(type), m_path(path), m_state(Missing), m_damage{0, 0, QString(), 0}
{
    read();
}

profile::Document::Document(const DocumentType &type, const QString &path,
                            const QByteArray &content)
    : m_type(type), m_path(path), m_state(Missing), m_damage{0, 0, QString(), 0}, m_content(content)
{
    parse();
}

void profile::Document::read()
{
    QFile file(m_path);
    if (!file.exists()) {
        return;
    }
    if (!QFileInfo(m_path).isFile() || !file.open(QIODevice::ReadOnly)) {
        m_state = Unreadable;
        return;
    }
    m_content = file.readAll();
    parse();
}

void profile::Document::parse()
{
    if (m_content.trimmed().isEmpty()) {
        m_state = Empty;
        return;
    }
    const Outline outline = outlineOf(m_content, m_type);
    m_root.reset(treeOf(m_content));
    m_state = outline.error == QXmlStreamReader::NoError ? Whole : Damaged;
    m_damage = outline.damage;
    if (m_state == Damaged && m_type.entryName) {
        dropBehind(m_root.data(), outline.children);
    }
    if (m_root) {
        m_children = m_root->getXMLNodeChildren();
    }
}

const profile::DocumentType &profile::Document::type() const { return m_type; }

QString profile::Document::path() const { return m_path; }

profile::Document::State profile::Document::state() const { return m_state; }

const profile::Damage &profile::Document::damage() const { return m_damage; }

QByteArray profile::Document::content() const { return m_content; }

QString profile::Document::rootName() const { return m_root ? m_root->getName() : QString(); }

const QList<VLMC_XMLNode *> &profile::Document::children() const { return m_children; }

QList<VLMC_XMLNode *> profile::Document::entries() const
{
    QList<VLMC_XMLNode *> found;
    for (VLMC_XMLNode *const child : m_children) {
        if (!m_type.entryName) {
            found += child->getXMLNodeChildren();
        } else if (child->getName() == text(m_type.entryName)) {
            found.append(child);
        }
    }
    return m_state == Damaged ? found.mid(0, m_damage.entriesBefore) : found;
}

QString profile::stateName(Document::State state)
{
    switch (state) {
    case Document::Missing:
        return text("missing");
    case Document::Unreadable:
        return text("unreadable");
    case Document::Empty:
        return text("empty");
    case Document::Damaged:
        return text("damaged");
    case Document::Whole:
        break;
    }
    return text("whole");
}

QString profile::damageText(const Damage &damage)
{
    return text("damaged at line %1, column %2: %3 (%4 before it)")
        .arg(damage.line)
        .arg(damage.column)
        .arg(damage.reason.trimmed(), counted(damage.entriesBefore, "entry", "entries"));
}
