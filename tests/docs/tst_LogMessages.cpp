// docs/log-messages.md lists what the sources print, and nothing else.

#include "tests/support/Files.h"

#include <QtCore/QDirIterator>
#include <QtCore/QFileInfo>
#include <QtCore/QMap>
#include <QtCore/QSet>

namespace
{
const char *const kFolders[] = {"text",      "files",   "core", "preferences",
                                "bookmarks", "cookies", "fonts"};
const char kPrint[] = "VLMG_DebugPrint(";
const char kRefused[] = "refused(";

// A message as "class level text".
QByteArray message(const QByteArray &className, int level, const QByteArray &text)
{
    return className + ' ' + QByteArray::number(level) + ' ' + text;
}

// The first string literal from here on, without its quotes, adjacent ones put together; end
// becomes the place behind it. None of them has an escape but those of quotes and backslashes.
QByteArray literal(const QByteArray &source, int start, int *end)
{
    QByteArray text;
    int place = int(source.indexOf('"', start));
    while (place >= 0 && source.at(place) == '"') {
        for (++place; source.at(place) != '"'; ++place) {
            if (source.at(place) == '\\') {
                ++place;
            }
            text.append(source.at(place));
        }
        ++place;
        *end = place;
        while (QByteArray(" \n").contains(source.at(place))) {
            ++place;
        }
    }
    return text;
}

int levelNamed(const QByteArray &name)
{
    if (name == "VLMG_LogError") {
        return 1;
    }
    if (name == "VLMG_LogWarning") {
        return 2;
    }
    return name == "VLMG_LogTrace" ? 3 : 0;
}

// VLMC_BookmarksSetting for VLMC_BookmarksSetting_thumbnails.cpp.
QByteArray classOf(const QString &path)
{
    const QList<QByteArray> parts = QFileInfo(path).baseName().toUtf8().split('_');
    return parts.size() < 2 ? parts.first() : parts.at(0) + '_' + parts.at(1);
}

bool isWithinIdentifier(const QByteArray &source, int place)
{
    const char before = place > 0 ? source.at(place - 1) : ' ';
    return before == '_' || before == ':' || (before >= 'a' && before <= 'z')
           || (before >= 'A' && before <= 'Z');
}

// What one source prints. A call whose message cannot be read gives one with "?".
QStringList messagesOf(const QString &path)
{
    const QByteArray source = readFile(path);
    QStringList messages;
    int end = 0;
    for (int i = int(source.indexOf(kPrint)); i >= 0; i = int(source.indexOf(kPrint, i + 1))) {
        const int start = i + int(sizeof kPrint) - 1;
        const int comma = int(source.indexOf(',', start));
        const QByteArray level = source.mid(start, comma - start).trimmed();
        const bool isLiteral = source.mid(comma + 1, 80).trimmed().startsWith('"');
        const QByteArray text = isLiteral ? literal(source, comma, &end) : QByteArray("?");
        messages += QString::fromUtf8(message(classOf(path), levelNamed(level), text));
    }
    for (int i = int(source.indexOf(kRefused)); i >= 0; i = int(source.indexOf(kRefused, i + 1))) {
        const int statement = int(source.indexOf('{', i));
        if (isWithinIdentifier(source, i)) {
            continue;
        }
        const QByteArray text = literal(source, i, &end);
        const bool isHere = end < statement;
        messages += QString::fromUtf8(message(classOf(path), 2, isHere ? text : QByteArray("?")));
    }
    return messages;
}

QSet<QString> messagesOfSources()
{
    QSet<QString> messages;
    for (const char *const folder : kFolders) {
        QDirIterator files(utf8(SOURCE_FOLDER) + QLatin1Char('/') + QLatin1String(folder),
                           QStringList() << utf8("*.cpp") << utf8("*.h"), QDir::Files);
        while (files.hasNext()) {
            const QString path = files.next();
            // The helpers' own: they pass on what the stores hand them.
            if (QFileInfo(path).baseName() == utf8("VLMG_Debug")
                || QFileInfo(path).baseName() == utf8("Refused_p")) {
                continue;
            }
            for (const QString &found : messagesOf(path)) {
                messages.insert(found);
            }
        }
    }
    return messages;
}

QList<QByteArray> linesOfPage()
{
    return readFile(utf8(SOURCE_FOLDER "/docs/log-messages.md")).split('\n');
}

QStringList rowsOfPage()
{
    QStringList rows;
    QByteArray className;
    for (const QByteArray &line : linesOfPage()) {
        if (line.startsWith("## ")) {
            className = line.mid(3);
        }
        if (line.startsWith("| `")) {
            const int end = int(line.indexOf("` | "));
            rows += QString::fromUtf8(
                message(className, line.mid(end + 4, 1).toInt(), line.mid(3, end - 3)));
        }
    }
    return rows;
}

// The cells of a table's row, without the blanks around them.
QList<QByteArray> cellsOf(const QByteArray &row)
{
    QList<QByteArray> cells;
    for (const QByteArray &cell : row.mid(1, row.size() - 2).split('|')) {
        cells += cell.trimmed();
    }
    return cells;
}

// The words for meanings that the page gives once, with meaning and advice.
QMap<QByteArray, QList<QByteArray>> sharedMeanings()
{
    QMap<QByteArray, QList<QByteArray>> meanings;
    bool isShared = false;
    for (const QByteArray &line : linesOfPage()) {
        if (line.startsWith("## ")) {
            isShared = line == "## Shared meanings";
        } else if (isShared && line.startsWith("| ") && !line.startsWith("| Word ")) {
            const QList<QByteArray> cells = cellsOf(line);
            meanings.insert(cells.first(), cells.mid(1));
        }
    }
    return meanings;
}

QByteArray sorted(const QSet<QString> &messages)
{
    QStringList list(messages.values());
    list.sort();
    return list.join(utf8("\n")).toUtf8();
}
} // namespace

