#include "tools/velmora-profile/profile/Families.h"

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
} // namespace

QStringList profile::installedFamilies()
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
