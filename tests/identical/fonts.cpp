#include "tests/identical/Script.h"

#include "fonts/VLMC_FontListSetting.h"

namespace
{
const char kFile[] = "fontlist.xml";
const char kDocument[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<fontlist docInfo=\"1.0\">\n"
                         "    <font id=\"000\">DejaVu \xE3\x81\x82</font>\n"
                         "    <font id=\"001\">DejaVu Serif</font>\n"
                         "</fontlist>\n";
const int kKept = 12;

VLMC_FontListSetting &store() { return *VLMC_FontListSetting::getInstance(); }

void showFonts()
{
    line("fonts", store().getCount());
    for (int index = -1; index <= store().getCount(); ++index) {
        line("font", store().getFont(index));
    }
}

void takeStep(Draw &draw)
{
    if (store().getXMLNodeCnt() > kKept) {
        QString id = utf8("id");
        store().deleteXMLNodeByID(draw.id(kKept), id);
    }
    store().addFont(draw.text());
    line("font", store().getFont(draw.id(store().getCount())));
}

void playRefused()
{
    const Part part("fonts, what is refused");
    showFonts();
    store().addFont(utf8("lost"));
    store().addFont(QString());
    const QString folder = newFolder();
    store().saveFontList(folder);
    store().loadFontList(QString());
    store().saveFontList(utf8(""));
    showFolder(folder);
    showLog();
}
} // namespace

void playFonts()
{
    playRefused();
    playDocuments(kFile, kDocument, [](QString &folder) {
        store().loadFontList(folder);
        showFonts();
        store().saveFontList(folder);
    });
    Draw draw(1);
    playSteps(
        "fonts", 16, [&] { takeStep(draw); },
        [](QString &folder) {
            store().saveFontList(folder);
            store().loadFontList(folder);
            showFonts();
        });
}
