#include "tools/velmora-profile/profile/Recovery.h"

#include "core/VLMC_XMLReader.h"
#include "tools/velmora-profile/output/Text.h"
#include "tools/velmora-profile/profile/Entry.h"

#include <QtCore/QBuffer>

#include <cctype>
#include <cstring>
#include <memory>

namespace
{
bool standsAt(const QByteArray &content, int position, const QByteArray &piece)
{
    return content.size() - position >= piece.size()
           && memcmp(content.constData() + position, piece.constData(), size_t(piece.size())) == 0;
}

// Passes comments or CDATA sections: what looks like an entry in there is none. One without an end
// is damage, and passes nothing; that there is no end is looked for once.
class Passage
{
public:
    Passage(const char *opening, const char *closing)
        : m_opening(opening), m_closing(closing), m_isClosed(true)
    {
    }

    // Behind what starts here, or the same position.
    int behind(const QByteArray &content, int position)
    {
        if (!m_isClosed || !standsAt(content, position, m_opening)) {
            return position;
        }
        const int end = int(content.indexOf(m_closing, position + int(m_opening.size())));
        m_isClosed = end >= 0;
        return m_isClosed ? end + int(m_closing.size()) : position;
    }

private:
    QByteArray m_opening;
    QByteArray m_closing;
    bool m_isClosed;
};

// The declaration says how the bytes are encoded, so each piece is read behind it.
QByteArray declarationOf(const QByteArray &content)
{
    const int start = int(content.indexOf("<?xml"));
    const int end = int(content.indexOf("?>"));
    return start < 0 || start > 3 || end < 0 ? QByteArray() : content.mid(start, end + 2 - start);
}

// The first plain text of an entry: what it is called, as far as that can be read.
QString nameOf(VLMC_XMLNode *entry)
{
    if (!entry) {
        return QString();
    }
    if (!entry->getText().isEmpty()) {
        return entry->getText().trimmed();
    }
    const QList<VLMC_XMLNode *> fields = entry->getXMLNodeChildren();
    for (VLMC_XMLNode *const field : fields) {
        if (profile::isLabel(field)) {
            return field->getText();
        }
    }
    return QString();
}
} // namespace

bool profile::canBeScanned(const QByteArray &content)
{
    return !content.startsWith("\xfe\xff") && !content.startsWith("\xff\xfe");
}

// Entries do not hold each other: a start is whole when the next tag is its end.
profile::Recovery::Recovery(const QByteArray &content, const QString &elementName)
    : m_content(content),
      m_name(elementName.toUtf8()),
      m_declaration(declarationOf(content)),
      m_counted(0),
      m_line(1)
{
    QList<Tag> all = tags();
    const int end = int(content.size());
    all.append({Tag::Start, end, end});
    for (int i = 0; i + 1 < all.size(); ++i) {
        i += take(all.at(i), all.at(i + 1)) ? 1 : 0;
    }
}

profile::Recovery::~Recovery()
{
    for (VLMC_XMLNode *const entry : qAsConst(m_kept)) {
        if (!entry->getXMLNodeParent()) {
            delete entry;
        }
    }
}

const QList<VLMC_XMLNode *> &profile::Recovery::kept() const { return m_kept; }

const QList<profile::LostEntry> &profile::Recovery::lost() const { return m_lost; }

QList<profile::Recovery::Tag> profile::Recovery::tags() const
{
    Passage comments("<!--", "-->");
    Passage sections("<![CDATA[", "]]>");
    QList<Tag> found;
    int position = int(m_content.indexOf('<'));
    while (position >= 0) {
        int next = sections.behind(m_content, comments.behind(m_content, position));
        if (isTag(position, '<' + m_name) || isTag(position, "</" + m_name)) {
            found.append(tagAt(position));
            next = found.last().behind;
        }
        position = int(m_content.indexOf('<', qMax(next, position + 1)));
    }
    return found;
}

bool profile::Recovery::isTag(int start, const QByteArray &opening) const
{
    const int behind = start + int(opening.size());
    if (!standsAt(m_content, start, opening) || behind >= m_content.size()) {
        return false;
    }
    const char next = m_content.at(behind);
    return next == '>' || next == '/' || std::isspace(static_cast<unsigned char>(next)) != 0;
}

// What the document breaks off in ends right behind its "<".
profile::Recovery::Tag profile::Recovery::tagAt(int start) const
{
    const int opening = int(m_content.indexOf('<', start + 1));
    const QByteArray tag = m_content.mid(start, opening < 0 ? -1 : opening - start);
    const int closing = int(tag.indexOf('>'));
    const int behind = closing < 0 ? start + 1 : start + closing + 1;
    if (tag.startsWith("</")) {
        return {Tag::End, start, behind};
    }
    const bool isEmpty = closing > 0 && tag.at(closing - 1) == '/';
    return {isEmpty ? Tag::Both : Tag::Start, start, behind};
}

// Keeps the entry that starts with the tag when it is whole. True when it reached to the next tag's
// end.
bool profile::Recovery::take(const Tag &tag, const Tag &next)
{
    if (tag.kind == Tag::End) {
        lose(tag.start, QString(), text("its start is damaged"));
        return false;
    }
    const bool reaches = tag.kind == Tag::Start && next.kind == Tag::End;
    const bool isClosed = reaches || tag.kind == Tag::Both;
    const int behind = reaches ? next.behind : isClosed ? tag.behind : next.start;
    QByteArray piece = m_declaration + m_content.mid(tag.start, behind - tag.start);
    if (!isClosed) {
        piece += '<'; // brings out the text that the entry breaks off in
    }
    QBuffer buffer(&piece);
    buffer.open(QIODevice::ReadOnly);
    VLMC_XMLReader reader;
    std::unique_ptr<VLMC_XMLNode> entry(reader.read(buffer));
    if (isClosed && entry && !reader.hasError()) {
        m_kept.append(entry.release());
    } else {
        lose(tag.start, nameOf(entry.get()),
             isClosed ? reader.errorString().trimmed() : text("its end is missing"));
    }
    return reaches;
}

// In the order of the document, so that each line is counted once.
void profile::Recovery::lose(int start, const QString &what, const QString &reason)
{
    m_line += int(m_content.mid(m_counted, start - m_counted).count('\n'));
    m_counted = start;
    m_lost.append({m_line, what, reason});
}
