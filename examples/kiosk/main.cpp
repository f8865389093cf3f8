// A small browser that keeps all its state with the library: velmora-kiosk [options] FOLDER

#include "core/VLMG_Debug.h"
#include "examples/kiosk/Commands.h"
#include "examples/kiosk/CredentialsDialog.h"
#include "examples/kiosk/Text.h"
#include "examples/kiosk/Window.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtWidgets/QApplication>

#include <cstdio>

namespace
{
const int kUsageError = 2;

int refuse(const QString &message)
{
    fprintf(stderr, "velmora-kiosk: %s\n", message.toUtf8().constData());
    return kUsageError;
}

void describe(QCommandLineParser &parser)
{
    parser.setApplicationDescription(text("Browses with the profile in the folder."));
    parser.addHelpOption();
    parser.addPositionalArgument(text("folder"), text("The profile."));
    parser.addOption({text("commands"), text("Plays the commands in the file."), text("file")});
    parser.addOption({text("log-level"),
                      text("What is logged: 0 nothing, 1 errors, 2 warnings, 3 all."),
                      text("level"), text("0")});
    parser.addOption(
        {text("local-host"), text("A host whose pages are the device's own."), text("name")});
}

// Called before the first store is used, so that its first load is logged as well. The system log
// gets every message whatever its level, so it is off when no log is wanted.
bool setLogLevel(const QString &level)
{
    bool isNumber = false;
    const unsigned long number = level.toULong(&isNumber);
    VLMG_DebugSetLogLevel(number);
    g_uc_SystemLogLevel = number > 0;
    return isNumber && number <= VLMG_LogTrace;
}

void askInDialog(Window &window)
{
    window.credentials().setQuestion([&window](VLMS_AuthInfo &info) {
        CredentialsDialog dialog(info, &window);
        if (dialog.exec() != QDialog::Accepted) {
            return false;
        }
        dialog.fill(info);
        return true;
    });
}

QStringList linesOf(QFile &file)
{
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
}

// The profile is the current folder. So its own path may be of any length and in any script, while
// the stores take thumbnail paths of at most 256 bytes, and the conversions of cookies only
// Latin-1.
int browse(const QCommandLineParser &parser, const QStringList &commands)
{
    Window window(text("./"), parser.value(text("local-host")).toLatin1());
    Commands player(commands, window); // which waits for the start page as well
    if (!parser.isSet(text("commands"))) {
        askInDialog(window);
    }
    window.show();
    window.openStartPage();
    player.start();
    return QApplication::exec();
}
} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QCommandLineParser parser;
    describe(parser);
    parser.process(application);
    if (parser.positionalArguments().size() != 1) {
        return refuse(text("name one folder for the profile: velmora-kiosk FOLDER"));
    }
    const QFileInfo folder(parser.positionalArguments().at(0));
    if (!folder.isDir() || !folder.isWritable()) {
        return refuse(text("'%1' is not a folder that can be written to").arg(folder.filePath()));
    }
    if (!setLogLevel(parser.value(text("log-level")))) {
        return refuse(text("the log level is 0, 1, 2 or 3"));
    }
    QFile commands(parser.value(text("commands")));
    if (parser.isSet(text("commands")) && !commands.open(QIODevice::ReadOnly)) {
        return refuse(text("'%1' cannot be read").arg(commands.fileName()));
    }
    const QStringList lines = commands.isOpen() ? linesOf(commands) : QStringList();
    QDir::setCurrent(folder.absoluteFilePath());
    return browse(parser, lines);
}
