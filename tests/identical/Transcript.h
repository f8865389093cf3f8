#ifndef TRANSCRIPT_H
#define TRANSCRIPT_H

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

/// Texts and bytes as the transcript has them: quoted, in printable ASCII alone, so that neither
/// Qt's conversions nor a terminal comes in between.
QByteArray shown(const QString &text);
QByteArray shown(const QByteArray &bytes);
QByteArray shown(const QStringList &texts);
QByteArray shown(int number);
QByteArray shown(bool value);

/**
 * What is printed under one heading, on standard output when the part ends. What is longer than a
 * page is kept as its digest, unless the transcript is asked for as a whole; the same lines printed
 * once more only say where they stood before. One part at a time.
 */
class Part
{
public:
    explicit Part(const QByteArray &heading);
    ~Part();
    Part(const Part &) = delete;
    Part &operator=(const Part &) = delete;

    /// What the headings to come end with.
    static void setCircumstance(const QByteArray &circumstance);
    /// Long parts are printed, too, from now on.
    static void showWhole();
};

/// One line of the part.
void line(const QByteArray &text);
/// One line with a result: "<name>: <value>".
template <typename Value>
void line(const char *name, const Value &value)
{
    line(name + QByteArray(": ") + shown(value));
}

/// What the library has logged since the last call, in a line per message; the same message several
/// times in a row takes one line. Addresses do not show.
void showLog();
/// Name, size and bytes of every file in the folder, in the order of their names.
void showFolder(const QString &folder);

/// A new folder, "<number>/" below the one that the program works in.
QString newFolder();
void writeFile(const QString &path, const QByteArray &bytes);

/// A text from a UTF-8 literal.
QString utf8(const char *text);
/// Carries out what deleteLater() has put off.
void runDeferredDeletes();

#endif
