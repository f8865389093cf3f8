#include "tools/velmora-profile/Document.h"

#include "core/VLMC_XMLReader.h"
#include "core/VLMC_XMLWriter.h"
#include "files/DocumentSink_p.h"
#include "files/DocumentSource_p.h"
#include "tools/velmora-profile/Console.h"

#include <QtCore/QBuffer>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

namespace
{
using namespace profile;

const DocumentType kTypes[] = {
    {CommonPreferences, "repostry.xml", "repostry_common", nullptr},
    {UserPreferences, "repostry_private.xml", "repostry", nullptr},
    {Bookmarks, "bookmark.xml", "bookmarks", "bookmark"},
    {History, "visit.xml", "history", "pageInfo"},
    {Credentials, "authinfo.xml", "authentication", "authInfo"},
    {Fonts, "fontlist.xml", "fontlist", "font"},
    {CookieDocument, "cookie.xml", "cookie", "webSiteInfo"},
};

// The library's bound for the attributes that a document declares for elements without them.
const int kMaxDefaulted = 4096;

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

bool isUtf8(const QXmlStreamReader &reader)
{
    const QString encoding = reader.documentEncoding().toString();
    return encoding.isEmpty() || encoding.compare(text("UTF-8"), Qt::CaseInsensitive) == 0;
}

// Characters that a start tag has not from itself but from a declaration.
int defaultedIn(const QXmlStreamReader &reader)
{
    int defaulted = 0;
    const QXmlStreamAttributes attributes = reader.attributes();
    for (const QXmlStreamAttribute &attribute : attributes) {
        if (attribute.isDefault()) {
            defaulted += int(attribute.qualifiedName().size() + attribute.value().size());
        }
    }
    return defaulted;
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
            // The encoding is known at this token only.
            utf8 = isUtf8(reader);
        } else if (token == QXmlStreamReader::DTD) {
            source.declare(reader.entityDeclarations(), utf8);
        } else if (token == QXmlStreamReader::StartElement) {
            source.endProlog();
            // The library reads the root's attributes whatever they come to.
            defaulted += depth++ > 0 ? defaultedIn(reader) : 0;
            if (defaulted > kMaxDefaulted) {
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

QList<profile::DocumentType> profile::documentTypes()
{
    QList<DocumentType> types;
    for (const DocumentType &type : kTypes) {
        types.append(type);
    }
    return types;
}

profile::DocumentType profile::documentType(DocumentKind kind) { return kTypes[kind]; }

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
}

const profile::DocumentType &profile::Document::type() const { return m_type; }

QString profile::Document::path() const { return m_path; }

profile::Document::State profile::Document::state() const { return m_state; }

const profile::Damage &profile::Document::damage() const { return m_damage; }

QByteArray profile::Document::content() const { return m_content; }

QString profile::Document::rootName() const { return m_root ? m_root->getName() : QString(); }

QList<VLMC_XMLNode *> profile::Document::children() const
{
    return m_root ? m_root->getXMLNodeChildren() : QList<VLMC_XMLNode *>();
}

QList<VLMC_XMLNode *> profile::Document::entries() const
{
    QList<VLMC_XMLNode *> found;
    const QList<VLMC_XMLNode *> all = children();
    for (VLMC_XMLNode *const child : all) {
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

VLMC_XMLNode *profile::fieldOf(VLMC_XMLNode *entry, const char *name)
{
    QString field = text(name);
    return entry ? entry->getXMLNodeChildByName(field) : nullptr;
}

QString profile::fieldText(VLMC_XMLNode *entry, const char *name)
{
    VLMC_XMLNode *const field = fieldOf(entry, name);
    return field ? field->getText() : QString();
}

QString profile::idOf(VLMC_XMLNode *entry)
{
    return entry->getAttribute().value(QLatin1String("id")).toString();
}

// Names and passwords are encoded, and a cookie's value is a session.
bool profile::isLabel(VLMC_XMLNode *field)
{
    const QString name = field->getName();
    return field->getTextType() == 0 && !field->getText().isEmpty() && name != text("user")
           && name != text("passwd") && name != text("contents");
}

int profile::utf8Bytes(const QString &text) { return int(text.toUtf8().size()); }

// A path without a name comes from an entry that was added without a thumbnail: a load puts the
// folder in front of nothing, and the next save leaves the folder's name.
QString profile::thumbnailName(const QString &path) { return path.section(QLatin1Char('/'), -1); }

int profile::failUnreadable(const QString &path)
{
    const QFileInfo file(path);
    return fail(text(file.exists() && !file.isFile()
                         ? "%1 cannot be read: it is no file; move it out of the way"
                         : "%1 cannot be read; see to its permissions")
                    .arg(file.fileName()));
}

int profile::warnOfDamage(const Document &document)
{
    if (document.state() == Document::Unreadable) {
        return failUnreadable(document.path());
    }
    if (document.state() == Document::Damaged) {
        warn(text("%1 is %2; run 'velmora-profile repair'")
                 .arg(text(document.type().fileName), damageText(document.damage())));
    }
    return Done;
}

int profile::refuseToRead(const Document &document)
{
    const QString name = text(document.type().fileName);
    if (document.state() == Document::Unreadable) {
        return fail(
            text("%1 cannot be read; nothing was changed, see to its permissions").arg(name));
    }
    if (document.state() == Document::Damaged) {
        return fail(text("%1 is %2; nothing was changed, run 'velmora-profile repair' first")
                        .arg(name, damageText(document.damage())));
    }
    return Done;
}

int profile::refuseToRewrite(const Document &document)
{
    const QString name = text(document.type().fileName);
    if (refuseToRead(document) != Done) {
        return Failed;
    }
    if (document.type().entryName && document.children().size() > kMaxEntries) {
        return fail(text("%1 holds %2, %3 at most can be written; nothing was changed, run "
                         "'velmora-profile repair' first")
                        .arg(name, counted(document.children().size(), "entry", "entries"))
                        .arg(kMaxEntries));
    }
    if (document.state() != Document::Missing && !QFileInfo(document.path()).isWritable()) {
        return fail(
            text("%1 cannot be written to; nothing was changed, see to its permissions").arg(name));
    }
    return Done;
}

void profile::nameRoot(VLMC_XMLSetting *store, const DocumentType &type)
{
    QString name = text(type.rootName);
    QXmlStreamAttributes attributes;
    attributes.append(text("docInfo"), text("1.0"));
    store->getXMLRootNode()->setName(name);
    store->getXMLRootNode()->setAttribute(attributes);
}

QByteArray profile::contentOf(VLMC_XMLSetting *store)
{
    vlm::DocumentSink copy;
    VLMC_XMLWriter writer;
    const bool isWhole = writer.write(copy, store->getXMLRootNode()) && !copy.isTooLarge();
    return isWhole ? copy.document() : QByteArray();
}

bool profile::isSaved(DocumentKind kind, const QByteArray &content)
{
    const Document document(kind, text(kHere));
    if (!content.isEmpty() && document.content() == content) {
        return true;
    }
    warn(text("%1 could not be written as it should be; look at the space and the permissions of "
              "the folder")
             .arg(text(document.type().fileName)));
    return false;
}
