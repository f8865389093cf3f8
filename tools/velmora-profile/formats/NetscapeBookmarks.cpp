#include "tools/velmora-profile/formats/NetscapeBookmarks.h"

#include "tools/velmora-profile/formats/BookmarkTree.h"
#include "tools/velmora-profile/formats/Encoding.h"
#include "tools/velmora-profile/output/Text.h"

#include <QtCore/QStringList>

#include <cstring>
#include <libxml/HTMLparser.h>

namespace
{
using profile::BookmarkImport;
using profile::BookmarkRecord;
using profile::BookmarkTree;
using profile::Decoded;
using profile::folded;
using profile::Loss;
using profile::text;

QByteArray fromXml(const xmlChar *text) { return QByteArray(reinterpret_cast<const char *>(text)); }

// The attributes of a tag, name by name with their values, up to a null; null without any.
QString addressOf(const xmlChar *const *attributes)
{
    for (; attributes && attributes[0]; attributes += 2) {
        if (fromXml(attributes[0]) == "href") {
            return folded(QString::fromUtf8(fromXml(attributes[1])));
        }
    }
    return QString();
}

// Those that a profile has no field for. One without a value says what it says by being there.
QStringList lostAttributes(const xmlChar *const *attributes)
{
    QStringList lost;
    for (; attributes && attributes[0]; attributes += 2) {
        const QByteArray name = fromXml(attributes[0]);
        if (name != "href" && (!attributes[1] || attributes[1][0] != 0)) {
            lost.append(QString::fromUtf8(name));
        }
    }
    return lost;
}

bool isFolderHeading(const QByteArray &tag)
{
    return tag.size() == 2 && tag.at(0) == 'h' && tag.at(1) >= '2' && tag.at(1) <= '6';
}

// What tells of the page and not of a bookmark.
bool isUnread(const QByteArray &tag)
{
    return tag == "title" || tag == "h1" || tag == "script" || tag == "style";
}

// Follows the tags as the parser finds them, keeping no tree: list items that are left open stand
// one in the other, so a long page is a deep one. Only lists tell where folders begin and end.
class Page
{
public:
    Page()
        : m_tree("Netscape HTML"),
          m_place(Outside),
          m_hasHeading(false),
          m_subject(text("the page"))
    {
    }

    void start(const QByteArray &tag, const xmlChar *const *attributes)
    {
        if (tag == "img" && (m_place == Link || m_place == Heading)) {
            loseImage();
        } else if (tag == "br") {
            m_text += '\n';
        } else if (tag == "dl") {
            finish();
            openList();
        } else if (tag == "dd") {
            enter(Description, tag);
        } else if (tag == "hr" || tag == "dt" || tag == "a" || isFolderHeading(tag)) {
            finish();
            loseHeading();
            startEntry(tag, attributes);
        } else if (isUnread(tag)) {
            enter(Unread, tag);
        }
    }

    void end(const QByteArray &tag)
    {
        if (tag == "dl") {
            finish();
            loseHeading();
            m_tree.closeFolder();
        } else if (tag == m_tag) {
            finish();
        }
    }

    void read(const char *characters, int count) { m_text.append(characters, count); }

    void lose(const QString &entry, const QString &reason) { m_tree.lose(entry, reason); }

    bool isRefused() const { return m_tree.isRefused(); }

    BookmarkImport finished()
    {
        finish();
        loseHeading();
        return m_tree.found();
    }

private:
    enum Place { Outside, Link, Heading, Description, Unread };

    void enter(Place place, const QByteArray &tag)
    {
        finish();
        m_place = place;
        m_tag = tag;
    }

    void startEntry(const QByteArray &tag, const xmlChar *const *attributes)
    {
        if (tag == "hr") {
            m_tree.lose(text("a separator"), text("there is no place for it"));
        } else if (tag != "dt") {
            enter(tag == "a" ? Link : Heading, tag);
            m_lost = lostAttributes(attributes);
            m_address = addressOf(attributes);
        }
    }

    void loseImage()
    {
        if (!m_lost.contains(text("image"))) {
            m_lost.append(text("image"));
        }
    }

    // A folder whose list does not follow is an empty one.
    void loseHeading()
    {
        if (m_hasHeading) {
            openList();
            m_tree.closeFolder();
        }
    }

    void openList()
    {
        if (m_hasHeading) {
            m_tree.openFolder(m_heading);
        } else {
            m_tree.openList();
        }
        m_hasHeading = false;
    }

    // Takes the text since the last tag that means something, as what it is the text of.
    void finish()
    {
        const QString content = folded(QString::fromUtf8(m_text));
        const Place place = m_place;
        m_text.clear();
        m_tag.clear();
        m_place = Outside;
        switch (place) {
        case Link:
            addLink(content);
            break;
        case Heading:
            addHeading(content);
            break;
        case Description:
            loseText(m_subject, content, text("its description"));
            break;
        case Outside:
            loseText(content, content, text("it is a text outside of all bookmarks"));
            break;
        case Unread:
            break;
        }
    }

    void addHeading(const QString &content)
    {
        m_heading = content;
        m_hasHeading = true;
        m_subject = content.isEmpty() ? text("a folder") : content;
        m_tree.loseFields(m_subject, m_lost);
    }

    void addLink(const QString &title)
    {
        m_subject = title.isEmpty() ? m_address : title;
        m_tree.add(title, m_address, m_lost);
    }

