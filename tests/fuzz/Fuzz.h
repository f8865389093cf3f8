#ifndef TESTS_FUZZ_FUZZ_H
#define TESTS_FUZZ_FUZZ_H

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <cstddef>
#include <cstdint>

/**
 * What the fuzz targets share. A target defines LLVMFuzzerTestOneInput, which libFuzzer calls with
 * inputs of its own making and the replay program with those of the corpus.
 */
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

/// Ends the program with the broken promise as its last words, unless it holds.
void require(bool holds, const char *promise);

/// A new and empty directory in memory, gone with the object. No two of a program have the same
/// path: Qt keeps what it has read of an INI file by its path.
class InputDirectory
{
public:
    InputDirectory();
    ~InputDirectory();
    InputDirectory(const InputDirectory &) = delete;
    InputDirectory &operator=(const InputDirectory &) = delete;

    /// With a "/" at its end.
    QString path() const;
    QString file(const char *name) const;
    /// A directory in it, with a "/" at its end.
    QString newDirectory(const char *name) const;

private:
    QString m_path;
};

QByteArray bytesOfFile(const QString &path);
void writeToFile(const QString &path, const QByteArray &bytes);

/// Carries out deferred deletions at the end of the input.
class DeferredDeletes
{
public:
    DeferredDeletes() {}
    ~DeferredDeletes();
    DeferredDeletes(const DeferredDeletes &) = delete;
    DeferredDeletes &operator=(const DeferredDeletes &) = delete;
};

/// Takes values off the front of an input; an input that is used up gives zeros.
class Input
{
public:
    Input(const uint8_t *data, size_t size);

    /// From 0 up to below limit; printable digits of a seed are 0 to 9.
    int choice(int limit);
    /// All that is left.
    QByteArray rest() const;

private:
    QByteArray m_bytes;
    int m_position;
};

#endif
