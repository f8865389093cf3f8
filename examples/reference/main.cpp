// Runs the examples of the reference in an empty directory, and ends with status 1 if one does not
// come out as it should: velmora-reference <directory>

#include "examples/reference/Reference.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QEvent>

#include <cstdio>
#include <cstdlib>

void expect(bool condition, const char *file, int line)
{
    if (!condition) {
        fprintf(stderr, "%s:%d: does not hold\n", file, line);
        exit(1);
    }
}

int main(int argc, char **argv)
{
    QCoreApplication browser(argc, argv);
    if (argc != 2) {
        fprintf(stderr, "velmora-reference: name an empty directory\n");
        return 2;
    }
    const QString directory = QString::fromLocal8Bit(argv[1]) + QLatin1Char('/');
    EXPECT(QDir().mkpath(directory + utf8("thumbnail")));
    exampleOfCore(directory);
    exampleOfCommonPreferences(directory);
    exampleOfUserPreferences(directory);
    exampleOfBookmarks(directory);
    exampleOfThumbnails(directory);
    exampleOfHistory(directory);
    exampleOfCookies(directory);
    exampleOfCredentials(directory);
    exampleOfFonts(directory);
    // As the browser's event loop would.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    printf("all examples came out as they should\n");
    return 0;
}
