#include "examples/demo/demo.h"

#include "fonts/VLMC_FontListSetting.h"

#include <QtCore/QStringList>
#include <fontconfig/fontconfig.h>

namespace
{
QString familyOf(FcPattern *pattern)
{
    FcChar8 *family = nullptr;
    if (FcPatternGetString(pattern, FC_FAMILY, 0, &family) != FcResultMatch) {
        return QString();
    }
    return QString::fromUtf8(reinterpret_cast<const char *>(family));
}

QStringList familiesIn(const FcFontSet *fonts)
{
    QStringList families;
    for (int i = 0; fonts && i < fonts->nfont; ++i) {
        families.append(familyOf(fonts->fonts[i]));
    }
    families.removeAll(QString());
    families.removeDuplicates();
    families.sort();
    return families;
}

// The families that this machine has, as fontconfig knows them.
QStringList installedFamilies()
{
    FcPattern *const any = FcPatternCreate();
    FcObjectSet *const wanted = FcObjectSetCreate();
    FcObjectSetAdd(wanted, FC_FAMILY);
    FcFontSet *const fonts = FcFontList(nullptr, any, wanted);
    const QStringList families = familiesIn(fonts);
    if (fonts) {
        FcFontSetDestroy(fonts);
    }
    FcObjectSetDestroy(wanted);
    FcPatternDestroy(any);
    FcFini();
    return families;
}
} // namespace

void showFonts(const QString &directory)
{
    heading("Fonts: the families of this machine in fontlist.xml");
    VLMC_FontListSetting *const fonts = VLMC_FontListSetting::getInstance();
    fonts->loadFontList(directory);
    say(text("The list begins with %1 fonts.").arg(fonts->getCount()));

    const QStringList families = installedFamilies();
    for (const QString &family : families) {
        fonts->addFont(family);
    }
    fonts->saveFontList(directory);

    fonts->loadFontList(directory);
    expect(fonts->getCount() >= families.size(), "the fonts are kept");
    say(text("Added %1, saved, loaded again: %2 fonts, the first is \"%3\".")
            .arg(families.size())
            .arg(fonts->getCount())
            .arg(fonts->getFont(0)));
    printFile(directory + text("fontlist.xml"));
}
