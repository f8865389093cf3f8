#include "examples/demo/demo.h"

#include <QtCore/QFile>
#include <QtCore/QStringList>

#include <cstdio>

namespace
{
// Longer files are cut in the middle when printed.
const int kShownLines = 14;

void printLines(const QStringList &lines, int from, int to)
{
    for (int i = from; i < to; ++i) {
        printf("    | %s\n", lines.at(i).toUtf8().constData());
    }
}
} // namespace

void heading(const char *title) { printf("\n--- %s\n", title); }

void say(const QString &line) { printf("%s\n", line.toUtf8().constData()); }

void printFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        say(text("%1 cannot be read").arg(path));
        return;
    }
    say(text("%1 (%2 bytes):").arg(path).arg(file.size()));
    const QString content = QString::fromUtf8(file.readAll().constData());
    QStringList lines = content.split(QLatin1Char('\n'));
    lines.removeLast();
    const int count = int(lines.size());
    if (count <= kShownLines) {
        printLines(lines, 0, count);
        return;
    }
    printLines(lines, 0, kShownLines / 2);
    say(text("    | ... %1 lines ...").arg(count - kShownLines));
    printLines(lines, count - kShownLines / 2, count);
}

QString text(const char *utf8) { return QString::fromUtf8(utf8); }
