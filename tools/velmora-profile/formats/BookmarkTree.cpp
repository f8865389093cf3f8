#include "tools/velmora-profile/formats/BookmarkTree.h"

#include "tools/velmora-profile/output/Text.h"

namespace
{
const int kExcerptCharacters = 100;

bool isBlank(QChar character)
{
    return character == QLatin1Char(' ') || character == QLatin1Char('\t')
           || character == QLatin1Char('\n') || character == QLatin1Char('\r')
           || character == QLatin1Char('\f');
}

bool isHalfSurrogate(const QString &text, int position)
{
    const QChar unit = text.at(position);
    if (unit.isHighSurrogate()) {
        return position + 1 == text.size() || !text.at(position + 1).isLowSurrogate();
    }
    return unit.isLowSurrogate() && (position == 0 || !text.at(position - 1).isHighSurrogate());
}

bool isUnwritable(const QString &text, int position)
{
    const QChar unit = text.at(position);
    return (unit.unicode() < 0x20 && !isBlank(unit)) || unit.unicode() >= 0xFFFE
           || isHalfSurrogate(text, position);
}
} // namespace

QString profile::nameOf(const BookmarkRecord &bookmark)
{
    return bookmark.title.isEmpty() ? bookmark.url : bookmark.title;
}

QString profile::excerpt(const QString &text)
{
    if (text.size() <= kExcerptCharacters) {
        return text;
    }
    const bool isInPair = text.at(kExcerptCharacters - 1).isHighSurrogate();
    return text.left(kExcerptCharacters - (isInPair ? 1 : 0)) + profile::text("\xe2\x80\xa6");
}

QString profile::folded(const QString &text)
{
    QString kept;
    bool follows = false;
    for (const QChar character : text) {
        if (isBlank(character)) {
            follows = !kept.isEmpty();
            continue;
        }
        if (follows) {
            kept += QLatin1Char(' ');
            follows = false;
        }
        kept += character;
    }
    return kept;
}

QString profile::writable(const QString &text)
{
    QString kept;
    for (int i = 0; i < text.size(); ++i) {
        if (!isUnwritable(text, i)) {
            kept += text.at(i);
        }
    }
    return folded(kept);
}

void profile::loseUnwritable(const BookmarkRecord &bookmark, QList<Loss> *losses)
{
    if (writable(bookmark.title) != bookmark.title || writable(bookmark.url) != bookmark.url) {
        losses->append({nameOf(bookmark), text("blanks or characters that the file cannot hold")});
    }
}

profile::BookmarkTree::BookmarkTree(const char *format) { m_import.format = text(format); }

void profile::BookmarkTree::openList() { open(QString()); }

void profile::BookmarkTree::openFolder(const QString &name)
{
    open(name.isEmpty() ? text("without a name") : excerpt(name));
}

void profile::BookmarkTree::open(const QString &name)
{
    if (m_open.size() == kMaxFolderDepth) {
        refuse(text("it has over %1 folders one in the other").arg(kMaxFolderDepth));
        return;
    }
    m_open.append({name, false});
    if (!name.isEmpty()) {
        m_path.append(name);
    }
}

void profile::BookmarkTree::nameFolder(const QString &name)
{
    if (!name.isEmpty()) {
        m_path.last() = m_open.last().name = excerpt(name);
    }
}

void profile::BookmarkTree::closeFolder()
{
    if (m_open.isEmpty()) {
        return;
    }
    const Folder closed = m_open.takeLast();
    if (!closed.name.isEmpty()) {
        m_path.removeLast();
    }
    if (!closed.holdsBookmark && !closed.name.isEmpty()) {
        lose(closed.name, text("there is no place for an empty folder"));
    }
    if (closed.holdsBookmark && !m_open.isEmpty()) {
        m_open.last().holdsBookmark = true;
    }
}

void profile::BookmarkTree::add(const QString &title, const QString &url, const QStringList &lost)
{
    const BookmarkRecord bookmark = {title, url, m_path};
    if (url.isEmpty()) {
        lose(title.isEmpty() ? text("a bookmark") : title, text("it has no address"));
        return;
    }
    if (m_import.bookmarks.size() == kMaxImported) {
        refuse(text("it has over %1 bookmarks").arg(kMaxImported));
        return;
    }
    m_import.bookmarks.append(bookmark);
    loseFields(nameOf(bookmark), lost);
    if (!m_open.isEmpty()) {
        m_open.last().holdsBookmark = true;
    }
}

void profile::BookmarkTree::lose(const QString &entry, const QString &reason)
{
    if (m_import.losses.size() == kMaxImported) {
        refuse(text("over %1 parts of it have no place in a profile").arg(kMaxImported));
        return;
    }
    m_import.losses.append({excerpt(entry), reason});
}

void profile::BookmarkTree::loseFields(const QString &entry, const QStringList &lost)
{
    if (!lost.isEmpty()) {
        lose(entry, text("its ") + lost.join(text(", ")));
    }
}

// The first refusal is the reason for all that follow.
void profile::BookmarkTree::refuse(const QString &error)
{
    if (!isRefused()) {
        m_import.error = error;
    }
}

bool profile::BookmarkTree::isRefused() const { return !m_import.error.isEmpty(); }

profile::BookmarkImport profile::BookmarkTree::found() const { return m_import; }

profile::BookmarkImport profile::refused(const QString &error)
{
    BookmarkImport import;
    import.error = error;
    return import;
}

profile::BookmarkImport profile::unknownEncoding(const QByteArray &encoding)
{
    return refused(
        text("its encoding '%1' is not known").arg(excerpt(QString::fromUtf8(encoding))));
}
