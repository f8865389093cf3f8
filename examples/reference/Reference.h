#ifndef EXAMPLES_REFERENCE_REFERENCE_H
#define EXAMPLES_REFERENCE_REFERENCE_H

// The examples of the reference: each is between two comments with its name, and is shown on the
// pages of docs/reference/. The lines around it check its result.

#include <QtCore/QString>

/// Ends the program and names the line that does not hold.
void expect(bool condition, const char *file, int line);
#define EXPECT(condition) expect((condition), __FILE__, __LINE__)

/// A text from a UTF-8 literal.
inline QString utf8(const char *text) { return QString::fromUtf8(text); }

// The directory is empty and ends with "/".
void exampleOfCore(const QString &directory);
void exampleOfCommonPreferences(QString directory);
void exampleOfUserPreferences(QString directory);
void exampleOfBookmarks(QString directory);
void exampleOfThumbnails(QString directory);
void exampleOfHistory(QString directory);
void exampleOfCookies(QString directory);
void exampleOfCredentials(QString directory);
void exampleOfFonts(const QString &directory);

#endif
