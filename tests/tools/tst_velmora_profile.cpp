// The commands of velmora-profile as one calls them, each on good, empty, missing and closed
// folders.

#include "tests/tools/Tool.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

#include <sys/stat.h>

namespace
{
// Every command with operands that a good profile takes; those of the last list need more than an
// empty one.
const char *const kReading[] = {"show %",
                                "show % --json",
                                "check %",
                                "diff % %",
                                "report % -o -",
                                "prefs list %",
                                "prefs list % --json",
                                "prefs get % pageInfo.Zoom",
                                "bookmarks list %",
                                "bookmarks list % --json",
                                "bookmarks export % -",
                                "history list %",
                                "history list % --json",
                                "history export % -",
                                "fonts list %",
                                "fonts list % --json",
                                "auth list %",
                                "auth list % --json",
                                "cookies list %",
                                "cookies list % --json",
                                "cookies export % -",
                                "thumbnails list %",
                                "thumbnails list % --json"};

const char *const kFinding[] = {"history find % http://a.example/",
                                "history find % http://a.example/ --json",
                                "history export % - --format json",
                                "bookmarks export % - --format xbel", "thumbnails pack % -"};

const char *const kWriting[] = {"repair %",
                                "prefs set % pageInfo.Zoom 1.1",
                                "bookmarks add % http://c.example/",
                                "bookmarks remove % 0",
                                "history add % http://c.example/",
                                "history remove % 0",
                                "history clear %",
                                "fonts add % Serif",
                                "fonts sync %",
                                "auth add % h 1 basic u",
                                "auth remove % 0",
                                "cookies to-xml %",
                                "cookies to-ini %",
                                "thumbnails clean %",
                                "repair % --dry-run",
                                "bookmarks import % %bookmarks.html",
                                "cookies import % %cookies.txt",
                                "thumbnails unpack % %packed.xml"};

// What the importing ones of them import.
void writeImports(const TestDirectory &directory)
{
    writeFile(directory.file("bookmarks.html"),
              "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<DL><p><DT><A "
              "HREF=\"http://c.example/\">C</A></DL>");
    writeFile(directory.file("cookies.txt"),
              "# Netscape HTTP Cookie File\nc.example\tFALSE\t/\tFALSE\t0\tn\tv\n");
    writeFile(directory.file("packed.xml"),
              "<thumbnail><image src=\"000003.PNG\"><![CDATA[iVBORw==]]></image></thumbnail>");
}

// As many visits as a history takes.
QByteArray fullHistory()
{
    QByteArray entries;
    for (int i = 0; i < 999; ++i) {
        entries += "<pageInfo><title/><url>http://" + QByteArray::number(i)
                   + "/</url><dateTime>2026/01/01 00:00</dateTime></pageInfo>";
    }
    return "<history>" + entries + "</history>";
}

void addRows(const char *const *begin, const char *const *end)
{
    for (; begin != end; ++begin) {
        QTest::newRow(*begin) << QByteArray(*begin);
    }
}

QStringList argumentsFor(const QByteArray &command, const QString &folder)
{
    QStringList arguments = QString::fromUtf8(command).split(QLatin1Char(' '));
    arguments.replaceInStrings(utf8("%"), folder);
    return arguments;
}

// The tool lives where clocks are put forward at 02:00 on 2026/03/29.
class ClockChange
{
public:
    ClockChange() : m_before(qgetenv("TZ")) { qputenv("TZ", "Europe/Berlin"); }
    ~ClockChange()
    {
        if (m_before.isNull()) {
            qunsetenv("TZ");
        } else {
            qputenv("TZ", m_before);
        }
    }
    ClockChange(const ClockChange &) = delete;
    ClockChange &operator=(const ClockChange &) = delete;

private:
    QByteArray m_before;
};

QByteArray visit(const char *url, const char *time)
{
    return QByteArray("<pageInfo><title/><url>") + url + "</url><dateTime>" + time
           + "</dateTime></pageInfo>";
}

bool isOneLine(const QByteArray &errors)
{
    return errors.startsWith("velmora-profile: ") && errors.count('\n') == 1;
}
} // namespace

class tst_velmora_profile : public QObject
{
    Q_OBJECT

private slots:
    void everyCommand_worksOnAGoodProfile_data();
    void everyCommand_worksOnAGoodProfile();
    void readingCommand_changesNothing_data();
    void readingCommand_changesNothing();
    void readingCommand_worksOnAnEmptyFolder_data();
    void readingCommand_worksOnAnEmptyFolder();
    void writingCommand_endsWellOnAnEmptyFolder_data();
    void writingCommand_endsWellOnAnEmptyFolder();
    void everyCommand_refusesAMissingFolder_data();
    void everyCommand_refusesAMissingFolder();
    void everyCommand_refusesAFile_data();
    void everyCommand_refusesAFile();
    void writingCommand_refusesAClosedFolder_data();
    void writingCommand_refusesAClosedFolder();
    void readingCommand_worksOnAClosedFolder_data();
    void readingCommand_worksOnAClosedFolder();
    void everyCommand_refusesAFolderThatCannotBeRead();
    void readingCommand_refusesWhatIsNoFile_data();
    void readingCommand_refusesWhatIsNoFile();
    void writingCommand_refusesDamage_data();
    void writingCommand_refusesDamage();
    void usage_isOneLine_data();
    void usage_isOneLine();
    void usage_takesTheActionBehindTheFolder();
    void usage_takesWhatLooksLikeAnOptionBehindTwoDashes();
    void usage_helpsAndTellsItsVersion();
    void usage_worksInFoldersOfAnyName();
    void show_listsEveryFile();
    void show_tellsDamage();
    void show_readsNoMoreThanTheLibrary_data();
    void show_readsNoMoreThanTheLibrary();
    void show_printsJson();
    void prefs_listsValuesAndDefaults();
    void prefs_setsWords_data();
    void prefs_setsWords();
    void prefs_limitsBytes_data();
    void prefs_limitsBytes();
    void prefs_tellWhatTheFileCannotHold();
    void prefs_readsThePasswordFromStandardInput();
    void prefs_saysWhatTheBrowserDoesNotUse();
    void bookmarks_areListed();
    void bookmarks_areAddedAndRemoved();
    void bookmarks_keepTheirThumbnailsInDeepFolders();
    void bookmarks_limitBytes_data();
    void bookmarks_limitBytes();
    void bookmarks_refuseUnknownIds();
    void bookmarks_areFullAt999();
    void history_isListedAndFound();
    void history_isAddedInOrder();
    void history_warnsOfDatesThatDoNotParse();
    void history_isRemovedAndCleared();
    void history_removesWhatItListsWhereClocksChange();
    void times_inTheGapAreKept();
    void history_dropsTheOldestAt999();
    void fonts_areListedAndAdded();
    void fonts_limitBytes_data();
    void fonts_limitBytes();
    void fonts_followFontconfig();
    void auth_masksPasswords();
    void auth_readsThePasswordFromStandardInput();
    void passwords_areRefusedWithoutOne_data();
    void passwords_areRefusedWithoutOne();
    void passwords_mayBeEmptyLines();
    void closedOutput_isAnError();
    void auth_limitsBytes_data();
    void auth_limitsBytes();
    void cookies_areListed();
    void cookies_areListedAsJson();
    void cookies_goToXmlAndBack();
    void cookies_loseHttpOnlyAloudAndNotStrictly();
    void cookies_loseThoseBehindThe20th();
    void cookies_areNotReplacedByWhatIsNone_data();
    void cookies_areNotReplacedByWhatIsNone();
    void cookies_replaceNoDocumentOfAnotherKind();
    void cookies_goThroughStandardInputAndOutput();
    void cookies_stayWhereNewOnesDoNotFit_data();
    void cookies_stayWhereNewOnesDoNotFit();
    void cookies_toIniRefusesADamagedCookieFile();
    void cookies_arePrivateWhenNew();
    void thumbnails_areListed();
    void thumbnails_areFilesAlone_data();
    void thumbnails_areFilesAlone();
    void thumbnails_arePackedAndUnpacked();
    void thumbnails_areUnpackedInPlaceOfPipes();
    void thumbnails_areUnpackedFromStandardInput();
    void thumbnails_areUnpackedIntoTheProfileAlone();
    void thumbnails_areCleaned();
    void thumbnails_areNotCleanedWithoutBookmarks();
    void diff_findsNothingInACopy();
    void diff_tellsEntriesApart();
    void diff_masksTheValuesOfCookies();
    void interruptedSave_leavesTheFileWhole();
    void closedOutput_leavesNothingBehind_data();
    void closedOutput_leavesNothingBehind();
    void failedSave_isSaid_data();
    void failedSave_isSaid();
    void saveOfWhatStandsAlready_isDone();
    void tables_alignWideCharacters();
    void tables_printLongCellsWhole();
    void tables_showNoControlCharacters();
};

void tst_velmora_profile::everyCommand_worksOnAGoodProfile_data()
{
    QTest::addColumn<QByteArray>("command");
    addRows(std::begin(kReading), std::end(kReading));
    addRows(std::begin(kFinding), std::end(kFinding));
    addRows(std::begin(kWriting), std::end(kWriting));
}

void tst_velmora_profile::everyCommand_worksOnAGoodProfile()
{
    QFETCH(QByteArray, command);
    const TestDirectory directory;
    writeGoodProfile(directory);
    writeImports(directory);
    QCOMPARE(runTool(directory, "cookies to-xml %").status, 0);

    const ToolRun run = runTool(directory, command.constData(), "secret\n");

    COMPARE_BYTES(run.errors, command == "cookies to-xml %"
                                  ? "velmora-profile: lost: sid of .a.example/: the document has "
                                    "no room for HttpOnly\n"
                                  : "");
    QCOMPARE(run.status, 0);
    QVERIFY(!runTool(directory, "check %").output.contains("damaged"));
}

void tst_velmora_profile::readingCommand_changesNothing_data()
{
    QTest::addColumn<QByteArray>("command");
    addRows(std::begin(kReading), std::end(kReading));
}

