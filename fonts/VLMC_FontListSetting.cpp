#include "fonts/VLMC_FontListSetting.h"

#include "core/Entries_p.h"
#include "core/Refused_p.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMG_Debug.h"
#include "fonts/FontElements_p.h"
#include "text/Utf8_p.h"

using namespace vlm;
using namespace vlm::fonts;

VLMC_FontListSetting *VLMC_FontListSetting::getInstance()
{
    static VLMC_FontListSetting instance;
    return &instance;
}

VLMC_FontListSetting::VLMC_FontListSetting() {}

void VLMC_FontListSetting::loadFontList(QString directory)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_FontListSetting::loadFontList] start");
    if (refused(directory.isEmpty(), "[VLMC_FontListSetting::loadFontList] Path is empty.")) {
        return;
    }
    loadEntries(*this, directory, kFileName);
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_FontListSetting::loadFontList] end");
}

int VLMC_FontListSetting::getCount() { return countEntries(*this, kEntry); }

QString VLMC_FontListSetting::getFont(int index)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_FontListSetting::getFont]");
    VLMC_XMLNode *const font = entryById(*this, index);
    if (!font || !fitsUtf8(font->getText(), kMaxNameBytes)) {
        return QString();
    }
    return font->getText();
}

void VLMC_FontListSetting::addFont(QString name)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_FontListSetting::addFont]");
    if (refused(name.isEmpty(), "[VLMC_FontListSetting::addFont] FontName is empty.")) {
        return;
    }
    VLMC_XMLNode *const font = addElement(*this, getXMLRootNode(), kEntry, name, PlainText, AtEnd);
    numberEntries(*this);
    releaseUnattached(font);
}

void VLMC_FontListSetting::saveFontList(QString directory)
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_FontListSetting::saveFontList] start");
    if (refused(directory.isEmpty(), "[VLMC_FontListSetting::saveFontList] Path is empty.")) {
        return;
    }
    nameRoot(*this, kRoot);
    saveFile(*this, directory, kFileName);
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_FontListSetting::saveFontList] end");
}
