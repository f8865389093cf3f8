#include "tests/differential/PlainFontList.h"

void PlainFontList::loadFontList(const QString &directory)
{
    print(3, "[VLMC_FontListSetting::loadFontList] start");
    if (directory.isEmpty()) {
        print(2, "[VLMC_FontListSetting::loadFontList] Path is empty.");
        return;
    }
    deleteAllSetting();
    load(directory + textOf("fontlist.xml"));
    setIds();
    print(3, "[VLMC_FontListSetting::loadFontList] end");
}

int PlainFontList::getCount() { return count("font"); }

QString PlainFontList::getFont(int index)
{
    print(3, "[VLMC_FontListSetting::getFont]");
    const ElementPointer font = byId(index);
    return font && utf8Bytes(font->text) <= 256 ? font->text : QString();
}

void PlainFontList::addFont(const QString &name)
{
    print(3, "[VLMC_FontListSetting::addFont]");
    if (name.isEmpty()) {
        print(2, "[VLMC_FontListSetting::addFont] FontName is empty.");
        return;
    }
    add(root, "font", name);
    setIds();
}

void PlainFontList::saveFontList(const QString &directory)
{
    print(3, "[VLMC_FontListSetting::saveFontList] start");
    if (directory.isEmpty()) {
        print(2, "[VLMC_FontListSetting::saveFontList] Path is empty.");
        return;
    }
    nameRoot("fontlist");
    save(directory + textOf("fontlist.xml"));
    print(3, "[VLMC_FontListSetting::saveFontList] end");
}
