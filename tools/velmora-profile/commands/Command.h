#ifndef TOOLS_VELMORA_PROFILE_COMMANDS_COMMAND_H
#define TOOLS_VELMORA_PROFILE_COMMANDS_COMMAND_H

#include <QtCore/QHash>
#include <QtCore/QList>
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

// A command: a group with an action ("bookmarks add") or without ("show"). The source of a group
// gives its commands; CMakeLists.txt, which names the source, gathers them all.
struct Command {
    const char *group;
    const char *action; // null without
    const char *operands;
    int fewest;
    int most; // operands behind the folder
    const char *options;
    const char *summary;
    Access access;
    int (*run)(const Call &call); // its texts go to standard output, the result is the exit status
};

QList<Command> allCommands();

// Parses, finds the command, enters the folder and runs it.
int runCommand(const QStringList &arguments);
} // namespace profile

#endif
