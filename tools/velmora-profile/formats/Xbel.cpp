#include "tools/velmora-profile/formats/Bookmarks.h"

#include <QtCore/QXmlStreamReader>
#include <QtCore/QXmlStreamWriter>

namespace
{
using profile::BookmarkImport;
using profile::BookmarkRecord;
using profile::text;

// Follows the tags one by one, so that depth costs no stack.
class XbelReader
{
public:
    explicit XbelReader(const QByteArray &content) : m_xml(content)
    {
        m_import.format = text("XBEL");
    }

    BookmarkImport read()
    {
        while (!m_xml.atEnd()) {
            m_xml.readNext();
            if (m_xml.isStartElement()) {
                start(m_xml.name().toString());
            } else if (m_xml.isEndElement()) {
                end(m_xml.name().toString());
            } else if (m_xml.isCharacters() && m_open.endsWith(text("title"))) {
                m_title += m_xml.text().toString();
            }
        }
        if (m_xml.hasError()) {
            m_import.error = text("it is damaged in line %1: %2")
                                 .arg(m_xml.lineNumber())
                                 .arg(m_xml.errorString());
        }
        return m_import;
    }

private:
    void start(const QString &name)
    {
        if (name == text("bookmark")) {
            m_bookmark = BookmarkRecord();
            m_bookmark.url = m_xml.attributes().value(text("href")).toString().trimmed();
            m_lost.clear();
            lose(text("added"));
            lose(text("modified"));
            lose(text("visited"));
        } else if (name == text("folder")) {
            m_folders.append(QString());
        } else if (name == text("title")) {
            m_title.clear();
        } else if (name == text("separator") || name == text("alias")) {
            m_import.losses.append({text("a ") + name, text("there is no place for it")});
        } else if (name == text("desc") || name == text("info")) {
            m_lost.append(name == text("desc") ? text("description") : text("info"));
        }
        m_open.append(name);
    }

    void lose(const QString &attribute)
    {
        if (!m_xml.attributes().value(attribute).isEmpty()) {
            m_lost.append(text("date ") + attribute);
        }
    }

    void end(const QString &name)
    {
        m_open.removeLast();
        if (name == text("title") && m_open.endsWith(text("bookmark"))) {
            m_bookmark.title = m_title.simplified();
        } else if (name == text("title") && m_open.endsWith(text("folder"))) {
            m_folders.last() = m_title.simplified();
        } else if (name == text("folder")) {
            m_folders.removeLast();
        } else if (name == text("bookmark")) {
            add();
        }
    }

    void add()
    {
        m_bookmark.folders = m_folders;
        m_bookmark.folders.removeAll(QString());
        const QString entry = profile::nameOf(m_bookmark);
        if (m_bookmark.url.isEmpty()) {
            m_import.losses.append({entry, text("it has no address")});
            return;
        }
        m_import.bookmarks.append(m_bookmark);
        if (!m_lost.isEmpty()) {
            m_import.losses.append({entry, text("its ") + m_lost.join(text(", "))});
        }
        m_lost.clear();
    }

    QXmlStreamReader m_xml;
    BookmarkImport m_import;
    BookmarkRecord m_bookmark;
    QStringList m_open;
    QStringList m_folders;
    QStringList m_lost;
    QString m_title;
};
} // namespace

bool profile::looksLikeXbel(const QByteArray &content) { return content.contains("<xbel"); }

profile::BookmarkImport profile::readXbel(const QByteArray &content)
{
    return XbelReader(content).read();
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
