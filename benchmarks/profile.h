#ifndef PROFILE_H
#define PROFILE_H

#include <QtCore/QDateTime>
#include <QtCore/QString>

// Files with any number of entries, as the stores would have written them.

/// A directory of its own for the files of one measurement; path() ends with "/".
class Profile
{
public:
    Profile();
    ~Profile();
    Profile(const Profile &) = delete;
    Profile &operator=(const Profile &) = delete;

    QString path() const;
    QString *pathPointer();
    QString file(const char *name) const;

private:
    QString m_path;
};

QString titleOf(int entry);
QString urlOf(int entry);
/// Newest first, a minute apart.
QDateTime timeOf(int entry);

void writeHistory(const Profile &profile, int entries);
void writeBookmarks(const Profile &profile, int entries);
void writeFonts(const Profile &profile, int entries);
void writeCredentials(const Profile &profile, int entries);

#endif
