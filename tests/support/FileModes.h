#ifndef TESTS_SUPPORT_FILEMODES_H
#define TESTS_SUPPORT_FILEMODES_H

#include <QtCore/QByteArray>
#include <QtCore/QList>

/**
 * The modes that files have when they come into being and whenever something is written to them.
 * Linking this interposes the C library's functions for that; outside of a WatchedModes object they
 * do what they always did.
 */
struct FileMode {
    enum Moment { Created, Written };

    Moment moment;
    /// As it was opened; the folder for a file that has no name yet.
    QByteArray name;
    int mode;
};

/// While one lives, the modes of the files that this thread creates and writes are recorded.
class WatchedModes
{
public:
    WatchedModes();
    ~WatchedModes();
    WatchedModes(const WatchedModes &) = delete;
    WatchedModes &operator=(const WatchedModes &) = delete;
};

/// What the last WatchedModes saw, in order.
QList<FileMode> watchedModes();

/// The error that fdatasync gives from now on; 0 lets it work as it always did.
void setSyncError(int error);

#endif
