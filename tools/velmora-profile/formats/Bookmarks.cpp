#include "tools/velmora-profile/formats/BookmarkTree.h"
#include "tools/velmora-profile/formats/Encoding.h"
#include "tools/velmora-profile/formats/NetscapeBookmarks.h"
#include "tools/velmora-profile/formats/Xbel.h"
#include "tools/velmora-profile/output/Text.h"

profile::BookmarkImport profile::readBookmarks(const QByteArray &content)
{
    const QByteArray named = encodingOfXml(content);
    const QByteArray encoding = named.isEmpty() ? QByteArray("utf-8") : named;
    const Decoded xml = decoded(content, encoding);
    if (!xml.isKnown) {
        return unknownEncoding(encoding);
    }
    const QString document = QString::fromUtf8(xml.utf8);
    if (looksLikeXbel(document)) {
        return xml.replaced == 0 ? readXbel(document)
                                 : refused(text("it is damaged: it holds bytes that are no %1")
                                               .arg(QString::fromUtf8(encoding)));
    }
    return looksLikeNetscape(content)
               ? readNetscape(content)
               : refused(text("it holds neither Netscape HTML nor XBEL bookmarks"));
}
