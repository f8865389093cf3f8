#include "fonts/VLMC_FontListSetting.h"

#include <cstdio>

int main(int argc, char **argv)
{
    VLMC_FontListSetting *const fonts = VLMC_FontListSetting::getInstance();
    fonts->loadFontList(QString::fromLocal8Bit(argc > 1 ? argv[1] : "./"));
    fonts->addFont(QString::fromLatin1("Sans"));
    std::printf("%d %s\n", fonts->getCount(), qPrintable(fonts->getFont(0)));
    return fonts->getCount() == 1 ? 0 : 1;
}
