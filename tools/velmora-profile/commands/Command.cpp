#include "tools/velmora-profile/commands/Command.h"

#include "core/VLMG_Debug.h"
#include "tools/velmora-profile/output/Console.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

namespace
{
using namespace profile;

// Options that are followed by a value; all others are switches.
const char *const kValued[] = {"format", "output", "time", "log-level"};

const QList<Command> &commands()
{
    static const QList<Command> all = allCommands();
    return all;
}

bool isCalled(const Command &command, const QString &group, const QString &action)
{
    return group == text(command.group) && (!command.action || action == text(command.action));
}

const Command *commandCalled(const QString &group, const QString &action)
{
    for (const Command &command : commands()) {
        if (isCalled(command, group, action)) {
            return &command;
        }
    }
    return nullptr;
}

QStringList actionsOf(const QString &group)
{
    QStringList actions;
    for (const Command &command : commands()) {
        if (group == text(command.group)) {
            actions.append(text(command.action));
        }
    }
    return actions;
}

QString nameOf(const Command &command)
{
    return command.action ? text("%1 %2").arg(text(command.group), text(command.action))
                          : text(command.group);
}

bool isValued(const QString &option)
{
    for (const char *const valued : kValued) {
        if (option == text(valued)) {
            return true;
        }
    }
    return false;
}

QString longName(const QString &argument)
{
    if (argument == text("-o")) {
        return text("--output");
    }
    return argument == text("-h") ? text("--help") : argument;
}

// Splits arguments into words and options. The result is an error, empty without one.
QString split(const QStringList &arguments, QStringList *words, QHash<QString, QString> *options)
{
    for (int i = 0; i < arguments.size(); ++i) {
        const QString argument = longName(arguments.at(i));
        if (argument == text("--")) {
            *words += arguments.mid(i + 1);
            return QString();
        }
        if (argument == text("-") || !argument.startsWith(QLatin1Char('-'))) {
            words->append(argument);
            continue;
        }
        // A mistaken option must not become data.
        if (!argument.startsWith(text("--"))) {
            return text("'%1' is no option; --help lists them, and an operand like it follows --")
                .arg(argument);
        }
        const QString name = argument.section(QLatin1Char('='), 0, 0).mid(2);
        const bool given = argument.contains(QLatin1Char('='));
        if (given != isValued(name) && (given || i + 1 == arguments.size())) {
            return given ? text("--%1 takes no value").arg(name)
                         : text("--%1 needs a value").arg(name);
        }
        const bool follows = isValued(name) && !given;
        options->insert(name, follows ? arguments.at(++i) : argument.section(QLatin1Char('='), 1));
    }
    return QString();
}

// "prefs DIR list" means "prefs list DIR".
void putActionFirst(QStringList *words)
{
    if (words->size() < 3 || commandCalled(words->at(0), words->at(1))) {
        return;
    }
    if (commandCalled(words->at(0), words->at(2))) {
        words->swapItemsAt(1, 2);
    }
}

int failUnknown(const QStringList &words)
{
    const QStringList actions = words.isEmpty() ? QStringList() : actionsOf(words.at(0));
    if (!actions.isEmpty()) {
        return fail(
            text("'%1' is followed by one of: %2").arg(words.at(0), actions.join(text(", "))));
    }
    if (words.isEmpty()) {
        return fail(text("name a command and the folder of a profile; --help lists the commands"));
    }
    return fail(text("'%1' is no command; --help lists them").arg(words.at(0)));
}

QString unknownOption(const Command &command, const QHash<QString, QString> &options)
{
    const QStringList allowed = text(command.options).split(QLatin1Char(' '));
    for (auto option = options.begin(); option != options.end(); ++option) {
        if (!allowed.contains(option.key()) && option.key() != text("log-level")) {
            return option.key();
        }
    }
    return QString();
}

bool setLogLevel(const Call &call)
{
    // Tools are no browser: the device's system log stays the browser's.
    g_uc_SystemLogLevel = 0;
    bool isNumber = true;
    const uint level = call.has("log-level") ? call.option("log-level").toUInt(&isNumber) : 0;
    VLMG_DebugSetLogLevel(level);
    return isNumber;
}

// An error, or empty when the folder was entered.
QString enter(const Command &command, const QString &directory)
{
    const QFileInfo folder(directory);
    if (!folder.exists()) {
        return text("'%1' does not exist; name the folder of a profile").arg(directory);
    }
    if (!folder.isDir()) {
        return text("'%1' is no folder; name the folder of a profile").arg(directory);
    }
    if (!folder.isReadable() || !QDir::setCurrent(directory)) {
        return text("'%1' cannot be read; ask its owner for permission").arg(directory);
    }
    if (command.access == Writes && !QFileInfo(QDir::currentPath()).isWritable()) {
        return text("'%1' cannot be written to; nothing was changed, ask its owner for permission")
            .arg(directory);
    }
    return QString();
}

int run(const Command &command, Call call)
{
    const QString option = unknownOption(command, call.options);
    if (!option.isEmpty()) {
        return fail(
            text("'%1' has no option --%2; --help lists them").arg(nameOf(command), option));
    }
    if (!setLogLevel(call)) {
        return fail(text("--log-level takes a number; 0 is silent, 3 is everything"));
    }
    const int given = int(call.operands.size());
    if (call.directory.isEmpty() || given < command.fewest || given > command.most) {
        return fail(text("'%1' is followed by: %2").arg(nameOf(command), text(command.operands)));
    }
    const QString error = enter(command, call.directory);
    return error.isEmpty() ? command.run(call) : fail(error);
}

QString usage()
{
    QString help = text("usage: velmora-profile COMMAND DIR ...\n\n");
    for (const Command &command : commands()) {
        QString line = text("  %1 %2").arg(nameOf(command), text(command.operands));
        const QStringList options =
            text(command.options).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        for (const QString &option : options) {
            line += option == text("output")
                        ? text(" -o FILE")
                        : text(isValued(option) ? " [--%1 ...]" : " [--%1]").arg(option);
        }
        help += text("%1\n      %2\n").arg(line, text(command.summary));
    }
    return help
           + text(
               "\nA FILE named - is standard input or output. --log-level N writes the library's "
               "log file.\nExit status: 0 done, 1 findings or differences, 2 usage or files.");
}
} // namespace

bool profile::Call::has(const char *option) const { return options.contains(text(option)); }

QString profile::Call::option(const char *option) const { return options.value(text(option)); }

QString profile::Call::path(const QString &named) const
{
    return named == text("-") ? named : QDir(startedIn).absoluteFilePath(named);
}

int profile::runCommand(const QStringList &arguments)
{
    QStringList words;
    Call call;
    const QString error = split(arguments, &words, &call.options);
    if (!error.isEmpty()) {
        return fail(error);
    }
    if (call.has("help")) {
        say(usage());
        return Done;
    }
    if (call.has("version")) {
        say(text("velmora-profile %1").arg(text(VELMORA_VERSION)));
        return Done;
    }
    putActionFirst(&words);
    const Command *const command = commandCalled(words.value(0), words.value(1));
    if (!command) {
        return failUnknown(words);
    }
    call.startedIn = QDir::currentPath();
    const int named = command->action ? 2 : 1;
    call.directory = words.value(named);
    call.operands = words.mid(named + 1);
    return run(*command, call);
}
