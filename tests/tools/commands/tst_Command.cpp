// What all commands of velmora-profile have in common: each on good, empty, missing and closed
// folders; usage; saves that are interrupted or fail.

#include "tests/tools/Tool.h"

#include <QtCore/QDir>

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
} // namespace

class tst_Command : public QObject
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
    void usage_countsOperands_data();
    void usage_countsOperands();
    void usage_takesTheActionBehindTheFolder();
    void usage_takesWhatLooksLikeAnOptionBehindTwoDashes();
    void usage_helpsAndTellsItsVersion();
    void usage_worksInFoldersOfAnyName();
    void closedOutput_isAnError();
    void interruptedSave_leavesTheFileWhole();
    void closedOutput_leavesNothingBehind_data();
    void closedOutput_leavesNothingBehind();
    void failedSave_isSaid_data();
    void failedSave_isSaid();
    void saveOfWhatStandsAlready_isDone();
};

void tst_Command::everyCommand_worksOnAGoodProfile_data()
{
    QTest::addColumn<QByteArray>("command");
    addRows(std::begin(kReading), std::end(kReading));
    addRows(std::begin(kFinding), std::end(kFinding));
    addRows(std::begin(kWriting), std::end(kWriting));
}

void tst_Command::everyCommand_worksOnAGoodProfile()
{
    QFETCH(QByteArray, command);
    const TestDirectory directory;
    writeGoodProfile(directory);
    writeImports(directory);
    QCOMPARE(runTool(directory, "cookies to-xml %").status, 0);

    const ToolRun run = runTool(directory, command.constData(), "secret\n");

    COMPARE_BYTES(
        run.errors,
        command == "cookies to-xml %"
            ? "velmora-profile: lost: sid of .a.example/: the document cannot hold HttpOnly\n"
            : "");
    QCOMPARE(run.status, 0);
    QVERIFY(!runTool(directory, "check %").output.contains("damaged"));
}

void tst_Command::readingCommand_changesNothing_data()
{
    QTest::addColumn<QByteArray>("command");
    addRows(std::begin(kReading), std::end(kReading));
}

void tst_Command::readingCommand_changesNothing()
{
    QFETCH(QByteArray, command);
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray before = contentsOf(directory.path());

    runTool(directory, command.constData());

    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_Command::readingCommand_worksOnAnEmptyFolder_data()
{
    QTest::addColumn<QByteArray>("command");
    addRows(std::begin(kReading), std::end(kReading));
}

void tst_Command::readingCommand_worksOnAnEmptyFolder()
{
    QFETCH(QByteArray, command);
    const TestDirectory directory;

    const ToolRun run = runTool(directory, command.constData());

    COMPARE_BYTES(run.errors, "");
    QCOMPARE(run.status, 0);
    COMPARE_BYTES(contentsOf(directory.path()), "");
}

void tst_Command::writingCommand_endsWellOnAnEmptyFolder_data()
{
    QTest::addColumn<QByteArray>("command");
    addRows(std::begin(kFinding), std::end(kFinding));
    addRows(std::begin(kWriting), std::end(kWriting));
}

// With what there is to do, or one line that says why there is nothing.
void tst_Command::writingCommand_endsWellOnAnEmptyFolder()
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

void tst_Command::everyCommand_refusesAMissingFolder_data()
{
    QTest::addColumn<QByteArray>("command");
    addRows(std::begin(kReading), std::end(kReading));
    addRows(std::begin(kFinding), std::end(kFinding));
    addRows(std::begin(kWriting), std::end(kWriting));
}

void tst_Command::everyCommand_refusesAMissingFolder()
{
    QFETCH(QByteArray, command);
    COMPARE_RUN(runTool(argumentsFor(command, utf8("/nowhere/profile"))), 2, "",
                "velmora-profile: '/nowhere/profile' does not exist; name the folder of a "
                "profile\n");
}

void tst_Command::everyCommand_refusesAFile_data()
{
    QTest::addColumn<QByteArray>("command");
    addRows(std::begin(kReading), std::end(kReading));
    addRows(std::begin(kWriting), std::end(kWriting));
}

void tst_Command::everyCommand_refusesAFile()
{
    QFETCH(QByteArray, command);
    const TestDirectory directory;
    writeFile(directory.file("file"), "content");
    const ToolRun run = runTool(argumentsFor(command, directory.file("file")));
    QCOMPARE(run.status, 2);
    QVERIFY2(isOneLine(run.errors), run.errors.constData());
    COMPARE_BYTES(readFile(directory.file("file")), "content");
}

void tst_Command::writingCommand_refusesAClosedFolder_data()
{
    QTest::addColumn<QByteArray>("command");
    addRows(std::begin(kWriting), std::end(kWriting));
}

void tst_Command::writingCommand_refusesAClosedFolder()
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
    COMPARE_BYTES(
        run.errors,
        "velmora-profile: '" + directory.path().toUtf8()
            + "' cannot be written to; nothing was changed; ask its owner for permission\n");
    QCOMPARE(run.status, 2);
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_Command::readingCommand_worksOnAClosedFolder_data()
{
    QTest::addColumn<QByteArray>("command");
    addRows(std::begin(kReading), std::end(kReading));
    addRows(std::begin(kFinding), std::end(kFinding));
}

void tst_Command::readingCommand_worksOnAClosedFolder()
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

void tst_Command::everyCommand_refusesAFolderThatCannotBeRead()
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

void tst_Command::readingCommand_refusesWhatIsNoFile_data()
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

void tst_Command::readingCommand_refusesWhatIsNoFile()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, command);
    const TestDirectory directory;
    writeGoodProfile(directory);
    QFile::remove(directory.file(file.constData()));
    QDir(directory.path()).mkdir(QString::fromUtf8(file));
    const QByteArray said = "velmora-profile: " + file
                            + " cannot be read: it is not a regular file; move it out of the way\n";

    COMPARE_RUN(runTool(directory, command.constData()), 2, "", said);
    for (const char *const show : {"show %", "show % --json"}) {
        const ToolRun shown = runTool(directory, show);
        COMPARE_BYTES(shown.errors, said);
        QVERIFY2(shown.output.contains("unreadable"), shown.output.constData());
        QCOMPARE(shown.status, 2);
    }
}

