#include "tests/tools/Tool.h"

#include <QtCore/QBuffer>
#include <QtCore/QDataStream>
#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QProcess>
#include <QtCore/QSettings>
#include <QtGui/QImage>

#include <csignal>
#include <unistd.h>

namespace
{
const char kHead[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
const int kMilliseconds = 60000;
const unsigned int kUnprivileged = 65534;

// A sanitizer ends a program with a status that is one of the tool's own, but not without words.
bool isOfTheTool(const QByteArray &errors)
{
    const QList<QByteArray> lines = errors.split('\n');
    for (const QByteArray &line : lines) {
        if (!line.isEmpty() && !line.startsWith("velmora-profile: ")) {
            return false;
        }
    }
    return true;
}

ToolRun run(const QString &program, const QStringList &arguments, const QByteArray &input)
{
    QProcess process;
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    ToolRun result = {-1, QByteArray(), QByteArray()};
    if (process.waitForFinished(kMilliseconds) && process.exitStatus() == QProcess::NormalExit) {
        result.status = process.exitCode();
    }
    result.output = process.readAllStandardOutput();
    result.errors = process.readAllStandardError();
    if (!isOfTheTool(result.errors)) {
        result.status = -1;
    }
    return result;
}

QString toolPath() { return QString::fromUtf8(VELMORA_PROFILE_TOOL); }

QStringList split(const char *arguments, const TestDirectory &directory)
{
    QStringList list = QString::fromUtf8(arguments).split(QLatin1Char(' '));
    list.replaceInStrings(utf8("%"), directory.path());
    return list;
}

QByteArray pngOf(QRgb color)
{
    QImage image(4, 3, QImage::Format_RGB32);
    image.fill(color);
    QByteArray content;
    QBuffer buffer(&content);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return content;
}

void writeCookieIni(const QString &path)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << qint32(2) << QByteArray("sid=abc; secure; HttpOnly; domain=.a.example; path=/")
           << QByteArray("lang=en; expires=Sat, 01-Jan-2050 00:00:00 GMT; domain=b.example; "
                         "path=/docs");
    QSettings settings(path, QSettings::IniFormat);
    settings.setValue(QString::fromLatin1("Cookie/cookies"), bytes);
}

void makePrivate(const QString &path)
{
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
}
} // namespace

ToolRun runTool(const QStringList &arguments, const QByteArray &input)
{
    return run(toolPath(), arguments, input);
}

ToolRun runTool(const TestDirectory &directory, const char *arguments, const QByteArray &input)
{
    return runTool(split(arguments, directory), input);
}

ToolRun runShell(const QString &script, const TestDirectory &directory)
{
    return run(utf8("sh"), {utf8("-c"), script, toolPath(), directory.path()}, QByteArray());
}

ToolRun runInBlocks(int blocks, const TestDirectory &directory, const char *arguments,
                    const QByteArray &input)
{
    const QString command = utf8("trap '' XFSZ; ulimit -f %1; exec \"$0\" \"$@\"").arg(blocks);
    const QStringList shell = {utf8("-c"), command, toolPath()};
    return run(utf8("sh"), shell + split(arguments, directory), input);
}

bool interruptTool(const TestDirectory &directory, const char *arguments, int milliseconds)
{
    QProcess process;
    process.start(toolPath(), split(arguments, directory));
    if (!process.waitForStarted(kMilliseconds)) {
        return false;
    }
    if (milliseconds > 0) {
        QTest::qSleep(milliseconds);
    }
    kill(pid_t(process.processId()), SIGINT);
    return process.waitForFinished(kMilliseconds);
}

ToolRun runUnprivileged(const QStringList &arguments)
{
    if (geteuid() != 0) {
        return runTool(arguments);
    }
    const QString id = QString::number(kUnprivileged);
    QStringList all = {utf8("--reuid"),        id,        utf8("--regid"), id,
                       utf8("--clear-groups"), toolPath()};
    all += arguments;
    return run(utf8("setpriv"), all, QByteArray());
}

bool canRunUnprivileged()
{
    static const bool can = runUnprivileged({utf8("--version")}).status == 0;
    return can;
}

void giveToUnprivileged(const TestDirectory &directory)
{
    if (geteuid() != 0) {
        return;
    }
    QStringList paths = {directory.path()};
    QDirIterator iterator(directory.path(), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                          QDirIterator::Subdirectories);
    while (iterator.hasNext()) {
        paths.append(iterator.next());
    }
    for (const QString &path : qAsConst(paths)) {
        if (chown(QFile::encodeName(path).constData(), kUnprivileged, kUnprivileged) != 0) {
            QTest::qFail("a file cannot be given away", __FILE__, __LINE__);
        }
    }
}

