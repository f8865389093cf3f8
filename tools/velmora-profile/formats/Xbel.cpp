#include "tools/velmora-profile/formats/Xbel.h"

#include "tools/velmora-profile/formats/BookmarkTree.h"
#include "tools/velmora-profile/output/Text.h"

#include <QtCore/QXmlStreamReader>
#include <QtCore/QXmlStreamWriter>

#include <initializer_list>

namespace
{
using profile::BookmarkImport;
using profile::BookmarkRecord;
using profile::BookmarkTree;
using profile::folded;
using profile::text;

bool isAny(const QString &name, std::initializer_list<const char *> names)
{
    for (const char *const one : names) {
        if (name == text(one)) {
            return true;
        }
    }
    return false;
}

QString valueOf(const QXmlStreamReader &xml, const char *attribute)
{
    return folded(xml.attributes().value(text(attribute)).toString());
}

// The attributes that a profile has no field for.
QStringList lostAttributes(const QXmlStreamReader &xml)
{
    QStringList lost;
    const QXmlStreamAttributes attributes = xml.attributes();
    for (const QXmlStreamAttribute &attribute : attributes) {
        const QString name = attribute.qualifiedName().toString();
        if (name != text("href") && !attribute.value().isEmpty()) {
            lost.append(name);
        }
    }
    return lost;
}

// Follows the tags one by one, so that depth costs no stack. Elements inside of others than XBEL's
// own are passed over with them: programs keep what they like in an <info>.
class XbelReader
{
public:
    explicit XbelReader(const QString &document)
        : m_xml(document), m_tree("XBEL"), m_inTitle(false), m_passedOver(0)
    {
        m_xml.setNamespaceProcessing(false);
    }

    BookmarkImport read()
    {
        while (!m_xml.atEnd() && !m_tree.isRefused()) {
            take(m_xml.readNext());
        }
        if (m_xml.hasError()) {
            m_tree.refuse(text("it is damaged in line %1: %2")
                              .arg(m_xml.lineNumber())
                              .arg(m_xml.errorString()));
        }
        return m_tree.found();
    }

private:
    // What is being read: the document, folders in it, and at most one bookmark in those. The
    // title comes first in each.
    struct Entry {
        QString element;
        QString title;
        QString url;
        QStringList lost;
    };

    void take(QXmlStreamReader::TokenType token)
    {
        if (token == QXmlStreamReader::StartElement) {
            start(m_xml.qualifiedName().toString());
        } else if (token == QXmlStreamReader::EndElement) {
            end();
        } else if (token == QXmlStreamReader::Characters) {
            takeText(m_xml.text().toString());
        } else if (token == QXmlStreamReader::DTD) {
            loseOtherFiles();
        } else if (token == QXmlStreamReader::EntityReference && m_passedOver == 0) {
            m_tree.lose(m_xml.name().toString(), text("nothing says what this entity stands for"));
        }
    }

    void loseOtherFiles()
    {
        const QXmlStreamEntityDeclarations entities = m_xml.entityDeclarations();
        for (const QXmlStreamEntityDeclaration &entity : entities) {
            if (!entity.systemId().isEmpty()) {
                m_tree.lose(entity.name().toString(),
                            text("this entity stands for another file, which is not read"));
            }
        }
    }

    void start(const QString &name)
    {
        if (m_passedOver > 0) {
            ++m_passedOver;
        } else if (!m_inTitle && (m_entries.isEmpty() || isAny(name, {"folder", "bookmark"}))) {
            open(name);
        } else if (!m_inTitle && name == text("title") && m_entries.last().title.isEmpty()) {
            m_title.clear();
            m_inTitle = true;
        } else {
            passOver(name);
        }
    }

    void open(const QString &name)
    {
        m_entries.append({name, QString(), valueOf(m_xml, "href"), QStringList()});
        // Those of the document tell of the format.
        if (m_entries.size() > 1) {
            m_entries.last().lost = lostAttributes(m_xml);
        }
        if (name == text("folder")) {
            m_tree.openFolder(QString());
        }
    }

    void passOver(const QString &name)
    {
        m_passedOver = 1;
        if (isAny(name, {"separator", "alias"})) {
            m_tree.lose(text(name == text("alias") ? "an alias" : "a separator"),
                        text("there is no place for it"));
        } else {
            loseElement(name == text("desc") ? text("description") : name);
        }
    }

    void loseElement(const QString &name)
    {
        QStringList *const lost = &m_entries.last().lost;
        if (!lost->contains(name)) {
            lost->append(name);
        }
    }

    void takeText(const QString &characters)
    {
        if (m_passedOver > 0) {
            return;
        }
        if (m_inTitle) {
            m_title += characters;
        } else if (!folded(characters).isEmpty()) {
            m_tree.lose(folded(characters), text("it is a text outside of all titles"));
        }
    }

    void end()
    {
        if (m_passedOver > 0) {
            --m_passedOver;
        } else if (m_inTitle) {
            m_inTitle = false;
            nameEntry(folded(m_title));
        } else {
            close(m_entries.takeLast());
        }
    }

    void nameEntry(const QString &title)
    {
        m_entries.last().title = title;
        if (m_entries.last().element == text("folder")) {
            m_tree.nameFolder(title);
        }
    }

    void close(const Entry &entry)
    {
        if (entry.element == text("bookmark")) {
            m_tree.add(entry.title, entry.url, entry.lost);
            return;
        }
        const bool isFolder = entry.element == text("folder");
        const QString unnamed = text(isFolder ? "a folder" : "the file");
        m_tree.loseFields(entry.title.isEmpty() ? unnamed : entry.title, entry.lost);
        if (isFolder) {
            m_tree.closeFolder();
        }
    }

    QXmlStreamReader m_xml;
    BookmarkTree m_tree;
    QList<Entry> m_entries;
    QString m_title;
    bool m_inTitle;
    int m_passedOver; // open elements that are passed over
};
} // namespace

bool profile::looksLikeXbel(const QString &document)
{
    QXmlStreamReader xml(document);
    xml.setNamespaceProcessing(false);
    return xml.readNextStartElement() && xml.qualifiedName() == text("xbel");
}

profile::BookmarkImport profile::readXbel(const QString &document)
{
    return XbelReader(document).read();
}

QByteArray profile::writeXbel(const QList<BookmarkRecord> &bookmarks, QList<Loss> *losses)
{
    QByteArray content;
    QXmlStreamWriter xml(&content);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeDTD(
        text("<!DOCTYPE xbel PUBLIC \"+//IDN python.org//DTD XML Bookmark Exchange Language "
             "1.0//EN//XML\" \"http://pyxml.sourceforge.net/topics/dtds/xbel-1.0.dtd\">"));
    xml.writeStartElement(text("xbel"));
    xml.writeAttribute(text("version"), text("1.0"));
    for (const BookmarkRecord &bookmark : bookmarks) {
        loseUnwritable(bookmark, losses);
        xml.writeStartElement(text("bookmark"));
        xml.writeAttribute(text("href"), writable(bookmark.url));
        xml.writeTextElement(text("title"), writable(bookmark.title));
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    return content;
}
