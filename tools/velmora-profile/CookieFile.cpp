#include "tools/velmora-profile/CookieFile.h"

#include "cookies/VLMC_CookieSetting.h"
#include "tools/velmora-profile/Console.h"

#include <QtCore/QDataStream>
#include <QtCore/QFileInfo>
#include <QtCore/QSettings>

#include <sys/stat.h>

namespace
{
using namespace profile;

QByteArray storedBytes(const QString &path, bool *isIni)
{
    const QSettings settings(path, QSettings::IniFormat);
    *isIni = settings.status() == QSettings::NoError;
    return settings.value(text("Cookie/cookies")).toByteArray();
}

// What keeps the engine from reading all that the bytes promise; empty when nothing does.
QString damageOf(const QByteArray &bytes)
{
    if (bytes.isEmpty()) {
        return text("it holds no list of cookies");
    }
    QDataStream stream(bytes);
    qint32 promised = 0;
    stream >> promised;
    int read = 0;
    int unreadable = 0;
    while (read < promised && !stream.atEnd()) {
        QByteArray rawForm;
        stream >> rawForm;
        if (stream.status() != QDataStream::Ok) {
            break;
        }
        ++read;
        unreadable += QNetworkCookie::parseCookies(rawForm).isEmpty() ? 1 : 0;
    }
    if (promised < 0 || read < promised) {
        return text("it promises %1 and holds %2")
            .arg(counted(promised, "cookie", "cookies"))
            .arg(read);
    }
    return unreadable == 0
               ? QString()
               : text("%1 cannot be read").arg(counted(unreadable, "cookie", "cookies"));
}
} // namespace

profile::CookieFile profile::readCookieFile(const QString &directory)
{
    CookieFile cookieFile = {Document::Missing, QString(), QList<QNetworkCookie>()};
    const QFileInfo file(directory + text(kCookieIni));
    if (!file.exists()) {
        return cookieFile;
    }
    if (!file.isFile() || !file.isReadable()) {
        cookieFile.state = Document::Unreadable;
        return cookieFile;
    }
    if (file.size() == 0) {
        cookieFile.state = Document::Empty;
        return cookieFile;
    }
    bool isIni = false;
    const QByteArray bytes = storedBytes(file.filePath(), &isIni);
    cookieFile.damage = isIni ? damageOf(bytes) : text("it is no INI file");
    cookieFile.state = cookieFile.damage.isEmpty() ? Document::Whole : Document::Damaged;
    QString folder = directory;
    cookieFile.cookies = VLMC_CookieSetting::getInstance()->loadCookieInfo(&folder, kMaxEntries);
    return cookieFile;
}

profile::OwnerOnly::OwnerOnly() : m_before(umask(S_IRWXG | S_IRWXO)) {}

profile::OwnerOnly::~OwnerOnly() { umask(mode_t(m_before)); }
