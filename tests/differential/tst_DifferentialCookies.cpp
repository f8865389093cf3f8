#include "tests/differential/PlainCookies.h"
#include "tests/differential/SideBySide.h"

#include "cookies/VLMC_CookieSetting.h"
#include "tests/support/CookieIni.h"

namespace
{
const char *const kDomains[] = {"a.example", ".b.example", ""};
const char *const kNames[] = {"a", "b", "\xe3\x81\x82", "c"};
const char *const kPaths[] = {"/", "/p", ""};
const char *const kValues[] = {"1", "2", "\xe3\x81\x82", ""};

class Pair : public SideBySide
{
public:
    explicit Pair(const Sequence &sequence) : SideBySide(m_store, m_plain, sequence) {}

private:
    void operate() override
    {
        switch (random.below(12)) {
        case 0:
            convertIniToXml();
            break;
        case 1:
            convertXmlToIni();
            break;
        case 2:
            loadIni();
            break;
        case 3:
            saveIni();
            break;
        case 4:
        case 5:
            did("getAllCookieInfo");
            agree(answerOf(m_store.getAllCookieInfo()), answerOf(m_plain.getAllCookieInfo()));
            break;
        case 6:
            compareCookie();
            break;
        case 7: {
            const int id = anyId();
            did("deleteCookieInfo " + QByteArray::number(id));
            m_store.deleteCookieInfo(id);
            m_plain.deleteCookieInfo(id);
            break;
        }
        default: {
            QNetworkCookie cookie = anyCookie();
            did("addCookieInfo");
            m_store.addCookieInfo(cookie);
            m_plain.addCookieInfo(cookie);
        }
        }
    }

    void convertIniToXml()
    {
        QByteArray dir = random.oneIn(10) ? QByteArray() : writtenIni().toLatin1();
        QByteArray path = anyXml();
        did("convertCookieIniToXML");
        char *const iniDir = random.oneIn(20) ? nullptr : dir.data();
        char *const xmlPath = random.oneIn(20) ? nullptr : path.data();
        m_store.convertCookieIniToXML(iniDir, xmlPath);
        m_plain.convertCookieIniToXML(iniDir, xmlPath);
        agreeOnFile(QString::fromLatin1(path));
    }

    void convertXmlToIni()
    {
        QByteArray path = anyXml();
        const QString directory = freshIni();
        QByteArray dir = random.oneIn(10) ? QByteArray() : directory.toLatin1();
        did("convertCookieXMLToIni");
        char *const iniDir = random.oneIn(20) ? nullptr : dir.data();
        char *const xmlPath = random.oneIn(20) ? nullptr : path.data();
        m_store.convertCookieXMLToIni(xmlPath, iniDir);
        m_plain.convertCookieXMLToIni(xmlPath, iniDir);
        agreeOnIni(directory);
    }

    void loadIni()
    {
        QString directory = random.oneIn(10) ? QString() : writtenIni();
        QString *const dir = random.oneIn(20) ? nullptr : &directory;
        const int max = anyMax();
        did("loadCookieInfo " + QByteArray::number(max));
        agree(answerOf(m_store.loadCookieInfo(dir, max)),
              answerOf(m_plain.loadCookieInfo(dir, max)));
    }

    void saveIni()
    {
        QString directory = random.oneIn(10) ? QString() : freshIni();
        QString *const dir = random.oneIn(20) ? nullptr : &directory;
        const int max = anyMax();
        QList<QNetworkCookie> cookies;
        for (int i = random.below(30); i > 0; --i) {
            cookies.append(anyCookie());
        }
        did("saveCookieInfo " + QByteArray::number(max));
        m_store.saveCookieInfo(cookies, dir, max);
        m_plain.saveCookieInfo(cookies, dir, max);
        agreeOnIni(directory);
    }

    void compareCookie()
    {
        QNetworkCookie cookie = anyCookie();
        VLMS_CookieInfo info = {textOf(random.oneOf(kDomains)),
                                textOf(random.oneOf(kNames)),
                                textOf(random.oneOf(kPaths)),
                                textOf(random.oneIn(2) ? "true" : "false"),
                                QString(),
                                textOf(random.oneOf(kValues))};
        const QList<VLMS_CookieInfo> stored = m_plain.getAllCookieInfo();
        if (!stored.isEmpty() && random.oneIn(2)) {
            info = stored.at(random.below(int(stored.size())));
        }
        did("isMuchCookieInfo");
        agree(Answer() << m_store.isMuchCookieInfo(cookie, info),
              Answer() << m_plain.isMuchCookieInfo(cookie, info));
    }

