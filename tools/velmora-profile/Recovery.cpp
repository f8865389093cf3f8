#include "tools/velmora-profile/Recovery.h"

#include "core/VLMC_XMLReader.h"
#include "tools/velmora-profile/Console.h"

#include <QtCore/QBuffer>

#include <cctype>
#include <memory>

namespace
{
const char kCommentStart[] = "<!--";
const char kCommentEnd[] = "-->";
const char kCDataStart[] = "<![CDATA[";
const char kCDataEnd[] = "]]>";

// The declaration says how the bytes are encoded, so each piece is read behind it.
QByteArray declarationOf(const QByteArray &content)
{
    const int start = int(content.indexOf("<?xml"));
    const int end = int(content.indexOf("?>"));
    return start < 0 || start > 3 || end < 0 ? QByteArray() : content.mid(start, end + 2 - start);
}

// The first plain text of an entry: what it is called, as far as that can be read. Encoded ones are
// secrets.
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
        if (field->getTextType() == 0 && !field->getText().isEmpty()) {
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

profile::Recovery::Recovery(const QByteArray &content, const QString &elementName)
    : m_content(content), m_name(elementName.toUtf8()), m_declaration(declarationOf(content))
{
    scan();
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

void profile::Recovery::scan()
{
    int position = int(m_content.indexOf('<'));
    while (position >= 0) {
        int next = position + 1;
        if (isTag(position, '<' + m_name)) {
            next = take(position);
        } else if (isTag(position, "</" + m_name)) {
            lose(position, QString(), text("its start is damaged"));
        } else {
            next = skip(position);
        }
        position = int(m_content.indexOf('<', next));
    }
}

// Behind a comment or a CDATA section: what looks like an entry in there is none. One without an
// end is damage, not a comment.
int profile::Recovery::skip(int start) const
{
    int end = -1;
    if (m_content.mid(start, int(sizeof kCommentStart) - 1) == kCommentStart) {
        end = int(m_content.indexOf(kCommentEnd, start));
    } else if (m_content.mid(start, int(sizeof kCDataStart) - 1) == kCDataStart) {
        end = int(m_content.indexOf(kCDataEnd, start));
    }
    return end < 0 ? start + 1 : end;
}

bool profile::Recovery::isTag(int start, const QByteArray &opening) const
{
    const int behind = start + int(opening.size());
    if (m_content.mid(start, int(opening.size())) != opening || behind >= m_content.size()) {
        return false;
    }
    const char next = m_content.at(behind);
    return next == '>' || next == '/' || std::isspace(static_cast<unsigned char>(next)) != 0;
}

int profile::Recovery::nextStart(int from) const
{
    int start = int(m_content.indexOf('<' + m_name, from));
    while (start >= 0 && !isTag(start, '<' + m_name)) {
        start = int(m_content.indexOf('<' + m_name, start + 1));
    }
    return start;
}

// Behind the end tag that belongs to the start, or -1. An element without content ends with its
// start tag.
int profile::Recovery::endOf(int start) const
{
    const int tagEnd = int(m_content.indexOf('>', start));
    if (tagEnd > 0 && m_content.at(tagEnd - 1) == '/'
        && !m_content.mid(start + 1, tagEnd - start - 1).contains('<')) {
        return tagEnd + 1;
    }
    const int closing = int(m_content.indexOf("</" + m_name, start));
    const int end = closing < 0 ? -1 : int(m_content.indexOf('>', closing));
    return end < 0 ? -1 : end + 1;
}

// Keeps the entry at start when it is whole; the result is where to look on.
int profile::Recovery::take(int start)
{
    const int end = endOf(start);
    const int next = nextStart(start + 1);
    const int last = end >= 0 ? end : next >= 0 ? next : int(m_content.size());
    QByteArray piece = m_declaration + m_content.mid(start, last - start);
    QBuffer buffer(&piece);
    buffer.open(QIODevice::ReadOnly);
    VLMC_XMLReader reader;
    std::unique_ptr<VLMC_XMLNode> entry(reader.read(buffer));
    if (end >= 0 && entry && !reader.hasError()) {
        m_kept.append(entry.release());
        return end;
    }
    lose(start, nameOf(entry.get()),
         end < 0 ? text("its end is missing") : reader.errorString().trimmed());
    return next >= 0 ? qMin(next, last) : last;
}

void profile::Recovery::lose(int start, const QString &what, const QString &reason)
{
    m_lost.append({int(m_content.left(start).count('\n')) + 1, what, reason});
}
