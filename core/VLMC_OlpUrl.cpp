#include "core/VLMC_OlpUrl.h"

#include <QtCore/QString>
#include <QtCore/QUrl>

namespace
{
bool sameHost(const QString &host, const char *name)
{
    return name && *name && host.compare(QString::fromLatin1(name), Qt::CaseInsensitive) == 0;
}
} // namespace

bool VLMC_OlpUrl::IsOlpContents(const QUrl &url, char mode, char *firstHost, char *secondHost)
{
    const QString host = url.host();
    if (host.startsWith(QString::fromLatin1("127.0.0."), Qt::CaseInsensitive)) {
        return true;
    }
    if (sameHost(host, "localhost")) {
        return true;
    }
    if (mode == 1 && sameHost(host, firstHost)) {
        return true;
    }
    return sameHost(host, secondHost);
}
