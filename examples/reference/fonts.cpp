#include "examples/reference/Reference.h"
#include "fonts/VLMC_FontListSetting.h"

#include <QtCore/QFile>
#include <QtCore/QStringList>

namespace
{
void addFonts(const QString &directory)
{
    //! [fonts: load, add and save]
    VLMC_FontListSetting *fonts = VLMC_FontListSetting::getInstance();
    fonts->loadFontList(directory); // a missing file is an empty list
    fonts->addFont(QString::fromUtf8("DejaVu Sans"));
    fonts->addFont(QString::fromUtf8("DejaVu Serif"));
    fonts->saveFontList(directory); // directory + "fontlist.xml"
    //! [fonts: load, add and save]
    EXPECT(QFile::exists(directory + utf8("fontlist.xml")));
}

QStringList listedFonts()
{
    //! [fonts: read]
    VLMC_FontListSetting *fonts = VLMC_FontListSetting::getInstance();
    QStringList names;
    for (int index = 0; index < fonts->getCount(); ++index) {
        const QString name = fonts->getFont(index);
        if (!name.isEmpty()) { // empty: longer than 256 bytes
            names.append(name);
        }
    }
    //! [fonts: read]
    return names;
}

void addOnce(const QString &name)
{
    //! [fonts: add once]
    // The store keeps duplicates; to avoid them, look first.
    VLMC_FontListSetting *fonts = VLMC_FontListSetting::getInstance();
    bool listed = false;
    for (int index = 0; index < fonts->getCount() && !listed; ++index) {
        listed = fonts->getFont(index) == name;
    }
    if (!listed) {
        fonts->addFont(name);
    }
    //! [fonts: add once]
}
} // namespace

void exampleOfFonts(const QString &directory)
{
    addFonts(directory);
    const QStringList two = QStringList() << utf8("DejaVu Sans") << utf8("DejaVu Serif");
    EXPECT(listedFonts() == two);
    VLMC_FontListSetting::getInstance()->loadFontList(directory);
    addOnce(utf8("DejaVu Sans"));
    EXPECT(listedFonts() == two);
    addOnce(utf8("DejaVu Sans Mono"));
    EXPECT(listedFonts() == two + QStringList(utf8("DejaVu Sans Mono")));
}
