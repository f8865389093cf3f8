// cookies: the engine's cookie.ini, the library's cookie document, and cookies.txt.

#include "cookies/VLMC_CookieSetting.h"
#include "text/TimeText_p.h"
#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/commands/Losses.h"
#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/output/Files.h"
#include "tools/velmora-profile/output/Guards.h"
#include "tools/velmora-profile/output/Listing.h"
#include "tools/velmora-profile/profile/CookieFile.h"
#include "tools/velmora-profile/profile/Entry.h"
#include "tools/velmora-profile/profile/Refusals.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>

namespace
{
using namespace profile;

VLMC_CookieSetting &store() { return *VLMC_CookieSetting::getInstance(); }

QString nameOf(const QNetworkCookie &cookie)
{
    return text("%1 of %2%3").arg(QString::fromUtf8(cookie.name()), cookie.domain(), cookie.path());
}

QString expiryOf(const QNetworkCookie &cookie)
{
    return cookie.isSessionCookie() ? text("session")
                                    : cookie.expirationDate().toUTC().toString(Qt::ISODate);
}

int refuseToUse(const CookieFile &file)
{
    if (file.state == Document::Unreadable) {
        return failUnreadable(text(kIniFileName));
    }
    if (file.state == Document::Damaged) {
        return fail(text("cookie.ini is damaged: %1; nothing was changed; run 'velmora-profile "
                         "repair' first")
                        .arg(file.damage));
    }
    return Done;
}

bool isKeptByIni(const QNetworkCookie &cookie)
{
    return QNetworkCookie::parseCookies(cookie.toRawForm(QNetworkCookie::Full))
           == QList<QNetworkCookie>{cookie};
}

// The conversions take local paths of Latin-1 alone, so they run in a folder of the tool's own.
// Sessions pass through it: an interruption waits until it is gone.
class ScratchFolder
{
public:
    ScratchFolder() : m_document(m_folder.path() + text("/cookie.xml")) {}

