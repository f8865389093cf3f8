// A tour of the library, on a profile in the folder that is named.

#include "core/VLMG_Debug.h"
#include "examples/demo/demo.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QStringList>
#include <QtCore/QTimer>

#include <cstdio>

namespace
{
int refuse(const QString &message)
{
    fprintf(stderr, "velmora-demo: %s\n", message.toUtf8().constData());
    return 2;
}

void takeTour(const QString &directory)
{
    showPreferences(directory);
    showBookmarks(directory);
    showThumbnails(directory);
    showHistory(directory);
    showCookies(directory);
    showCredentials(directory);
    showFonts(directory);
}
} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2) {
        return refuse(text("name one folder for the profile: velmora-demo FOLDER"));
    }
    const QFileInfo folder(arguments.at(1));
    if (!folder.isDir() || !folder.isWritable()) {
        return refuse(text("'%1' is not a folder that can be written to; create one first")
                          .arg(arguments.at(1)));
    }
    // Otherwise the tour fills the device's system log with trace lines.
    g_uc_SystemLogLevel = 0;
    const QString directory = folder.absoluteFilePath() + QLatin1Char('/');
    takeTour(directory);
    // The event loop frees what the stores have released; one round of it is enough.
    QTimer::singleShot(0, qApp, SLOT(quit()));
    QCoreApplication::exec();
    say(text("\nThe files are in %1").arg(directory));
    return 0;
}