class tst_LogMessages : public QObject
{
    Q_OBJECT

private slots:
    void page_listsWhatTheSourcesPrint();
    void page_fillsEveryColumn();
    void page_explainsSharedMeanings();
    void sources_printWholeLiterals();
};

// Each once, and nothing else.
void tst_LogMessages::page_listsWhatTheSourcesPrint()
{
    const QSet<QString> printed = messagesOfSources();
    QVERIFY(printed.size() > 80);
    QStringList rows = rowsOfPage();
    rows.sort();
    COMPARE_BYTES(rows.join(utf8("\n")).toUtf8(), sorted(printed));
}

// Text, level and operation, and behind them meaning and advice or the word for a shared meaning.
void tst_LogMessages::page_fillsEveryColumn()
{
    const QMap<QByteArray, QList<QByteArray>> shared = sharedMeanings();
    for (const QByteArray &line : linesOfPage()) {
        if (!line.startsWith("| `")) {
            continue;
        }
        const QList<QByteArray> cells = cellsOf(line);
        QVERIFY2(!cells.contains(QByteArray()), line.constData());
        const bool isShared = cells.size() == 4 && shared.contains(cells.at(3));
        QVERIFY2(isShared || cells.size() == 5, line.constData());
    }
}

void tst_LogMessages::page_explainsSharedMeanings()
{
    QSet<QByteArray> used;
    for (const QByteArray &line : linesOfPage()) {
        if (line.startsWith("| `")) {
            used.insert(cellsOf(line).last());
        }
    }
    const QMap<QByteArray, QList<QByteArray>> shared = sharedMeanings();
    QVERIFY(!shared.isEmpty());
    for (const QByteArray &word : shared.keys()) {
        QVERIFY2(used.contains(word), word.constData());
        QCOMPARE(int(shared.value(word).size()), 2);
        QVERIFY2(!shared.value(word).contains(QByteArray()), word.constData());
    }
}

// So that a search for a message finds the line that prints it.
void tst_LogMessages::sources_printWholeLiterals()
{
    for (const QString &found : messagesOfSources()) {
        QVERIFY2(!found.endsWith(QLatin1Char('?')) || found.contains(utf8("Why Pass??")),
                 qPrintable(found));
        QVERIFY2(!found.contains(utf8(" 0 ")), qPrintable(found));
    }
}

QTEST_GUILESS_MAIN(tst_LogMessages)
#include "tst_LogMessages.moc"