void tst_velmora_profile::readingCommand_changesNothing()
{
    QFETCH(QByteArray, command);
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray before = contentsOf(directory.path());

    runTool(directory, command.constData());

    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_velmora_profile::readingCommand_worksOnAnEmptyFolder_data()
{
    QTest::addColumn<QByteArray>("command");
    addRows(std::begin(kReading), std::end(kReading));
}

void tst_velmora_profile::readingCommand_worksOnAnEmptyFolder()
{
    QFETCH(QByteArray, command);
    const TestDirectory directory;

    const ToolRun run = runTool(directory, command.constData());

    COMPARE_BYTES(run.errors, "");
    QCOMPARE(run.status, 0);
    COMPARE_BYTES(contentsOf(directory.path()), "");
}

void tst_velmora_profile::writingCommand_endsWellOnAnEmptyFolder_data()
{
    QTest::addColumn<QByteArray>("command");
    addRows(std::begin(kFinding), std::end(kFinding));
    addRows(std::begin(kWriting), std::end(kWriting));
}

// With what there is to do, or one line that says why there is nothing.
void tst_velmora_profile::writingCommand_endsWellOnAnEmptyFolder()
{
    QFETCH(QByteArray, command);
    const TestDirectory directory;
    writeImports(directory);

    const ToolRun run = runTool(directory, command.constData(), "secret\n");

    if (run.status == 2) {
        QVERIFY2(isOneLine(run.errors), run.errors.constData());
    } else {
        COMPARE_BYTES(run.errors, "");
        QCOMPARE(run.status, command.startsWith("history find") ? 1 : 0);
    }
    const QByteArray shown = runTool(directory, "show %").output;
    QVERIFY2(!shown.contains("damaged") && !shown.contains("unreadable"), shown.constData());
}

void tst_velmora_profile::everyCommand_refusesAMissingFolder_data()
{
    QTest::addColumn<QByteArray>("command");
    addRows(std::begin(kReading), std::end(kReading));
    addRows(std::begin(kFinding), std::end(kFinding));
    addRows(std::begin(kWriting), std::end(kWriting));
}

void tst_velmora_profile::everyCommand_refusesAMissingFolder()
{
    QFETCH(QByteArray, command);
    COMPARE_RUN(runTool(argumentsFor(command, utf8("/nowhere/profile"))), 2, "",
                "velmora-profile: '/nowhere/profile' does not exist; name the folder of a "
                "profile\n");
}

void tst_velmora_profile::everyCommand_refusesAFile_data()
{
    QTest::addColumn<QByteArray>("command");
    addRows(std::begin(kReading), std::end(kReading));
    addRows(std::begin(kWriting), std::end(kWriting));
}

void tst_velmora_profile::everyCommand_refusesAFile()
{
    QFETCH(QByteArray, command);
    const TestDirectory directory;
    writeFile(directory.file("file"), "content");
    const ToolRun run = runTool(argumentsFor(command, directory.file("file")));
    QCOMPARE(run.status, 2);
    QVERIFY2(isOneLine(run.errors), run.errors.constData());
    COMPARE_BYTES(readFile(directory.file("file")), "content");
}

void tst_velmora_profile::writingCommand_refusesAClosedFolder_data()
{
    QTest::addColumn<QByteArray>("command");
    addRows(std::begin(kWriting), std::end(kWriting));
}

void tst_velmora_profile::writingCommand_refusesAClosedFolder()
{
    QFETCH(QByteArray, command);
    if (!canRunUnprivileged()) {
        QSKIP("root cannot give up its rights here, and nothing is closed to root");
    }
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray before = contentsOf(directory.path());
    const QFile::Permissions readable =
        QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther;
    QFile::setPermissions(directory.path(), readable);

    const ToolRun run = runUnprivileged(argumentsFor(command, directory.path()));

    QFile::setPermissions(directory.path(), readable | QFile::WriteOwner);
    COMPARE_BYTES(run.errors, "velmora-profile: '" + directory.path().toUtf8()
                                  + "' cannot be written to; nothing was changed, ask its owner "
                                    "for permission\n");
    QCOMPARE(run.status, 2);
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_velmora_profile::readingCommand_worksOnAClosedFolder_data()
{
    QTest::addColumn<QByteArray>("command");
    addRows(std::begin(kReading), std::end(kReading));
    addRows(std::begin(kFinding), std::end(kFinding));
}

void tst_velmora_profile::readingCommand_worksOnAClosedFolder()
{
    QFETCH(QByteArray, command);
    if (!canRunUnprivileged()) {
        QSKIP("root cannot give up its rights here, and nothing is closed to root");
    }
    const TestDirectory directory;
    writeGoodProfile(directory);
    giveToUnprivileged(directory);
    QFile::setPermissions(directory.path(), QFile::ReadOwner | QFile::ExeOwner);

    const ToolRun run = runUnprivileged(argumentsFor(command, directory.path()));

    QFile::setPermissions(directory.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    COMPARE_BYTES(run.errors, "");
    QCOMPARE(run.status, 0);
}

void tst_velmora_profile::everyCommand_refusesAFolderThatCannotBeRead()
{
    if (!canRunUnprivileged()) {
        QSKIP("root cannot give up its rights here, and nothing is closed to root");
    }
    const TestDirectory directory;
    giveToUnprivileged(directory);
    QFile::setPermissions(directory.path(), QFile::WriteOwner | QFile::ExeOwner);
    for (const char *const command : {"show %", "repair %", "fonts sync %"}) {
        COMPARE_RUN(runUnprivileged(argumentsFor(command, directory.path())), 2, "",
                    "velmora-profile: '" + directory.path().toUtf8()
                        + "' cannot be read; ask its owner for permission\n");
    }
    QFile::setPermissions(directory.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void tst_velmora_profile::readingCommand_refusesWhatIsNoFile_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("command");
    const char *const rows[][2] = {
        {"repostry.xml", "prefs list %"},
        {"repostry_private.xml", "prefs list % --json"},
        {"repostry_private.xml", "prefs get % pageInfo.Zoom"},
        {"bookmark.xml", "bookmarks list %"},
        {"bookmark.xml", "thumbnails list %"},
        {"visit.xml", "history list % --json"},
        {"visit.xml", "history find % http://a.example/"},
        {"fontlist.xml", "fonts list %"},
        {"authinfo.xml", "auth list %"},
        {"cookie.ini", "cookies list %"},
        {"cookie.ini", "cookies export % -"},
    };
    for (const auto &row : rows) {
        QTest::newRow(row[1]) << QByteArray(row[0]) << QByteArray(row[1]);
    }
}

void tst_velmora_profile::readingCommand_refusesWhatIsNoFile()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, command);
    const TestDirectory directory;
    writeGoodProfile(directory);
    QFile::remove(directory.file(file.constData()));
    QDir(directory.path()).mkdir(QString::fromUtf8(file));
    const QByteArray said =
        "velmora-profile: " + file + " cannot be read: it is no file; move it out of the way\n";

    COMPARE_RUN(runTool(directory, command.constData()), 2, "", said);
    for (const char *const show : {"show %", "show % --json"}) {
        const ToolRun shown = runTool(directory, show);
        COMPARE_BYTES(shown.errors, said);
        QVERIFY2(shown.output.contains("unreadable"), shown.output.constData());
        QCOMPARE(shown.status, 2);
    }
}

void tst_velmora_profile::writingCommand_refusesDamage_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("command");
    const char *const rows[][2] = {
        {"repostry.xml", "prefs set % proxy.enableProxy false"},
        {"repostry_private.xml", "prefs set % pageInfo.Zoom 1.1"},
        {"bookmark.xml", "bookmarks add % http://c.example/"},
        {"bookmark.xml", "bookmarks remove % 0"},
        {"bookmark.xml", "thumbnails clean %"},
        {"visit.xml", "history add % http://c.example/"},
        {"visit.xml", "history remove % 0"},
        {"visit.xml", "history clear %"},
        {"fontlist.xml", "fonts add % Serif"},
        {"fontlist.xml", "fonts sync %"},
        {"authinfo.xml", "auth add % h 1 basic u"},
        {"authinfo.xml", "auth remove % 0"},
        {"cookie.xml", "cookies to-xml %"},
        {"cookie.xml", "cookies to-ini %"},
    };
    for (const auto &row : rows) {
        QTest::newRow(row[1]) << QByteArray(row[0]) << QByteArray(row[1]);
    }
}

void tst_velmora_profile::writingCommand_refusesDamage()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, command);
    const TestDirectory directory;
    writeGoodProfile(directory);
    runTool(directory, "cookies to-xml %");
    const QString path = directory.file(file.constData());
    const QByteArray content = readFile(path);
    writeFile(path, content.left(content.size() - 5));
    const QByteArray before = contentsOf(directory.path());

    const ToolRun run = runTool(directory, command.constData());

    QCOMPARE(run.status, 2);
    QVERIFY2(isOneLine(run.errors) && run.errors.contains("damaged at line"),
             run.errors.constData());
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_velmora_profile::usage_isOneLine_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("unknown command")
        << QByteArray("nope %") << QByteArray("'nope' is no command; --help lists them");
    QTest::newRow("no action") << QByteArray("prefs")
                               << QByteArray("'prefs' is followed by one of: list, get, set");
    QTest::newRow("unknown action") << QByteArray("prefs nope %")
                                    << QByteArray("'prefs' is followed by one of: list, get, set");
    QTest::newRow("no folder") << QByteArray("show") << QByteArray("'show' is followed by: DIR");
    QTest::newRow("too much") << QByteArray("show % x") << QByteArray("'show' is followed by: DIR");
    QTest::newRow("too little") << QByteArray("prefs get %")
                                << QByteArray("'prefs get' is followed by: DIR NAME");
    QTest::newRow("unknown option") << QByteArray("show % --nope")
                                    << QByteArray("'show' has no option --nope; --help lists them");
    QTest::newRow("another's option")
        << QByteArray("prefs set % pageInfo.Zoom 1.0 --json")
        << QByteArray("'prefs set' has no option --json; --help lists them");
    QTest::newRow("option without value")
        << QByteArray("report % -o") << QByteArray("--output needs a value");
    QTest::newRow("switch with value")
        << QByteArray("show % --json=x") << QByteArray("--json takes no value");
    QTest::newRow("log level") << QByteArray("show % --log-level=x")
                               << QByteArray("--log-level takes a number; 0 is silent, 3 is "
                                             "everything");
    QTest::newRow("report without page")
        << QByteArray("report %") << QByteArray("name the page to write: -o FILE.html");
    QTest::newRow("export format") << QByteArray("bookmarks export % - --format=csv")
                                   << QByteArray("--format takes netscape or xbel, not 'csv'");
    QTest::newRow("history format") << QByteArray("history export % - --format xbel")
                                    << QByteArray("--format takes csv or json, not 'xbel'");
    QTest::newRow("time") << QByteArray("history add % http://x/ --time 2026-01-01")
                          << QByteArray("--time takes a time like 2026/01/31 09:05, not "
                                        "'2026-01-01'");
    QTest::newRow("unknown preference")
        << QByteArray("prefs get % proxy.nope")
        << QByteArray("there is no preference 'proxy.nope'; 'prefs list' names them all");
    for (const char *const option : {"-n", "-1", "-oFILE"}) {
        QTest::newRow(option) << QByteArray("fonts add % ") + option
                              << QByteArray("'") + option
                                     + "' is no option; --help lists them, and an operand like it "
                                       "follows --";
    }
    QTest::newRow("scheme") << QByteArray("auth add % h 1 Basic u")
                            << QByteArray("the scheme is basic, digest or NTLM, not 'Basic'");
}

