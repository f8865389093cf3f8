// Plays a fixed script with every store and prints each file's bytes, each result and each message:
// identical-script [differences | foreign] [--whole]. With one of the words it plays what Qt's
// versions are known not to do alike.

#include "tests/identical/Script.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace
{
// Files and folders of the script, no deeper than it makes them.
void removeFolder(const QString &folder)
{
    const QFileInfoList entries =
        QDir(folder).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        if (entry.isDir() && !entry.isSymLink()) {
            removeFolder(entry.filePath());
        } else {
            QFile::remove(entry.filePath());
        }
    }
    QDir().rmdir(folder);
}

void play()
{
    playNodes();
    playTexts();
    playCommonPreferences();
    playUserPreferences();
    playBookmarks();
    playThumbnails();
    playHistory();
    playCookies();
    playCredentials();
    playFonts();
    setZone(kSummerTime);
    Part::setCircumstance(", with summer time");
    playHistory();
    playCookies();
}

bool isGiven(int count, char **arguments, const char *wanted)
{
    for (int i = 1; i < count; ++i) {
        if (strcmp(arguments[i], wanted) == 0) {
            return true;
        }
    }
    return false;
}

// A folder of its own to work in: every path is relative, so that its name is in no file.
QByteArray enterFolder()
{
    const char *const temporary = getenv("TMPDIR");
    QByteArray folder = QByteArray(temporary ? temporary : "/tmp") + "/identical-XXXXXX";
    if (!mkdtemp(folder.data()) || chdir(folder.constData()) != 0) {
        perror(folder.constData());
        exit(2);
    }
    return folder;
}
} // namespace

int main(int argc, char **argv)
{
    setenv("LC_ALL", "C.UTF-8", 1);
    const QByteArray folder = enterFolder();
    {
        const QCoreApplication application(argc, argv);
        if (isGiven(argc, argv, "--whole")) {
            Part::showWhole();
        }
        setZone(kWorldTime);
        if (isGiven(argc, argv, "differences")) {
            playDifferences();
        } else if (isGiven(argc, argv, "foreign")) {
            playForeign();
        } else {
            play();
        }
        runDeferredDeletes();
    }
    removeFolder(QFile::decodeName(folder));
    return 0;
}
