#include "examples/demo/demo.h"

#include <QtCore/QFile>
#include <QtCore/QStringList>

#include <cstdio>
#include <cstdlib>

namespace
{
// Longer files are printed without their middle, longer lines without their end.
const int kShownLines = 14;
const int kShownCharacters = 200;

void printLines(const QStringList &lines, int from, int to)
{
    for (int i = from; i < to; ++i) {
        const QString &line = lines.at(i);
        const bool cut = line.size() > kShownCharacters;
        say(text("    | %1%2").arg(line.left(kShownCharacters)).arg(text(cut ? "..." : "")));
    }
}
} // namespace

void expect(bool wentWell, const char *step)
{
    if (!wentWell) {
        fflush(stdout);
        fprintf(stderr, "velmora-demo: this failed: %s\n", step);
        exit(1);
    }
}

void heading(const char *title) { printf("\n--- %s\n", title); }

void say(const QString &line) { printf("%s\n", line.toUtf8().constData()); }

void printFile(const QString &path, const QStringList &secrets)
{
    QFile file(path);
    expect(file.open(QIODevice::ReadOnly), qPrintable(text("%1 is read").arg(path)));
    say(text("%1 (%2 bytes):").arg(path).arg(file.size()));
    QString content = QString::fromUtf8(file.readAll().constData());
    for (const QString &secret : secrets) {
        content.replace(secret, text(kMasked));
    }
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