void tst_velmora_profile::usage_isOneLine()
{
    QFETCH(QByteArray, command);
    QFETCH(QByteArray, message);
    const TestDirectory directory;
    COMPARE_RUN(runTool(directory, command.constData()), 2, "",
                "velmora-profile: " + message + "\n");
    COMPARE_BYTES(contentsOf(directory.path()), "");
}

void tst_velmora_profile::usage_takesTheActionBehindTheFolder()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "fonts % list"), 0, "Id  Name\n0   DejaVu Sans\n", "");
    COMPARE_RUN(runTool(directory, "prefs % get pageInfo.Zoom"), 0, "1.2\n", "");
}

void tst_velmora_profile::usage_takesWhatLooksLikeAnOptionBehindTwoDashes()
{
    const TestDirectory directory;
    COMPARE_RUN(runTool(directory, "fonts add % -- -n -"), 0, "", "");
    COMPARE_RUN(runTool(directory, "fonts list %"), 0, "Id  Name\n0   -n\n1   -\n", "");
}

void tst_velmora_profile::usage_helpsAndTellsItsVersion()
{
    const ToolRun help = runTool(QStringList{utf8("--help")});
    QCOMPARE(help.status, 0);
    QVERIFY(help.output.startsWith("usage: velmora-profile COMMAND DIR ...\n"));
    QVERIFY(help.output.contains("  bookmarks import DIR FILE [--strict] [--dry-run] [--json]\n"));
    const ToolRun version = runTool(QStringList{utf8("--version")});
    QVERIFY(version.output.startsWith("velmora-profile "));
    COMPARE_RUN(runTool(QStringList()), 2, "",
                "velmora-profile: name a command and the folder of a profile; --help lists the "
                "commands\n");
}

// Paths outside Latin-1 are more than some of the library's operations take.
void tst_velmora_profile::usage_worksInFoldersOfAnyName()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QString folder = directory.file("\xe6\x97\xa5\xe6\x9c\xac \xc3\xa4");
    QVERIFY(QDir().mkpath(folder));
    QFile::copy(directory.file("cookie.ini"), folder + utf8("/cookie.ini"));

    const ToolRun run = runTool({utf8("cookies"), utf8("to-xml"), folder});

    QCOMPARE(run.status, 0);
    QVERIFY(exists(folder + utf8("/cookie.xml")));
    QCOMPARE(runTool({utf8("cookies"), utf8("to-ini"), folder}).status, 0);
}

void tst_velmora_profile::show_listsEveryFile()
{
    const TestDirectory directory;
    writeFile(directory.file("fontlist.xml"), "<fontlist><font id=\"000\">A</font></fontlist>");
    writeFile(directory.file("visit.xml"), " \n");
    QFile::setPermissions(directory.file("fontlist.xml"), QFile::ReadOwner | QFile::WriteOwner);
    QFile::setPermissions(directory.file("visit.xml"), QFile::ReadOwner | QFile::WriteOwner);
    const QByteArray changed = QFileInfo(directory.file("fontlist.xml"))
                                   .lastModified()
                                   .toString(utf8("yyyy-MM-dd hh:mm:ss"))
                                   .toUtf8();
    const QByteArray changedToo = QFileInfo(directory.file("visit.xml"))
                                      .lastModified()
                                      .toString(utf8("yyyy-MM-dd hh:mm:ss"))
                                      .toUtf8();
    COMPARE_RUN(runTool(directory, "show %"), 0,
                "File                  State    Entries  Bytes  Mode  Changed\n"
                "repostry.xml          missing  -        -      -     -\n"
                "repostry_private.xml  missing  -        -      -     -\n"
                "bookmark.xml          missing  -        -      -     -\n"
                "visit.xml             empty    0        2      0600  "
                    + changedToo
                    + "\n"
                      "authinfo.xml          missing  -        -      -     -\n"
                      "fontlist.xml          whole    1        44     0600  "
                    + changed
                    + "\n"
                      "cookie.xml            missing  -        -      -     -\n"
                      "cookie.ini            missing  -        -      -     -\n"
                      "thumbnail/            missing  -        -      -     -\n"
                      "\n1 finding\n"
                      "visit.xml: it is empty\n"
                      "  means: the browser starts without what it should hold\n"
                      "  to do: restore it, or remove it to start anew\n",
                "");
}

void tst_velmora_profile::show_tellsDamage()
{
    const TestDirectory directory;
    writeFile(directory.file("fontlist.xml"),
              "<fontlist>\n<font>A</font>\n<font>B</font>\n<font>C</fo");
    const ToolRun run = runTool(directory, "show %");
    QVERIFY2(run.output.contains("\nfontlist.xml is damaged at line 4, column 11: Premature end of "
                                 "document. (2 entries before it)\n"),
             run.output.constData());
    QCOMPARE(run.status, 0);
}

void tst_velmora_profile::show_readsNoMoreThanTheLibrary_data()
{
    QTest::addColumn<QByteArray>("declarations");
    QTest::addColumn<QByteArray>("title");
    QTest::addColumn<bool>("isWhole");
    const QByteArray entity = "<!ENTITY e '" + QByteArray(4000, 'x') + "'>";
    QTest::newRow("an entity") << entity << QByteArray("&e;") << true;
    QTest::newRow("two uses of it") << entity << QByteArray("&e;&e;") << false;
    QTest::newRow("more uses than memory holds")
        << entity << QByteArray("&e;").repeated(600000) << false;
    const QByteArray attribute = "<!ATTLIST x a CDATA '" + QByteArray(4000, 'x') + "'>";
    QTest::newRow("an attribute") << attribute << QByteArray("<x/>") << true;
    QTest::newRow("the attribute twice") << attribute << QByteArray("<x/><x/>") << false;
}

// An entity that is used often enough fills all memory out of a small file.
void tst_velmora_profile::show_readsNoMoreThanTheLibrary()
{
    QFETCH(QByteArray, declarations);
    QFETCH(QByteArray, title);
    QFETCH(bool, isWhole);
    const TestDirectory directory;
    const QByteArray bookmark = "<bookmark><href>http://a/</href><thumbnail/>";
    writeFile(directory.file("bookmark.xml"), "<!DOCTYPE b [" + declarations + "]><bookmarks>"
                                                  + bookmark + "</bookmark>" + bookmark + "<title>"
                                                  + title + "</title></bookmark></bookmarks>");
    const QByteArray before = contentsOf(directory.path());
    for (const char *const command :
         {"show %", "check %", "repair % --dry-run", "bookmarks list %"}) {
        const ToolRun run = runTool(directory, command);
        QVERIFY2(run.status == 0 || run.status == 1, command);
        const bool tellsDamage = (run.output + run.errors).contains("(1 entry before it)");
        QVERIFY2(tellsDamage != isWhole || command == QByteArray("repair % --dry-run"),
                 (run.output + run.errors).constData());
    }
    QCOMPARE(runTool(directory, "bookmarks add % http://b/").status, isWhole ? 0 : 2);
    if (!isWhole) {
        COMPARE_BYTES(contentsOf(directory.path()), before);
    }
}

void tst_velmora_profile::show_printsJson()
{
    const TestDirectory directory;
    writeFile(directory.file("fontlist.xml"), "<fontlist>\n<font>A</font>\n<font>");
    const QJsonObject object = jsonOf(runTool(directory, "show % --json")).object();
    QCOMPARE(object.value(utf8("directory")).toString(), directory.path());
    QCOMPARE(object.value(utf8("files")).toArray().size(), 9);
    const QJsonObject fonts = object.value(utf8("files")).toArray().at(5).toObject();
    QCOMPARE(fonts.value(utf8("file")).toString(), utf8("fontlist.xml"));
    QCOMPARE(fonts.value(utf8("state")).toString(), utf8("damaged"));
    const QJsonObject damage = fonts.value(utf8("damage")).toObject();
    QCOMPARE(damage.value(utf8("line")).toInt(), 3);
    QCOMPARE(damage.value(utf8("entriesBefore")).toInt(), 1);
    QCOMPARE(object.value(utf8("findings")).toArray().size(), 2);
}

void tst_velmora_profile::prefs_listsValuesAndDefaults()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const ToolRun run = runTool(directory, "prefs list %");
    const QList<QByteArray> lines = run.output.split('\n');
    QCOMPARE(lines.size(), 28);
    COMPARE_BYTES(lines.at(0), "Name                           Value                 Default      "
                               "Note");
    COMPARE_BYTES(lines.at(7), "proxy.enableProxy              true                  false");
    COMPARE_BYTES(lines.at(15), "proxy.proxyUserPass            ********");
    COMPARE_BYTES(lines.at(20), "pageInfo.home                  http://home.example/  about:blank");
    COMPARE_BYTES(lines.at(21), "pageInfo.startup               homepage              homepage   "
                                "  default, not in the file");
    QVERIFY(runTool(directory, "prefs list % --show-secrets").output.contains("geheim"));
    QVERIFY(!runTool(directory, "prefs list % --json").output.contains("geheim"));
    QVERIFY(runTool(directory, "prefs list % --json --show-secrets").output.contains("geheim"));
}

void tst_velmora_profile::prefs_setsWords_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("words");
    const char *const rows[][2] = {
        {"cookie.acceptCookie", "refuse accept"},
        {"cache.enableCache", "false true"},
        {"cache.cacheDeleteTiming", "changeUser notDelete"},
        {"keyboard.priority", "usb soft"},
        {"javascript.enableJavascript", "false true"},
        {"plugin.enableFlashPlugin", "false true"},
        {"proxy.enableProxy", "true false"},
        {"proxy.enableHTTP11", "false true"},
        {"proxy.enableProxyAuth", "true false"},
        {"security.enableSSL30", "true false"},
        {"security.enableTLS10", "false true"},
        {"security.enableTLS11", "false true"},
        {"security.enableTLS12", "false true"},
        {"pageInfo.startup", "lastpage homepage"},
        {"pageInfo.Zoom", "0.5 0.6 0.7 0.8 0.9 1.0 1.1 1.2 1.3 1.4 1.5"},
        {"cookie.cookieDeleteTiming", "changeUser notDelete"},
        {"authInfo.authInfoDeleteTiming", "changeUser notDelete"},
        {"proxy.hostName", "proxy.example"},
        {"proxy.portHTTP", "81"},
        {"proxy.portHTTPS", "82"},
        {"proxy.unusedDomain", "a;b"},
        {"proxy.proxyUserName", "me"},
        {"pageInfo.home", "http://home/"},
        {"pageInfo.lastPageURL", "http://last/"},
        {"font.fontName", "Serif"},
    };
    for (const auto &row : rows) {
        QTest::newRow(row[0]) << utf8(row[0]) << utf8(row[1]);
    }
}

