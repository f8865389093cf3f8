#include "fonts/VLMC_FontListSetting.h"

#include <QtCore/QCoreApplication>
#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication browser(argc, argv); // stores need an event loop on their thread
    const QString directory = QString::fromUtf8(argc > 1 ? argv[1] : "/tmp/"); // ends with "/"

    VLMC_FontListSetting *fonts = VLMC_FontListSetting::getInstance();
    fonts->loadFontList(directory); // directory + "fontlist.xml"; a missing file is an empty list
    fonts->addFont(QString::fromUtf8("DejaVu Sans")); // in memory
    fonts->saveFontList(directory);                   // replaces the file as a whole
    for (int index = 0; index < fonts->getCount(); ++index) {
        printf("%d: %s\n", index, fonts->getFont(index).toUtf8().constData());
    }
    return 0;
}
