#include "tools/velmora-profile/formats/Bookmarks.h"

#include <QtCore/QStringList>

#include <libxml/HTMLparser.h>

namespace
{
using profile::BookmarkImport;
using profile::BookmarkRecord;
using profile::Loss;

QString fromXml(const xmlChar *text)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(text));
}

bool isElement(const xmlNode *node, const char *name)
{
    return node->type == XML_ELEMENT_NODE
           && xmlStrcasecmp(node->name, reinterpret_cast<const xmlChar *>(name)) == 0;
}

QString attributeOf(xmlNode *node, const char *name)
{
    xmlChar *const value = xmlGetProp(node, reinterpret_cast<const xmlChar *>(name));
    const QString text = fromXml(value);
    xmlFree(value);
    return text;
}

QString contentOf(xmlNode *node)
{
    xmlChar *const content = xmlNodeGetContent(node);
    const QString text = fromXml(content).simplified();
    xmlFree(content);
    return text;
}

// Walks the elements in document order; depth costs no stack. A sloppy page leaves list items open,
// so folders are told by where lists begin and end and not by what stands in what.
class Page
{
public:
    explicit Page(BookmarkImport *import) : m_import(import) {}

    void walk(xmlNode *root)
    {
        xmlNode *node = root;
        while (node) {
            enter(node);
            if (node->children && node->type == XML_ELEMENT_NODE) {
                node = node->children;
                continue;
            }
            node = next(node, root);
        }
    }

private:
    xmlNode *next(xmlNode *node, const xmlNode *root)
    {
        while (node) {
            leave(node);
            if (node == root) {
                return nullptr;
            }
            if (node->next) {
                return node->next;
            }
            node = node->parent;
        }
        return nullptr;
    }

    void enter(xmlNode *node)
    {
        if (isElement(node, "h3")) {
            m_heading = contentOf(node);
        } else if (isElement(node, "dl")) {
            m_folders.append(m_heading);
            m_heading.clear();
        } else if (isElement(node, "a")) {
            addLink(node);
        } else if (isElement(node, "dd")) {
            loseDescription(node);
        } else if (isElement(node, "hr")) {
            m_import->losses.append({profile::text("a separator"), profile::text("separators")});
        }
    }

    void leave(const xmlNode *node)
    {
        if (isElement(node, "dl") && !m_folders.isEmpty()) {
            m_folders.removeLast();
        }
    }

    void addLink(xmlNode *node)
    {
        BookmarkRecord record = {contentOf(node), attributeOf(node, "href").trimmed(), m_folders};
        record.folders.removeAll(QString());
        const QString entry = profile::nameOf(record);
        if (record.url.isEmpty()) {
            m_import->losses.append({entry, profile::text("it has no address")});
            return;
        }
        const QStringList lost = lostAttributes(node);
        if (!lost.isEmpty()) {
            m_import->losses.append(
                {entry, profile::text("its ") + lost.join(profile::text(", "))});
        }
        m_import->bookmarks.append(record);
    }

    static QStringList lostAttributes(const xmlNode *node)
    {
        QStringList names;
        for (const xmlAttr *attribute = node->properties; attribute; attribute = attribute->next) {
            const QString name = fromXml(attribute->name).toLower();
            if (name != profile::text("href")) {
                names.append(name);
            }
        }
        return names;
    }

    void loseDescription(xmlNode *node)
    {
        // An open item swallows the list behind it; its own text is what stands first in it.
        const QString description = node->children && node->children->type == XML_TEXT_NODE
                                        ? fromXml(node->children->content).simplified()
                                        : QString();
        if (!description.isEmpty() && !m_import->bookmarks.isEmpty()) {
            m_import->losses.append(
                {profile::nameOf(m_import->bookmarks.last()), profile::text("its description")});
        }
    }

    BookmarkImport *m_import;
    QString m_heading;
    QStringList m_folders;
};

// A page that names no encoding is UTF-8, as all exporters write it, unless it cannot be.
const char *encodingOf(const QByteArray &content)
{
    const bool named = content.left(4096).toLower().contains("charset");
    const bool isUtf8 = QString::fromUtf8(content).toUtf8() == content;
    return !named && isUtf8 ? "UTF-8" : nullptr;
}

// List items that are left open stand one in the other, so a long list is a deep one.
htmlDocPtr parsed(const QByteArray &content)
{
    const char *const encoding = encodingOf(content);
    htmlParserCtxtPtr const parser = htmlCreatePushParserCtxt(
        nullptr, nullptr, nullptr, 0, nullptr,
        encoding ? xmlParseCharEncoding(encoding) : XML_CHAR_ENCODING_NONE);
    if (!parser) {
        return nullptr;
    }
    htmlCtxtUseOptions(parser, HTML_PARSE_RECOVER | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING
                                   | HTML_PARSE_NONET);
    parser->options |= XML_PARSE_HUGE;
    htmlParseChunk(parser, content.constData(), int(content.size()), 1);
    htmlDocPtr const document = parser->myDoc;
    htmlFreeParserCtxt(parser);
    return document;
}
} // namespace

bool profile::looksLikeNetscape(const QByteArray &content)
{
    const QByteArray lower = content.toLower();
    return lower.contains("netscape-bookmark-file")
           || (lower.contains("<dl") && lower.contains("<a ") && lower.contains("href"));
}

profile::BookmarkImport profile::readNetscape(const QByteArray &content)
{
    BookmarkImport import;
    import.format = text("Netscape HTML");
    htmlDocPtr const document = parsed(content);
    if (!document) {
        import.error = text("it cannot be read as HTML");
        return import;
    }
    Page(&import).walk(xmlDocGetRootElement(document));
    xmlFreeDoc(document);
    return import;
}

QByteArray profile::writeNetscapeBookmarks(const QList<BookmarkRecord> &bookmarks,
                                           QList<Loss> *losses)
{
    QByteArray page = "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n"
                      "<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=UTF-8\">\n"
                      "<TITLE>Bookmarks</TITLE>\n<H1>Bookmarks</H1>\n<DL><p>\n";
    for (const BookmarkRecord &bookmark : bookmarks) {
        loseUnwritable(bookmark, losses);
        page += "    <DT><A HREF=\"" + writable(bookmark.url).toHtmlEscaped().toUtf8() + "\">"
                + writable(bookmark.title).toHtmlEscaped().toUtf8() + "</A>\n";
    }
    return page + "</DL><p>\n";
}
