#ifndef DEMO_H
#define DEMO_H

#include <QtCore/QString>

// Each part of the tour works on the profile in this directory, whose name ends with "/".
void showFonts(const QString &directory);

// Printing for all parts.
void heading(const char *title);
void say(const QString &line);
void printFile(const QString &path);

// A text from a UTF-8 literal.
QString text(const char *utf8);

#endif