void tst_velmora_profile::prefs_setsWords()
{
    QFETCH(QString, name);
    QFETCH(QString, words);
    const TestDirectory directory;
    const QStringList values = words.split(QLatin1Char(' '));
    for (const QString &value : values) {
        COMPARE_RUN(runTool({utf8("prefs"), utf8("set"), directory.path(), name, value}), 0, "",
                    "");
        COMPARE_RUN(runTool({utf8("prefs"), utf8("get"), directory.path(), name}), 0,
                    value.toUtf8() + "\n", "");
    }
}

void tst_velmora_profile::prefs_limitsBytes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArray>("refusal");
    const struct {
        const char *name;
        int limit;
        const char *unit;
    } rows[] = {{"proxy.hostName", 253, "bytes of UTF-8"},
                {"proxy.portHTTP", 5, "bytes of UTF-8"},
                {"proxy.portHTTPS", 5, "bytes of UTF-8"},
                {"proxy.unusedDomain", 253, "bytes of UTF-8"},
                {"proxy.proxyUserName", 80, "bytes"},
                {"pageInfo.home", 256, "bytes of UTF-8"},
                {"pageInfo.lastPageURL", 256, "bytes of UTF-8"},
                {"font.fontName", 256, "bytes of UTF-8"}};
    for (const auto &row : rows) {
        const QByteArray refusal = QByteArray("velmora-profile: ") + row.name + " takes at most "
                                   + QByteArray::number(row.limit) + " " + row.unit + "; these are "
                                   + QByteArray::number(row.limit + 1) + "\n";
        const QString fits = QString(row.limit - 3, QLatin1Char('a')) + utf8("\xe3\x81\x82");
        QTest::newRow(QByteArray(row.name) + ", last accepted")
            << utf8(row.name) << fits << QByteArray();
        QTest::newRow(QByteArray(row.name) + ", first refused")
            << utf8(row.name) << fits + QLatin1Char('a') << refusal;
    }
    QTest::newRow("a word")
        << utf8("proxy.enableProxy") << utf8("maybe")
        << QByteArray("velmora-profile: proxy.enableProxy takes true or false, not 'maybe'\n");
    QTest::newRow("a word of old")
        << utf8("cache.cacheDeleteTiming") << utf8("logout")
        << QByteArray("velmora-profile: cache.cacheDeleteTiming takes changeUser or notDelete, not "
                      "'logout'\n");
    QTest::newRow("a zoom") << utf8("pageInfo.Zoom") << utf8("1.6")
                            << QByteArray("velmora-profile: pageInfo.Zoom takes 0.5, 0.6, 0.7, "
                                          "0.8, 0.9, 1.0, 1.1, 1.2, 1.3, 1.4 or 1.5, not '1.6'\n");
}

void tst_velmora_profile::prefs_limitsBytes()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    QFETCH(QByteArray, refusal);
    const TestDirectory directory;
    COMPARE_RUN(runTool({utf8("prefs"), utf8("set"), directory.path(), name, value}),
                refusal.isEmpty() ? 0 : 2, "", refusal);
    if (refusal.isEmpty()) {
        COMPARE_RUN(runTool({utf8("prefs"), utf8("get"), directory.path(), name}), 0,
                    value.toUtf8() + "\n", "");
    } else {
        COMPARE_BYTES(contentsOf(directory.path()), "");
    }
}

void tst_velmora_profile::prefs_tellWhatTheFileCannotHold()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray before = contentsOf(directory.path());
    const QByteArray lost =
        "velmora-profile: lost: pageInfo.home: the file cannot hold all its characters\n";
    COMPARE_RUN(runTool(directory, "prefs set % pageInfo.home http://x/\x01\x1b! --strict"), 2, "",
                lost
                    + "velmora-profile: 1 loss, and --strict was asked for; nothing was changed\n");
    COMPARE_BYTES(contentsOf(directory.path()), before);
    COMPARE_RUN(runTool(directory, "prefs set % pageInfo.home http://x/\x01\x1b!"), 0, "", lost);
    COMPARE_RUN(runTool(directory, "prefs get % pageInfo.home"), 0, "http://x/!\n", "");
    COMPARE_RUN(runTool(directory, "prefs set % proxy.proxyUserName a\x01z --strict"), 0, "", "");
}

void tst_velmora_profile::prefs_readsThePasswordFromStandardInput()
{
    const TestDirectory directory;
    COMPARE_RUN(runTool(directory, "prefs set % proxy.proxyUserPass word"), 2, "",
                "velmora-profile: proxy.proxyUserPass is read from standard input, where others do "
                "not see it; leave it out of the command line\n");
    COMPARE_RUN(runTool(directory, "prefs set % proxy.proxyUserPass", "ge heim\nmore\n"), 0, "",
                "");
    COMPARE_RUN(runTool(directory, "prefs get % proxy.proxyUserPass"), 0, "********\n", "");
    COMPARE_RUN(runTool(directory, "prefs get % proxy.proxyUserPass --show-secrets"), 0,
                "ge heim\n", "");
    COMPARE_RUN(runTool(directory, "prefs set % proxy.proxyUserPass", QByteArray(81, 'x') + "\n"),
                2, "",
                "velmora-profile: proxy.proxyUserPass takes at most 80 bytes; these are 81\n");
    QCOMPARE(QFileInfo(directory.file("repostry.xml")).permissions()
                 & (QFile::ReadGroup | QFile::ReadOther),
             QFile::Permissions());
    COMPARE_RUN(runTool(directory, "prefs set % proxy.hostName"), 2, "",
                "velmora-profile: proxy.hostName takes at most 253 bytes of UTF-8; name a value\n");
}

void tst_velmora_profile::prefs_saysWhatTheBrowserDoesNotUse()
{
    const TestDirectory directory;
    writeFile(directory.file("repostry.xml"),
              "<repostry_common><proxy><portHTTP>123456</portHTTP></proxy>"
              "<cookie><acceptCookie>perhaps</acceptCookie></cookie></repostry_common>");
    COMPARE_RUN(runTool(directory, "prefs get % proxy.portHTTP"), 0, "123456\n",
                "velmora-profile: proxy.portHTTP: 6 bytes, over the limit of 5: the browser uses "
                "the default '8080'\n");
    COMPARE_RUN(runTool(directory, "prefs get % cookie.acceptCookie"), 0, "perhaps\n",
                "velmora-profile: cookie.acceptCookie: the browser does not know this word: the "
                "browser uses the default 'accept'\n");
}

void tst_velmora_profile::bookmarks_areListed()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "bookmarks list %"), 0,
                "Id  Title     URL                        Thumbnail\n"
                "0   Alpha     http://a.example/          000001.PNG\n"
                "1   \xe6\x97\xa5\xe6\x9c\xac <b>  http://b.example/?x=1&y=2  000002.PNG\n",
                "");
    COMPARE_RUN(runTool(directory, "bookmarks list % --json"), 0,
                "[\n    {\n        \"id\": 0,\n        \"thumbnail\": \"000001.PNG\",\n"
                "        \"title\": \"Alpha\",\n        \"url\": \"http://a.example/\"\n    },\n"
                "    {\n        \"id\": 1,\n        \"thumbnail\": \"000002.PNG\",\n"
                "        \"title\": \"\xe6\x97\xa5\xe6\x9c\xac <b>\",\n"
                "        \"url\": \"http://b.example/?x=1&y=2\"\n    }\n]\n",
                "");
}

void tst_velmora_profile::bookmarks_areAddedAndRemoved()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "bookmarks add % http://first/ One --front"), 0, "", "");
    COMPARE_RUN(runTool(directory, "bookmarks add % http://last/"), 0, "", "");
    COMPARE_RUN(runTool(directory, "bookmarks remove % 2 1"), 0, "", "");
    COMPARE_BYTES(readFile(directory.file("bookmark.xml")),
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                  "<bookmarks docInfo=\"1.0\">\n"
                  "    <bookmark id=\"000\">\n"
                  "        <href>http://first/</href>\n"
                  "        <title>One</title>\n"
                  "        <thumbnail>thumbnail/</thumbnail>\n"
                  "    </bookmark>\n"
                  "    <bookmark id=\"001\">\n"
                  "        <href>http://last/</href>\n"
                  "        <title/>\n"
                  "        <thumbnail>thumbnail/</thumbnail>\n"
                  "    </bookmark>\n"
                  "</bookmarks>\n");
}

// The store gives up paths over 256 bytes, and a folder's path would be part of them.
void tst_velmora_profile::bookmarks_keepTheirThumbnailsInDeepFolders()
{
    const TestDirectory directory;
    const QString folder = directory.path() + QString(200, QLatin1Char('d')) + QLatin1Char('/')
                           + QString(100, QLatin1Char('e'));
    QVERIFY(QDir().mkpath(folder));
    writeFile(folder + utf8("/bookmark.xml"),
              "<bookmarks><bookmark><href>http://a/</href><title>A</title>"
              "<thumbnail>000001.PNG</thumbnail></bookmark></bookmarks>");

    QCOMPARE(runTool({utf8("bookmarks"), utf8("add"), folder, utf8("http://b/")}).status, 0);

    QVERIFY(readFile(folder + utf8("/bookmark.xml")).contains("<thumbnail>000001.PNG</thumbnail>"));
}

void tst_velmora_profile::bookmarks_limitBytes_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("title");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("errors");
    const QString url = utf8("http://x/") + QString(247, QLatin1Char('a'));
    const QString title = QString(97, QLatin1Char('t')) + utf8("\xe3\x81\x82");
    QTest::newRow("256 bytes of URL") << url << QString() << 0 << QByteArray();
    QTest::newRow("257 bytes of URL")
        << url + QLatin1Char('a') << QString() << 2
        << QByteArray("velmora-profile: '") + url.toUtf8()
               + "a': its URL has 257 bytes, over the limit of 256; nothing was changed\n";
    QTest::newRow("100 bytes of title") << utf8("http://x/") << title << 0 << QByteArray();
    QTest::newRow("101 bytes of title") << utf8("http://x/") << title + QLatin1Char('t') << 0
                                        << QByteArray("velmora-profile: lost: ") + title.toUtf8()
                                               + "t: its title of 101 bytes is cut to 100\n";
}

