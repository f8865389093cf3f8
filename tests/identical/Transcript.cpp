#include "tests/identical/Transcript.h"

#include "tests/support/LogRecorder.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QCryptographicHash>
#include <QtCore/QDir>
#include <QtCore/QEvent>
#include <QtCore/QFile>
#include <QtCore/QMap>

#include <cctype>
#include <cstdio>
#include <cstdlib>

namespace
{
const int kMaxPartBytes = 2048;
// Where fewer lines come again, they are as quickly read as looked up.
const int kMinRepeatedBytes = 120;

struct Page {
    QByteArray circumstance;
    QByteArray heading;
    QByteArray lines;
    // What was got so far, and is not among the lines yet.
    QByteArray results;
    // What was printed before, and where.
    QMap<QByteArray, QByteArray> seen;
    bool whole;
};

Page &page()
{
    static Page *const instance = new Page();
    return *instance;
}

QByteArray hex(uint number, int digits)
{
    return QByteArray::number(number, 16).rightJustified(digits, '0').toUpper();
}

QByteArray digest(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex();
}

// For a line of its own, where quotes need no mark.
QByteArray printable(const QByteArray &bytes)
{
    QByteArray text;
    for (const char byte : bytes) {
        const uint code = static_cast<unsigned char>(byte);
        if (byte == '\\') {
            text += "\\\\";
        } else if (code < 0x20 || code > 0x7E) {
            text += "\\x" + hex(code, 2);
        } else {
            text += byte;
        }
    }
    return text;
}

void print(const QByteArray &text) { fwrite(text.constData(), 1, size_t(text.size()), stdout); }

// The lines, or where they stand already.
QByteArray shortened(const QByteArray &lines)
{
    if (page().whole) {
        return lines;
    }
    QByteArray &place = page().seen[lines];
    if (!place.isEmpty() && place != page().heading && lines.size() >= kMinRepeatedBytes) {
        return "    as under " + place + '\n';
    }
    place = page().heading;
    return lines;
}

void addResults()
{
    page().lines += shortened(page().results);
    page().results.clear();
}

void addLines(const QByteArray &title, const QByteArray &lines)
{
    addResults();
    page().lines += "  " + title + '\n' + shortened(lines);
}

QByteArray withoutAddress(const QByteArray &message)
{
    const int start = int(message.indexOf("0x"));
    if (start < 0) {
        return message;
    }
    int end = start + 2;
    while (end < message.size() && isxdigit(static_cast<unsigned char>(message.at(end)))) {
        ++end;
    }
    const bool isNull = message.mid(start, end - start) == "0x0";
    return isNull ? message : message.left(start) + "ADDRESS" + message.mid(end);
}

QByteArray logLine(const LogLine &logged)
{
    return QByteArray::number(qulonglong(logged.level)) + ' '
           + printable(withoutAddress(logged.text));
}

void showFile(const QString &folder, const QString &name)
{
    QFile file(folder + name);
    if (!file.open(QIODevice::ReadOnly)) {
        line("file " + shown(name) + " cannot be read");
        return;
    }
    const QByteArray bytes = file.readAll();
    QByteArray lines;
    const QList<QByteArray> parts = bytes.split('\n');
    for (const QByteArray &part : parts) {
        lines += (part.isEmpty() ? "    |" : "    | " + printable(part)) + '\n';
    }
    addLines("file " + shown(name) + ", " + QByteArray::number(int(bytes.size())) + " bytes",
             lines);
}
} // namespace

QByteArray shown(const QByteArray &bytes)
{
    return '"' + printable(bytes).replace('"', "\\\"") + '"';
}

QByteArray shown(const QString &text)
{
    QByteArray escaped;
    for (const QChar character : text) {
        const uint unit = character.unicode();
        if (unit == '"' || unit == '\\') {
            escaped += '\\';
        }
        escaped += unit < 0x20 || unit > 0x7E ? "\\u" + hex(unit, 4) : QByteArray(1, char(unit));
    }
    return '"' + escaped + '"';
}

QByteArray shown(const QStringList &texts)
{
    QByteArray list;
    for (const QString &text : texts) {
        list += (list.isEmpty() ? "" : ", ") + shown(text);
    }
    return '[' + list + ']';
}

QByteArray shown(int number) { return QByteArray::number(number); }

QByteArray shown(bool value) { return value ? "true" : "false"; }

Part::Part(const QByteArray &heading) { page().heading = printable(heading) + page().circumstance; }

Part::~Part()
{
    addResults();
    const QByteArray lines = shortened(page().lines);
    print("\n# " + page().heading + '\n');
    if (lines.size() > kMaxPartBytes && !page().whole) {
        print("  " + QByteArray::number(int(lines.count('\n'))) + " lines, SHA-1 " + digest(lines)
              + '\n');
    } else {
        print(lines);
    }
    page().lines.clear();
    runDeferredDeletes();
}

void Part::setCircumstance(const QByteArray &circumstance) { page().circumstance = circumstance; }

void Part::showWhole() { page().whole = true; }

void line(const QByteArray &text) { page().results += "  " + text + '\n'; }

void showLog()
{
    QByteArray lines;
    const LogLines logged = takeLog();
    for (int i = 0; i < logged.size();) {
        int end = i + 1;
        while (end < logged.size() && logged.at(end) == logged.at(i)) {
            ++end;
        }
        lines += "    " + logLine(logged.at(i))
                 + (end - i > 1 ? " (" + QByteArray::number(end - i) + " times)" : "") + '\n';
        i = end;
    }
    if (!lines.isEmpty()) {
        addLines("log", lines);
    }
}

void showFolder(const QString &folder)
{
    const QStringList names =
        QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &name : names) {
        // A copy of what the script has just written or changed by hand; that there is one is said
        // in the log.
        if (!name.endsWith(QLatin1String(".damaged"))) {
            showFile(folder, name);
        }
    }
}

QString newFolder()
{
    static int last = 0;
    const QString folder = QString::number(++last) + QLatin1Char('/');
    if (!QDir().mkpath(folder)) {
        fprintf(stderr, "cannot make a folder\n");
        exit(2);
    }
    return folder;
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        fprintf(stderr, "cannot write a file\n");
        exit(2);
    }
}

QString utf8(const char *text) { return QString::fromUtf8(text); }

void runDeferredDeletes() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
