#ifndef COMMANDS_COMMAND_H
#define COMMANDS_COMMAND_H

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace profile
{
// What a command was called with. The current folder is the profile by the time that it runs, so
// the stores get "./": short enough for every limit on paths, and ASCII for those of the library's
// operations that take no other.
struct Call {
    QString directory; // as it was named
    QStringList operands;
    QHash<QString, QString> options; // by name without dashes; switches have an empty value

    bool has(const char *option) const;
    QString option(const char *option) const;
    // An operand or option that names a file, from the folder that the tool was started in; "-" as
    // it stands.
    QString path(const QString &named) const;

    QString startedIn;
};

enum Access { Reads, Writes };

// A row of the command table: a group with an action ("bookmarks add") or without ("show").
struct Command {
    const char *group;
    const char *action; // null without
    const char *operands;
    int fewest;
    int most; // operands behind the folder
    const char *options;
    const char *summary;
    Access access;
    int (*run)(const Call &call);
};

// Parses, finds the command, enters the folder and runs it.
int runCommand(const QStringList &arguments);

// The whole help.
QString usage();

// The commands, by group. Their texts go to standard output; the result is the exit status.
int show(const Call &call);
int check(const Call &call);
int repair(const Call &call);
int diff(const Call &call);
int report(const Call &call);
int listPreferences(const Call &call);
int getPreference(const Call &call);
int setPreference(const Call &call);
int listBookmarks(const Call &call);
int addBookmark(const Call &call);
int removeBookmark(const Call &call);
int importBookmarks(const Call &call);
int exportBookmarks(const Call &call);
int listHistory(const Call &call);
int findHistory(const Call &call);
int addHistory(const Call &call);
int removeHistory(const Call &call);
int clearHistory(const Call &call);
int exportHistory(const Call &call);
int listFonts(const Call &call);
int addFont(const Call &call);
int syncFonts(const Call &call);
int listCredentials(const Call &call);
int addCredentials(const Call &call);
int removeCredentials(const Call &call);
int listCookies(const Call &call);
int cookiesToXml(const Call &call);
int cookiesToIni(const Call &call);
int importCookies(const Call &call);
int exportCookies(const Call &call);
int listThumbnails(const Call &call);
int packThumbnails(const Call &call);
int unpackThumbnails(const Call &call);
int cleanThumbnails(const Call &call);
} // namespace profile

#endif