void tst_velmora_profile::bookmarks_limitBytes()
{
    QFETCH(QString, url);
    QFETCH(QString, title);
    QFETCH(int, status);
    QFETCH(QByteArray, errors);
    const TestDirectory directory;
    COMPARE_RUN(runTool({utf8("bookmarks"), utf8("add"), directory.path(), url, title}), status, "",
                errors);
    QCOMPARE(exists(directory.file("bookmark.xml")), status == 0);
    if (!errors.isEmpty() && status == 0) {
        const TestDirectory strict;
        QCOMPARE(
            runTool({utf8("bookmarks"), utf8("add"), strict.path(), url, title, utf8("--strict")})
                .status,
            2);
        COMPARE_BYTES(contentsOf(strict.path()), "");
    }
}

void tst_velmora_profile::bookmarks_refuseUnknownIds()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray before = contentsOf(directory.path());
    for (const char *const id : {"2", "-1", "x"}) {
        COMPARE_RUN(runTool(directory, (QByteArray("bookmarks remove % 0 -- ") + id).constData()),
                    2, "",
                    QByteArray("velmora-profile: '") + id
                        + "' is no id; there are 2, the first is 0, 'list' shows them\n");
    }
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_velmora_profile::bookmarks_areFullAt999()
{
    const TestDirectory directory;
    QByteArray entries;
    for (int i = 0; i < 998; ++i) {
        entries += "<bookmark><href>http://x/</href><title/><thumbnail/></bookmark>";
    }
    writeFile(directory.file("bookmark.xml"), "<bookmarks>" + entries + "</bookmarks>");
    COMPARE_RUN(runTool(directory, "bookmarks add % http://y/"), 0, "", "");
    COMPARE_RUN(runTool(directory, "bookmarks add % http://z/"), 2, "",
                "velmora-profile: 'http://z/': the list is full with 999; nothing was changed\n");
    writeFile(directory.file("bookmark.xml"),
              "<bookmarks>" + entries + "<bookmark/><bookmark/>" + "</bookmarks>");
    COMPARE_RUN(runTool(directory, "bookmarks remove % 0"), 2, "",
                "velmora-profile: bookmark.xml holds 1000 entries, 999 at most can be written; "
                "nothing was changed, run 'velmora-profile repair' first\n");
}

void tst_velmora_profile::history_isListedAndFound()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray head = "Id  Visited           Title   URL\n";
    COMPARE_RUN(runTool(directory, "history list %"), 0,
                head
                    + "0   2026/01/02 10:30  Second  http://b.example/\n"
                      "1   2026/01/01 09:05  First   http://a.example/\n",
                "");
    COMPARE_RUN(runTool(directory, "history find % http://a.example/"), 0,
                "Id  Visited           Title  URL\n"
                "1   2026/01/01 09:05  First  http://a.example/\n",
                "");
    COMPARE_RUN(runTool(directory, "history find % http://A.example/"), 1, "", "");
    QCOMPARE(jsonOf(runTool(directory, "history list % --json")).array().size(), 2);
}

void tst_velmora_profile::history_isAddedInOrder()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool({utf8("history"), utf8("add"), directory.path(), utf8("http://c/"),
                         utf8("Between"), utf8("--time"), utf8("2026/01/01 23:59")}),
                0, "", "");
    COMPARE_RUN(runTool(directory, "history list %"), 0,
                "Id  Visited           Title    URL\n"
                "0   2026/01/02 10:30  Second   http://b.example/\n"
                "1   2026/01/01 23:59  Between  http://c/\n"
                "2   2026/01/01 09:05  First    http://a.example/\n",
                "");
}

void tst_velmora_profile::history_warnsOfDatesThatDoNotParse()
{
    const TestDirectory directory;
    const QByteArray document = "<history><pageInfo><title>T</title><url>http://old/</url>"
                                "<dateTime>2026/1/2 3:4</dateTime></pageInfo></history>";
    writeFile(directory.file("visit.xml"), document);
    const QByteArray lost = "velmora-profile: lost: http://old/: its date '2026/1/2 3:4' does not "
                            "parse and is written empty\n";
    COMPARE_RUN(runTool(directory, "history add % http://x/ --strict"), 2, "",
                lost
                    + "velmora-profile: 1 loss, and --strict was asked for; nothing was changed\n");
    COMPARE_BYTES(readFile(directory.file("visit.xml")), document);
    COMPARE_RUN(runTool(directory, "history add % http://x/"), 0, "", lost);
    QVERIFY(readFile(directory.file("visit.xml")).contains("<dateTime/>"));
}

void tst_velmora_profile::history_isRemovedAndCleared()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "history remove % 0"), 0, "", "");
    COMPARE_RUN(runTool(directory, "history list %"), 0,
                "Id  Visited           Title  URL\n"
                "0   2026/01/01 09:05  First  http://a.example/\n",
                "");
    COMPARE_RUN(runTool(directory, "history clear %"), 0, "", "");
    COMPARE_BYTES(readFile(directory.file("visit.xml")),
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<history docInfo=\"1.0\"/>\n");
}

// The 02:30 does not exist where clocks are put forward at 02:00; it stands for 03:30.
void tst_velmora_profile::history_removesWhatItListsWhereClocksChange()
{
    const ClockChange clockChange;
    const QByteArray head = "Id  Visited           Title  URL\n";
    const QByteArray lines[] = {
        "2026/03/29 03:30         http://0/\n", "2026/03/29 02:30         http://1/\n",
        "2026/03/29 01:30         http://2/\n", "2026/03/28 01:30         http://3/\n"};
    for (int removed = 0; removed < 4; ++removed) {
        const TestDirectory directory;
        writeFile(directory.file("visit.xml"), "<history>" + visit("http://0/", "2026/03/29 03:30")
                                                   + visit("http://1/", "2026/03/29 02:30")
                                                   + visit("http://2/", "2026/03/29 01:30")
                                                   + visit("http://3/", "2026/03/28 01:30")
                                                   + "</history>");
        QByteArray before = head;
        QByteArray behind = head;
        int id = 0;
        for (int i = 0; i < 4; ++i) {
            before += QByteArray::number(i) + "   " + lines[i];
            behind += i == removed ? QByteArray() : QByteArray::number(id++) + "   " + lines[i];
        }
        COMPARE_RUN(runTool(directory, "history list %"), 0, before, "");
        COMPARE_RUN(
            runTool({utf8("history"), utf8("remove"), directory.path(), QString::number(removed)}),
            0, "", "");
        COMPARE_RUN(runTool(directory, "history list %"), 0, behind, "");
    }
}

// Nothing is lost, so nothing says so.
void tst_velmora_profile::times_inTheGapAreKept()
{
    const ClockChange clockChange;
    const TestDirectory directory;
    COMPARE_RUN(runTool({utf8("history"), utf8("add"), directory.path(), utf8("http://a/"),
                         utf8("--time"), utf8("2026/03/29 02:30")}),
                0, "", "");
    COMPARE_RUN(runTool({utf8("history"), utf8("add"), directory.path(), utf8("http://b/"),
                         utf8("--strict"), utf8("--time"), utf8("2026/03/30 12:00")}),
                0, "", "");
    QVERIFY(readFile(directory.file("visit.xml")).contains("2026/03/29 02:30"));
    COMPARE_RUN(runTool(directory, "check %"), 0, "nothing is wrong\n", "");
    const QByteArray page = runTool(directory, "report % -o -").output;
    QVERIFY(page.contains("2026-03-29: 1 visit"));
    writeFile(
        directory.file("cookie.xml"),
        "<cookie><webSiteInfo id=\"000\"><website>http://w.example/</website><name>n</name>"
        "<contents>v</contents><expires>2026/03/29 02:30:00</expires></webSiteInfo></cookie>");
    COMPARE_RUN(runTool(directory, "cookies to-ini % --strict"), 0, "", "");
}

void tst_velmora_profile::history_dropsTheOldestAt999()
{
    const TestDirectory directory;
    writeFile(directory.file("visit.xml"), fullHistory());
    COMPARE_RUN(runTool(directory, "history add % http://new/"), 0, "",
                "velmora-profile: lost: http://998/: the oldest of 999 makes room\n");
    QCOMPARE(jsonOf(runTool(directory, "history list % --json")).array().size(), 999);
    QCOMPARE(runTool(directory, "history find % http://new/").status, 0);
    QCOMPARE(runTool(directory, "history find % http://998/").status, 1);
}

void tst_velmora_profile::fonts_areListedAndAdded()
{
    const TestDirectory directory;
    COMPARE_RUN(runTool({utf8("fonts"), utf8("add"), directory.path(), utf8("A"),
                         utf8("\xe3\x81\x82 & B")}),
                0, "", "");
    COMPARE_RUN(runTool(directory, "fonts list %"), 0, "Id  Name\n0   A\n1   \xe3\x81\x82 & B\n",
                "");
    COMPARE_RUN(runTool({utf8("fonts"), utf8("add"), directory.path(), QString()}), 2, "",
                "velmora-profile: '': a font needs a name; nothing was changed\n");
}

void tst_velmora_profile::fonts_limitBytes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("status");
    const QString longest = QString(253, QLatin1Char('f')) + utf8("\xe3\x81\x82");
    QTest::newRow("256 bytes") << longest << 0;
    QTest::newRow("257 bytes") << longest + QLatin1Char('f') << 2;
}

void tst_velmora_profile::fonts_limitBytes()
{
    QFETCH(QString, name);
    QFETCH(int, status);
    const TestDirectory directory;
    QCOMPARE(runTool({utf8("fonts"), utf8("add"), directory.path(), name}).status, status);
    QCOMPARE(exists(directory.file("fontlist.xml")), status == 0);
}

void tst_velmora_profile::fonts_followFontconfig()
{
    const TestDirectory directory;
    writeFile(directory.file("fontlist.xml"),
              "<fontlist><font>No Such Font</font><font>DejaVu Sans</font></fontlist>");
    const QByteArray before = readFile(directory.file("fontlist.xml"));
    const ToolRun dry = runTool(directory, "fonts sync % --dry-run");
    QCOMPARE(dry.status, 0);
    QVERIFY2(dry.output.startsWith("- No Such Font\n+ "), dry.output.constData());
    COMPARE_BYTES(readFile(directory.file("fontlist.xml")), before);

    COMPARE_RUN(runTool(directory, "fonts sync %"), 0, dry.output, "");

    QVERIFY(runTool(directory, "fonts list %").output.startsWith("Id  Name\n0   DejaVu Sans\n"));
    COMPARE_RUN(runTool(directory, "fonts sync %"), 0, "", "");
}

