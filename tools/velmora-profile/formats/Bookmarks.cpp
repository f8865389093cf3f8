#include "tools/velmora-profile/formats/Bookmarks.h"

namespace
{
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
    const ushort unit = text.at(position).unicode();
    const bool isControl = (unit < 0x20 && unit != '\t' && unit != '\n' && unit != '\r')
                           || (unit >= 0x7F && unit < 0xA0);
    return isControl || unit >= 0xFFFE || (unit >= 0xFDD0 && unit <= 0xFDEF)
           || isHalfSurrogate(text, position);
}
} // namespace

QString profile::nameOf(const BookmarkRecord &bookmark)
{
    return bookmark.title.isEmpty() ? bookmark.url : bookmark.title;
}

QString profile::writable(const QString &text)
{
    QString kept;
    for (int i = 0; i < text.size(); ++i) {
        if (!isUnwritable(text, i)) {
            kept += text.at(i);
        }
    }
    return kept.simplified();
}

void profile::loseUnwritable(const BookmarkRecord &bookmark, QList<Loss> *losses)
{
    if (writable(bookmark.title) != bookmark.title || writable(bookmark.url) != bookmark.url) {
        losses->append({nameOf(bookmark), text("blanks or characters that the file cannot hold")});
    }
}

profile::BookmarkImport profile::readBookmarks(const QByteArray &content)
{
    if (looksLikeXbel(content)) {
        return readXbel(content);
    }
    if (looksLikeNetscape(content)) {
        return readNetscape(content);
    }
    BookmarkImport import;
    import.error = text("it holds neither Netscape HTML nor XBEL bookmarks");
    return import;
}