    void loseText(const QString &entry, const QString &content, const QString &reason)
    {
        if (!content.trimmed().isEmpty()) {
            m_tree.lose(entry, reason);
        }
    }

    BookmarkTree m_tree;
    Place m_place;
    QByteArray m_tag; // whose end ends the place
    QByteArray m_text;
    QString m_address;  // of the link
    QStringList m_lost; // of the link or heading
    QString m_heading;  // of the list that follows
    bool m_hasHeading;
    QString m_subject; // what a description describes
};

// The parser and what its callbacks get.
struct Reading {
    htmlParserCtxtPtr parser = nullptr;
    Page page;
};

// What the parser drops where a browser would not, and where both drop what somebody wrote. It
// drops no ampersand, whatever follows it.
QString reasonOf(int code, const QByteArray &message)
{
    if (message.startsWith("htmlParseEntityRef")) {
        return QString();
    }
    switch (code) {
    case XML_ERR_INVALID_CHAR:
        return text("a character that no text can hold");
    case XML_ERR_ATTRIBUTE_REDEFINED:
        return text("an attribute that its tag has twice");
    case XML_ERR_NAME_REQUIRED:
        return text("markup that cannot be read");
    case XML_ERR_COMMENT_NOT_FINISHED:
        return text("what follows is in a comment without an end");
    case XML_ERR_ATTRIBUTE_NOT_FINISHED:
        return text("what follows is in a value without an end");
    case XML_ERR_GT_REQUIRED:
        return text("what follows is in a tag without an end");
    default:
        return QString();
    }
}

void stopWhenRefused(Reading *reading)
{
    if (reading->page.isRefused()) {
        xmlStopParser(reading->parser);
    }
}

void onStart(void *context, const xmlChar *name, const xmlChar **attributes)
{
    Reading *const reading = static_cast<Reading *>(context);
    reading->page.start(fromXml(name), attributes);
    stopWhenRefused(reading);
}

void onEnd(void *context, const xmlChar *name)
{
    Reading *const reading = static_cast<Reading *>(context);
    reading->page.end(fromXml(name));
    stopWhenRefused(reading);
}

void onCharacters(void *context, const xmlChar *characters, int count)
{
    static_cast<Reading *>(context)->page.read(reinterpret_cast<const char *>(characters), count);
}

// The library's versions differ in whether the error is constant.
template <typename Error>
void onError(void *context, Error error)
{
    const QString reason = reasonOf(error->code, error->message);
    if (!reason.isEmpty()) {
        static_cast<Reading *>(context)->page.lose(text("line %1").arg(error->line), reason);
    }
}

xmlSAXHandler handler()
{
    xmlSAXHandler callbacks;
    memset(&callbacks, 0, sizeof callbacks);
    callbacks.startElement = onStart;
    callbacks.endElement = onEnd;
    callbacks.characters = onCharacters;
    callbacks.ignorableWhitespace = onCharacters;
    callbacks.serror = onError;
    callbacks.initialized = XML_SAX2_MAGIC;
    return callbacks;
}

// False when there is no memory for a parser.
bool parse(const QByteArray &utf8, Reading *reading)
{
    xmlSAXHandler callbacks = handler();
    reading->parser =
        htmlCreatePushParserCtxt(&callbacks, reading, nullptr, 0, nullptr, XML_CHAR_ENCODING_UTF8);
    if (!reading->parser) {
        return false;
    }
    htmlCtxtUseOptions(reading->parser,
                       HTML_PARSE_RECOVER | HTML_PARSE_IGNORE_ENC | HTML_PARSE_NONET);
    htmlParseChunk(reading->parser, utf8.constData(), int(utf8.size()), 1);
    htmlFreeParserCtxt(reading->parser);
    return true;
}

// The parser passes over a NUL in silence, or takes it for the end.
void loseNuls(QByteArray *page, Page *found)
{
    const int count = int(page->count('\0'));
    if (count > 0) {
        page->replace('\0', "\xEF\xBF\xBD");
        found->lose(text("the page"), text("%1 of its characters are NUL").arg(count));
    }
}

void loseBytes(const Decoded &page, const QByteArray &encoding, bool isGuessed, Page *found)
{
    const QString name = QString::fromUtf8(encoding);
    if (isGuessed && encoding != "utf-8") {
        found->lose(text("the page"), text("it names no encoding and was read as %1").arg(name));
    }
    if (page.replaced > 0) {
        found->lose(text("the page"),
                    text("%1 of its bytes are no %2").arg(page.replaced).arg(name));
    }
}
} // namespace

bool profile::looksLikeNetscape(const QByteArray &content)
{
    // UTF-16 has a zero beside each character of ASCII.
    const QByteArray lower = content.toLower().replace('\0', "");
    return lower.contains("netscape-bookmark-file")
           || (lower.contains("<dl") && lower.contains("<a") && lower.contains("href"));
}

profile::BookmarkImport profile::readNetscape(const QByteArray &content)
{
    const QByteArray named = encodingOfPage(content);
    const QByteArray encoding = named.isEmpty() ? guessedEncoding(content) : named;
    Decoded page = decoded(content, encoding);
    if (!page.isKnown) {
        return unknownEncoding(encoding);
    }
    Reading reading;
    loseBytes(page, encoding, named.isEmpty(), &reading.page);
    loseNuls(&page.utf8, &reading.page);
    return parse(page.utf8, &reading) ? reading.page.finished()
                                      : refused(text("there is no memory to read it"));
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