void tst_velmora_profile::auth_masksPasswords()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "auth list %"), 0,
                "Id  Host          Port  Scheme  User  Password\n"
                "0   host.example  8080  digest  me    ********\n",
                "");
    COMPARE_RUN(runTool(directory, "auth list % --show-secrets"), 0,
                "Id  Host          Port  Scheme  User  Password\n"
                "0   host.example  8080  digest  me    geheim\n",
                "");
    QVERIFY(!runTool(directory, "auth list % --json").output.contains("geheim"));
    QVERIFY(runTool(directory, "auth list % --json --show-secrets").output.contains("geheim"));
}

void tst_velmora_profile::auth_readsThePasswordFromStandardInput()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "auth add % new.example 80 NTLM you", "p w\n"), 0, "", "");
    COMPARE_RUN(runTool(directory, "auth list % --show-secrets"), 0,
                "Id  Host          Port  Scheme  User  Password\n"
                "0   new.example   80    NTLM    you   p w\n"
                "1   host.example  8080  digest  me    geheim\n",
                "");
    COMPARE_RUN(runTool(directory, "auth remove % 1"), 0, "", "");
    QVERIFY(!runTool(directory, "auth list %").output.contains("host.example"));
    const TestDirectory fresh;
    QCOMPARE(runTool(fresh, "auth add % h 1 basic u", "p").status, 0);
    QCOMPARE(QFileInfo(fresh.file("authinfo.xml")).permissions()
                 & (QFile::ReadGroup | QFile::ReadOther),
             QFile::Permissions());
}

void tst_velmora_profile::passwords_areRefusedWithoutOne_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("input");
    QTest::addColumn<QByteArray>("refusal");
    const char *const inputs[][2] = {
        {"< /", "standard input cannot be read"},
        {"<&-", "standard input cannot be read"},
        {"< /dev/null", "standard input holds no password"},
        {"< \"$1/latin1\"", "the password is no text in UTF-8"},
        {"< \"$1/mark\"", "the password is no text in UTF-8"},
    };
    for (const char *const command :
         {"prefs set \"$1\" proxy.proxyUserPass", "auth add \"$1\" h 80 basic u"}) {
        for (const auto &input : inputs) {
            QTest::newRow(QByteArray(command) + ' ' + input[0])
                << utf8(command) << utf8(input[0])
                << QByteArray("velmora-profile: ") + input[1] + "; nothing was changed\n";
        }
    }
}

void tst_velmora_profile::passwords_areRefusedWithoutOne()
{
    QFETCH(QString, command);
    QFETCH(QString, input);
    QFETCH(QByteArray, refusal);
    const TestDirectory directory;
    writeGoodProfile(directory);
    writeFile(directory.file("latin1"), "gehe\xefm\n");
    writeFile(directory.file("mark"), "\xef\xbb\xbfgeheim\n");
    const QByteArray before = contentsOf(directory.path());
    COMPARE_RUN(runShell(utf8("\"$0\" ") + command + QLatin1Char(' ') + input, directory), 2, "",
                refusal);
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_velmora_profile::passwords_mayBeEmptyLines()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "prefs set % proxy.proxyUserPass", "\n"), 0, "", "");
    COMPARE_RUN(runTool(directory, "prefs get % proxy.proxyUserPass --show-secrets"), 0, "\n", "");
    COMPARE_RUN(runTool(directory, "auth add % h 80 basic u", "\n"), 0, "", "");
}

// What it would have printed goes into no file of the profile either.
void tst_velmora_profile::closedOutput_isAnError()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray before = contentsOf(directory.path());
    COMPARE_RUN(runShell(utf8("\"$0\" show \"$1\" >&-"), directory), 2, "",
                "velmora-profile: standard output cannot be written to; look at the space of what "
                "it goes to\n");
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_velmora_profile::auth_limitsBytes_data()
{
    QTest::addColumn<int>("host");
    QTest::addColumn<int>("port");
    QTest::addColumn<int>("user");
    QTest::addColumn<int>("password");
    QTest::addColumn<QByteArray>("refusal");
    QTest::newRow("last accepted") << 256 << 5 << 272 << 272 << QByteArray();
    QTest::newRow("host") << 257 << 5 << 272 << 272
                          << QByteArray("the host has 257 bytes, over the limit of 256");
    QTest::newRow("port") << 256 << 6 << 272 << 272
                          << QByteArray("the port has 6 bytes, over the limit of 5");
    QTest::newRow("user") << 256 << 5 << 273 << 272
                          << QByteArray("the user has 273 bytes, over the limit of 272");
    QTest::newRow("password") << 256 << 5 << 272 << 273
                              << QByteArray("the password has 273 bytes, over the limit of 272");
}

void tst_velmora_profile::auth_limitsBytes()
{
    QFETCH(int, host);
    QFETCH(int, port);
    QFETCH(int, user);
    QFETCH(int, password);
    QFETCH(QByteArray, refusal);
    const TestDirectory directory;
    const QStringList arguments = {utf8("auth"),
                                   utf8("add"),
                                   directory.path(),
                                   QString(host, QLatin1Char('h')),
                                   QString(port, QLatin1Char('1')),
                                   utf8("basic"),
                                   QString(user, QLatin1Char('u'))};
    COMPARE_RUN(runTool(arguments, QByteArray(password, 'p')), refusal.isEmpty() ? 0 : 2, "",
                refusal.isEmpty() ? QByteArray()
                                  : "velmora-profile: " + refusal + "; nothing was changed\n");
    QCOMPARE(exists(directory.file("authinfo.xml")), refusal.isEmpty());
}

void tst_velmora_profile::cookies_areListed()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "cookies list %"), 0,
                "Site        Name  Path   Secure  HttpOnly  Expires               Value\n"
                ".a.example  sid   /      yes     yes       session               ********\n"
                "b.example   lang  /docs  no      no        2050-01-01T00:00:00Z  ********\n",
                "");
    COMPARE_RUN(runTool(directory, "cookies list % --show-secrets"), 0,
                "Site        Name  Path   Secure  HttpOnly  Expires               Value\n"
                ".a.example  sid   /      yes     yes       session               abc\n"
                "b.example   lang  /docs  no      no        2050-01-01T00:00:00Z  en\n",
                "");
}

void tst_velmora_profile::cookies_areListedAsJson()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const ToolRun masked = runTool(directory, "cookies list % --json");
    QVERIFY2(masked.output.contains("\"value\": \"********\""), masked.output.constData());
    QVERIFY2(!masked.output.contains("abc"), masked.output.constData());
    const ToolRun shown = runTool(directory, "cookies list % --json --show-secrets");
    QCOMPARE(jsonOf(shown).array().at(0).toObject().value(utf8("value")).toString(), utf8("abc"));
}

void tst_velmora_profile::cookies_goToXmlAndBack()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    QCOMPARE(runTool(directory, "cookies to-xml %").status, 0);
    COMPARE_BYTES(readFile(directory.file("cookie.xml")),
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                  "<cookie docInfo=\"1.0\">\n"
                  "    <webSiteInfo id=\"000\">\n"
                  "        <website>.a.example</website>\n"
                  "        <name>sid</name>\n"
                  "        <path>/</path>\n"
                  "        <secure>true</secure>\n"
                  "        <expires/>\n"
                  "        <contents><![CDATA[abc]]></contents>\n"
                  "    </webSiteInfo>\n"
                  "    <webSiteInfo id=\"001\">\n"
                  "        <website>b.example</website>\n"
                  "        <name>lang</name>\n"
                  "        <path>/docs</path>\n"
                  "        <secure>false</secure>\n"
                  "        <expires>2050/01/01 00:00:00</expires>\n"
                  "        <contents><![CDATA[en]]></contents>\n"
                  "    </webSiteInfo>\n"
                  "</cookie>\n");
    QFile::remove(directory.file("cookie.ini"));
    COMPARE_RUN(runTool(directory, "cookies to-ini %"), 0, "", "");
    QVERIFY(runTool(directory, "cookies list %")
                .output.contains(".a.example  sid   /      yes     no        session"));
    COMPARE_RUN(runTool(directory, "cookies to-ini % %none.xml"), 2, "",
                "velmora-profile: '" + directory.path().toUtf8()
                    + "none.xml' cannot be read: No such file or directory\n");
}

void tst_velmora_profile::cookies_loseHttpOnlyAloudAndNotStrictly()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "cookies to-xml % --strict"), 2, "",
                "velmora-profile: lost: sid of .a.example/: the document has no room for HttpOnly\n"
                "velmora-profile: 1 loss, and --strict was asked for; nothing was changed\n");
    QVERIFY(!exists(directory.file("cookie.xml")));
    QFile::remove(directory.file("cookie.ini"));
    COMPARE_RUN(runTool(directory, "cookies to-xml %"), 2, "",
                "velmora-profile: there is no cookie.ini to convert; nothing was changed\n");
}

void tst_velmora_profile::cookies_loseThoseBehindThe20th()
{
    const TestDirectory directory;
    QByteArray entries;
    for (int i = 0; i < 21; ++i) {
        entries += "<webSiteInfo id=\"" + QByteArray::number(i) + "\"><website>w</website><name>n"
                   + QByteArray::number(i) + "</name><path>/</path><secure>false</secure><expires>"
                   + (i == 3 ? "soon" : "") + "</expires><contents><![CDATA[v]]></contents>"
                   + "</webSiteInfo>";
    }
    writeFile(directory.file("cookie.xml"), "<cookie>" + entries + "</cookie>");
    COMPARE_RUN(runTool(directory, "cookies to-ini %"), 0, "",
                "velmora-profile: lost: n3 of w: its expiry 'soon' does not parse: it becomes a "
                "session cookie\n"
                "velmora-profile: lost: n20 of w: only the first 20 are converted\n");
    QCOMPARE(jsonOf(runTool(directory, "cookies list % --json")).array().size(), 20);
}

void tst_velmora_profile::cookies_areNotReplacedByWhatIsNone_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("empty") << QByteArray() << QByteArray("is empty; nothing was changed");
    QTest::newRow("blank") << QByteArray(" \n") << QByteArray("is empty; nothing was changed");
    QTest::newRow("another kind") << QByteArray(
        "<bookmarks><bookmark><href>u</href></bookmark></bookmarks>")
                                  << QByteArray("is no cookie document; nothing was changed");
    QTest::newRow("damaged") << QByteArray("<cookie>\n<webSiteInfo id=\"000\"><website>w</website>"
                                           "<name>n</name></webSiteInfo>\n<webSiteInfo>")
                             << QByteArray("is damaged at line 3, ");
}

