#ifndef TESTS_SUPPORT_FILES_H
#define TESTS_SUPPORT_FILES_H

#include "tests/support/QtTest.h"
#include "tests/support/TemporaryFolder.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// A temporary directory of its own, removed at the end. path() ends with "/", as the stores want
/// their directories.
class TestDirectory
{
public:
    TestDirectory();

    QString path() const;
    /// path() for the operations that take a pointer to it; good until the object ends.
    QString *pathPointer();
    QString file(const char *name) const;
    /// path() + name in the local encoding, for char * arguments; good until the object ends.
    char *localFile(const char *name = "");

private:
    TemporaryFolder m_directory;
    QString m_path;
    QList<QByteArray> m_localFiles;
};

/// The whole file; the test fails when it cannot be read.
QByteArray readFile(const QString &path);
void writeFile(const QString &path, const QByteArray &content);
bool exists(const QString &path);

/// Carries out deferred deletions, as the event loop would.
void runDeferredDeletes();

/// Compares two documents as a whole and, if they differ, shows the first line that does.
bool sameBytes(const QByteArray &actual, const QByteArray &expected, const char *file, int line);
#define COMPARE_BYTES(actual, expected)                                                            \
    do {                                                                                           \
        if (!sameBytes(actual, expected, __FILE__, __LINE__)) {                                    \
            return;                                                                                \
        }                                                                                          \
    } while (false)

/// A text from a UTF-8 literal.
inline QString utf8(const char *text) { return QString::fromUtf8(text); }

#endif
