// Paths that Qt resolves and the system does not: saves go where QFile would write, loads come from
// where it would read.

#include "bookmarks/VLMC_ThumbnailConverter.h"
#include "cookies/VLMC_CookieSetting.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLWriter.h"
#include "fonts/VLMC_FontListSetting.h"
#include "tests/support/Files.h"

#include <QtCore/QDir>
#include <QtCore/QDirIterator>

#include <unistd.h>

namespace
{
const char kOld[] = "<old/>";

// A working directory with two folders under the search path "profile:", the second of which holds
// a file.
class Profile
{
public:
    explicit Profile(const QString &file) : m_back(QDir::currentPath())
    {
        QDir(m_directory.path()).mkdir(utf8("first"));
        QDir(m_directory.path()).mkdir(utf8("second"));
        writeFile(m_directory.path() + utf8("second/") + file, kOld);
        QDir::setCurrent(m_directory.path());
        QDir::setSearchPaths(utf8("profile"), QStringList()
                                                  << m_directory.file("first") << utf8("second"));
    }
    ~Profile()
    {
        QDir::setSearchPaths(utf8("profile"), QStringList());
        QDir::setCurrent(m_back);
    }
    Profile(const Profile &) = delete;
    Profile &operator=(const Profile &) = delete;

    // The files that do not hold what they held in the beginning.
    QStringList written() const
    {
        QStringList names;
        QDirIterator entries(utf8("."), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (entries.hasNext()) {
            const QString name = entries.next().mid(2);
            if (readFile(utf8("./") + name) != kOld) {
                names.append(name);
            }
        }
        names.sort();
        return names;
    }

private:
    TestDirectory m_directory;
    QString m_back;
};

QStringList writtenByQFile(const QString &path)
{
    const Profile profile(utf8("f.xml"));
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write("new");
    }
    file.close();
    return profile.written();
}

bool writeTree(QString path)
{
    VLMC_XMLNode root(nullptr, 0);
    QString name = utf8("r");
    root.setName(name);
    VLMC_XMLWriter writer;
    return writer.write(path, &root);
}
} // namespace

class tst_SearchPaths : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { runDeferredDeletes(); }

    void write_writesWhereQFileDoes_data();
    void write_writesWhereQFileDoes();
    void save_writesTheFileThatWasLoaded();
    void convertThumbnailPngToXML_writesThePackThatStands();
    void saveCookieInfo_writesTheFileThatStands();
};

void tst_SearchPaths::write_writesWhereQFileDoes_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("written");
    const QStringList second(utf8("second/f.xml"));
    QTest::newRow("found") << utf8("profile:f.xml") << second;
    QTest::newRow("found behind a slash") << utf8("profile:/f.xml") << second;
    QTest::newRow("in no folder") << utf8("profile:n.xml") << QStringList(utf8("profile:n.xml"));
    QTest::newRow("other prefix") << utf8("other:f.xml") << QStringList(utf8("other:f.xml"));
    QTest::newRow("other case") << utf8("Profile:f.xml") << QStringList(utf8("Profile:f.xml"));
    QTest::newRow("prefix in a folder")
        << utf8("./profile:f.xml") << QStringList(utf8("profile:f.xml"));
    QTest::newRow("colon in the name") << utf8("first/a:b") << QStringList(utf8("first/a:b"));
    QTest::newRow("folder that is not there") << utf8("profile:sub/f.xml") << QStringList();
    QTest::newRow("resource") << utf8(":/f.xml") << QStringList();
    QTest::newRow("resource without a slash") << utf8(":f.xml") << QStringList();
    QTest::newRow("prefix alone") << utf8("profile:") << QStringList();
}

void tst_SearchPaths::write_writesWhereQFileDoes()
{
    QFETCH(QString, path);
    QFETCH(QStringList, written);
    QCOMPARE(writtenByQFile(path), written);

    const Profile profile(utf8("f.xml"));
    QCOMPARE(writeTree(path), !written.isEmpty());
    QCOMPARE(profile.written(), written);
}

void tst_SearchPaths::save_writesTheFileThatWasLoaded()
{
    const Profile profile(utf8("fontlist.xml"));
    writeFile(utf8("second/fontlist.xml"), "<fontlist><font>Sans</font></fontlist>");
    VLMC_FontListSetting fonts;
    QString directory = utf8("profile:");
    fonts.loadFontList(directory);
    QCOMPARE(fonts.getCount(), 1);
    QString name = utf8("Serif");
    fonts.addFont(name);

    fonts.saveFontList(directory);

    QCOMPARE(profile.written(), QStringList(utf8("second/fontlist.xml")));
    fonts.loadFontList(directory);
    QCOMPARE(fonts.getCount(), 2);
}

void tst_SearchPaths::convertThumbnailPngToXML_writesThePackThatStands()
{
    const Profile profile(utf8("thumbnail.xml"));
    writeFile(utf8("first/000001.png"), kOld);
    char folder[] = "profile:";
    char pack[] = "profile:thumbnail.xml";

    VLMC_ThumbnailConverter().convertThumbnailPngToXML(folder, pack);

    QCOMPARE(profile.written(), QStringList(utf8("second/thumbnail.xml")));
    QVERIFY(readFile(utf8("second/thumbnail.xml")).contains(QByteArray(kOld).toBase64()));
    VLMC_ThumbnailConverter().convertThumbnailXMLToPng(pack, folder);
    QCOMPARE(readFile(utf8("first/000001.png")), QByteArray(kOld));
}

void tst_SearchPaths::saveCookieInfo_writesTheFileThatStands()
{
    const Profile profile(utf8("cookie.ini"));
    QString directory = utf8("profile:");
    const QList<QNetworkCookie> cookies = QNetworkCookie::parseCookies("a=1; domain=d");

    VLMC_CookieSetting().saveCookieInfo(cookies, &directory, 20);

    QCOMPARE(profile.written(), QStringList(utf8("second/cookie.ini")));
    QCOMPARE(VLMC_CookieSetting().loadCookieInfo(&directory, 20), cookies);
}

QTEST_GUILESS_MAIN(tst_SearchPaths)
#include "tst_SearchPaths.moc"