    QNetworkCookie anyCookie()
    {
        QNetworkCookie cookie(random.oneOf(kNames), random.oneOf(kValues));
        cookie.setDomain(textOf(random.oneOf(kDomains)));
        cookie.setPath(textOf(random.oneOf(kPaths)));
        cookie.setSecure(random.oneIn(2));
        cookie.setExpirationDate(random.time());
        return cookie;
    }

    // The start of the path of a "cookie.ini" that is not there yet: QSettings takes a file that
    // keeps its size for unchanged within a moment.
    QString freshIni() { return file("") + QString::number(++m_inis) + QLatin1Char('-'); }

    // One that is there, or was there before, or that nobody wrote.
    QString writtenIni()
    {
        const QString directory = freshIni();
        if (random.oneIn(12)) {
            return directory;
        }
        static const char *const odd[] = {"", "a", "a=1\nb=2", "=", "b=1; path=/p; secure", ";"};
        PlainCookies::Ini ini = {0, QList<QByteArray>()};
        for (int i = random.below(30); i > 0; --i) {
            ini.rawForms.append(random.oneIn(8) ? QByteArray(random.oneOf(odd))
                                                : anyCookie().toRawForm(QNetworkCookie::Full));
        }
        ini.count = int(ini.rawForms.size());
        if (random.oneIn(6)) {
            ini.count = random.below(40) - 3;
        }
        const QString path = directory + textOf("cookie.ini");
        m_plain.inis[path] = ini;
        writeFile(path, cookieIniOfValue(cookieStream(ini.count, ini.rawForms)));
        return directory;
    }

    QByteArray anyXml()
    {
        if (random.oneIn(15)) {
            return QByteArray();
        }
        const QString path = file("cookies.xml");
        if (random.oneIn(3)) {
            m_plain.files[path] = document();
            writeFile(path, m_plain.files.value(path));
        }
        return path.toLatin1();
    }

    void agreeOnIni(const QString &directory)
    {
        const QString path = directory + textOf("cookie.ini");
        if (directory.isEmpty() || (!exists(path) && !m_plain.inis.contains(path))) {
            return;
        }
        const CookieIni ini = decodeCookieIni(readFile(path));
        const PlainCookies::Ini plainIni = m_plain.inis.value(path);
        agree(answerOf(ini.valid, ini.count, ini.rawForms),
              answerOf(m_plain.inis.contains(path), plainIni.count, plainIni.rawForms));
    }

    static Answer answerOf(bool valid, int count, const QList<QByteArray> &rawForms)
    {
        Answer answer;
        answer << valid << count;
        for (const QByteArray &rawForm : rawForms) {
            answer << rawForm;
        }
        return answer;
    }

    static Answer answerOf(const QList<VLMS_CookieInfo> &infos)
    {
        Answer answer;
        for (const VLMS_CookieInfo &info : infos) {
            answer << info.website << info.name << info.path << info.secure << info.expires
                   << info.contents;
        }
        return answer;
    }

    static Answer answerOf(const QList<QNetworkCookie> &cookies)
    {
        Answer answer;
        for (const QNetworkCookie &cookie : cookies) {
            answer << cookie.toRawForm(QNetworkCookie::Full);
        }
        return answer;
    }

    QByteArray document() override
    {
        return documentOf("cookie", "webSiteInfo",
                          QList<QByteArray>() << "website"
                                              << "name"
                                              << "path"
                                              << "secure"
                                              << "expires"
                                              << "contents",
                          30);
    }

    QString fieldText(const QByteArray &fieldName) override
    {
        if (random.oneIn(12)) {
            return random.word();
        }
        if (fieldName == "website") {
            return textOf(random.oneOf(kDomains));
        }
        if (fieldName == "name") {
            return textOf(random.oneOf(kNames));
        }
        if (fieldName == "path") {
            return textOf(random.oneOf(kPaths));
        }
        if (fieldName == "secure") {
            return textOf(random.oneIn(2) ? "true" : "false");
        }
        if (fieldName == "expires") {
            return random.timeText() + textOf(random.oneIn(4) ? "" : ":07");
        }
        return textOf(random.oneOf(kValues));
    }

    VLMC_CookieSetting m_store;
    PlainCookies m_plain;
    int m_inis = 0;
};
} // namespace

class tst_DifferentialCookies : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void agreesWithThePlainRules_data() { addSequences(); }
    void agreesWithThePlainRules() { playSequences<Pair>(); }
    void cleanupTestCase() { reportSequences(); }
};

// Without summer time: in the hours that it skips Qt's own reading is not the rule.
void tst_DifferentialCookies::initTestCase() { qputenv("TZ", "UTC"); }

QTEST_GUILESS_MAIN(tst_DifferentialCookies)
#include "tst_DifferentialCookies.moc"