// From a file, and from where it can be read only once.
void tst_velmora_profile::cookies_areNotReplacedByWhatIsNone()
{
    QFETCH(QByteArray, document);
    QFETCH(QByteArray, reason);
    const TestDirectory directory;
    writeGoodProfile(directory);
    writeFile(directory.file("other.xml"), document);
    const QByteArray before = contentsOf(directory.path());

    for (const char *const file : {"%other.xml", "-", "/dev/stdin"}) {
        const ToolRun run =
            runTool(directory, QByteArray("cookies to-ini % ").append(file).constData(), document);

        QVERIFY2(isOneLine(run.errors) && run.errors.contains("' " + reason),
                 run.errors.constData());
        QCOMPARE(run.status, 2);
        COMPARE_BYTES(contentsOf(directory.path()), before);
    }
}

void tst_velmora_profile::cookies_replaceNoDocumentOfAnotherKind()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray before = contentsOf(directory.path());
    COMPARE_RUN(runTool(directory, "cookies to-xml % %bookmark.xml"), 2, "",
                "velmora-profile: '" + directory.path().toUtf8()
                    + "bookmark.xml' is no cookie document; nothing was changed\n");
    COMPARE_BYTES(contentsOf(directory.path()), before);
    writeFile(directory.file("new.xml"), "");
    QCOMPARE(runTool(directory, "cookies to-xml % %new.xml").status, 0);
    QVERIFY(readFile(directory.file("new.xml")).contains("<name>lang</name>"));
}

void tst_velmora_profile::cookies_goThroughStandardInputAndOutput()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray document = runTool(directory, "cookies to-xml % -").output;
    QFile::remove(directory.file("cookie.ini"));
    COMPARE_RUN(runTool(directory, "cookies to-ini % -", document), 0, "", "");
    QCOMPARE(jsonOf(runTool(directory, "cookies list % --json")).array().size(), 2);
}

void tst_velmora_profile::cookies_stayWhereNewOnesDoNotFit_data()
{
    QTest::addColumn<int>("blocks");
    QTest::newRow("none") << 0;
    QTest::newRow("a part") << 2;
}

void tst_velmora_profile::cookies_stayWhereNewOnesDoNotFit()
{
    QFETCH(int, blocks);
    const TestDirectory directory;
    writeGoodProfile(directory);
    writeFile(directory.file("cookies.txt"),
              "# Netscape HTTP Cookie File\nb.example\tFALSE\t/docs\tFALSE\t0\tlang\t"
                  + QByteArray(4000, 'v') + "\n");
    const QByteArray before = contentsOf(directory.path());

    const ToolRun run = runInBlocks(blocks, directory, "cookies import % %cookies.txt");

    COMPARE_BYTES(run.errors, "velmora-profile: cookie.ini could not be written; nothing was "
                              "changed, look at the space for temporary files\n");
    QCOMPARE(run.status, 2);
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_velmora_profile::cookies_toIniRefusesADamagedCookieFile()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    QCOMPARE(runTool(directory, "cookies to-xml %").status, 0);
    writeFile(directory.file("cookie.ini"), "[Cookie]\ncookies=@ByteArray(\\0\\0\\0\\x3)\n");
    const QByteArray before = contentsOf(directory.path());
    const ToolRun run = runTool(directory, "cookies to-ini %");
    QVERIFY2(isOneLine(run.errors) && run.errors.contains("cookie.ini is damaged: "),
             run.errors.constData());
    QCOMPARE(run.status, 2);
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_velmora_profile::cookies_arePrivateWhenNew()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    QCOMPARE(runTool(directory, "cookies to-xml %").status, 0);
    QFile::remove(directory.file("cookie.ini"));
    QCOMPARE(runTool(directory, "cookies to-ini %").status, 0);
    for (const char *const name : {"cookie.xml", "cookie.ini"}) {
        QCOMPARE(QFileInfo(directory.file(name)).permissions()
                     & (QFile::ReadGroup | QFile::ReadOther),
                 QFile::Permissions());
    }
}

void tst_velmora_profile::thumbnails_areListed()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    writeFile(directory.file("thumbnail/000009.PNG"), "no image");
    QFile::remove(directory.file("thumbnail/000002.PNG"));
    COMPARE_RUN(runTool(directory, "thumbnails list %"), 0,
                "File        Size      Bookmark\n"
                "000001.PNG  4x3       Alpha\n"
                "000002.PNG  missing   \xe6\x97\xa5\xe6\x9c\xac <b>\n"
                "000009.PNG  no image\n",
                "");
}

void tst_velmora_profile::thumbnails_areFilesAlone_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("piece");
    QTest::newRow("list") << QByteArray("thumbnails list %")
                          << QByteArray("000001.PNG  no image  Alpha\n000002.PNG  no image  ");
    QTest::newRow("pack") << QByteArray("thumbnails pack % -") << QByteArray("<thumbnail");
    QTest::newRow("clean") << QByteArray("thumbnails clean % --dry-run") << QByteArray();
    QTest::newRow("report") << QByteArray("report % -o -") << QByteArray("no picture</span>");
    QTest::newRow("diff") << QByteArray("diff % %") << QByteArray();
    QTest::newRow("check") << QByteArray("check %") << QByteArray("nothing is wrong\n");
    QTest::newRow("repair") << QByteArray("repair % --dry-run") << QByteArray();
}

// A FIFO keeps its reader waiting, and a device may have no end.
void tst_velmora_profile::thumbnails_areFilesAlone()
{
    QFETCH(QByteArray, command);
    QFETCH(QByteArray, piece);
    TestDirectory directory;
    writeGoodProfile(directory);
    const QString endless = directory.file("thumbnail/000002.PNG");
    QVERIFY(QFile::remove(directory.file("thumbnail/000001.PNG")) && QFile::remove(endless));
    QCOMPARE(mkfifo(directory.localFile("thumbnail/000001.PNG"), 0600), 0);
    QVERIFY(QFile::link(utf8("/dev/zero"), endless));
    const ToolRun run = runTool(directory, command.constData());
    COMPARE_BYTES(run.errors, "");
    QCOMPARE(run.status, 0);
    QVERIFY2(run.output.contains(piece), run.output.constData());
}

void tst_velmora_profile::thumbnails_arePackedAndUnpacked()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "thumbnails pack % %packed.xml"), 0, "", "");
    const QByteArray one = readFile(directory.file("thumbnail/000001.PNG"));
    QFile::remove(directory.file("thumbnail/000001.PNG"));
    const QByteArray names = "000002.PNG\n000001.PNG\n";
    COMPARE_RUN(runTool(directory, "thumbnails unpack % %packed.xml --dry-run"), 0, names, "");
    QVERIFY(!exists(directory.file("thumbnail/000001.PNG")));
    COMPARE_RUN(runTool(directory, "thumbnails unpack % %packed.xml"), 0, names, "");
    COMPARE_BYTES(readFile(directory.file("thumbnail/000001.PNG")), one);
    COMPARE_RUN(runTool(directory, "thumbnails unpack % %bookmark.xml"), 2, "",
                "velmora-profile: '" + directory.path().toUtf8()
                    + "bookmark.xml' holds no packed thumbnails; nothing was changed\n");
}

// Nobody named the pipe, so nobody waits at its other end.
void tst_velmora_profile::thumbnails_areUnpackedInPlaceOfPipes()
{
    TestDirectory directory;
    writeGoodProfile(directory);
    QCOMPARE(runTool(directory, "thumbnails pack % %packed.xml").status, 0);
    const QString file = directory.file("thumbnail/000001.PNG");
    const QByteArray content = readFile(file);
    QVERIFY(QFile::remove(file));
    QCOMPARE(mkfifo(directory.localFile("thumbnail/000001.PNG"), 0600), 0);
    QCOMPARE(runTool(directory, "thumbnails unpack % %packed.xml").status, 0);
    QVERIFY(QFileInfo(file).isFile());
    COMPARE_BYTES(readFile(file), content);
}

void tst_velmora_profile::thumbnails_areUnpackedFromStandardInput()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray packed = runTool(directory, "thumbnails pack % -").output;
    const QByteArray one = readFile(directory.file("thumbnail/000001.PNG"));
    for (const char *const command : {"thumbnails unpack % -", "thumbnails unpack % /dev/stdin"}) {
        QFile::remove(directory.file("thumbnail/000001.PNG"));
        COMPARE_RUN(runTool(directory, command, packed), 0, "000002.PNG\n000001.PNG\n", "");
        COMPARE_BYTES(readFile(directory.file("thumbnail/000001.PNG")), one);
    }
    COMPARE_RUN(runTool(directory, "thumbnails unpack % -"), 2, "",
                "velmora-profile: '-' holds no packed thumbnails; nothing was changed\n");
    COMPARE_RUN(runTool(directory, "thumbnails unpack % %none.xml"), 2, "",
                "velmora-profile: '" + directory.path().toUtf8()
                    + "none.xml' cannot be read: No such file or directory\n");
}

void tst_velmora_profile::thumbnails_areUnpackedIntoTheProfileAlone()
{
    const TestDirectory directory;
    writeFile(directory.file("packed.xml"),
              "<thumbnail><image src=\"../evil.PNG\"><![CDATA[AAAA]]></image>"
              "<image src=\"plain.PNG\">AAAA</image><image><![CDATA[AAAA]]></image>"
              "<image src=\"good.PNG\"><![CDATA[AAAA]]></image></thumbnail>");
    COMPARE_RUN(runTool(directory, "thumbnails unpack % %packed.xml"), 0, "good.PNG\n",
                "velmora-profile: lost: ../evil.PNG: it is no packed image with a file name of its "
                "own\n"
                "velmora-profile: lost: plain.PNG: it is no packed image with a file name of its "
                "own\n"
                "velmora-profile: lost: image: it is no packed image with a file name of its "
                "own\n");
    QVERIFY(!exists(directory.file("evil.PNG")));
    COMPARE_BYTES(readFile(directory.file("thumbnail/good.PNG")), QByteArray(3, '\0'));
}

void tst_velmora_profile::thumbnails_areCleaned()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    writeFile(directory.file("thumbnail/000009.PNG"), "x");
    writeFile(directory.file("thumbnail/notes.txt"), "x");
    COMPARE_RUN(runTool(directory, "thumbnails clean % --dry-run"), 0, "000009.PNG\n", "");
    QVERIFY(exists(directory.file("thumbnail/000009.PNG")));
    COMPARE_RUN(runTool(directory, "thumbnails clean %"), 0, "000009.PNG\n", "");
    QVERIFY(!exists(directory.file("thumbnail/000009.PNG")));
    QVERIFY(exists(directory.file("thumbnail/000001.PNG")));
    QVERIFY(exists(directory.file("thumbnail/notes.txt")));
}