    bool isReady() const { return m_folder.isValid(); }
    QString folder() const { return m_folder.path() + QLatin1Char('/'); }
    QString document() const { return m_document; }
    QByteArray localFolder() const { return folder().toLatin1(); }
    QByteArray localDocument() const { return m_document.toLatin1(); }

private:
    Uninterrupted m_uninterrupted;
    QTemporaryDir m_folder;
    QString m_document;
};

QString documentPath(const Call &call)
{
    return call.operands.isEmpty()
               ? text(kProfileFolder) + text(documentType(CookieDocument).fileName)
               : call.path(call.operands.at(0));
}

int failWithoutSpace()
{
    return fail(text("there is no space for temporary files; nothing was changed; set TMPDIR to a "
                     "folder with free space"));
}

// Whether a conversion reads the document or merges into it.
enum Purpose { Source, Target };

bool isNew(const QString &path) { return path == text("-") || !QFile::exists(path); }

// The library takes what is no cookie document for one without cookies.
int refuseToConvert(const Document &document, Purpose purpose)
{
    const bool isEmpty = document.state() == Document::Empty;
    if (isEmpty && purpose == Source) {
        return fail(text("'%1' is empty; nothing was changed").arg(document.path()));
    }
    if (document.state() == Document::Damaged) {
        return fail(text("'%1' is %2; nothing was changed; repair it first")
                        .arg(document.path(), damageText(document.damage())));
    }
    if (!isEmpty && document.rootName() != text(document.type().rootName)) {
        return fail(
            text("'%1' is not a cookie document; nothing was changed").arg(document.path()));
    }
    return Done;
}

// Puts the document into the scratch folder; a new target starts without one.
int fetch(const QString &path, Purpose purpose, const ScratchFolder &scratch)
{
    if (!scratch.isReady()) {
        return failWithoutSpace();
    }
    if (purpose == Target && isNew(path)) {
        return Done;
    }
    QByteArray content;
    if (!readFile(path, &content)
        || refuseToConvert(Document(documentType(CookieDocument), path, content), purpose)
               != Done) {
        return Failed;
    }
    return replaceFile(scratch.document(), content, OwnerAlone) ? Done : Failed;
}

QList<Loss> lossesOfXml(const QList<QNetworkCookie> &cookies)
{
    QList<Loss> losses;
    for (const QNetworkCookie &cookie : cookies) {
        if (cookie.isHttpOnly()) {
            losses.append({nameOf(cookie), text("the document cannot hold HttpOnly")});
        }
    }
    return losses;
}

QList<Loss> lossesOfIni(const Document &document)
{
    QList<Loss> losses;
    const QList<VLMC_XMLNode *> &entries = document.children();
    for (int i = 0; i < entries.size(); ++i) {
        const QString name = text("%1 of %2")
                                 .arg(fieldText(entries.at(i), vlm::cookies::kName),
                                      fieldText(entries.at(i), vlm::cookies::kWebsite));
        const QString expires = fieldText(entries.at(i), vlm::cookies::kExpires);
        if (i >= vlm::cookies::kMaxConverted) {
            losses.append(
                {name, text("only the first %1 are converted").arg(vlm::cookies::kMaxConverted)});
        } else if (!expires.isEmpty() && !vlm::timeOfText(expires, vlm::ToSecond).isValid()) {
            losses.append(
                {name,
                 text("its expiry '%1' does not parse: it becomes a session cookie").arg(expires)});
        }
    }
    return losses;
}

// Equal for cookies that take each other's place.
QByteArray identifierOf(const QNetworkCookie &cookie)
{
    return cookie.name() + '\n' + cookie.domain().toUtf8() + '\n' + cookie.path().toUtf8();
}

// Replaces those that have the same name, domain and path, and appends the others.
QList<QNetworkCookie> merged(QList<QNetworkCookie> cookies, const QList<QNetworkCookie> &added)
{
    QHash<QByteArray, int> positions;
    for (int i = int(cookies.size()) - 1; i >= 0; --i) {
        positions.insert(identifierOf(cookies.at(i)), i);
    }
    for (const QNetworkCookie &cookie : added) {
        const QByteArray identifier = identifierOf(cookie);
        const int position = positions.value(identifier, int(cookies.size()));
        if (position < cookies.size()) {
            cookies[position] = cookie;
        } else {
            positions.insert(identifier, position);
            cookies.append(cookie);
        }
    }
    return cookies;
}

// Those that cookie.ini gives back as they are; the others become losses.
QList<QNetworkCookie> keptByIni(CookieImport *import)
{
    QList<QNetworkCookie> kept;
    for (const QNetworkCookie &cookie : qAsConst(import->cookies)) {
        if (isKeptByIni(cookie)) {
            kept.append(cookie);
        } else {
            import->losses.append({nameOf(cookie), text("cookie.ini cannot hold it unchanged")});
        }
    }
    return kept;
}

CookieImport read(const QByteArray &content)
{
    const Deadline deadline;
    return readCookiesTxt(content);
}

int sayImported(const Call &call, int added, const QList<Loss> &losses)
{
    if (call.has("json")) {
        sayJson(QJsonObject{{text("added"), added}, {text("losses"), toJson(losses)}});
        return Done;
    }
    say(text("cookies.txt: %1 %2 added, %3")
            .arg(counted(added, "cookie", "cookies"), imported(call, added),
                 counted(losses.size(), "loss", "losses")));
    return Done;
}

int listCookies(const Call &call)
{
    const CookieFile file = readCookieFile(text(kProfileFolder));
    if (file.state == Document::Unreadable) {
        return failUnreadable(text(kIniFileName));
    }
    if (file.state == Document::Damaged) {
        warn(text("cookie.ini is %1; run 'velmora-profile check'").arg(stateName(file.state)));
    }
    Listing listing({{"domain", "Site"},
                     {"name", "Name"},
                     {"path", "Path"},
                     {"secure", "Secure"},
                     {"httpOnly", "HttpOnly"},
                     {"expires", "Expires"},
                     {"value", "Value"}});
    for (const QNetworkCookie &cookie : file.cookies) {
        listing.add({cookie.domain(), QString::fromUtf8(cookie.name()), cookie.path(),
                     cookie.isSecure(), cookie.isHttpOnly(), expiryOf(cookie),
                     masked(QString::fromUtf8(cookie.value()), call.has("show-secrets"))});
    }
    return listing.say(call.has("json"));
}

int cookiesToXml(const Call &call)
{
    const CookieFile file = readCookieFile(text(kProfileFolder));
    const ScratchFolder scratch;
    if (refuseToUse(file) != Done || fetch(documentPath(call), Target, scratch) != Done) {
        return Failed;
    }
    // An engine file that is not there would empty the document.
    if (file.state == Document::Missing) {
        return fail(text("there is no cookie.ini to convert; nothing was changed"));
    }
    if (tellLosses(call, lossesOfXml(file.cookies)) != Done) {
        return Failed;
    }
    QByteArray directory(kProfileFolder);
    QByteArray document = scratch.localDocument();
    store().convertCookieIniToXML(directory.data(), document.data());
    QByteArray content;
    return readFile(scratch.document(), &content)
                   && writeFile(documentPath(call), content, OwnerAlone)
               ? Done
               : Failed;
}

int cookiesToIni(const Call &call)
{
    const ScratchFolder scratch;
    if (refuseToUse(readCookieFile(text(kProfileFolder))) != Done
        || fetch(documentPath(call), Source, scratch) != Done) {
        return Failed;
    }
    const Document source(documentType(CookieDocument), scratch.document());
    if (tellLosses(call, lossesOfIni(source)) != Done) {
        return Failed;
    }
    QByteArray document = scratch.localDocument();
    QByteArray folder = scratch.localFolder();
    store().convertCookieXMLToIni(document.data(), folder.data());
    const CookieFile converted = readCookieFile(scratch.folder());
    // Without space for it there is none, or an empty one.
    if (converted.state == Document::Missing || converted.state == Document::Empty) {
        return failWithoutSpace();
    }
    return writeCookieFile(converted.cookies);
}

int importCookies(const Call &call)
{
    QByteArray content;
    if (!readFile(call.path(call.operands.at(0)), &content, kMaxImportBytes)) {
        return Failed;
    }
    CookieImport import = read(content);
    if (!import.error.isEmpty()) {
        return fail(text("'%1': %2; nothing was changed").arg(call.operands.at(0), import.error));
    }
    const CookieFile file = readCookieFile(text(kProfileFolder));
    if (refuseToUse(file) != Done) {
        return Failed;
    }
    const QList<QNetworkCookie> kept = keptByIni(&import);
    if (tellLosses(call, import.losses) != Done
        || (!call.has("dry-run") && writeCookieFile(merged(file.cookies, kept)) != Done)) {
        return Failed;
    }
    return sayImported(call, int(kept.size()), import.losses);
}

int exportCookies(const Call &call)
{
    const CookieFile file = readCookieFile(text(kProfileFolder));
    if (refuseToUse(file) != Done) {
        return Failed;
    }
    QList<Loss> losses;
    const QByteArray content = writeCookiesTxt(file.cookies, &losses);
    return tellLosses(call, losses) == Done
                   && writeFile(call.path(call.operands.at(0)), content, OwnerAlone)
               ? Done
               : Failed;
}
} // namespace

namespace profile
{
QList<Command> cookiesCommands()
{
    return {
        {"cookies", "list", "DIR", 0, 0, "json show-secrets", "the cookies of cookie.ini", Reads,
         listCookies},
        {"cookies", "to-xml", "DIR [FILE]", 0, 1, "strict",
         "merge cookie.ini into a cookie document (cookie.xml)", Writes, cookiesToXml},
        {"cookies", "to-ini", "DIR [FILE]", 0, 1, "strict",
         "replace cookie.ini with a cookie document (cookie.xml)", Writes, cookiesToIni},
        {"cookies", "import", "DIR FILE", 1, 1, "strict dry-run json",
         "add the cookies of a cookies.txt file", Writes, importCookies},
        {"cookies", "export", "DIR FILE", 1, 1, "strict", "write cookie.ini as cookies.txt", Reads,
         exportCookies},
    };
}
} // namespace profile
