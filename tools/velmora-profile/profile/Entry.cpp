#include "tools/velmora-profile/profile/Entry.h"

#include "bookmarks/BookmarkElements_p.h"
#include "cookies/AuthElements_p.h"
#include "cookies/CookieElements_p.h"
#include "tools/velmora-profile/output/Text.h"

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

QString profile::decodedText(VLMC_XMLNode *entry, const char *name)
{
    return QString::fromUtf8(QByteArray::fromBase64(fieldText(entry, name).toUtf8()));
}

QString profile::idOf(VLMC_XMLNode *entry)
{
    return entry->getAttribute().value(QLatin1String("id")).toString();
}

QString profile::titleOf(VLMC_XMLNode *bookmark)
{
    const QString title = fieldText(bookmark, vlm::bookmarks::kTitle);
    return title.isEmpty() ? fieldText(bookmark, vlm::bookmarks::kUrl) : title;
}

// Names and passwords are encoded, and a cookie's value is a session.
bool profile::isLabel(VLMC_XMLNode *field)
{
    const QString name = field->getName();
    return field->getTextType() == 0 && !field->getText().isEmpty()
           && name != text(vlm::auth::kUser) && name != text(vlm::auth::kPasswd)
           && name != text(vlm::cookies::kContents);
}

// A path without a name comes from an entry that was added without a thumbnail: a load puts the
// folder in front of nothing, and the next save leaves the folder's name.
QString profile::thumbnailName(const QString &path) { return path.section(QLatin1Char('/'), -1); }