void tst_velmora_profile::thumbnails_areNotCleanedWithoutBookmarks()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    QFile::remove(directory.file("bookmark.xml"));
    COMPARE_RUN(
        runTool(directory, "thumbnails clean %"), 2, "",
        "velmora-profile: bookmark.xml is missing: nothing says which files are in use, and "
        "nothing was changed\n");
    QVERIFY(exists(directory.file("thumbnail/000001.PNG")));
}

void tst_velmora_profile::diff_findsNothingInACopy()
{
    const TestDirectory one;
    const TestDirectory other;
    writeGoodProfile(one);
    writeGoodProfile(other);
    COMPARE_RUN(runTool({utf8("diff"), one.path(), other.path()}), 0, "", "");
    COMPARE_RUN(runTool({utf8("diff"), one.path(), other.file("none")}), 2, "",
                "velmora-profile: '" + other.path().toUtf8()
                    + "none' cannot be read; name the folder of a profile\n");
}

void tst_velmora_profile::diff_tellsEntriesApart()
{
    const TestDirectory one;
    const TestDirectory other;
    writeGoodProfile(one);
    writeGoodProfile(other);
    runTool(other, "prefs set % pageInfo.Zoom 1.5");
    runTool(other, "prefs set % proxy.proxyUserPass", "other\n");
    runTool(other, "bookmarks remove % 0");
    runTool(other, "bookmarks add % http://c.example/");
    runTool(other, "fonts add % Serif");
    runTool(other, "auth remove % 0");
    runTool(other, "auth add % host.example 8080 digest me", "anders\n");
    writeFile(other.file("visit.xml"),
              "<history><pageInfo><title>First</title><url>http://a.example/</url>"
              "<dateTime>2026/01/01 09:05</dateTime></pageInfo>"
              "<pageInfo><title>Second</title><url>http://b.example/</url>"
              "<dateTime>2026/01/02 10:30</dateTime></pageInfo></history>");
    COMPARE_RUN(runTool({utf8("diff"), one.path(), other.path()}), 1,
                "repostry.xml\n"
                "  ~ proxy.proxyUserPass: value '********' is '********'\n"
                "repostry_private.xml\n"
                "  ~ pageInfo.Zoom: value '1.2' is '1.5'\n"
                "bookmark.xml\n"
                "  - http://a.example/\n"
                "  + http://c.example/\n"
                "visit.xml\n"
                "  the same entries in another order\n"
                "authinfo.xml\n"
                "  ~ host.example:8080: password '********' is '********'\n"
                "fontlist.xml\n"
                "  + Serif\n",
                "");
    const ToolRun json =
        runTool({utf8("diff"), one.path(), other.path(), utf8("--json"), utf8("--show-secrets")});
    QCOMPARE(jsonOf(json).array().size(), 7);
    QVERIFY(json.output.contains("\"after\": \"anders\""));
}

void tst_velmora_profile::diff_masksTheValuesOfCookies()
{
    const TestDirectory one;
    const TestDirectory other;
    for (const TestDirectory *const directory : {&one, &other}) {
        writeGoodProfile(*directory);
        runTool(*directory, "cookies to-xml %");
    }
    runTool(other, "cookies import % -", "b.example\tFALSE\t/docs\tFALSE\t2524608000\tlang\tja\n");
    runTool(other, "cookies to-xml %");
    QStringList arguments = {utf8("diff"), one.path(), other.path()};
    COMPARE_RUN(runTool(arguments), 1,
                "cookie.xml\n"
                "  ~ lang of b.example/docs: value '********' is '********'\n"
                "cookie.ini\n"
                "  ~ lang of b.example/docs: value '********' is '********'\n",
                "");
    const ToolRun json = runTool(arguments + QStringList(utf8("--json")));
    QCOMPARE(json.output.count("\"********\""), 4);
    const ToolRun shown = runTool(arguments + QStringList(utf8("--show-secrets")));
    QCOMPARE(shown.output.count("value 'en' is 'ja'\n"), 2);
}

// Ctrl-C, at whatever moment it comes: the file is the old one or the new one.
void tst_velmora_profile::interruptedSave_leavesTheFileWhole()
{
    const TestDirectory directory;
    QByteArray entries;
    for (int i = 0; i < 990; ++i) {
        entries += "<bookmark><href>http://x/</href><title/><thumbnail/></bookmark>";
    }
    writeFile(directory.file("bookmark.xml"), "<bookmarks>" + entries + "</bookmarks>");
    for (int milliseconds = 0; milliseconds < 60; milliseconds += 6) {
        QCOMPARE(interruptTool(directory, "bookmarks add % http://y/ --front", milliseconds), true);
        const ToolRun run = runTool(directory, "show %");
        QVERIFY2(run.output.contains("\nbookmark.xml          whole    9"), run.output.constData());
        runTool(directory, "bookmarks remove % 0");
    }
}

void tst_velmora_profile::closedOutput_leavesNothingBehind_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("cookies") << utf8("cookies to-xml");
    QTest::newRow("thumbnails") << utf8("thumbnails pack");
}

// More than a pipe holds goes to a reader that has gone, while a folder with copies exists.
void tst_velmora_profile::closedOutput_leavesNothingBehind()
{
    QFETCH(QString, command);
    const TestDirectory directory;
    writeGoodProfile(directory);
    writeFile(directory.file("thumbnail/000003.PNG"), QByteArray(200000, 'x'));
    QByteArray cookies;
    for (int i = 0; i < 100; ++i) {
        cookies += "c.example\tFALSE\t/\tFALSE\t0\tn" + QByteArray::number(i) + "\t"
                   + QByteArray(2000, 'v') + "\n";
    }
    writeFile(directory.file("cookies.txt"), "# Netscape HTTP Cookie File\n" + cookies);
    QCOMPARE(runTool(directory, "cookies import % %cookies.txt").status, 0);
    const TestDirectory temporary;
    runShell(utf8("TMPDIR='%1' \"$0\" %2 \"$1\" - | true").arg(temporary.path(), command),
             directory);
    COMPARE_BYTES(contentsOf(temporary.path()), "");
    QVERIFY(QDir(temporary.path()).isEmpty());
}

void tst_velmora_profile::failedSave_isSaid_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("command");
    const char *const rows[][2] = {
        {"repostry.xml", "prefs set % proxy.hostName lost.example"},
        {"repostry_private.xml", "prefs set % pageInfo.Zoom 1.5"},
        {"bookmark.xml", "bookmarks add % http://c.example/"},
        {"bookmark.xml", "bookmarks remove % 0"},
        {"visit.xml", "history add % http://c.example/"},
        {"visit.xml", "history clear %"},
        {"fontlist.xml", "fonts add % Serif"},
        {"authinfo.xml", "auth add % h 1 basic u"},
    };
    for (const auto &row : rows) {
        QTest::newRow(row[1]) << QByteArray(row[0]) << QByteArray(row[1]);
    }
}

// Also of a save that leaves as many entries as there were.
void tst_velmora_profile::failedSave_isSaid()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, command);
    const TestDirectory directory;
    writeGoodProfile(directory);
    writeFile(directory.file("visit.xml"), fullHistory());
    QCOMPARE(runTool(directory, "prefs set % proxy.portHTTP 1111").status, 0);
    QCOMPARE(runTool(directory, "prefs set % pageInfo.Zoom 1.1").status, 0);
    const QByteArray before = contentsOf(directory.path());

    const ToolRun run = runInBlocks(0, directory, command.constData(), "secret\n");

    QCOMPARE(run.status, 2);
    const QByteArray said = "velmora-profile: " + file
                            + " could not be written as it should be; look at the space and the "
                              "permissions of the folder\n";
    QVERIFY2(run.errors.endsWith(said), run.errors.constData());
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_velmora_profile::saveOfWhatStandsAlready_isDone()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    for (int i = 0; i < 2; ++i) {
        COMPARE_RUN(runTool(directory, "prefs set % proxy.portHTTP 1111"), 0, "", "");
        COMPARE_RUN(runTool(directory, "history clear %"), 0, "", "");
        COMPARE_RUN(runTool(directory, "bookmarks add % http://c.example/"), 0, "", "");
        COMPARE_RUN(runTool(directory, "bookmarks remove % 2"), 0, "", "");
    }
}

void tst_velmora_profile::tables_alignWideCharacters()
{
    const TestDirectory directory;
    writeFile(directory.file("bookmark.xml"),
              "<bookmarks><bookmark><href>u</href><title>e\xcc\x81</title><thumbnail/></bookmark>"
              "<bookmark><href>u</href><title>\xe3\x81\x82</title><thumbnail/></bookmark>"
              "<bookmark><href>u</href><title>\xf0\x9f\x98\x80</title><thumbnail/></bookmark>"
              "</bookmarks>");
    COMPARE_RUN(runTool(directory, "bookmarks list %"), 0,
                "Id  Title  URL  Thumbnail\n"
                "0   e\xcc\x81      u\n"
                "1   \xe3\x81\x82     u\n"
                "2   \xf0\x9f\x98\x80     u\n",
                "");
}

// Rows that were all as long as the longest cell would take 6 GB.
void tst_velmora_profile::tables_printLongCellsWhole()
{
    const TestDirectory directory;
    const QByteArray title(3000000, 't');
    const QByteArray entry = "<bookmark><href>u</href><title>s</title><thumbnail/></bookmark>";
    writeFile(directory.file("bookmark.xml"), "<bookmarks><bookmark><href>u</href><title>" + title
                                                  + "</title><thumbnail/></bookmark>"
                                                  + entry.repeated(998) + "</bookmarks>");
    const ToolRun run = runTool(directory, "bookmarks list %");
    QCOMPARE(run.status, 0);
    const QList<QByteArray> lines = run.output.split('\n');
    QCOMPARE(int(lines.size()), 1 + 999 + 1);
    QVERIFY(lines.at(1) == "0    " + title + "  u");
    QVERIFY(lines.at(2).startsWith("1    s  ") && lines.at(2).endsWith("  u"));
    QVERIFY(lines.at(2).size() < 10000);
}

void tst_velmora_profile::tables_showNoControlCharacters()
{
    const TestDirectory directory;
    writeFile(directory.file("fontlist.xml"),
              "<fontlist><font>a\nb</font><font>x\xe2\x80\xaey</font><font>c\xc2\x9b"
              "1m</font></fontlist>");
    COMPARE_RUN(runTool(directory, "fonts list %"), 0,
                "Id  Name\n0   a\xe2\x90\x8a"
                "b\n1   x\xef\xbf\xbdy\n2   c\xef\xbf\xbd"
                "1m\n",
                "");
}

QTEST_GUILESS_MAIN(tst_velmora_profile)
#include "tst_velmora_profile.moc"
