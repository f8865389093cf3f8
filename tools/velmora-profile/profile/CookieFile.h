#ifndef TOOLS_VELMORA_PROFILE_PROFILE_COOKIEFILE_H
#define TOOLS_VELMORA_PROFILE_PROFILE_COOKIEFILE_H

#include "cookies/CookieElements_p.h"
#include "tools/velmora-profile/profile/Document.h"

#include <QtNetwork/QNetworkCookie>

namespace profile
{
using vlm::cookies::kIniFileName;

// The engine's cookie.ini.
struct CookieFile {
    Document::State state;
    QString damage; // of a damaged file
    QList<QNetworkCookie> cookies;
};

// The file in the directory, which ends with "/".
CookieFile readCookieFile(const QString &directory);

// Has the library write the cookies, looks whether its file holds them, and replaces the profile's
// by it: Failed, and said so, when that cannot be done; the file is then as it was.
int writeCookieFile(const QList<QNetworkCookie> &cookies);
} // namespace profile

#endif