void tst_Command::writingCommand_refusesDamage_data()
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

void tst_Command::writingCommand_refusesDamage()
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

void tst_Command::usage_isOneLine_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("unknown command")
        << QByteArray("nope %") << QByteArray("unknown command 'nope'; see --help");
    QTest::newRow("no action") << QByteArray("prefs")
                               << QByteArray("'prefs' needs one of: list, get, set");
    QTest::newRow("unknown action")
        << QByteArray("prefs nope %") << QByteArray("'prefs' needs one of: list, get, set");
    QTest::newRow("unknown option")
        << QByteArray("show % --nope") << QByteArray("'show' has no option --nope; see --help");
    QTest::newRow("another's option") << QByteArray("prefs set % pageInfo.Zoom 1.0 --json")
                                      << QByteArray("'prefs set' has no option --json; see --help");
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
        << QByteArray("unknown preference 'proxy.nope'; 'prefs list' names them all");
    for (const char *const option : {"-n", "-1", "-oFILE"}) {
        QTest::newRow(option) << QByteArray("fonts add % ") + option
                              << QByteArray("unknown option '") + option
                                     + "'; see --help, or put -- before operands that start with a "
                                       "dash";
    }
    QTest::newRow("scheme") << QByteArray("auth add % h 1 Basic u")
                            << QByteArray("the scheme is basic, digest or NTLM, not 'Basic'");
}

void tst_Command::usage_isOneLine()
{
    QFETCH(QByteArray, command);
    QFETCH(QByteArray, message);
    const TestDirectory directory;
    COMPARE_RUN(runTool(directory, command.constData()), 2, "",
                "velmora-profile: " + message + "\n");
    COMPARE_BYTES(contentsOf(directory.path()), "");
}

void tst_Command::usage_countsOperands_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<int>("given");
    QTest::addColumn<QByteArray>("operands");
    const struct {
        const char *name;
        int fewest;
        int most;
        const char *operands;
    } commands[] = {
        {"show", 0, 0, "DIR"},
        {"check", 0, 0, "DIR"},
        {"repair", 0, 0, "DIR"},
        {"diff", 1, 1, "DIR DIR2"},
        {"report", 0, 0, "DIR"},
        {"prefs list", 0, 0, "DIR"},
        {"prefs get", 1, 1, "DIR NAME"},
        {"prefs set", 1, 2, "DIR NAME [VALUE]"},
        {"bookmarks list", 0, 0, "DIR"},
        {"bookmarks add", 1, 2, "DIR URL [TITLE]"},
        {"bookmarks remove", 1, 999, "DIR ID..."},
        {"bookmarks import", 1, 1, "DIR FILE"},
        {"bookmarks export", 1, 1, "DIR FILE"},
        {"history list", 0, 0, "DIR"},
        {"history find", 1, 1, "DIR URL"},
        {"history add", 1, 2, "DIR URL [TITLE]"},
        {"history remove", 1, 999, "DIR ID..."},
        {"history clear", 0, 0, "DIR"},
        {"history export", 1, 1, "DIR FILE"},
        {"fonts list", 0, 0, "DIR"},
        {"fonts add", 1, 999, "DIR NAME..."},
        {"fonts sync", 0, 0, "DIR"},
        {"auth list", 0, 0, "DIR"},
        {"auth add", 4, 4, "DIR HOST PORT SCHEME USER"},
        {"auth remove", 1, 999, "DIR ID..."},
        {"cookies list", 0, 0, "DIR"},
        {"cookies to-xml", 0, 1, "DIR [FILE]"},
        {"cookies to-ini", 0, 1, "DIR [FILE]"},
        {"cookies import", 1, 1, "DIR FILE"},
        {"cookies export", 1, 1, "DIR FILE"},
        {"thumbnails list", 0, 0, "DIR"},
        {"thumbnails pack", 1, 1, "DIR FILE"},
        {"thumbnails unpack", 1, 1, "DIR FILE"},
        {"thumbnails clean", 0, 0, "DIR"},
    };
    for (const auto &command : commands) {
        for (int given : {-1, command.fewest - 1, command.most + 1}) {
            const QByteArray row =
                QByteArray(command.name) + ' ' + QByteArray::number(given) + " operands";
            QTest::newRow(row.constData())
                << QByteArray(command.name) << given << QByteArray(command.operands);
        }
    }
}

