#include "tools/velmora-profile/profile/CookieFile.h"

#include "cookies/HarmlessIni_p.h"
#include "cookies/VLMC_CookieSetting.h"
#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/output/Files.h"
#include "tools/velmora-profile/output/Guards.h"

#include <QtCore/QDataStream>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>

namespace
{
using namespace profile;

bool isHarmless(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && vlm::isHarmlessIni(file.readAll());
}

// What keeps the engine from reading all that the bytes promise; empty when nothing does.
QString damageOfBytes(const QByteArray &bytes)
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

// The library does not read what is harmful, and neither may anybody else.
QString damageOf(const QString &path)
{
    if (!isHarmless(path)) {
        return text("it describes values that no browser stores");
    }
    const QSettings settings(path, QSettings::IniFormat);
    return settings.status() == QSettings::NoError
               ? damageOfBytes(settings
                                   .value(text("%1/%2").arg(text(vlm::cookies::kIniGroup),
                                                            text(vlm::cookies::kIniKey)))
                                   .toByteArray())
               : text("it is not an INI file");
}

// The cookies as a file that holds them gives them back.
QList<QNetworkCookie> readBack(const QList<QNetworkCookie> &cookies)
{
    QList<QNetworkCookie> read;
    for (const QNetworkCookie &cookie : cookies) {
        read += QNetworkCookie::parseCookies(cookie.toRawForm(QNetworkCookie::Full));
    }
    return read;
}

bool holds(const QString &directory, const QList<QNetworkCookie> &cookies)
{
    const CookieFile file = readCookieFile(directory);
    return file.state == Document::Whole && file.cookies == readBack(cookies);
}
} // namespace

profile::CookieFile profile::readCookieFile(const QString &directory)
{
    CookieFile cookieFile = {Document::Missing, QString(), QList<QNetworkCookie>()};
    const QFileInfo file(directory + text(kIniFileName));
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
    cookieFile.damage = damageOf(file.filePath());
    cookieFile.state = cookieFile.damage.isEmpty() ? Document::Whole : Document::Damaged;
    QString folder = directory;
    cookieFile.cookies = VLMC_CookieSetting::getInstance()->loadCookieInfo(&folder, kMaxEntries);
    return cookieFile;
}

int profile::writeCookieFile(const QList<QNetworkCookie> &cookies)
{
    // An interruption waits until the folders are gone.
    const Uninterrupted uninterrupted;
    const QTemporaryDir written;
    const QTemporaryDir checked;
    QString folder = written.path() + QLatin1Char('/');
    VLMC_CookieSetting::getInstance()->saveCookieInfo(cookies, &folder, kMaxEntries);
    // QSettings keeps in mind what it wrote under a name, whatever has reached the file.
    const QString directory = checked.path() + QLatin1Char('/');
    const QString path = directory + text(kIniFileName);
    QByteArray content;
    if (!QFile::rename(folder + text(kIniFileName), path) || !holds(directory, cookies)) {
        return fail(text("cookie.ini could not be written; nothing was changed; check the free "
                         "space for temporary files"));
    }
    return readFile(path, &content) && replaceFile(text(kIniFileName), content, OwnerAlone)
               ? Done
               : Failed;
}
