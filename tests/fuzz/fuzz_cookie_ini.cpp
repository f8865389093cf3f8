// Any bytes as "cookie.ini" or as the value in it, through both conversions. The first byte of an
// input says which.

#include "cookies/VLMC_CookieSetting.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/support/CookieIni.h"

#include <QtNetwork/QNetworkCookie>

namespace
{
const int kMaxEntries = 20;

QList<QByteArray> rawFormsOf(const QList<QNetworkCookie> &cookies)
{
    QList<QByteArray> rawForms;
    for (const QNetworkCookie &cookie : cookies) {
        rawForms.append(cookie.toRawForm(QNetworkCookie::Full));
    }
    return rawForms;
}

CookieIni iniIn(const QString &directory)
{
    return decodeCookieIni(bytesOfFile(directory + QLatin1String("cookie.ini")));
}

QList<QNetworkCookie> load(const QString &directory)
{
    QString path = directory;
    return VLMC_CookieSetting().loadCookieInfo(&path, 1);
}

void checkSaving(const QList<QNetworkCookie> &cookies, const QString &directory)
{
    QString path = directory;
    VLMC_CookieSetting().saveCookieInfo(cookies, &path, 1);
    const CookieIni saved = iniIn(directory);
    require(saved.valid, "what is saved is one value, filled exactly");
    require(saved.rawForms == rawFormsOf(cookies), "every cookie is saved, and nothing else");
}

void iniToXml(const QString &directory, const QString &xml)
{
    QByteArray iniDirectory = directory.toLatin1();
    QByteArray xmlFile = xml.toLatin1();
    VLMC_CookieSetting().convertCookieIniToXML(iniDirectory.data(), xmlFile.data());
}

void xmlToIni(const QString &xml, const QString &directory)
{
    QByteArray iniDirectory = directory.toLatin1();
    QByteArray xmlFile = xml.toLatin1();
    VLMC_CookieSetting().convertCookieXMLToIni(xmlFile.data(), iniDirectory.data());
}

class StoredCookies : public VLMC_CookieSetting
{
public:
    explicit StoredCookies(QString xml)
    {
        load(xml);
        QString id = QString::fromLatin1("id");
        setIDforChildren(id);
    }
};

void checkConversions(int cookies, const QString &directory, const InputDirectory &input)
{
    const QString xml = input.file("cookie.xml");
    iniToXml(directory, xml);
    require(StoredCookies(xml).getAllCookieInfo().size() == qMin(cookies, 999),
            "every cookie becomes an entry");
    const QString back = input.newDirectory("back");
    xmlToIni(xml, back);
    const CookieIni converted = iniIn(back);
    require(converted.valid, "what is converted is one value, filled exactly");
    require(converted.count == qMin(cookies, kMaxEntries), "as many come back as are considered");
}
} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    const bool isValue = input.choice(2) == 1;
    const QByteArray bytes = input.rest();
    const InputDirectory directory;
    const DeferredDeletes deferred;
    const QByteArray ini = isValue ? cookieIniOfValue(bytes) : bytes;
    writeToFile(directory.file("cookie.ini"), ini);

    const QList<QNetworkCookie> cookies = load(directory.path());
    require(cookies.size() <= ini.size(), "there are no more cookies than bytes");
    require(bytesOfFile(directory.file("cookie.ini")) == ini, "loading leaves the file alone");
    checkConversions(int(cookies.size()), directory.path(), directory);
    checkSaving(cookies, directory.newDirectory("saved"));
    checkSaving(cookies, directory.path());
    return 0;
}