// The folder is the first of them.
void tst_Command::usage_countsOperands()
{
    QFETCH(QByteArray, command);
    QFETCH(int, given);
    QFETCH(QByteArray, operands);
    const TestDirectory directory;
    const QByteArray all = given < 0 ? command : command + " %" + QByteArray(" x").repeated(given);
    COMPARE_RUN(runTool(directory, all.constData()), 2, "",
                "velmora-profile: '" + command + "' takes: " + operands + "\n");
    COMPARE_BYTES(contentsOf(directory.path()), "");
}

void tst_Command::usage_takesTheActionBehindTheFolder()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    COMPARE_RUN(runTool(directory, "fonts % list"), 0, "Id  Name\n0   DejaVu Sans\n", "");
    COMPARE_RUN(runTool(directory, "prefs % get pageInfo.Zoom"), 0, "1.2\n", "");
}

void tst_Command::usage_takesWhatLooksLikeAnOptionBehindTwoDashes()
{
    const TestDirectory directory;
    COMPARE_RUN(runTool(directory, "fonts add % -- -n -"), 0, "", "");
    COMPARE_RUN(runTool(directory, "fonts list %"), 0, "Id  Name\n0   -n\n1   -\n", "");
}

void tst_Command::usage_helpsAndTellsItsVersion()
{
    const ToolRun help = runTool(QStringList{utf8("--help")});
    QCOMPARE(help.status, 0);
    QVERIFY(help.output.startsWith("usage: velmora-profile COMMAND DIR ...\n"));
    QVERIFY(help.output.contains("  bookmarks import DIR FILE [--strict] [--dry-run] [--json]\n"));
    const ToolRun version = runTool(QStringList{utf8("--version")});
    QVERIFY(version.output.startsWith("velmora-profile "));
    COMPARE_RUN(runTool(QStringList()), 2, "",
                "velmora-profile: name a command and the folder of a profile; see --help\n");
}

// Paths outside Latin-1 are more than some of the library's operations take.
void tst_Command::usage_worksInFoldersOfAnyName()
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

// Nor does what it would have printed go into a file of the profile.
void tst_Command::closedOutput_isAnError()
{
    const TestDirectory directory;
    writeGoodProfile(directory);
    const QByteArray before = contentsOf(directory.path());
    COMPARE_RUN(runShell(utf8("\"$0\" show \"$1\" >&-"), directory), 2, "",
                "velmora-profile: standard output cannot be written to; check the free space where "
                "it goes\n");
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

// Ctrl-C, at whatever moment it comes: the file is the old one or the new one.
void tst_Command::interruptedSave_leavesTheFileWhole()
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

void tst_Command::closedOutput_leavesNothingBehind_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("cookies") << utf8("cookies to-xml");
    QTest::newRow("thumbnails") << utf8("thumbnails pack");
}

// More than a pipe holds goes to a reader that has gone, while a folder with copies exists.
void tst_Command::closedOutput_leavesNothingBehind()
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

void tst_Command::failedSave_isSaid_data()
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
void tst_Command::failedSave_isSaid()
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
    const QByteArray said =
        "velmora-profile: " + file
        + " could not be written correctly; check the free space and the folder's permissions\n";
    QVERIFY2(run.errors.endsWith(said), run.errors.constData());
    COMPARE_BYTES(contentsOf(directory.path()), before);
}

void tst_Command::saveOfWhatStandsAlready_isDone()
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

QTEST_GUILESS_MAIN(tst_Command)
#include "tst_Command.moc"
