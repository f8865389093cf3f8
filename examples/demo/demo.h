#ifndef EXAMPLES_DEMO_DEMO_H
#define EXAMPLES_DEMO_DEMO_H

#include <QtCore/QString>
#include <QtCore/QStringList>

// Each part of the tour works on the profile in this directory, whose name ends with "/".
void showPreferences(const QString &directory);
void showBookmarks(const QString &profile);
void showThumbnails(const QString &directory);
void showHistory(const QString &profile);
void showCookies(const QString &profile);
void showCredentials(const QString &profile);
void showFonts(const QString &directory);

// Ends the program with status 1 unless the step went well.
void expect(bool wentWell, const char *step);

// Printing for all parts. Secrets in a file are printed as kMasked.
const char kMasked[] = "********";
void heading(const char *title);
void say(const QString &line);
void printFile(const QString &path, const QStringList &secrets = QStringList());

// A text from a UTF-8 literal.
QString text(const char *utf8);

#endif