QJsonDocument jsonOf(const ToolRun &run)
{
    const QJsonDocument document = QJsonDocument::fromJson(run.output);
    if (document.isNull()) {
        QTest::qFail("the output is no JSON", __FILE__, __LINE__);
    }
    return document;
}

void writeGoodProfile(const TestDirectory &directory)
{
    writeFile(directory.file("repostry.xml"),
              QByteArray(kHead)
                  + "<repostry_common docInfo=\"1.0\">\n    <proxy>\n"
                    "        <enableProxy>true</enableProxy>\n"
                    "        <hostName>proxy.example</hostName>\n"
                    "        <proxyUserPass><![CDATA[Z2VoZWlt]]></proxyUserPass>\n"
                    "    </proxy>\n    <security version=\"2.0\">\n"
                    "        <enableSSL30>false</enableSSL30>\n    </security>\n"
                    "</repostry_common>\n");
    writeFile(directory.file("repostry_private.xml"),
              QByteArray(kHead)
                  + "<repostry docInfo=\"1.0\">\n    <pageInfo>\n"
                    "        <home>http://home.example/</home>\n        <Zoom>1.2</Zoom>\n"
                    "    </pageInfo>\n</repostry>\n");
    writeFile(
        directory.file("bookmark.xml"),
        QByteArray(kHead)
            + "<bookmarks docInfo=\"1.0\">\n    <bookmark id=\"000\">\n"
              "        <href>http://a.example/</href>\n        <title>Alpha</title>\n"
              "        <thumbnail>000001.PNG</thumbnail>\n    </bookmark>\n"
              "    <bookmark id=\"001\">\n        <href>http://b.example/?x=1&amp;y=2</href>\n"
              "        <title>\xe6\x97\xa5\xe6\x9c\xac &lt;b&gt;</title>\n"
              "        <thumbnail>000002.PNG</thumbnail>\n    </bookmark>\n</bookmarks>\n");
    writeFile(directory.file("visit.xml"),
              QByteArray(kHead)
                  + "<history docInfo=\"1.0\">\n    <pageInfo id=\"000\">\n"
                    "        <title>Second</title>\n        <url>http://b.example/</url>\n"
                    "        <dateTime>2026/01/02 10:30</dateTime>\n    </pageInfo>\n"
                    "    <pageInfo id=\"001\">\n        <title>First</title>\n"
                    "        <url>http://a.example/</url>\n"
                    "        <dateTime>2026/01/01 09:05</dateTime>\n    </pageInfo>\n</history>\n");
    writeFile(directory.file("authinfo.xml"),
              QByteArray(kHead)
                  + "<authentication docInfo=\"1.0\">\n    <authInfo id=\"000\">\n"
                    "        <hostName>host.example</hostName>\n        <portNum>8080</portNum>\n"
                    "        <authType>digest</authType>\n        <user><![CDATA[bWU=]]></user>\n"
                    "        <passwd><![CDATA[Z2VoZWlt]]></passwd>\n    </authInfo>\n"
                    "</authentication>\n");
    writeFile(directory.file("fontlist.xml"),
              QByteArray(kHead)
                  + "<fontlist docInfo=\"1.0\">\n    <font id=\"000\">DejaVu Sans</font>\n"
                    "</fontlist>\n");
    writeCookieIni(directory.file("cookie.ini"));
    QDir(directory.path()).mkdir(utf8("thumbnail"));
    writeFile(directory.file("thumbnail/000001.PNG"), pngOf(0xff336699));
    writeFile(directory.file("thumbnail/000002.PNG"), pngOf(0xff993366));
    makePrivate(directory.file("repostry.xml"));
    makePrivate(directory.file("authinfo.xml"));
    makePrivate(directory.file("cookie.ini"));
}

QByteArray contentsOf(const QString &path)
{
    QStringList files;
    QDirIterator iterator(path, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (iterator.hasNext()) {
        files.append(iterator.next());
    }
    files.sort();
    QByteArray all;
    for (const QString &file : qAsConst(files)) {
        all += file.toUtf8() + '\n' + readFile(file);
    }
    return all;
}

bool isOneLine(const QByteArray &errors)
{
    return errors.startsWith("velmora-profile: ") && errors.count('\n') == 1;
}

QByteArray fullHistory()
{
    QByteArray entries;
    for (int i = 0; i < 999; ++i) {
        entries += "<pageInfo><title/><url>http://" + QByteArray::number(i)
                   + "/</url><dateTime>2026/01/01 00:00</dateTime></pageInfo>";
    }
    return "<history>" + entries + "</history>";
}
